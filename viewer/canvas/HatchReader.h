// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DxfRecord.h"
#include "Geometry.h"

namespace Tessa {

/// A hatch as its record tells of it.
struct Hatch
{
    QPainterPath area; ///< in the plane of the hatch; empty if the record has none
    double height = 0; ///< of the plane
    bool isSolid = false;
    std::vector<HatchLines> families; ///< otherwise
};

/// Reads a hatch from the groups of its record. Edges that do not meet are joined by lines, and of
/// the loops those are left out that the hatch's style has nothing to do with.
Hatch readHatch(const DxfRecord &record);

} // namespace Tessa
