// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "layer/table/LayerTablePrivate.h"
#include "layer/table/NamePattern.h"

#include <QHeaderView>

namespace OvCc {

void LayerTableWidget::slotSearchLayer(const QString &text)
{
    m_d->search = text;
    m_d->hideUnfound();
}

/// @param exceptions rows that stay as they are
void LayerTableWidget::Private::hideUnfound(const QVector<int> &exceptions)
{
    const NamePattern pattern(search);
    // Each row would otherwise make the headers measure all rows anew.
    for (QTableView *view : views())
        view->verticalHeader()->setUpdatesEnabled(false);
    for (int row = 0; row < rows->rowCount(); ++row) {
        if (exceptions.contains(row))
            continue;
        const bool isHidden = !pattern.matches(rows->rows().at(row).at(NameColumn));
        for (QTableView *view : views()) {
            if (view->isRowHidden(row) != isHidden)
                view->setRowHidden(row, isHidden);
        }
    }
    for (QTableView *view : views())
        view->verticalHeader()->setUpdatesEnabled(true);
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

void LayerTableWidget::setUsage(const QHash<QString, int> &usage)
{
    m_d->usage = usage;
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
        const QString &name = m_d->rows->rows().at(row).at(NameColumn);
        return m_d->usage && m_d->usage->value(name) == 0;
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
