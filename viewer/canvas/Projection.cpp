// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Projection.h"

#include <cmath>

namespace Tessa {

SpacePoint cross(const SpacePoint &one, const SpacePoint &other)
{
    return {one.y * other.z - one.z * other.y, one.z * other.x - one.x * other.z,
            one.x * other.y - one.y * other.x};
}

double length(const SpacePoint &way)
{
    return std::hypot(way.x, way.y, way.z);
}

void SpaceBox::add(const SpacePoint &point)
{
    add(SpaceBox{point, point});
}

void SpaceBox::add(const SpaceBox &box)
{
    if (box.isEmpty())
        return;
    if (isEmpty()) {
        *this = box;
        return;
    }
    least = {qMin(least.x, box.least.x), qMin(least.y, box.least.y), qMin(least.z, box.least.z)};
    most = {qMax(most.x, box.most.x), qMax(most.y, box.most.y), qMax(most.z, box.most.z)};
}

SpacePoint SpaceTransform::map(const SpacePoint &point) const
{
    const auto along = [&point](const double(&row)[4]) {
        return row[0] * point.x + row[1] * point.y + row[2] * point.z + row[3];
    };
    return {along(rows[0]), along(rows[1]), along(rows[2])};
}

SpaceBox SpaceTransform::map(const SpaceBox &box) const
{
    if (box.isEmpty())
        return box;
    const SpacePoint center = map((box.least + box.most) * 0.5);
    const SpacePoint half = (box.most - box.least) * 0.5;
    const auto reach = [&half](const double(&row)[4]) {
        return std::abs(row[0]) * half.x + std::abs(row[1]) * half.y + std::abs(row[2]) * half.z;
    };
    const SpacePoint mapped{reach(rows[0]), reach(rows[1]), reach(rows[2])};
    return {center - mapped, center + mapped};
}

QTransform SpaceTransform::ofPlane(double height) const
{
    return {rows[0][0],
            rows[1][0],
            rows[0][1],
            rows[1][1],
            rows[0][2] * height + rows[0][3],
            rows[1][2] * height + rows[1][3]};
}

SpaceTransform SpaceTransform::operator*(const SpaceTransform &next) const
{
    SpaceTransform result;
    for (int row = 0; row < 3; ++row) {
        const double(&factors)[4] = next.rows[row];
        for (int column = 0; column < 4; ++column)
            result.rows[row][column] = factors[0] * rows[0][column] + factors[1] * rows[1][column]
                                       + factors[2] * rows[2][column];
        result.rows[row][3] += factors[3];
    }
    return result;
}

SpaceTransform SpaceTransform::fromPlane(const QTransform &transform)
{
    SpaceTransform result;
    result.rows[0][0] = transform.m11();
    result.rows[0][1] = transform.m21();
    result.rows[0][3] = transform.dx();
    result.rows[1][0] = transform.m12();
    result.rows[1][1] = transform.m22();
    result.rows[1][3] = transform.dy();
    return result;
}

SpaceTransform SpaceTransform::fromAxes(const SpacePoint &x, const SpacePoint &y,
                                        const SpacePoint &z)
{
    return {{{x.x, y.x, z.x, 0}, {x.y, y.y, z.y, 0}, {x.z, y.z, z.z, 0}}};
}

SpaceTransform SpaceTransform::fromTranslate(const SpacePoint &way)
{
    return {{{1, 0, 0, way.x}, {0, 1, 0, way.y}, {0, 0, 1, way.z}}};
}

Projection projectionOf(ViewDirection direction)
{
    // The rows are the directions of space that show as right, up and towards the viewer.
    constexpr double half = 0.70710678118654752;
    constexpr double third = 0.57735026918962576;
    constexpr double sixth = 0.40824829046386302;
    constexpr double axes[][3][3] = {
            {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
            {{-1, 0, 0}, {0, 1, 0}, {0, 0, -1}},
            {{0, -1, 0}, {0, 0, 1}, {-1, 0, 0}},
            {{0, 1, 0}, {0, 0, 1}, {1, 0, 0}},
            {{1, 0, 0}, {0, 0, 1}, {0, -1, 0}},
            {{-1, 0, 0}, {0, 0, 1}, {0, 1, 0}},
            {{half, -half, 0}, {sixth, sixth, 2 * sixth}, {-third, -third, third}},
            {{half, half, 0}, {-sixth, sixth, 2 * sixth}, {third, -third, third}},
            {{-half, half, 0}, {-sixth, -sixth, 2 * sixth}, {third, third, third}},
            {{-half, -half, 0}, {sixth, -sixth, 2 * sixth}, {-third, third, third}},
    };
    Projection projection;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column)
            projection.toPicture.rows[row][column] = axes[int(direction)][row][column];
    }
    return projection;
}

} // namespace Tessa
