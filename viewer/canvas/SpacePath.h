// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Projection.h"

#include <QPainterPath>

#include <vector>

namespace Tessa {

/// A path through space. Unlike QPainterPath it keeps points that lie above one another.
struct SpacePath
{
    struct Element
    {
        QPainterPath::ElementType type;
        SpacePoint at;
    };
    std::vector<Element> elements;

    void moveTo(const SpacePoint &to);
    void lineTo(const SpacePoint &to);
    void cubicTo(const SpacePoint &control, const SpacePoint &control2, const SpacePoint &to);
    /// A line back to the first point, unless the path is there.
    void close();

    bool isLevel() const;

    /// The path as @p toPicture shows it.
    QPainterPath seen(const SpaceTransform &toPicture) const;

    /// A path that was drawn in the plane z = @p height of another coordinate system.
    static SpacePath placed(const QPainterPath &path, const SpaceTransform &system, double height);
};

} // namespace Tessa
