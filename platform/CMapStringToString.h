#pragma once

#include "StringMap.h"

extern template class OVCC_EXPORT OvCc::StringMap<CString>;

/// A map from texts to texts; see OvCc::StringMap for what it can do.
class OVCC_EXPORT CMapStringToString : public OvCc::StringMap<CString>
{
};
