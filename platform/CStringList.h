#pragma once

#include "CString.h"

#include <QHash>

/// A list of texts. A POSITION stays good until its own element is removed; the current element of
/// an iteration may be removed, GetNext() has moved on by then. Where there is no element, reading
/// gives an empty text and writing does nothing. All but FindIndex() and Find() are O(1).
class OVCC_EXPORT CStringList
{
public:
    CStringList();
    CStringList(const CStringList &other);
    ~CStringList();
    CStringList &operator=(const CStringList &other);

    int GetCount() const;
    int GetSize() const;
    bool IsEmpty() const;

    CString GetHead() const;
    CString GetTail() const;

    POSITION AddHead(const CString &text);
    POSITION AddTail(const CString &text);
    CString RemoveHead();
    CString RemoveTail();
    void RemoveAll();

    POSITION GetHeadPosition() const;
    POSITION GetTailPosition() const;
    /// The text at @p position, which moves on; null behind the last one.
    CString GetNext(POSITION &position) const;
    CString GetPrev(POSITION &position) const;

    CString GetAt(POSITION position) const;
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
