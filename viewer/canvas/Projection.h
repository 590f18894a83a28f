// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QRectF>
#include <QTransform>

namespace Tessa {

/// @file
/// Points of space, and how they get onto the picture. Axes are right-handed, z points up.

struct SpacePoint
{
    double x = 0;
    double y = 0;
    double z = 0;
};

constexpr SpacePoint operator+(const SpacePoint &one, const SpacePoint &other)
{
    return {one.x + other.x, one.y + other.y, one.z + other.z};
}
constexpr SpacePoint operator-(const SpacePoint &one, const SpacePoint &other)
{
    return {one.x - other.x, one.y - other.y, one.z - other.z};
}
constexpr SpacePoint operator*(const SpacePoint &point, double factor)
{
    return {point.x * factor, point.y * factor, point.z * factor};
}
constexpr bool operator==(const SpacePoint &one, const SpacePoint &other)
{
    return one.x == other.x && one.y == other.y && one.z == other.z;
}
SpacePoint cross(const SpacePoint &one, const SpacePoint &other);
double length(const SpacePoint &way);

/// A box along the axes, its sides included; one that nothing was added to is empty.
struct SpaceBox
{
    SpacePoint least{1, 1, 1};
    SpacePoint most{-1, -1, -1};

    bool isEmpty() const { return least.x > most.x; }
    SpacePoint center() const { return (least + most) * 0.5; }
    void add(const SpacePoint &point);
    void add(const SpaceBox &box);
};

/// An affine map of space, made of rows: each holds the factors of x, y and z, and what is added.
struct SpaceTransform
{
    double rows[3][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}};

    SpacePoint map(const SpacePoint &point) const;

    /// The box around the mapped box.
    SpaceBox map(const SpaceBox &box) const;

    /// Where the first two coordinates go for points of the level plane @p height.
    QTransform ofPlane(double height) const;

    /// First this one, then @p next.
    SpaceTransform operator*(const SpaceTransform &next) const;

    /// A map of the plane, which keeps heights.
    static SpaceTransform fromPlane(const QTransform &transform);
    static SpaceTransform fromAxes(const SpacePoint &x, const SpacePoint &y, const SpacePoint &z);
    static SpaceTransform fromTranslate(const SpacePoint &way);
};

/// From where the drawing is seen; the last four are isometric, from above the corner. In the order
/// of the library's view gallery.
enum class ViewDirection {
    Top,
    Bottom,
    Left,
    Right,
    Front,
    Back,
    Southwest,
    Southeast,
    Northeast,
    Northwest
};

/// A parallel projection: turns space so that x runs to the right of the picture, y up in it, and z
/// towards the viewer. The default one looks from the top.
struct Projection
{
    SpaceTransform toPicture;
};

Projection projectionOf(ViewDirection direction);

} // namespace Tessa
