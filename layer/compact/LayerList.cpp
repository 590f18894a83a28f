// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerList.h"

#include <OvCustomControl/LayerComboBox.h>
#include <OvCustomControl/LayerItem.h>

#include <QApplication>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

namespace OvCc {

namespace {

constexpr int rowHeight = 25;
constexpr int widestList = 400;

/// Rows that come or go in the middle of the list cost a walk over all rows each. Beyond this many
/// it is cheaper to build the list anew.
constexpr int mostPatches = 32;

/// A row and the layer that it shows, or will show once it has an item. A combo box takes the text of
/// its edit from Qt::EditRole, where there is none: the face shows more than a text.
class LayerRow : public QListWidgetItem
{
public:
    static constexpr int rowType = UserType + 1;

    explicit LayerRow(const LayerItemData &data)
        : QListWidgetItem(nullptr, rowType)
    {
        setLayer(data);
    }

    const LayerItemData &layer() const { return m_layer; }

    /// Names come with room for more in them, which adds up.
    void setLayer(const LayerItemData &data)
    {
        m_layer = data;
        m_layer.name.squeeze();
    }

    QVariant data(int role) const override
    {
        switch (role) {
        case Qt::DisplayRole:
            return m_layer.name;
        case Qt::SizeHintRole:
            return QSize(0, rowHeight);
        default:
            return QListWidgetItem::data(role);
        }
    }

private:
    LayerItemData m_layer;
};

/// Null for a row that somebody else put into the list.
LayerRow *rowAt(const QListWidget &list, int row)
{
    QListWidgetItem *item = list.item(row);
    return item && item->type() == LayerRow::rowType ? static_cast<LayerRow *>(item) : nullptr;
}

/// The name of a row is for keys and screen readers: what is seen of it is the LayerItem.
class RowDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->features.setFlag(QStyleOptionViewItem::HasDisplay, false);
        option->text.clear();
    }
};

/// Tells roughly how wide texts are, for far less than the price of shaping them: as wide as their
/// characters, each of which is measured once.
class RoughWidth
{
public:
    explicit RoughWidth(const QFont &font)
        : m_font(font)
    {
    }

    double operator()(const QString &text)
    {
        double width = 0.0;
        for (const QChar character : text) {
            if (character.unicode() >= m_widths.size())
                m_widths.resize(size_t(character.unicode()) + 1, unknown);
            double &known = m_widths[character.unicode()];
            if (known == unknown)
                known = m_font.horizontalAdvance(character);
            width += known;
        }
        return width;
    }

private:
    static constexpr double unknown = -1.0;
    const QFontMetricsF m_font;
    std::vector<double> m_widths;
};

} // namespace

LayerList::LayerList(LayerComboBox *combo, Setter setter)
    : m_combo(combo)
    , m_setter(std::move(setter))
{
    setItemDelegate(new RowDelegate(this));
    setUniformItemSizes(true);
}

bool LayerList::setLayers(const QList<LayerItemData> &layers)
{
    const bool areRowsOther = matchRows(layers);
    const bool isAnyOther = showChanges(layers) || areRowsOther;
    if (count() <= mostItems) {
        for (int row = 0; row < count(); ++row)
            layerItem(row);
    }
    fitWidth();
    executeDelayedItemsLayout(); // which opening the list would wait for
    makeItemsInSight();
    return isAnyOther;
}

bool LayerList::setLayer(int row, const LayerItemData &layer)
{
    LayerRow *place = rowAt(*this, row);
    auto *item = qobject_cast<LayerItem *>(itemWidget(place));
    const bool isOther = !isSame(item ? item->currentLayerData() : place->layer(), layer);
    place->setLayer(layer);
    if (item && isOther)
        item->setCurrentLayer(layer);
    return isOther;
}

int LayerList::startRow()
{
    const int row = m_start.isEmpty() ? -1 : rowOf(m_start);
    return row < 0 ? m_combo->getDisplayItem() : row;
}

