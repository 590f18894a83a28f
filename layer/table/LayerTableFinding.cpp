// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "layer/table/LayerTablePrivate.h"

#include <QHeaderView>
#include <QPointer>

#include <utility>

namespace OvCc {

void LayerTableWidget::slotSearchLayer(const QString &text)
{
    m_d->filter.setSearch(text);
    m_d->hideUnfound();
    m_d->tellShown();
}

void LayerTableWidget::setFilter(Filters filters)
{
    if (filters == m_d->filter.filters())
        return;
    const QPointer<LayerTableWidget> self(this);
    m_d->filter.setFilters(filters);
    m_d->narrow();
    if (self)
        emit filterChanged();
}

LayerTableWidget::Filters LayerTableWidget::filter() const
{
    return m_d->filter.filters();
}

LayerTableWidget::Filters LayerTableWidget::availableFilters() const
{
    return m_d->filter.available();
}

void LayerTableWidget::setUsage(const QHash<QString, int> &usage)
{
    m_d->filter.setUsage(usage);
    if (filter() & (UsedFilter | UnusedFilter))
        m_d->narrow();
}

void LayerTableWidget::setPicked(const QStringList &names)
{
    m_d->filter.setPicked(names);
    if (filter().testFlag(PickedFilter))
        m_d->narrow();
}

int LayerTableWidget::shownRowCount() const
{
    return m_d->rows->rowCount() - verticalHeader()->hiddenSectionCount();
}

void LayerTableWidget::setNoMatchText(const QString &text)
{
    m_d->noMatchText = text;
    viewport()->update();
}

QString LayerTableWidget::noMatchText() const
{
    return m_d->noMatchText;
}

/// Has all rows follow a filter. A row that is edited does when its editor is closed.
void LayerTableWidget::Private::narrow()
{
    const QVector<int> edited = editing->rows();
    isRefreshDue = isRefreshDue || !edited.isEmpty();
    hideUnfound(edited);
    tellShown();
}

/// @param exceptions rows that stay as they are
void LayerTableWidget::Private::hideUnfound(const QVector<int> &exceptions)
{
    // Each row would otherwise make the headers measure all rows anew.
    for (QTableView *view : views())
        view->verticalHeader()->setUpdatesEnabled(false);
    for (int row = 0; row < rows->rowCount(); ++row) {
        if (!exceptions.contains(row))
            hideIfUnfound(row);
    }
    for (QTableView *view : views())
        view->verticalHeader()->setUpdatesEnabled(true);
}

void LayerTableWidget::Private::hideIfUnfound(int row)
{
    const bool isHidden = !filter.finds(rows->rows().at(row));
    for (QTableView *view : views()) {
        if (view->isRowHidden(row) != isHidden)
            view->setRowHidden(row, isHidden);
    }
}

/// Whoever hears of it may do with the table what he likes: no rows are being changed.
void LayerTableWidget::Private::tellShown()
{
    const std::pair<int, int> now(q->shownRowCount(), rows->rowCount());
    if (std::exchange(shownAsTold, now) != now)
        emit q->shownRowsChanged();
}

bool LayerTableWidget::Private::hasNoMatch() const
{
    return !noMatchText.isEmpty() && rows->rowCount() > 0 && q->shownRowCount() == 0;
}

void LayerTableWidget::setNaturalOrder(bool natural)
{
    if (natural == naturalOrder())
        return;
    m_d->rows->setNaturalColumn(natural ? NameColumn : -1);
    const RowOrder order = m_d->sortOrder();
    m_d->rows->sort(order.column, order.order);
}

bool LayerTableWidget::naturalOrder() const
{
    return m_d->rows->naturalColumn() == NameColumn;
}

void LayerTableWidget::invertSelection()
{
    QVector<bool> wanted(m_d->rows->rowCount(), true);
    const QVector<int> selected = m_d->selectedRows();
    for (const int row : selected)
        wanted[row] = false;
    m_d->selectShown([&wanted](int row) { return wanted.at(row); });
}

void LayerTableWidget::selectAllShown()
{
    m_d->selectShown([](int) { return true; });
}

void LayerTableWidget::selectUnused()
{
    m_d->selectShown([this](int row) {
        return m_d->filter.isUnused(m_d->rows->rows().at(row).at(NameColumn));
    });
}

/// Selects the rows that are shown and wanted, and nothing else. If the current row is none of them,
/// the next one that is becomes the current one.
void LayerTableWidget::Private::selectShown(const std::function<bool(int row)> &isWanted)
{
    QItemSelection selection;
    QVector<int> selected;
    const int end = rows->rowCount();
    for (int row = 0; row < end; ++row) {
        const int first = row;
        for (; row < end && !q->isRowHidden(row) && isWanted(row); ++row)
            selected.append(row);
        if (row > first)
            selection.select(rows->index(first, NameColumn), rows->index(row - 1, NameColumn));
    }
    q->selectionModel()->select(selection,
                                QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    leaveRowsBeside(selected);
}

} // namespace OvCc
