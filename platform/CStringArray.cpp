#include "CStringArray.h"

#include <algorithm>

void CStringArray::SetSize(int size, int)
{
    m_texts.resize(std::max(size, 0));
}

void CStringArray::SetAt(int index, const CString &text)
{
    if (index >= 0 && index < m_texts.size())
        m_texts[index] = text;
}

CString &CStringArray::ElementAt(int index)
{
    m_nowhere.Empty();
    return index >= 0 && index < m_texts.size() ? m_texts[index] : m_nowhere;
}

void CStringArray::SetAtGrow(int index, const CString &text)
{
    const CString copy = text; // it may lie in the array
    if (index >= m_texts.size())
        m_texts.resize(index + 1);
    SetAt(index, copy);
}

int CStringArray::Add(const CString &text)
{
    m_texts.append(text);
    return GetUpperBound();
}

int CStringArray::Append(const CStringArray &other)
{
    const int first = m_texts.size();
    m_texts += other.m_texts;
    return first;
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

void CStringArray::InsertAt(int index, const CStringArray *other)
{
    const QVector<CString> texts = other ? other->m_texts : QVector<CString>();
    for (int offset = 0; offset < texts.size(); ++offset)
        InsertAt(index + offset, texts.at(offset));
}

void CStringArray::RemoveAt(int index, int count)
{
    if (index >= 0 && index < m_texts.size())
        m_texts.remove(index, std::clamp(count, 0, m_texts.size() - index));
}
