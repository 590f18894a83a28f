// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerFlags.h"

#include <KcDb.h>

#include <QCoreApplication>

#include <algorithm>

namespace OvCc {

namespace {

struct FlagTexts
{
    Q_DECLARE_TR_FUNCTIONS(OvCc::LayerFlags)
};

/// How the drawing keeps what a column shows, and what its changes are called.
struct Flag
{
    LayerColumn column;
    bool (KcDbLayerTableRecord::*get)() const;
    Kcore::ErrorStatus (KcDbLayerTableRecord::*set)(bool);
    bool isInverted; ///< it says the opposite of the column
    const char *toTrue;
    const char *toFalse;

    bool isShown(const KcDbLayerTableRecord &layer) const { return (layer.*get)() != isInverted; }
};

using Layer = KcDbLayerTableRecord;

constexpr std::array<Flag, 4> flags{{
        {OnColumn, &Layer::isOff, &Layer::setIsOff, true,
         QT_TRANSLATE_NOOP("OvCc::LayerFlags", "Switch layer on"),
         QT_TRANSLATE_NOOP("OvCc::LayerFlags", "Switch layer off")},
        {ThawedColumn, &Layer::isFrozen, &Layer::setIsFrozen, true,
         QT_TRANSLATE_NOOP("OvCc::LayerFlags", "Thaw layer"),
         QT_TRANSLATE_NOOP("OvCc::LayerFlags", "Freeze layer")},
        {UnlockedColumn, &Layer::isLocked, &Layer::setIsLocked, true,
         QT_TRANSLATE_NOOP("OvCc::LayerFlags", "Unlock layer"),
         QT_TRANSLATE_NOOP("OvCc::LayerFlags", "Lock layer")},
        {PlotColumn, &Layer::isPlottable, &Layer::setIsPlottable, false,
         QT_TRANSLATE_NOOP("OvCc::LayerFlags", "Plot layer"),
         QT_TRANSLATE_NOOP("OvCc::LayerFlags", "Do not plot layer")},
}};

/// Behind the last one for a column that is none.
const Flag *flagOf(LayerColumn column)
{
    return std::find_if(flags.begin(), flags.end(),
                        [column](const Flag &flag) { return flag.column == column; });
}

} // namespace

bool isFlagColumn(LayerColumn column)
{
    return flagOf(column) != flags.end();
}

FlagChange setLayerFlag(const std::optional<FoundLayer> &found, LayerColumn column, bool value)
{
    if (!found)
        return FlagChange::Refused;
    KcDbLayerTableRecord *layer = found->record;
    const Flag &flag = *flagOf(column);
    const bool before = flag.isShown(*layer);
    // Whether each of these succeeds shows in the end.
    layer->upgradeOpen();
    (layer->*flag.set)(value != flag.isInverted);
    layer->downgradeOpen();
    const bool after = flag.isShown(*layer);
    layer->close();
    if (after != value)
        return FlagChange::Refused;
    return after == before ? FlagChange::Needless : FlagChange::Made;
}

std::optional<bool> layerFlag(const QString &name, LayerColumn column)
{
    const std::optional<FoundLayer> found = findLayer(name);
    if (!found)
        return std::nullopt;
    const bool isShown = flagOf(column)->isShown(*found->record);
    found->record->close();
    return isShown;
}

QString flagChangeText(LayerColumn column, bool value)
{
    const Flag &flag = *flagOf(column);
    return FlagTexts::tr(value ? flag.toTrue : flag.toFalse);
}

} // namespace OvCc
