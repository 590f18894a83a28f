// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerFlags.h"

#include "layer/data/HostRecords.h"

#include <OvCustomControl/OvLayerUtility.h>

#include <QCoreApplication>

#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_map>

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
    const char *manyToTrue;
    const char *manyToFalse;

    bool isShown(const KcDbLayerTableRecord &layer) const { return (layer.*get)() != isInverted; }
};

using Layer = KcDbLayerTableRecord;

constexpr std::array<Flag, 4> flags{{
        {OnColumn, &Layer::isOff, &Layer::setIsOff, true,
         QT_TRANSLATE_NOOP("OvCc::LayerFlags", "Switch layer on"),
         QT_TRANSLATE_NOOP("OvCc::LayerFlags", "Switch layer off"),
         QT_TRANSLATE_N_NOOP("OvCc::LayerFlags", "Switch %n layers on"),
         QT_TRANSLATE_N_NOOP("OvCc::LayerFlags", "Switch %n layers off")},
        {ThawedColumn, &Layer::isFrozen, &Layer::setIsFrozen, true,
         QT_TRANSLATE_NOOP("OvCc::LayerFlags", "Thaw layer"),
         QT_TRANSLATE_NOOP("OvCc::LayerFlags", "Freeze layer"),
         QT_TRANSLATE_N_NOOP("OvCc::LayerFlags", "Thaw %n layers"),
         QT_TRANSLATE_N_NOOP("OvCc::LayerFlags", "Freeze %n layers")},
        {UnlockedColumn, &Layer::isLocked, &Layer::setIsLocked, true,
         QT_TRANSLATE_NOOP("OvCc::LayerFlags", "Unlock layer"),
         QT_TRANSLATE_NOOP("OvCc::LayerFlags", "Lock layer"),
         QT_TRANSLATE_N_NOOP("OvCc::LayerFlags", "Unlock %n layers"),
         QT_TRANSLATE_N_NOOP("OvCc::LayerFlags", "Lock %n layers")},
        {PlotColumn, &Layer::isPlottable, &Layer::setIsPlottable, false,
         QT_TRANSLATE_NOOP("OvCc::LayerFlags", "Plot layer"),
         QT_TRANSLATE_NOOP("OvCc::LayerFlags", "Do not plot layer"),
         QT_TRANSLATE_N_NOOP("OvCc::LayerFlags", "Plot %n layers"),
         QT_TRANSLATE_N_NOOP("OvCc::LayerFlags", "Do not plot %n layers")},
}};

constexpr bool isEachFlagInItsPlace()
{
    for (size_t place = 0; place < flags.size(); ++place) {
        if (flags.at(place).column != flagColumns.at(place))
            return false;
    }
    return true;
}
static_assert(isEachFlagInItsPlace());

/// Behind the last one for a column that is none.
const Flag *flagOf(LayerColumn column)
{
    return std::find_if(flags.begin(), flags.end(),
                        [column](const Flag &flag) { return flag.column == column; });
}

/// Looks at the wanted flags.
/// @return whether all are as they are to be
bool compare(FlagOrder &order, const Layer &layer)
{
    for (size_t place = 0; place < flags.size(); ++place) {
        if (order.wanted.at(place))
            order.shown.at(place) = flags.at(place).isShown(layer);
    }
    return order.shown == order.wanted;
}

/// @param layer open for read, before and afterwards
void carryOut(FlagOrder &order, Layer &layer)
{
    order.isRefused = !compare(order, layer);
    if (!order.isRefused)
        return;
    const SomeFlags before = order.shown;
    // Whether each of these succeeds shows in the end.
    layer.upgradeOpen();
    for (size_t place = 0; place < flags.size(); ++place) {
        if (before.at(place) != order.wanted.at(place))
            (layer.*flags.at(place).set)(*order.wanted.at(place) != flags.at(place).isInverted);
    }
    layer.downgradeOpen();
    order.isRefused = !compare(order, layer);
    order.isChanged = order.shown != before;
}

QStringList namesWhere(const FlagOrders &orders, bool FlagOrder::*flag)
{
    QStringList names;
    for (const FlagOrder &order : orders) {
        if (order.*flag)
            names.append(order.name);
    }
    return names;
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

QString flagChangeText(LayerColumn column, bool value, int layers)
{
    const Flag &flag = *flagOf(column);
    if (layers == 1)
        return FlagTexts::tr(value ? flag.toTrue : flag.toFalse);
    return FlagTexts::tr(value ? flag.manyToTrue : flag.manyToFalse, nullptr, layers);
}

SomeFlags oneFlag(LayerColumn column, bool value)
{
    SomeFlags wanted;
    wanted.at(flagPlace(column)) = value;
    return wanted;
}

SomeFlags shownFlags(const KcDbLayerTableRecord &layer)
{
    SomeFlags shown;
    for (size_t place = 0; place < flags.size(); ++place)
        shown.at(place) = flags.at(place).isShown(layer);
    return shown;
}

QStringList refusedIn(const FlagOrders &orders)
{
    return namesWhere(orders, &FlagOrder::isRefused);
}

QStringList changedIn(const FlagOrders &orders)
{
    return namesWhere(orders, &FlagOrder::isChanged);
}

void setLayerFlags(FlagOrders &orders)
{
    if (orders.empty())
        return;
    if (orders.size() == 1) {
        if (const std::optional<FoundLayer> found = findLayer(orders.front().name)) {
            carryOut(orders.front(), *found->record);
            found->record->close();
        }
        return;
    }
    // The names of a large drawing are compared as the host lends them: to make texts of all of them
    // would take longer than all else.
    std::vector<std::wstring> names;
    names.reserve(orders.size());
    std::unordered_map<std::wstring_view, FlagOrder *> left;
    left.reserve(orders.size());
    for (FlagOrder &order : orders) {
        names.push_back(order.name.toStdWString());
        left.emplace(names.back(), &order);
    }
    KcDbLayerTableRecord *last = walkLayers(getCurrentDb(), [&left](Layer &layer) {
        KTCHAR *text = nullptr;
        layer.getName(text);
        const auto found = text ? left.find(text) : left.end();
        kcutDelString(text);
        if (found == left.end())
            return true;
        carryOut(*found->second, layer);
        left.erase(found);
        return !left.empty();
    });
    if (last)
        last->close();
}

} // namespace OvCc
