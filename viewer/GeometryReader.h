#pragma once

#include "Geometry.h"

struct Drawing;

/// Reads what the drawing's DXF file shows in model space, and measures it.
///
/// @param drawing       the file's name, its layers, and the database that decodes its texts
/// @param[out] warnings one sentence per kind of thing that is not drawn as the file says
Geometry readGeometry(const Drawing &drawing, QStringList &warnings);
