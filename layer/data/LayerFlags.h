#pragma once

#include <OvCustomControl/LayerColumns.h>

#include <QString>

#include <optional>

/// @file
/// The flags of layers, as their columns show them: on, thawed, unlocked, plotted.

namespace OvCc {

/// What became of a flag that was to be set.
enum class FlagChange {
    Made,
    Needless, ///< it was so already
    Refused   ///< it is as it was: no such layer, open elsewhere, or the drawing will not have it
};

/// @param column one of OnColumn, ThawedColumn, UnlockedColumn and PlotColumn
FlagChange setLayerFlag(const QString &name, LayerColumn column, bool value);

/// Nothing where the layer cannot be opened.
/// @param column as for setLayerFlag()
std::optional<bool> layerFlag(const QString &name, LayerColumn column);

} // namespace OvCc