int LayerList::rowOf(const QString &name)
{
    if (m_lastFound >= 0 && nameAt(m_lastFound) == name)
        return m_lastFound;
    m_lastFound = -1;
    for (int row = 0; m_lastFound < 0; ++row) {
        const LayerRow *place = rowAt(*this, row);
        if (!place)
            break;
        if (place->layer().name == name)
            m_lastFound = row;
    }
    return m_lastFound;
}

QString LayerList::nameAt(int row) const
{
    const LayerRow *place = rowAt(*this, row);
    return place ? place->layer().name : QString();
}

LayerItem *LayerList::layerItem(int row)
{
    LayerRow *place = rowAt(*this, row);
    if (!place)
        return nullptr;
    executeDelayedItemsLayout(); // which makes the items in sight, and this may be one of them
    if (auto *known = qobject_cast<LayerItem *>(itemWidget(place)))
        return known;

    auto *item = new LayerItem(this);
    item->setCurrentLayer(place->layer());
    item->setSetter(m_setter);
    connect(item, &LayerItem::statusChanged, m_combo, &LayerComboBox::slotLabelChange);
    putItem(place, item);
    m_rowsWithItems.append(indexFromItem(place));
    dropSpareItems();
    return item;
}

/// No change of a row makes it higher, so there is nothing to lay out anew.
void LayerList::dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                            const QVector<int> &roles)
{
    QAbstractItemView::dataChanged(topLeft, bottomRight, roles);
}

void LayerList::doItemsLayout()
{
    if (!m_isPuttingItem)
        QListWidget::doItemsLayout();
}

void LayerList::rowsInserted(const QModelIndex &parent, int start, int end)
{
    if (!m_isInserting)
        QListWidget::rowsInserted(parent, start, end);
}

void LayerList::scrollContentsBy(int dx, int dy)
{
    QListWidget::scrollContentsBy(dx, dy);
    makeItemsInSight();
}

/// A combo box opens its list on the row of its own index, but that follows no layer.
void LayerList::showEvent(QShowEvent *event)
{
    setCurrentRow(startRow());
    QListWidget::showEvent(event);
    updateEditorGeometries(); // which a hidden view does not keep
    makeItemsInSight();
}

void LayerList::updateGeometries()
{
    QListWidget::updateGeometries();
    makeItemsInSight();
}

/// Keeps the rows at both ends whose layers are still there, and replaces what lies between them.
/// @return whether there was anything to replace
bool LayerList::matchRows(const QList<LayerItemData> &layers)
{
    const auto isRowOf = [this](int row, const LayerItemData &layer) {
        const LayerRow *place = rowAt(*this, row);
        return place && place->layer().name == layer.name;
    };
    const int present = count();
    const int wanted = layers.size();
    const int common = qMin(present, wanted);
    int head = 0;
    while (head < common && isRowOf(head, layers.at(head)))
        ++head;
    int tail = 0;
    while (tail < common - head && isRowOf(present - 1 - tail, layers.at(wanted - 1 - tail)))
        ++tail;

    const int patches = present - head - tail + (tail > 0 ? wanted - head - tail : 0);
    if (patches > mostPatches) {
        clear();
        head = tail = 0;
    }
    while (count() > head + tail)
        delete takeItem(head);
    insertRows(head, wanted - tail, layers);
    return head + tail < present || head + tail < wanted;
}

/// The view hears of all rows at once.
void LayerList::insertRows(int begin, int end, const QList<LayerItemData> &layers)
{
    if (begin == end)
        return;
    {
        const QScopedValueRollback<bool> inserting(m_isInserting, true);
        for (int row = begin; row < end; ++row)
            insertItem(row, new LayerRow(layers.at(row)));
    }
    rowsInserted({}, begin, end - 1);
}

