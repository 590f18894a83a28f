// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Geometry.h"

namespace Tessa {

struct Drawing;

/// Reads what the drawing's DXF file shows in model space, as the database has read the file, and
/// measures it.
///
/// @param drawing       its layers, and the database
/// @param[out] warnings one sentence per kind of thing that is not drawn as the file says
Geometry readGeometry(const Drawing &drawing, QStringList &warnings);

} // namespace Tessa
