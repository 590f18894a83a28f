#pragma once

#include "Geometry.h"

#include <QRectF>

#include <vector>

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

/// The lines of an entity's path. No chord is farther than @p tolerance off its curve, unless that
/// takes hundreds of chords.
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
};

/// Adds to @p path the dashes of a line that may show in @p area. The line begins and ends with a
/// dash, which is lengthened for that, and is solid if it is too short for a gap. The cost does not
/// grow with the part of the line outside.
void addDashes(SpacePath &path, const Outline &outline, const DashPattern &pattern,
               const QRectF &area);

/// Cuts a segment off at the sides of a rectangle.
/// @param[in,out] from,to the shares of the segment that are in it: 0 and 1 for all of it
/// @return whether there is any
bool clip(const SpacePoint &start, const SpacePoint &end, const QRectF &area, double &from,
          double &to);
