// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "CMapStringToString.h"

#include "StringMap.h"

CMapStringToString::CMapStringToString()
    : m_map(new OvCc::StringMap<CString>)
{
}

CMapStringToString::CMapStringToString(const CMapStringToString &other) = default;
CMapStringToString::~CMapStringToString() = default;
CMapStringToString &CMapStringToString::operator=(const CMapStringToString &other) = default;

int CMapStringToString::GetCount() const
{
    return m_map->count();
}

int CMapStringToString::GetSize() const
{
    return GetCount();
}

bool CMapStringToString::IsEmpty() const
{
    return GetCount() == 0;
}

bool CMapStringToString::Lookup(const CString &key, CString &value) const
{
    return m_map->lookup(key, value);
}

CString &CMapStringToString::operator[](const CString &key)
{
    return (*m_map)[key];
}

void CMapStringToString::SetAt(const CString &key, const CString &value)
{
    const CString copy = value; // it may lie in the map
    (*m_map)[key] = copy;
}

bool CMapStringToString::RemoveKey(const CString &key)
{
    return m_map->remove(key);
}

void CMapStringToString::RemoveAll()
{
    m_map->clear();
}

POSITION CMapStringToString::GetStartPosition() const
{
    return m_map->start();
}

void CMapStringToString::GetNextAssoc(POSITION &position, CString &key, CString &value) const
{
    m_map->next(position, key, value);
}
