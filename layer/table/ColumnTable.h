// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "layer/pictures/StatusImages.h"

#include <OvCustomControl/LayerColumns.h>

#include <QtGlobal>

#include <array>

/// @file
/// All that the layer table knows of its columns. A new one takes a name in LayerColumn, an entry
/// here, and what reads and writes its texts: OvLayerUtility::getAllLayerDate() and the delegate.

namespace OvCc {

/// Whether the user may hide a column.
enum class Hiding {
    Never,
    OnceSaved, ///< from the first table on that finds a saved layout
    Always
};

/// How the delegate paints a cell.
enum class CellPainting { AsByDefault, Picture, Color, LineWeight, Text, PaleText };

/// What stands for a picture where there are words only.
struct FlagWords
{
    const char *whenTrue;
    const char *whenFalse;
};

constexpr FlagWords noWords{"", ""};
constexpr FlagWords currentWords{QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "current"), ""};
constexpr FlagWords onWords{QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "on"),
                            QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "off")};
constexpr FlagWords thawedWords{QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "thawed"),
                                QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "frozen")};
constexpr FlagWords unlockedWords{QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "unlocked"),
                                  QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "locked")};
constexpr FlagWords plotWords{QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "plotted"),
                              QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "not plotted")};
constexpr FlagWords viewportFreezeWords{thawedWords.whenFalse, thawedWords.whenTrue};

struct ColumnTraits
{
    LayerColumn column;
    const char *title;       ///< shown in its translation in the context of the table
    const char *defaultText; ///< what a row says before the drawing has told of any
    Hiding hiding;
    CellPainting painting;
    int width = 0;                ///< in pixels; 0 for the view's own
    FlagImages images = noImages; ///< of a Picture
    FlagWords words = noWords;    ///< for a Picture
    bool hasFocusFrame = true;
};

constexpr std::array<ColumnTraits, LayerColumnCount> columnTable{{
        {CurrentColumn, "", "true", Hiding::Never, CellPainting::Picture, 18, currentImages,
         currentWords, false},
        {NameColumn, QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "Name"), "0", Hiding::OnceSaved,
         CellPainting::AsByDefault, 60},
        {OnColumn, QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "On"), "true", Hiding::Always,
         CellPainting::Picture, 30, onImages, onWords},
        {ThawedColumn, QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "Freeze"), "true",
         Hiding::Always, CellPainting::Picture, 45, thawedImages, thawedWords},
        {UnlockedColumn, QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "Lock"), "true",
         Hiding::Always, CellPainting::Picture, 40, unlockedImages, unlockedWords},
        {ColorColumn, QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "Color"), "ll*white",
         Hiding::Always, CellPainting::Color, 50},
        {LinetypeColumn, QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "Linetype"), "Continuous",
         Hiding::Always, CellPainting::Text},
        {LineWeightColumn, QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "Lineweight"), "Default",
         Hiding::Always, CellPainting::LineWeight},
        {PlotStyleColumn, QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "Plot Style"), "Color-7",
         Hiding::Always, CellPainting::PaleText, 0, noImages, noWords, false},
        {PlotColumn, QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "Plot"), "true", Hiding::Always,
         CellPainting::Picture, 45, plotImages, plotWords},
        {NewViewportFreezeColumn,
         QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "New Viewport Freeze"), "true", Hiding::Always,
         CellPainting::Picture, 0, viewportFreezeImages, viewportFreezeWords},
        {ViewportFreezeColumn, QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "VP Freeze"), "true",
         Hiding::Never, CellPainting::Picture, 0, viewportFreezeImages, viewportFreezeWords},
        {DescriptionColumn, QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "Description"), "",
         Hiding::Always, CellPainting::Text},
}};

constexpr bool isEachColumnInItsPlace()
{
    for (int place = 0; place < LayerColumnCount; ++place) {
        if (columnTable.at(place).column != place)
            return false;
    }
    return true;
}
static_assert(isEachColumnInItsPlace());

} // namespace OvCc
