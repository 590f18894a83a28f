// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "layer/data/HostRecords.h"
#include "layer/data/LayerSearch.h"
#include "layer/table/FlagGestures.h"
#include "layer/table/LayerTablePrivate.h"
#include "layer/table/RowsByName.h"

#include <OvCustomControl/LayerDelegate.h>
#include <OvCustomControl/OvLayerUtility.h>

#include <QPointer>

namespace OvCc {

namespace {

FlagOrders ordersOf(const QStringList &names, const SomeFlags &wanted)
{
    FlagOrders orders;
    orders.reserve(size_t(names.size()));
    for (const QString &name : names)
        orders.push_back({name, wanted});
    return orders;
}

QStringList allLayers()
{
    QStringList names;
    walkLayers(getCurrentDb(), [&names](const KcDbLayerTableRecord &layer) {
        names.append(layerName(layer));
        return true;
    });
    return names;
}

} // namespace

bool LayerTableWidget::toggleSelection() const
{
    return m_d->isSelectionToggled;
}

void LayerTableWidget::setToggleSelection(bool toggles)
{
    m_d->isSelectionToggled = toggles;
    if (!toggles) {
        m_d->editing->setFlagPress(nullptr);
        return;
    }
    m_d->editing->setFlagPress([this](const QModelIndex &cell) {
        setSelectedFlag(LayerColumn(cell.column()), !cell.data().toBool());
    });
}

QStringList LayerTableWidget::selectedLayers() const
{
    QStringList names;
    const QVector<int> selected = m_d->selectedRows();
    for (const int row : selected)
        names.append(m_d->rows->rows().at(row).at(NameColumn));
    return names;
}

int LayerTableWidget::setSelectedFlag(LayerColumn column, bool value)
{
    return isFlagColumn(column) ? m_d->setFlag(column, value, selectedLayers()) : 0;
}

int LayerTableWidget::setAllFlags(LayerColumn column, bool value)
{
    return isFlagColumn(column) ? m_d->setFlag(column, value, allLayers()) : 0;
}

/// The place of the drawing's current layer, if it is to be switched off or frozen by this; or -1.
int LayerTableWidget::Private::guardedPlace(const FlagOrders &orders, LayerColumn column,
                                            bool value)
{
    LayerItemData current;
    if (value || !isGuarded(column) || !OvLayerUtility().getCurrentLayer(current)
        || (column == OnColumn ? !current.isOn : current.isFrozen))
        return -1;
    const auto place =
            std::find_if(orders.begin(), orders.end(),
                         [&current](const FlagOrder &order) { return order.name == current.name; });
    return place == orders.end() ? -1 : int(place - orders.begin());
}

/// @return how many layers are different; the table may be gone
int LayerTableWidget::Private::setFlag(LayerColumn column, bool value, const QStringList &names)
{
    if (names.isEmpty())
        return 0;
    const QPointer<LayerDelegate> delegate(editing->delegate());
    FlagOrders orders = ordersOf(names, oneFlag(column, value));
    const int guarded = guardedPlace(orders, column, value);
    const auto text = [column, value](int layers) { return flagChangeText(column, value, layers); };
    FlagGestures::of(*delegate).change(text, orders, showing(), guarded);
    return tell(delegate, orders);
}

/// What shows the outcome of a gesture as long as there is a table.
FlagGestures::Show LayerTableWidget::Private::showing()
{
    return [this, table = QPointer<LayerTableWidget>(q)](const FlagOrders &orders) {
        if (table)
            showFlags(orders);
    };
}

void LayerTableWidget::Private::showFlags(const FlagOrders &orders)
{
    QVector<CellText> cells;
    std::optional<RowsByName> byName;
    if (orders.size() > mostSearches)
        byName.emplace(rows->rows(), aheadOfDrawing.renamed);
    for (const FlagOrder &order : orders) {
        const int row = byName ? byName->take(order.name) : rowNamed(order.name);
        for (size_t place = 0; row >= 0 && place < flagColumns.size(); ++place) {
            if (const std::optional<bool> flag = order.shown.at(place))
                cells.append({row, flagColumns.at(place), flagText(*flag)});
        }
    }
    rows->setTexts(cells);
}

/// Tells of a gesture that was begun.
/// @return how many layers are different
int LayerTableWidget::Private::tell(const QPointer<LayerDelegate> &delegate,
                                    const FlagOrders &orders)
{
    if (orders.empty())
        return 0;
    QStringList names;
    for (const FlagOrder &order : orders)
        names.append(order.name);
    FlagGestures::tell(delegate, names);
    return int(changedIn(orders).size());
}

} // namespace OvCc
