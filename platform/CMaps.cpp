#include "CMapStringToPtr.h"
#include "CMapStringToString.h"

template class OvCc::StringMap<void *>;
template class OvCc::StringMap<CString>;
