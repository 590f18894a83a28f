// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Drawing.h"

#include <vector>

namespace Embedded {

/// How a file writes groups at some place.
struct DxfStyle
{
    int codeWidth = 0;
    QByteArray lineEnd;

    QByteArray group(int code, const QByteArray &value) const;
};

/// Changes of a file's bytes, each of which puts a text in the place of some of them.
class DxfEdits
{
public:
    /// @param bytes must outlive this, and begin with a group at @p firstGroup
    DxfEdits(const QByteArray &bytes, int firstGroup);

    void replace(ByteRange bytes, const QByteArray &text);
    void remove(ByteRange bytes) { replace(bytes, {}); }

    /// Puts the number in the place of another one, in the same column.
    void replaceNumber(ByteRange value, const QByteArray &number);

    /// Puts @p text, which is made of whole groups, before the group at @p at. Of several texts at one
    /// place the first one comes first.
    void insert(int at, const QByteArray &text);

    /// The style of the group at @p position, or of the file's first one at the file's end.
    DxfStyle styleAt(int position) const;

    /// Brings the edits in the file's order.
    void sort();

    /// Takes in edits that are sorted, as these must be; linear.
    void merge(DxfEdits &&others);

    /// The file's bytes with the edits, which must be sorted. Of edits of the same bytes the first one
    /// counts, and one within bytes that another replaces is left out; else they must not overlap.
    /// Null where the bytes would be more than a QByteArray holds.
    QByteArray apply() const;

private:
    struct Edit
    {
        ByteRange bytes;
        QByteArray text;

        bool operator<(const Edit &other) const;
    };

    template <class Function>
    void forEachPiece(Function function) const;

    const QByteArray &m_bytes;
    const int m_firstGroup;
    std::vector<Edit> m_edits;
};

} // namespace Embedded
