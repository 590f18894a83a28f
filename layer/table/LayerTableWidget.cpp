// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerTableWidget.h"

#include "layer/table/LayerNumbers.h"
#include "layer/table/LayerTablePrivate.h"

#include <OvCustomControl/OvLayerTableWidget.h>
#include <OvCustomControl/OvLayerUtility.h>

#include <QHeaderView>
#include <QPointer>
#include <QScrollBar>

#include <algorithm>

namespace OvCc {

namespace {

/// What setCurrentLayer() writes into the row of the current layer.
QString currentMarker()
{
    return QLatin1String(currentImages.whenTrue);
}

QStringList columnTexts(const char *ColumnTraits::*text)
{
    QStringList texts;
    for (const ColumnTraits &column : columnTable)
        texts.append(QLatin1String(column.*text));
    return texts;
}

} // namespace

LayerTableWidget::Private::Private(LayerTableWidget *table)
    : q(table)
    , frozen(new FrozenTableWidget(table))
    , rows(new LayerRows(LayerColumnCount, table))
    , rowTemplate(columnTexts(&ColumnTraits::defaultText))
{
}

LayerTableWidget::LayerTableWidget(QWidget *parent)
    : QTableView(parent)
    , m_d(new Private(this))
{
    headerList += columnTexts(&ColumnTraits::title);
    for (const ColumnTraits &column : columnTable)
        m_d->rows->setHeaderData(column.column, Qt::Horizontal, Private::shownTitle(column));
    for (QTableView *view : m_d->views())
        m_d->setUp(*view);
    m_d->editing = new TableEditing(*this, *m_d->frozen);
    connect(this, &LayerTableWidget::updateCurretnLayer, this,
            [this](const QString &name) { m_d->currentLayer = name; });
    InitLayerModel();

    for (const ColumnTraits &column : columnTable) {
        if (column.width > 0)
            setColumnWidth(column.column, column.width);
    }
    m_d->setUpFrozenView();
    creatActions();
    setColumnHidden(ViewportFreezeColumn, true);
    m_d->connectViews();
}

LayerTableWidget::~LayerTableWidget()
{
    m_d->stopFollowing();
    writeSettings();
    // An editor that is still open loses the focus as it goes: nobody is to hear of that any more.
    delete m_d->editing;
}

void LayerTableWidget::InitLayerModel()
{
    if (m_d->isLoading || m_d->isChanging)
        return;
    const QPointer<LayerTableWidget> self(this);
    m_d->forgetOtherDrawing();
    if (!self)
        return;
    m_d->isLoading = true;
    m_d->isChanging = true;
    m_d->isRefreshDue = false;
    m_d->aheadOfDrawing = {};
    m_d->filter.setSearch({});
    QList<QStringList> rows;
    OvLayerUtility().getAllLayerDate(rows);
    const QString current = m_d->showRows(rows);
    m_d->isChanging = false;
    if (!rows.isEmpty())
        emit updateCurretnLayer(current);
    if (!self)
        return;
    m_d->isLoading = false;
    m_d->tellShown();
}

/// Returns the name of the current layer; empty if none is.
QString LayerTableWidget::Private::showRows(const QList<QStringList> &read)
{
    if (read.isEmpty()) {
        rows->setRows({});
        return QString();
    }
    takeOver(read.constLast());
    headerList[0] = QStringLiteral("status");

    QVector<QStringList> sorted;
    sorted.reserve(read.size());
    const RowOrder order = rows->sortedBy(NameColumn, Qt::AscendingOrder);
    const QVector<int> places = order.sorted(read.toVector());
    for (const int row : places)
        sorted.append(read.at(row));
    const auto current = std::find_if(sorted.cbegin(), sorted.cend(), [](const QStringList &row) {
        return row.at(CurrentColumn) == QLatin1String("true");
    });
    const bool hasCurrent = current != sorted.cend();
    const int place = hasCurrent ? static_cast<int>(current - sorted.cbegin()) : 0;

    const int position = q->verticalScrollBar()->value();
    rows->setRows(sorted);
    q->selectionModel()->setCurrentIndex(rows->index(place, NameColumn),
                                         QItemSelectionModel::ClearAndSelect
                                                 | QItemSelectionModel::Rows);
    if (filter.isNarrowing())
        hideUnfound();
    for (QTableView *view : views()) {
        view->horizontalHeader()->setSortIndicator(NameColumn, Qt::AscendingOrder);
        view->doItemsLayout();
        view->verticalScrollBar()->setValue(position);
    }
    currentRow = hasCurrent ? sorted.at(place).at(NameColumn) : QString();
    return currentRow;
}

/// What is not in the rows themselves.
void LayerTableWidget::Private::takeOver(const QStringList &lastRead)
{
    if (OvLayerUtility().isModelSpace())
        q->setColumnHidden(ViewportFreezeColumn, true);
    rowTemplate = lastRead;
    rowTemplate[CurrentColumn] = QStringLiteral("false");
}

bool LayerTableWidget::insertRowData(int row)
{
    const bool isInserted = m_d->insertTemplate(row);
    m_d->tellShown();
    return isInserted;
}

bool LayerTableWidget::Private::insertTemplate(int row)
{
    if (!rows->insertRow(row))
        return false;
    for (int column = 0; column < LayerColumnCount; ++column)
        rows->item(row, column)->setText(rowTemplate.at(column));
    return true;
}

FrozenTableWidget *LayerTableWidget::frozenView() const
{
    return m_d->frozen;
}

QString LayerTableWidget::currentLayer() const
{
    return m_d->currentLayer;
}

void LayerTableWidget::finishEditing()
{
    m_d->editing->finish();
}

int LayerTableWidget::selectedRow() const
{
    const QItemSelection selection = selectionModel()->selection();
    for (auto range = selection.crbegin(); range != selection.crend(); ++range) {
        for (int row = range->bottom(); row >= range->top(); --row) {
            if (!isRowHidden(row))
                return row;
        }
    }
    return -1;
}

void LayerTableWidget::addLayer()
{
    // Who hears of a name that is settled by this may reload the table.
    const QPointer<LayerTableWidget> self(this);
    m_d->editing->finish();
    if (!self)
        return;
    const int row = m_d->rows->rowCount();
    const int number = row == 0 ? 0 : firstFreeNumber(layerNumbers(m_d->rows->rows()));
    m_d->rowTemplate[NameColumn] = QStringLiteral("Layer%1").arg(number);
    m_d->insertTemplate(row);

    m_d->editing->expectNew(m_d->rows->index(row, NameColumn));
    m_d->editName(row);
    if (self)
        m_d->tellShown();
}

void LayerTableWidget::renameLayer()
{
    const QPointer<LayerTableWidget> self(this);
    m_d->editing->finish();
    const int row = self ? selectedRow() : -1;
    if (row >= 0)
        m_d->editName(row);
}

/// As far as is known without asking.
QString LayerTableWidget::Private::nameInDrawing(int row) const
{
    return aheadOfDrawing.renamed.value(rows->index(row, NameColumn),
                                        rows->rows().at(row).at(NameColumn));
}

void LayerTableWidget::Private::noteRenamed(const QPersistentModelIndex &cell, const QString &from,
                                            const QString &to)
{
    const QString inDrawing = aheadOfDrawing.renamed.value(cell, from);
    aheadOfDrawing.renamed.remove(cell);
    if (cell.isValid() && inDrawing != to)
        aheadOfDrawing.renamed.insert(cell, inDrawing);
    // Under both names: the drawing need not follow, or may take the new one back.
    if (isolation && isolation->before.contains(inDrawing))
        isolation->before.insert(to, isolation->before.value(inDrawing));
    if (following && following->layers.contains(inDrawing))
        following->layers.insert(to, *following->layers.constFind(inDrawing));
}

void LayerTableWidget::Private::editName(int row)
{
    const QModelIndex name = rows->index(row, NameColumn);
    frozen->setFocus();
    frozen->setCurrentIndex(name);
    frozen->edit(name);
}

void LayerTableWidget::remove()
{
    const QVector<int> places = m_d->selectedRows();
    if (places.isEmpty())
        return;
    const QPointer<LayerTableWidget> self(this);
    QStringList names;
    {
        // Who hears of a name that is settled by this is not to come between.
        const TableEditing::Hold hold(*m_d->editing);
        m_d->editing->finish();
        QVector<int> order;
        for (int row = 0; row < m_d->rows->rowCount(); ++row) {
            if (!std::binary_search(places.begin(), places.end(), row)) {
                order.append(row);
                continue;
            }
            names.append(m_d->rows->rows().at(row).at(NameColumn));
            m_d->aheadOfDrawing.removed.insert(m_d->nameInDrawing(row));
        }
        m_d->arrange(order);
    }
    if (self)
        emit layersRemoved(names);
    if (self)
        m_d->tellShown();
}

void LayerTableWidget::setCurrentLayer()
{
    const QPointer<LayerTableWidget> self(this);
    m_d->editing->finish();
    const int row = self ? selectedRow() : -1;
    if (row < 0)
        return;
    const QString name = m_d->rows->rows().at(row).at(NameColumn);
    if (m_d->moveMarkerTo(row))
        emit updateCurretnLayer(name);
    if (self)
        emit currentLayerRequested(name);
}

/// @return false if the row counts as that of the current layer already
bool LayerTableWidget::Private::moveMarkerTo(int row)
{
    const QVector<QStringList> &texts = rows->rows();
    const auto marked = std::find_if(texts.cbegin(), texts.cend(), [](const QStringList &each) {
        return each.at(CurrentColumn) == currentMarker();
    });
    const int oldRow = marked == texts.cend() ? 0 : static_cast<int>(marked - texts.cbegin());
    if (row == oldRow)
        return false;
    rows->setData(rows->index(row, CurrentColumn), currentMarker(), Qt::EditRole);
    rows->setData(rows->index(oldRow, CurrentColumn), QString(), Qt::EditRole);
    aheadOfDrawing.marked << texts.at(row).at(NameColumn) << texts.at(oldRow).at(NameColumn);
    return true;
}

void LayerTableWidget::slotLayerChanged()
{
    emit updateLayerCombo();
}

/// All selected rows that are shown, ascending.
QVector<int> LayerTableWidget::Private::selectedRows() const
{
    QVector<int> places;
    const QItemSelection selection = q->selectionModel()->selection();
    for (const QItemSelectionRange &range : selection) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            if (!q->isRowHidden(row))
                places.append(row);
        }
    }
    std::sort(places.begin(), places.end());
    places.erase(std::unique(places.begin(), places.end()), places.end());
    return places;
}

} // namespace OvCc
