// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "CMapStringToPtr.h"

#include "StringMap.h"

CMapStringToPtr::CMapStringToPtr()
    : m_map(new OvCc::StringMap<void *>)
{
}

CMapStringToPtr::CMapStringToPtr(const CMapStringToPtr &other) = default;
CMapStringToPtr::~CMapStringToPtr() = default;
CMapStringToPtr &CMapStringToPtr::operator=(const CMapStringToPtr &other) = default;

int CMapStringToPtr::GetCount() const
{
    return m_map->count();
}

int CMapStringToPtr::GetSize() const
{
    return GetCount();
}

bool CMapStringToPtr::IsEmpty() const
{
    return GetCount() == 0;
}

bool CMapStringToPtr::Lookup(const CString &key, void *&value) const
{
    return m_map->lookup(key, value);
}

void *&CMapStringToPtr::operator[](const CString &key)
{
    return (*m_map)[key];
}

void CMapStringToPtr::SetAt(const CString &key, void *value)
{
    (*m_map)[key] = value;
}

bool CMapStringToPtr::RemoveKey(const CString &key)
{
    return m_map->remove(key);
}

void CMapStringToPtr::RemoveAll()
{
    m_map->clear();
}

POSITION CMapStringToPtr::GetStartPosition() const
{
    return m_map->start();
}

void CMapStringToPtr::GetNextAssoc(POSITION &position, CString &key, void *&value) const
{
    m_map->next(position, key, value);
}
