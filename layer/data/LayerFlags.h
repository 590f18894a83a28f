// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "layer/data/LayerSearch.h"

#include <OvCustomControl/LayerColumns.h>
#include <OvCustomControl/LayerItemData.h>
#include <OvCustomControl/LayerState.h>

#include <QString>
#include <QStringList>

#include <array>
#include <optional>
#include <vector>

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

/// Whether the current layer must not lose that flag, or not unasked.
constexpr bool isGuarded(LayerColumn column)
{
    return column == OnColumn || column == ThawedColumn;
}

/// A flag in a row of texts.
inline QString flagText(bool flag)
{
    return flag ? QStringLiteral("true") : QStringLiteral("false");
}

/// @param found is closed here; nothing for one that was not found
FlagChange setLayerFlag(const std::optional<FoundLayer> &found, LayerColumn column, bool value);

/// Nothing where the layer cannot be opened.
std::optional<bool> layerFlag(const QString &name, LayerColumn column);

/// What the change of a flag to @p value is called in a list of undo steps, such as "Lock layer" or
/// "Lock 200 layers"; translated.
QString flagChangeText(LayerColumn column, bool value, int layers = 1);

/// The columns of all these flags. What has one place per flag has it in this order.
constexpr std::array<LayerColumn, 4> flagColumns{OnColumn, ThawedColumn, UnlockedColumn,
                                                 PlotColumn};

/// Flags of one layer; those without a value stay, or are not known.
using SomeFlags = std::array<std::optional<bool>, flagColumns.size()>;

/// Where the flag of a column is in them.
constexpr size_t flagPlace(LayerColumn column)
{
    size_t place = 0;
    while (flagColumns.at(place) != column)
        ++place;
    return place;
}

SomeFlags oneFlag(LayerColumn column, bool value);

/// What a layer is to be, and what became of that.
struct FlagOrder
{
    QString name;
    SomeFlags wanted;
    SomeFlags shown{};      ///< what the drawing says of them in the end; nothing if it could not
    bool isChanged = false; ///< in any of them
    bool isRefused = true;  ///< in any of them, as in setLayerFlag()
};
using FlagOrders = std::vector<FlagOrder>;

/// All flags of a layer in a state.
SomeFlags flagsOf(const LayerState::Layer &layer);

/// All flags of all layers in a state, in the order of its names.
FlagOrders ordersOf(const LayerState &state);

/// The names of those that were refused, or changed.
/// @{
QStringList refusedIn(const FlagOrders &orders);
QStringList changedIn(const FlagOrders &orders);
/// @}

/// All flags of a layer.
SomeFlags shownFlags(const KcDbLayerTableRecord &layer);

/// Sets the flags of many layers in one walk over the layer table, by the rules of setLayerFlag(), but
/// opens for write only what is to be different. Of orders with one name the first counts, and the
/// others are refused. O(N) in the number of layers; a single one is found as by findLayer().
void setLayerFlags(FlagOrders &orders);

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
