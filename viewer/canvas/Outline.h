// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Geometry.h"

#include <QRectF>

#include <vector>

namespace Tessa {

/// @file
/// The lines of entities as they show in the picture, made of chords.

/// A point of a line.
struct OutlinePoint
{
    SpacePoint at;    ///< in the picture, z towards the viewer
    double along = 0; ///< from the line's beginning, measured in the drawing
};

/// An unbroken line; of a single point, a dot.
using Outline = std::vector<OutlinePoint>;

/// The lines of an entity's path, which has ends. No chord is farther than @p tolerance off its
/// curve, unless that takes hundreds of chords.
std::vector<Outline> outlinesOf(const Entity &entity, const SpaceTransform &toPicture,
                                double tolerance);

/// How a line is broken into dashes.
struct DashPattern
{
    const std::vector<double> &dashes; ///< as in Linetype, at least one
    double scale;                      ///< of the dashes, to measure in the drawing
    double dotLength;                  ///< in the picture
    double leastPeriod;                ///< in the picture; what is finer becomes solid

    /// The length of the pattern in the drawing.
    double period() const;

    /// The length of the first dash there; 0 if it begins with a gap or a dot.
    double firstDash() const;
};

/// The part of a line without ends that lies in @p area, from point to point; empty if there is none.
/// @param pattern if the line is to be dashed: the part is lengthened so that its dashes are where
///                they would be if they had begun where the line does
Outline endlessOutline(const Entity &entity, const SpaceTransform &toPicture, const QRectF &area,
                       const DashPattern *pattern = nullptr);

/// Adds to @p path the dashes of a line that may show in @p area. The line begins and ends with a
/// dash, which is lengthened for that. It is solid if it is too short for a gap, or so long that its
/// dashes cannot be counted. The cost does not grow with the part of the line outside.
void addDashes(SpacePath &path, const Outline &outline, const DashPattern &pattern,
               const QRectF &area);

/// Cuts a line through two points off at the sides of a rectangle.
/// @param[in,out] from,to where the line begins and ends, measured in ways from @p start to @p end:
///                        0 and 1 are at the points
/// @return whether there is any of it left
bool clip(const SpacePoint &start, const SpacePoint &end, const QRectF &area, double &from,
          double &to);

} // namespace Tessa
