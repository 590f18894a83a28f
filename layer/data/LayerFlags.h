// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "layer/data/LayerSearch.h"

#include <OvCustomControl/LayerColumns.h>
#include <OvCustomControl/LayerItemData.h>

#include <QString>

#include <array>
#include <optional>

/// @file
/// The flags of layers that clicks change. Where nothing else is said they are as their columns show
/// them: on, thawed, unlocked, plotted.

namespace OvCc {

/// What became of a flag that was to be set.
enum class FlagChange {
    Made,
    Needless, ///< it was so already
    Refused   ///< it is as it was: no such layer, open elsewhere, or the drawing will not have it
};

/// Whether @p column shows one of these flags. The functions below take no other.
bool isFlagColumn(LayerColumn column);

/// @param found is closed here; nothing for one that was not found
FlagChange setLayerFlag(const std::optional<FoundLayer> &found, LayerColumn column, bool value);

/// Nothing where the layer cannot be opened.
std::optional<bool> layerFlag(const QString &name, LayerColumn column);

/// What the change of a flag to @p value is called in a list of undo steps, such as "Lock layer";
/// translated.
QString flagChangeText(LayerColumn column, bool value);

/// A flag as the compact layer controls keep it.
struct StatusFlag
{
    bool LayerItemData::*value;
    LayerColumn column;
    bool isInverted; ///< it says the opposite of the column
};

/// By their StatusIndex.
constexpr std::array<StatusFlag, 3> statusFlags{{
        {&LayerItemData::isOn, OnColumn, false},
        {&LayerItemData::isFrozen, ThawedColumn, true},
        {&LayerItemData::isLocked, UnlockedColumn, true},
}};

} // namespace OvCc
