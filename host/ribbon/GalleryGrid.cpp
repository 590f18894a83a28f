// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "GalleryGrid.h"

#include <QStyle>

namespace Embedded {

int GalleryGrid::columns() const
{
    return qMax(1, area.width() / cell.width());
}

int GalleryGrid::rows() const
{
    return (count + columns() - 1) / columns();
}

int GalleryGrid::visibleRows() const
{
    return qMax(1, area.height() / cell.height());
}

int GalleryGrid::lastTopRow() const
{
    return qMax(0, rows() - visibleRows());
}

QRect GalleryGrid::rect(int index) const
{
    const int column = index % columns();
    const int left = area.width() * column / columns();
    const int right = area.width() * (column + 1) / columns();
    const int top = (index / columns() - topRow) * cell.height();
    const QRect leftToRight(area.left() + left, area.top() + top, right - left, cell.height());
    return QStyle::visualRect(direction, area, leftToRight);
}

int GalleryGrid::indexAt(const QPoint &pos) const
{
    if (!area.contains(pos))
        return -1;
    for (int index = topRow * columns(); index < endOfSight(); ++index) {
        if (rect(index).contains(pos))
            return index;
    }
    return -1;
}

int GalleryGrid::topRowFor(int index) const
{
    const int row = index / columns();
    return qBound(row - visibleRows() + 1, topRow, row);
}

int GalleryGrid::endOfSight() const
{
    const int rowsInSight = area.height() / cell.height() + 1;
    return qMin(count, (topRow + rowsInSight) * columns());
}

} // namespace Embedded
