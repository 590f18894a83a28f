#include "layer/data/LayerRowReading.h"
#include "layer/table/LayerTablePrivate.h"

#include <OvCustomControl/OvLayerUtility.h>

#include <QHash>
#include <QHeaderView>
#include <QPointer>

#include <algorithm>
#include <functional>
#include <utility>

namespace OvCc {

namespace {

/// Finds rows by their names. Each is found once: where two have one name, the upper one first.
class RowsByName
{
public:
    explicit RowsByName(const QVector<QStringList> &rows)
        : m_next(rows.size())
    {
        m_first.reserve(rows.size());
        for (int row = rows.size() - 1; row >= 0; --row)
            m_next[row] = std::exchange(m_first[rows.at(row).at(NameColumn)], row + 1);
    }

    /// -1 if there is none, or none any more.
    int take(const QString &name)
    {
        const auto found = m_first.find(name);
        if (found == m_first.end() || *found == 0)
            return -1;
        const int row = *found - 1;
        *found = m_next.at(row);
        return row;
    }

private:
    // Both hold row numbers counted from 1; 0 is none.
    QHash<QString, int> m_first;
    QVector<int> m_next;
};

/// What tells the rows of a table from the layers of the drawing. Rows that are to come are numbered
/// behind those that are there.
struct Difference
{
    explicit Difference(const QVector<QStringList> &present);

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

Difference::Difference(const QVector<QStringList> &present)
    : rows(present)
    , isLayer(present.size(), false)
{
    RowsByName byName(present);
    readLayerRows([this, &byName](const QStringList &read) {
        const int row = byName.take(read.at(NameColumn));
        if (row < 0) {
            added.append(read);
        } else {
            isLayer[row] = true;
            if (rows.at(row) != read)
                changed.append({row, read});
        }
        if (current.isEmpty() && read.at(CurrentColumn) == QLatin1String("true"))
            current = read.at(NameColumn);
        last = read;
    });
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
    const bool isSorted = isBefore.column >= 0 && isBefore.column < LayerColumnCount;
    Sorting sorting([&difference, isBefore, isSorted](int row, int other) {
        return isSorted && isBefore(difference.textsOf(row), difference.textsOf(other));
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

} // namespace

void LayerTableWidget::refresh()
{
    if (m_d->isChanging)
        return;
    const QPointer<LayerTableWidget> self(this);
    std::optional<QString> current;
    {
        const TableEditing::Hold hold(*m_d->editing);
        m_d->isChanging = true;
        current = m_d->followDrawing();
        m_d->isChanging = false;
    }
    if (self && current && *current != m_d->currentLayer)
        emit updateCurretnLayer(*current);
}

/// Returns the name of the current layer, empty if none is; nothing without layers.
std::optional<QString> LayerTableWidget::Private::followDrawing()
{
    const Difference difference(rows->rows());
    const QVector<int> edited = editing->rows();
    isRefreshDue = !edited.isEmpty();

    for (const auto &[row, texts] : difference.changed) {
        for (int column = 0; column < LayerColumnCount; ++column) {
            const QModelIndex cell = rows->index(row, column);
            if (!editing->isOpen(cell))
                rows->setData(cell, texts.at(column), Qt::EditRole);
        }
    }
    const QHeaderView &header = *q->horizontalHeader();
    const QVector<int> order = orderOf(
            difference, {header.sortIndicatorSection(), header.sortIndicatorOrder()}, edited);
    const bool hasOtherRows = !difference.added.isEmpty() || order.size() < rows->rowCount();
    if (hasOtherRows || !std::is_sorted(order.cbegin(), order.cend()))
        arrange(order, difference.added);
    if (!search.isEmpty())
        hideUnfound(editing->rows());

    if (difference.last.isEmpty())
        return std::nullopt;
    takeOver(difference.last);
    return difference.current;
}

/// Neither the scroll position nor the place of the current row is lost.
void LayerTableWidget::Private::arrange(const QVector<int> &order,
                                        const QVector<QStringList> &added)
{
    const std::array<bool, 2> follow{q->hasAutoScroll(), frozen->hasAutoScroll()};
    for (QTableView *view : views())
        view->setAutoScroll(false);
    leaveRowsBeside(order);
    rows->arrange(order, added);
    q->setAutoScroll(follow[0]);
    frozen->setAutoScroll(follow[1]);
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
