// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "BlockView.h"
#include "Geometry.h"

namespace Tessa {

/// Those copies of an insert that overlap a part of the picture. Of copies that are closer to each
/// other than the picture is to tell apart, one stands for several.
class InsertCopies
{
public:
    /// @param view   where the insert shows
    /// @param detail the least distance in the picture to tell apart; infinity for one copy at all
    InsertCopies(const BlockInsert &insert, const Block &block, const BlockView &view,
                 const QRectF &area, double detail);

    /// How many rows forEach() goes through.
    double rowCount() const { return qMax(0.0, m_lastRow - m_firstRow + 1); }

    /// Whether a copy is too small to be told apart from its neighbours, or resolved.
    bool areOnePiece() const { return m_areOnePiece; }

    /// With a detail up to this, nothing were different.
    double coarserDetail() const;

    /// Calls visit(int column, int row, const QRectF &bounds) for each, until it returns false. The
    /// bounds are those of all copies that the one stands for.
    /// @return whether it came to its end
    template <class Visit>
    bool forEach(Visit &&visit) const
    {
        for (double row = m_firstRow; row <= m_lastRow; ++row) {
            double column = 0;
            double last = 0;
            findColumns(row, column, last);
            for (; column <= last; ++column) {
                const QPointF way = m_columnStep * column + m_rowStep * row;
                if (!visit(int(column * m_columnsEach), int(row * m_rowsEach),
                           m_first.translated(way)))
                    return false;
            }
        }
        return true;
    }

private:
    void findRows();
    void findColumns(double row, double &first, double &last) const;

    double m_size; ///< of a copy, in the picture, as all that follows
    bool m_areOnePiece;
    QRectF m_first;
    QRectF m_ways; ///< by which it is moved for those that overlap the area
    QPointF m_columnStep;
    QPointF m_rowStep;
    double m_columnsEach; ///< that one stands for
    double m_rowsEach;
    double m_lastColumn; ///< of all
    double m_firstRow = 0;
    double m_lastRow;
};

} // namespace Tessa
