// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Geometry.h"

#include <QRectF>

namespace Tessa {

/// @file
/// The lines of a hatch as they show in the picture.

/// What of a hatch may show in a part of the picture.
struct SeenHatch
{
    /// Its lines, broken into dashes.
    SpacePath lines;

    /// Of lines too close to each other to be told apart, the part of the hatch's area that they
    /// cover, at most 1; 0 if all are told apart.
    double tint = 0;
};

/// @param toPicture where the hatch's plane shows; it must not be seen edge-on
/// @param area      the part of the picture
/// @param pixel     the size of a pixel in the picture
/// @param strokes   how many lines and dashes there may be at most; lines with more dashes become
///                  solid, and more lines a tint
SeenHatch seenHatch(const Hatching &hatching, const SpaceTransform &toPicture, const QRectF &area,
                    double pixel, double strokes);

} // namespace Tessa
