// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "CStringArray.h"

#include <algorithm>

CStringArray::CStringArray() = default;
CStringArray::CStringArray(const CStringArray &other) = default;
CStringArray::~CStringArray() = default;
CStringArray &CStringArray::operator=(const CStringArray &other) = default;

int CStringArray::GetCount() const
{
    return m_texts.size();
}

int CStringArray::GetSize() const
{
    return GetCount();
}

int CStringArray::GetUpperBound() const
{
    return GetCount() - 1;
}

bool CStringArray::IsEmpty() const
{
    return m_texts.isEmpty();
}

void CStringArray::SetSize(int size)
{
    m_texts.resize(std::max(size, 0));
}

void CStringArray::RemoveAll()
{
    m_texts.clear();
}

CString CStringArray::GetAt(int index) const
{
    return m_texts.value(index);
}

void CStringArray::SetAt(int index, const CString &text)
{
    const CString copy = text; // it may be m_nowhere
    (*this)[index] = copy;
}

CString CStringArray::operator[](int index) const
{
    return GetAt(index);
}

CString &CStringArray::operator[](int index)
{
    m_nowhere.Empty();
    return index >= 0 && index < m_texts.size() ? m_texts[index] : m_nowhere;
}

int CStringArray::Add(const CString &text)
{
    m_texts.append(text);
    return GetUpperBound();
}

void CStringArray::InsertAt(int index, const CString &text, int count)
{
    if (index < 0 || count <= 0)
        return;
    const CString copy = text; // it may lie in the array
    if (index > m_texts.size())
        m_texts.resize(index);
    m_texts.insert(index, count, copy);
}

void CStringArray::RemoveAt(int index, int count)
{
    if (index >= 0 && index < m_texts.size())
        m_texts.remove(index, std::clamp(count, 0, int(m_texts.size()) - index));
}
