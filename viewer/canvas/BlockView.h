// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Projection.h"

#include <QRectF>
#include <QTransform>

namespace Tessa {

/// Where the entities of a block show.
struct BlockView
{
    explicit BlockView(const SpaceTransform &toPicture);

    SpaceTransform toPicture; ///< from the block's space
    QTransform ground;        ///< the same for the block's own plane
    double scale;             ///< the length of what is one unit long and not foreshortened
    bool isEdgeOn;            ///< that plane is seen as a line
    bool hasHeights;          ///< the height of a point changes its place in the picture
    bool isUnchanged;         ///< points are in the picture where they are in the plane

    /// Where a box shows in the picture.
    QRectF boundsOf(const SpaceBox &box) const
    {
        if (isUnchanged)
            return {QPointF(box.least.x, box.least.y), QPointF(box.most.x, box.most.y)};
        return mappedBounds(box);
    }

private:
    QRectF mappedBounds(const SpaceBox &box) const;
};

/// Unlike QRectF::united() this counts rectangles without width or height, too.
QRectF united(const QRectF &one, const QRectF &other);

/// Unlike QRectF::intersects() this counts lines that run straight along an axis, too.
inline bool overlap(const QRectF &one, const QRectF &other)
{
    return one.left() <= other.right() && other.left() <= one.right() && one.top() <= other.bottom()
           && other.top() <= one.bottom();
}

} // namespace Tessa
