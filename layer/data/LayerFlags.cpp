#include "LayerFlags.h"

#include <OvCustomControl/OvLayerUtility.h>

#include <KcDb.h>

namespace OvCc {

namespace {

/// How the drawing keeps what a column shows.
struct Flag
{
    bool (KcDbLayerTableRecord::*get)() const;
    Kcore::ErrorStatus (KcDbLayerTableRecord::*set)(bool);
    bool isInverted; ///< it says the opposite of the column

    bool isShown(const KcDbLayerTableRecord &layer) const { return (layer.*get)() != isInverted; }
};

Flag flagOf(LayerColumn column)
{
    using Layer = KcDbLayerTableRecord;
    switch (column) {
    case OnColumn:
        return {&Layer::isOff, &Layer::setIsOff, true};
    case ThawedColumn:
        return {&Layer::isFrozen, &Layer::setIsFrozen, true};
    case UnlockedColumn:
        return {&Layer::isLocked, &Layer::setIsLocked, true};
    default:
        return {&Layer::isPlottable, &Layer::setIsPlottable, false};
    }
}

} // namespace

FlagChange setLayerFlag(const QString &name, LayerColumn column, bool value)
{
    KcDbLayerTableRecord *layer = getLayerByName(name);
    if (!layer)
        return FlagChange::Refused;
    const Flag flag = flagOf(column);
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
    KcDbLayerTableRecord *layer = getLayerByName(name);
    if (!layer)
        return std::nullopt;
    const bool isShown = flagOf(column).isShown(*layer);
    layer->close();
    return isShown;
}

} // namespace OvCc
