// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CString.h"

#include <QHash>

/// A list of texts. A POSITION stays good until its own element is removed; the current element of
/// an iteration may be removed, GetNext() has moved on by then. Where there is no element, reading
/// gives an empty text and writing does nothing. All but FindIndex() and Find() are O(1).
///
/// @ingroup platform
class OVCC_EXPORT CStringList
{
public:
    CStringList();

    /// A copy: changes of one do not show in the other. A position belongs to its own list.
    CStringList(const CStringList &other);
    ~CStringList();

    /// As the constructor.
    CStringList &operator=(const CStringList &other);

    /// The number of texts.
    /// @{
    int GetCount() const;
    int GetSize() const;
    /// @}

    /// Whether there is no text.
    bool IsEmpty() const;

    /// The first text.
    CString GetHead() const;

    /// The last text.
    CString GetTail() const;

    /// Adds a text before the first one.
    /// @return where it is
    POSITION AddHead(const CString &text);

    /// Adds a text behind the last one.
    /// @return where it is
    POSITION AddTail(const CString &text);

    /// Takes out the first text.
    CString RemoveHead();

    /// Takes out the last text.
    CString RemoveTail();

    /// Leaves no text; all positions are gone.
    void RemoveAll();

    /// Where the first text is; null without texts.
    POSITION GetHeadPosition() const;

    /// Where the last text is; null without texts.
    POSITION GetTailPosition() const;

    /// The text at @p position, which moves on; null behind the last one.
    CString GetNext(POSITION &position) const;

    /// The text at @p position, which moves back; null before the first one.
    CString GetPrev(POSITION &position) const;

    /// The text at @p position.
    CString GetAt(POSITION position) const;

    /// Replaces the text at @p position.
    void SetAt(POSITION position, const CString &text);

    /// Removes the text at @p position, which is gone then.
    void RemoveAt(POSITION position);

    /// Adds a text before @p position; at the head where there is no such position.
    /// @return where it is
    POSITION InsertBefore(POSITION position, const CString &text);

    /// Adds a text behind @p position; at the tail where there is no such position.
    /// @return where it is
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
