#include "CStringList.h"

#include <vector>

void CStringList::AddHead(const CStringList *list)
{
    std::vector<CString> texts;
    for (POSITION at = list ? list->GetTailPosition() : nullptr; at;)
        texts.push_back(list->GetPrev(at));
    for (const CString &text : texts)
        AddHead(text);
}

void CStringList::AddTail(const CStringList *list)
{
    std::vector<CString> texts;
    for (POSITION at = list ? list->GetHeadPosition() : nullptr; at;)
        texts.push_back(list->GetNext(at));
    for (const CString &text : texts)
        AddTail(text);
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

CString CStringList::GetNext(POSITION &position) const
{
    const Node node = m_nodes.value(position);
    position = node.next;
    return node.text;
}

CString &CStringList::GetNext(POSITION &position)
{
    CString &text = GetAt(position);
    position = m_nodes.value(position).next;
    return text;
}

CString CStringList::GetPrev(POSITION &position) const
{
    const Node node = m_nodes.value(position);
    position = node.previous;
    return node.text;
}

CString &CStringList::GetPrev(POSITION &position)
{
    CString &text = GetAt(position);
    position = m_nodes.value(position).previous;
    return text;
}

CString &CStringList::GetAt(POSITION position)
{
    m_nowhere.Empty();
    const auto node = m_nodes.find(position);
    return node == m_nodes.end() ? m_nowhere : node->text;
}

void CStringList::SetAt(POSITION position, const CString &text)
{
    const CString copy = text; // it may lie in the list, or in m_nowhere
    GetAt(position) = copy;
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
