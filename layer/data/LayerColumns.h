// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

namespace OvCc {

/// The columns of a layer table, which are the places of the texts in a row of
/// OvLayerUtility::getAllLayerDate(). A flag is "true" or "false".
///
/// @ingroup bridge
enum LayerColumn {
    CurrentColumn, ///< flag: whether it is the current layer
    NameColumn,
    OnColumn,       ///< flag
    ThawedColumn,   ///< flag: not frozen
    UnlockedColumn, ///< flag: not locked
    ColorColumn,    ///< its name and its components: `ll*red;255,0,0`
    LinetypeColumn,
    LineWeightColumn, ///< as by StringByLineWeight()
    PlotStyleColumn,
    PlotColumn,              ///< flag
    NewViewportFreezeColumn, ///< flag
    ViewportFreezeColumn,    ///< flag, in the current viewport
    DescriptionColumn,
    LayerColumnCount
};

} // namespace OvCc
