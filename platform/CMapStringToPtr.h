#pragma once

#include "StringMap.h"

extern template class OVCC_EXPORT OvCc::StringMap<void *>;

/// A map from texts to pointers, which it does not own; see OvCc::StringMap for what it can do.
class OVCC_EXPORT CMapStringToPtr : public OvCc::StringMap<void *>
{
};