/// What an item shows may be news to its row, which its buttons pass by.
bool LayerList::showChanges(const QList<LayerItemData> &layers)
{
    const auto isGone = [](const QPersistentModelIndex &row) { return !row.isValid(); };
    m_rowsWithItems.erase(std::remove_if(m_rowsWithItems.begin(), m_rowsWithItems.end(), isGone),
                          m_rowsWithItems.end());
    bool isAnyOther = false;
    for (const QPersistentModelIndex &index : std::as_const(m_rowsWithItems))
        isAnyOther |= setLayer(index.row(), layers.at(index.row()));

    for (int row = 0; row < layers.size(); ++row) {
        LayerRow *place = rowAt(*this, row);
        if (isSame(place->layer(), layers.at(row)))
            continue;
        place->setLayer(layers.at(row));
        isAnyOther = true;
    }
    return isAnyOther;
}

void LayerList::fitWidth()
{
    int widest = 0;
    const bool isLong = count() > mostItems;
    const int first = isLong ? widestRow() : 0;
    const int last = isLong ? first : count() - 1;
    for (int row = first; row <= last; ++row)
        widest = qMax(widest, layerItem(row)->sizeHint().width());
    const int width = widest + 2 * frameWidth() + verticalScrollBar()->sizeHint().width();
    setMinimumWidth(qMin(width, widestList));
}

/// The row with the widest name. Only those that look the widest are shaped, to see what kerning and
/// the like make of them.
int LayerList::widestRow() const
{
    constexpr int mostShaped = 8;
    RoughWidth roughWidth(font());
    std::vector<std::pair<double, int>> rows;
    rows.reserve(size_t(count()));
    for (int row = 0; row < count(); ++row)
        rows.emplace_back(roughWidth(nameAt(row)), row);
    const auto end = rows.begin() + qMin(count(), mostShaped);
    std::nth_element(rows.begin(), end, rows.end(), std::greater<>());

    const QFontMetricsF metrics(font());
    for (auto it = rows.begin(); it != end; ++it)
        it->first = metrics.horizontalAdvance(nameAt(it->second));
    return std::max_element(rows.begin(), end)->second;
}

/// A view asks for a new layout of all rows for each widget that it gets; here that is done at once,
/// and is nothing. No other layout may be due.
void LayerList::putItem(QListWidgetItem *place, LayerItem *item)
{
    const QScopedValueRollback<bool> putting(m_isPuttingItem, true);
    setItemWidget(place, item);
    executeDelayedItemsLayout();
}

/// The first and the last one; the last is before the first where there is none.
std::pair<int, int> LayerList::rowsInSight() const
{
    const QRect sight = viewport()->rect();
    const int first = isVisible() ? indexAt(sight.topLeft()).row() : -1;
    const int last = first < 0 ? -1 : indexAt(sight.bottomLeft()).row();
    return first < 0 ? std::pair(0, -1) : std::pair(first, last < 0 ? count() - 1 : last);
}

void LayerList::makeItemsInSight()
{
    const auto [first, last] = rowsInSight();
    for (int row = first; row <= last; ++row) {
        if (!isRowHidden(row))
            layerItem(row);
    }
}

/// Takes the items from rows that are out of sight, until few enough have one. The last one was asked
/// for only now.
void LayerList::dropSpareItems()
{
    const auto [first, last] = rowsInSight();
    int spare = m_rowsWithItems.size() - mostItems;
    for (auto it = m_rowsWithItems.begin(); spare > 0 && it != m_rowsWithItems.end() - 1;) {
        const int row = it->row();
        if (row >= first && row <= last) {
            ++it;
            continue;
        }
        if (auto *item = qobject_cast<LayerItem *>(indexWidget(*it))) {
            rowAt(*this, row)->setLayer(item->currentLayerData());
            if (item->isAncestorOf(QApplication::focusWidget()))
                setFocus();
            setIndexWidget(*it, nullptr); // the view would go on laying it out otherwise
            delete item;
        }
        it = m_rowsWithItems.erase(it);
        --spare;
    }
}

} // namespace OvCc
