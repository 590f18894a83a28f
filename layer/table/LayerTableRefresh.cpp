// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "layer/data/LayerRowReading.h"
#include "layer/data/LayerSearch.h"
#include "layer/table/LayerTablePrivate.h"
#include "layer/table/RowsByName.h"

#include <OvCustomControl/OvLayerUtility.h>

#include <QHeaderView>
#include <QPointer>

#include <algorithm>
#include <functional>
#include <utility>

namespace OvCc {

namespace {

/// What tells the rows of a table from the layers of the drawing. Rows that are to come are numbered
/// behind those that are there.
struct Difference
{
    /// None, so far.
    explicit Difference(const QVector<QStringList> &present)
        : rows(present)
        , isLayer(present.size(), true)
    {
    }

    /// Reads all layers. A row that was renamed here and not there has its name from there.
    Difference(const QVector<QStringList> &present, const Renamed &renamed);

    const QStringList &textsOf(int row) const
    {
        return row < rows.size() ? rows.at(row) : added.at(row - rows.size());
    }

    const QVector<QStringList> &rows; ///< those of the table
    QVector<bool> isLayer;            ///< by row; of the others the drawing knows nothing
    QVector<QPair<int, QStringList>> changed;
    QVector<QStringList> added;
    QString current;  ///< its name
    QStringList last; ///< of those that were read; empty if none was
};

Difference::Difference(const QVector<QStringList> &present, const Renamed &renamed)
    : rows(present)
    , isLayer(present.size(), false)
{
    RowsByName byName(present, renamed);
    const auto match = [this](int row, const QStringList &read) {
        isLayer[row] = true;
        if (rows.at(row) != read)
            changed.append({row, read});
    };
    readLayerRows([&](const QStringList &read) {
        const int row = byName.take(read.at(NameColumn));
        if (row < 0)
            added.append(read);
        else
            match(row, read);
        if (current.isEmpty() && read.at(CurrentColumn) == QLatin1String("true"))
            current = read.at(NameColumn);
        last = read;
    });
    for (auto name = renamed.cbegin(); name != renamed.cend(); ++name) {
        const auto read = std::find_if(added.begin(), added.end(), [name](const QStringList &each) {
            return each.at(NameColumn) == *name;
        });
        const QPersistentModelIndex &cell = name.key();
        if (read != added.end() && cell.isValid() && !isLayer.at(cell.row())) {
            match(cell.row(), *read);
            added.erase(read);
        }
    }
}

/// Brings rows into order with few moves: those between their like stay as they stand, and the others
/// go between them. Linear, but for sorting the others.
class Sorting
{
public:
    using Precedes = std::function<bool(int row, int other)>;

    explicit Sorting(Precedes precedes)
        : m_precedes(std::move(precedes))
    {
    }

    /// A row that stands somewhere already; they come in their order.
    void append(int row)
    {
        const int count = m_staying.size();
        if (count == 0 || !m_precedes(row, m_staying.constLast())) {
            m_staying.append(row);
        } else if (count > 1 && m_precedes(row, m_staying.at(count - 2))) {
            m_moving.append(row);
        } else {
            // Not this row is out of place, but the one before.
            m_moving.append(m_staying.constLast());
            m_staying.last() = row;
        }
    }

    void insert(int row) { m_moving.append(row); }

