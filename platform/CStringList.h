#pragma once

#include "CString.h"

/// A list of texts. A POSITION stays good until its own element is removed; the current element of
/// an iteration may be removed, GetNext() has moved on by then. Where there is no element, reading
/// gives an empty text and writing does nothing. All but FindIndex() and Find() are O(1).
class OVCC_EXPORT CStringList
{
public:
    int GetCount() const { return m_nodes.size(); }
    int GetSize() const { return m_nodes.size(); }
    bool IsEmpty() const { return m_nodes.isEmpty(); }

    CString GetHead() const { return GetAt(m_head); }
    CString GetTail() const { return GetAt(m_tail); }

    POSITION AddHead(const CString &text) { return insert(nullptr, text, m_head); }
    POSITION AddTail(const CString &text) { return insert(m_tail, text, nullptr); }
    CString RemoveHead();
    CString RemoveTail();
    void RemoveAll();

    POSITION GetHeadPosition() const { return m_head; }
    POSITION GetTailPosition() const { return m_tail; }
    /// The text at @p position, which moves on; null behind the last one.
    CString GetNext(POSITION &position) const;
    CString GetPrev(POSITION &position) const;

    CString GetAt(POSITION position) const { return m_nodes.value(position).text; }
    void SetAt(POSITION position, const CString &text);
    void RemoveAt(POSITION position);
    /// Without such a position they add at the head, and at the tail.
    POSITION InsertBefore(POSITION position, const CString &text);
    POSITION InsertAfter(POSITION position, const CString &text);

    /// The next equal text behind @p after, or from the head; null if there is none.
    POSITION Find(const CString &text, POSITION after = nullptr) const;
    /// The position of a zero-based index, or null.
    POSITION FindIndex(int index) const;

private:
    struct Node
    {
        CString text;
        POSITION previous = nullptr;
        POSITION next = nullptr;
    };
    POSITION insert(POSITION previous, const CString &text, POSITION next);
    void link(POSITION previous, POSITION next);

    QHash<POSITION, Node> m_nodes;
    POSITION m_head = nullptr;
    POSITION m_tail = nullptr;
    quintptr m_last = 0; ///< the number that the newest position is made of
};
