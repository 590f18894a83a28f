// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QRect>

namespace Embedded {

/// Where the cells of a gallery lie: row by row, from the one that is scrolled to the top.
struct GalleryGrid
{
    QRect area;
    QSize cell{1, 1}; ///< the least width and the height of a cell
    int count = 0;
    int topRow = 0;
    Qt::LayoutDirection direction = Qt::LeftToRight;

    int columns() const;
    int rows() const;

    /// Those that fit whole, but at least one.
    int visibleRows() const;

    /// The top row when the last one is at the bottom.
    int lastTopRow() const;

    /// Also for cells that are scrolled out of sight.
    QRect rect(int index) const;

    /// The cell at @p pos; -1 when there is none.
    int indexAt(const QPoint &pos) const;

    /// The top row with which the cell is in sight whole, next to the present one.
    int topRowFor(int index) const;

    /// One behind the last cell that can be seen, if only in part.
    int endOfSight() const;
};

} // namespace Embedded