    QVector<int> rows()
    {
        if (!std::is_sorted(m_moving.cbegin(), m_moving.cend(), m_precedes))
            std::stable_sort(m_moving.begin(), m_moving.end(), m_precedes);
        QVector<int> sorted(m_staying.size() + m_moving.size());
        std::merge(m_staying.cbegin(), m_staying.cend(), m_moving.cbegin(), m_moving.cend(),
                   sorted.begin(), m_precedes);
        return sorted;
    }

private:
    const Precedes m_precedes;
    QVector<int> m_staying;
    QVector<int> m_moving;
};

/// The rows that are to be there, in their order. Those in @p edited stay where they stand.
QVector<int> orderOf(const Difference &difference, RowOrder isBefore, const QVector<int> &edited)
{
    Sorting sorting([&difference, isBefore](int row, int other) {
        return isBefore(difference.textsOf(row), difference.textsOf(other));
    });
    const int present = difference.rows.size();
    for (int row = 0; row < present; ++row) {
        if (difference.isLayer.at(row) && !edited.contains(row))
            sorting.append(row);
    }
    for (int row = present; row < present + difference.added.size(); ++row)
        sorting.insert(row);
    QVector<int> order = sorting.rows();
    for (const int row : edited)
        order.insert(qMin(row, order.size()), row);
    return order;
}

/// Keeps views from scrolling to a row that becomes the current one.
class ScrollHold
{
public:
    explicit ScrollHold(const std::array<QTableView *, 2> &views)
        : m_views(views)
        , m_wasOn{views[0]->hasAutoScroll(), views[1]->hasAutoScroll()}
    {
        for (QTableView *view : m_views)
            view->setAutoScroll(false);
    }
    ~ScrollHold()
    {
        for (size_t place = 0; place < m_views.size(); ++place)
            m_views[place]->setAutoScroll(m_wasOn[place]);
    }
    Q_DISABLE_COPY(ScrollHold)

private:
    const std::array<QTableView *, 2> m_views;
    const std::array<bool, 2> m_wasOn;
};

} // namespace

bool LayerTableWidget::refresh()
{
    return m_d->follow([this] { return m_d->followDrawing(); });
}

bool LayerTableWidget::refreshLayers(const QStringList &names)
{
    return m_d->follow([this, &names] { return m_d->followLayers(names); });
}

bool LayerTableWidget::showOtherDrawing()
{
    if (m_d->isChanging)
        return false;
    m_d->editing->drop();
    m_d->dropQuestion();
    m_d->aheadOfDrawing = {};
    const QPointer<LayerTableWidget> self(this);
    m_d->forgetOtherDrawing(true);
    const bool isAnyOther = self && refresh();
    if (self && !selectionModel()->hasSelection())
        m_d->selectRow(m_d->rowNamed(m_d->currentLayer));
    return isAnyOther;
}

/// @param bringInStep what makes the rows those of the drawing
/// @return whether anything is different
bool LayerTableWidget::Private::follow(const std::function<Followed()> &bringInStep)
{
    if (isChanging)
        return false;
    const QPointer<LayerTableWidget> self(q);
    Followed followed;
    {
        const TableEditing::Hold hold(*editing);
        isChanging = true;
        followed = bringInStep();
        isChanging = false;
    }
    if (self && followed.current && *followed.current != currentLayer)
        emit q->updateCurretnLayer(*followed.current);
    if (self)
        tellShown();
    return followed.isAnyOther;
}

LayerTableWidget::Private::Followed LayerTableWidget::Private::followDrawing()
{
    const AheadOfDrawing ahead = std::exchange(aheadOfDrawing, {});
    const Difference difference(rows->rows(), ahead.renamed);
    const QVector<int> edited = editing->rows();
    isRefreshDue = !edited.isEmpty();

    for (const auto &[row, texts] : difference.changed)
        showTexts(row, texts);
    const QVector<int> order = orderOf(difference, sortOrder(), edited);
    const bool isArranged = difference.added.isEmpty() && order.size() == rows->rowCount()
                            && std::is_sorted(order.cbegin(), order.cend());
    if (!isArranged)
        arrange(order, difference.added);
    if (filter.isNarrowing())
        hideUnfound(editing->rows());
    selectAgain(ahead.removed);

    currentRow = difference.current;
    const bool isAnyOther = !isArranged || !difference.changed.isEmpty();
    if (difference.last.isEmpty())
        return {isAnyOther, std::nullopt};
    takeOver(difference.last);
    return {isAnyOther, difference.current};
}

/// Nothing but these layers is read. Where that is not enough, all are.
LayerTableWidget::Private::Followed
LayerTableWidget::Private::followLayers(const QStringList &changedNames)
{
    LayerItemData current;
    if (!OvLayerUtility().getCurrentLayer(current) || !editing->rows().isEmpty())
        return followDrawing();
    QStringList names = changedNames + std::exchange(aheadOfDrawing.marked, {});
    if (current.name != currentRow)
        names << currentRow << current.name;
    names.removeDuplicates();
    if (names.size() > mostSearches)
        return followDrawing();

    currentRow = current.name;
    Followed followed{false, current.name};
    bool isArranged = true;
    for (const QString &name : std::as_const(names)) {
        const std::optional<QStringList> texts = readLayerRow(name);
        const int row = rowNamed(name);
        if (!texts && row < 0)
            continue;
        if (!texts || row < 0)
            return followDrawing();
        if (rows->rows().at(row) != *texts) {
            followed.isAnyOther = true;
            showTexts(row, *texts);
            if (filter.isNarrowing())
                hideIfUnfound(row);
        }
        if (name == rowTemplate.at(NameColumn))
            takeOver(*texts);
        isArranged = isArranged && isInItsPlace(row);
    }
    if (isArranged)
        return followed;
    arrange(orderOf(Difference(rows->rows()), sortOrder(), {}));
    return {true, current.name};
}

void LayerTableWidget::Private::showTexts(int row, const QStringList &texts)
{
    for (int column = 0; column < LayerColumnCount; ++column) {
        const QModelIndex cell = rows->index(row, column);
        if (!editing->isOpen(cell))
            rows->setData(cell, texts.at(column), Qt::EditRole);
    }
}

RowOrder LayerTableWidget::Private::sortOrder() const
{
    const QHeaderView &header = *q->horizontalHeader();
    return rows->sortedBy(header.sortIndicatorSection(), header.sortIndicatorOrder());
}

/// Whether the row stands between its neighbours as the table is sorted.
bool LayerTableWidget::Private::isInItsPlace(int row) const
{
    const RowOrder isBefore = sortOrder();
    const QVector<QStringList> &texts = rows->rows();
    return (row == 0 || !isBefore(texts.at(row), texts.at(row - 1)))
           && (row + 1 == texts.size() || !isBefore(texts.at(row + 1), texts.at(row)));
}

/// The row with that name, if there is one; -1 otherwise. O(1) for the current row.
int LayerTableWidget::Private::rowNamed(const QString &name) const
{
    const QVector<QStringList> &texts = rows->rows();
    const auto isNamed = [&name](const QStringList &row) { return row.at(NameColumn) == name; };
    const int current = q->currentIndex().row();
    if (current >= 0 && isNamed(texts.at(current)))
        return current;
    const auto found = std::find_if(texts.cbegin(), texts.cend(), isNamed);
    return found == texts.cend() ? -1 : static_cast<int>(found - texts.cbegin());
}

/// The rows that the user removed, where the drawing still has their layers.
void LayerTableWidget::Private::selectAgain(const QSet<QString> &removed)
{
    QItemSelectionModel &selection = *q->selectionModel();
    if (removed.isEmpty() || selection.hasSelection())
        return;
    QItemSelection back;
    for (int row = 0; row < rows->rowCount(); ++row) {
        if (removed.contains(rows->rows().at(row).at(NameColumn)))
            back.select(rows->index(row, NameColumn), rows->index(row, NameColumn));
    }
    if (back.isEmpty())
        return;
    const ScrollHold hold(views());
    selection.setCurrentIndex(back.first().topLeft(), QItemSelectionModel::NoUpdate);
    selection.select(back, QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

/// Selects one row, if there is one, and brings it into sight.
void LayerTableWidget::Private::selectRow(int row)
{
    if (row < 0)
        return;
    const QModelIndex name = rows->index(row, NameColumn);
    q->selectionModel()->setCurrentIndex(name, QItemSelectionModel::ClearAndSelect
                                                       | QItemSelectionModel::Rows);
    frozen->scrollTo(name, PositionAtCenter);
}

/// Neither the scroll position nor the place of the current row is lost.
void LayerTableWidget::Private::arrange(const QVector<int> &order,
                                        const QVector<QStringList> &added)
{
    const ScrollHold hold(views());
    leaveRowsBeside(order);
    rows->arrange(order, added);
}

/// If the current row is none of @p staying, the next one that is becomes the current one, or else
/// the last one before.
void LayerTableWidget::Private::leaveRowsBeside(const QVector<int> &staying)
{
    const QModelIndex current = q->currentIndex();
    if (!current.isValid())
        return;
    QVector<bool> stays(rows->rowCount(), false);
    for (const int row : staying) {
        if (row < stays.size())
            stays[row] = true;
    }
    int next = stays.indexOf(true, current.row());
    if (next < 0)
        next = stays.lastIndexOf(true, current.row());
    if (next >= 0 && next != current.row())
        q->selectionModel()->setCurrentIndex(rows->index(next, current.column()),
                                             QItemSelectionModel::NoUpdate);
}

/// What was put off while editors were open.
void LayerTableWidget::Private::followEditor()
{
    if (isRefreshDue)
        q->refresh();
}

} // namespace OvCc
