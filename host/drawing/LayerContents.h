// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Drawing.h"

#include <vector>

namespace Embedded {

// What lies on layers, moved and erased by the rules of drawings. Each returns the numbers of the
// records that it has changed, in the file's order.

/// Changes an entity, with what goes with it to another layer: a polyline's vertices, and the end mark
/// of vertices or attributes.
std::vector<int> changeEntity(Drawing &drawing, int number, const EntityProperties &properties);

/// Moves all that lies on a layer to another one.
std::vector<int> moveContents(Drawing &drawing, int layer, int to);

/// Erases all that lies on a layer, and moves what must stay.
std::vector<int> eraseContents(Drawing &drawing, int layer);

} // namespace Embedded
