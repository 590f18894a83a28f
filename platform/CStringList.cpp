#include "CStringList.h"

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
