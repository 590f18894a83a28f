// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QString>

#include <array>

/// @file
/// @ingroup bridge
/// The vocabulary of lineweights. A lineweight is a whole number of hundredths of a millimetre, as
/// the drawing stores it, or one of three negative codes.

namespace OvCc {

/// The codes that stand for a lineweight which is said elsewhere.
enum LineWeightCode { LineWeightByLayer = -1, LineWeightByBlock = -2, LineWeightDefault = -3 };

/// The units in which a lineweight can be shown.
enum class LineWeightUnit { Millimetres, Inches };

/// The standard lineweights, thinnest first. A lineweight index from 0 to 23 is a position in this
/// table; all lists of lineweights are made from it.
constexpr std::array<int, 24> standardLineWeights{0,  5,   9,   13,  15,  18,  20,  25,
                                                  30, 35,  40,  50,  53,  60,  70,  80,
                                                  90, 100, 106, 120, 140, 158, 200, 211};

/// The label that fixed lists of lineweights show: `0.25 mm`, or `0.10` and an inch sign; "By Layer",
/// "By Block" and "Default" for the codes. It does not depend on the drawing. The figure before the
/// inch sign is a 254th of the value, ten times the true width that StringByLineWeight() gives: users
/// of these lists know the lineweights by those figures.
OVCC_EXPORT QString fixedLineWeightLabel(int lineWeight, LineWeightUnit unit);

} // namespace OvCc

/// The lineweight of an index: 0 to 23 are the standard lineweights, 30 is "by block", 31 is
/// "default"; anything else, negative numbers included, is "by layer".
OVCC_EXPORT int lineWeightByIndex(char index);

/// The label of a lineweight in the drawing's unit: `0.25 mm`, or `0.010` and, after a blank, an inch
/// sign, where the system variable "LWUNITS" says inches; "Layer", "Block" and "Default" for the codes.
/// @param value   a lineweight, or an index for lineWeightByIndex() if @p isIndex
OVCC_EXPORT QString StringByLineWeight(int value, bool isIndex);
