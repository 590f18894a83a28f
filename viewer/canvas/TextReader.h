// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DrawingText.h"
#include "Geometry.h"

struct DL_MTextData;
struct DL_TextData;

namespace Tessa {

/// @file
/// The texts of a drawing in their places, as dxflib tells of them.
///
/// @param text   the entity's text, decoded
/// @param system the coordinate system of the entity

PlacedText placedText(const DL_TextData &data, const QString &text, const SpaceTransform &system,
                      const TextSetter &setter);

/// @param rotation of the entity in degrees, which dxflib gives in different units
PlacedText placedText(const DL_MTextData &data, const QString &text, double rotation,
                      const SpaceTransform &system, const TextSetter &setter);

} // namespace Tessa
