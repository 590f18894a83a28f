// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "CStringList.h"

CStringList::CStringList() = default;
CStringList::CStringList(const CStringList &other) = default;
CStringList::~CStringList() = default;
CStringList &CStringList::operator=(const CStringList &other) = default;

int CStringList::GetCount() const
{
    return m_nodes.size();
}

int CStringList::GetSize() const
{
    return GetCount();
}

bool CStringList::IsEmpty() const
{
    return m_nodes.isEmpty();
}

CString CStringList::GetHead() const
{
    return GetAt(m_head);
}

CString CStringList::GetTail() const
{
    return GetAt(m_tail);
}

POSITION CStringList::AddHead(const CString &text)
{
    return insert(nullptr, text, m_head);
}

POSITION CStringList::AddTail(const CString &text)
{
    return insert(m_tail, text, nullptr);
}

CString CStringList::RemoveHead()
{
    const CString text = GetHead();
    RemoveAt(m_head);
    return text;
}

CString CStringList::RemoveTail()
{
    const CString text = GetTail();
    RemoveAt(m_tail);
    return text;
}

void CStringList::RemoveAll()
{
    m_nodes.clear();
    m_head = nullptr;
    m_tail = nullptr;
}

POSITION CStringList::GetHeadPosition() const
{
    return m_head;
}

POSITION CStringList::GetTailPosition() const
{
    return m_tail;
}

CString CStringList::GetNext(POSITION &position) const
{
    const Node node = m_nodes.value(position);
    position = node.next;
    return node.text;
}

CString CStringList::GetPrev(POSITION &position) const
{
    const Node node = m_nodes.value(position);
    position = node.previous;
    return node.text;
}

CString CStringList::GetAt(POSITION position) const
{
    return m_nodes.value(position).text;
}

void CStringList::SetAt(POSITION position, const CString &text)
{
    const auto node = m_nodes.find(position);
    if (node != m_nodes.end())
        node->text = text;
}

void CStringList::RemoveAt(POSITION position)
{
    if (!m_nodes.contains(position))
        return;
    const Node node = m_nodes.take(position);
    link(node.previous, node.next);
}

POSITION CStringList::InsertBefore(POSITION position, const CString &text)
{
    return m_nodes.contains(position) ? insert(m_nodes.value(position).previous, text, position)
                                      : AddHead(text);
}

POSITION CStringList::InsertAfter(POSITION position, const CString &text)
{
    return m_nodes.contains(position) ? insert(position, text, m_nodes.value(position).next)
                                      : AddTail(text);
}

POSITION CStringList::Find(const CString &text, POSITION after) const
{
    POSITION at = after ? m_nodes.value(after).next : m_head;
    while (at && m_nodes.constFind(at)->text != text)
        at = m_nodes.constFind(at)->next;
    return at;
}

POSITION CStringList::FindIndex(int index) const
{
    POSITION at = index < 0 ? nullptr : m_head;
    for (; at && index > 0; --index)
        at = m_nodes.constFind(at)->next;
    return at;
}

POSITION CStringList::insert(POSITION previous, const CString &text, POSITION next)
{
    // A number of its own rather than an address: it is never given out again.
    const auto position = reinterpret_cast<POSITION>(++m_last);
    m_nodes.insert(position, {text, previous, next});
    link(previous, position);
    link(position, next);
    return position;
}

/// Makes the two neighbours; null stands for what is before the head and behind the tail.
void CStringList::link(POSITION previous, POSITION next)
{
    (previous ? m_nodes[previous].next : m_head) = next;
    (next ? m_nodes[next].previous : m_tail) = previous;
}
