// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "BlockView.h"

#include <cmath>

namespace Tessa {

BlockView::BlockView(const SpaceTransform &transform)
    : toPicture(transform)
    , ground(transform.ofPlane(0))
{
    const double across = std::hypot(ground.m11(), ground.m12());
    const double along = std::hypot(ground.m21(), ground.m22());
    isEdgeOn = std::abs(ground.determinant()) <= 1e-6 * across * along;
    double squares = 0;
    for (int axis = 0; axis < 3; ++axis) {
        squares += toPicture.rows[0][axis] * toPicture.rows[0][axis]
                   + toPicture.rows[1][axis] * toPicture.rows[1][axis];
    }
    scale = std::sqrt(squares / 2);
    hasHeights = toPicture.rows[0][2] != 0 || toPicture.rows[1][2] != 0;
    isUnchanged = ground.isIdentity() && !hasHeights;
}

QRectF BlockView::mappedBounds(const SpaceBox &box) const
{
    double from[2];
    double to[2];
    for (int row = 0; row < 2; ++row) {
        const double(&factors)[4] = toPicture.rows[row];
        const double ends[][2] = {{factors[0] * box.least.x, factors[0] * box.most.x},
                                  {factors[1] * box.least.y, factors[1] * box.most.y},
                                  {factors[2] * box.least.z, factors[2] * box.most.z}};
        from[row] = to[row] = factors[3];
        for (const double(&pair)[2] : ends) {
            from[row] += qMin(pair[0], pair[1]);
            to[row] += qMax(pair[0], pair[1]);
        }
    }
    return {QPointF(from[0], from[1]), QPointF(to[0], to[1])};
}

QRectF united(const QRectF &one, const QRectF &other)
{
    return {QPointF(qMin(one.left(), other.left()), qMin(one.top(), other.top())),
            QPointF(qMax(one.right(), other.right()), qMax(one.bottom(), other.bottom()))};
}

} // namespace Tessa
