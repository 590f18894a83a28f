// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "layer/table/LayerTablePrivate.h"
#include "layer/table/ViewAccess.h"

#include <OvCustomControl/LayerDelegate.h>

#include <QEvent>
#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>

namespace OvCc {

namespace {

constexpr int layerRowHeight = 22;
constexpr int narrowestColumn = 30;

/// What names that are fitted to their texts leave of the view: enough for the columns "On",
/// "Freeze" and "Lock", and for the border of the names.
constexpr int roomBesideNames = 115;

bool isFrozenColumn(int column)
{
    return column <= NameColumn;
}

} // namespace

void LayerTableWidget::resizeEvent(QResizeEvent *event)
{
    QTableView::resizeEvent(event);
    m_d->placeFrozenView();
}

void LayerTableWidget::paintEvent(QPaintEvent *event)
{
    QTableView::paintEvent(event);
    if (!m_d->hasNoMatch())
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(m_d->frozen->width(), 0, 0, 0),
                     Qt::AlignCenter | Qt::TextWordWrap, m_d->noMatchText);
}

void LayerTableWidget::updateGeometries()
{
    // The frozen view must have something to lie on.
    setColumnHidden(CurrentColumn, false);
    QTableView::updateGeometries();
}

int LayerTableWidget::sizeHintForColumn(int column) const
{
    const bool standsForBoth = isColumnHidden(NameColumn);
    if (column != (standsForBoth ? CurrentColumn : NameColumn))
        return QTableView::sizeHintForColumn(column);
    const int markers = m_d->frozen->columnWidth(CurrentColumn);
    const int room = viewport()->width() - markers - roomBesideNames;
    const int names = qMin(QTableView::sizeHintForColumn(NameColumn), room);
    return qMax(names, narrowestColumn) + (standsForBoth ? markers : 0);
}

QModelIndex LayerTableWidget::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    QModelIndex current = QTableView::moveCursor(action, modifiers);
    // This view knows no way out of a column that it hides.
    if (!current.isValid())
        current = (m_d->frozen->*&ViewAccess::moveCursor)(action, modifiers);
    const int frozenWidth = m_d->frozen->width();
    const int left = visualRect(current).left();
    if (action == MoveLeft && !isFrozenColumn(current.column()) && left < frozenWidth)
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() + left - frozenWidth);
    return current;
}

/// A view asks once when a mouse button is pressed, before the delegate has that, and once more when it
/// is released, to select a row out of those that are.
QItemSelectionModel::SelectionFlags LayerTableWidget::selectionCommand(const QModelIndex &index,
                                                                       const QEvent *event) const
{
    if (event && event->type() == QEvent::MouseButtonPress)
        m_d->editing->forgetPress();
    else if (event && event->type() == QEvent::MouseButtonRelease
             && (m_d->editing->isUsedUp(index) || m_d->awaitsDoubleClick(index)))
        return QItemSelectionModel::NoUpdate;
    return QTableView::selectionCommand(index, event);
}

void LayerTableWidget::scrollTo(const QModelIndex &index, ScrollHint hint)
{
    if (!isFrozenColumn(index.column()))
        QTableView::scrollTo(index, hint);
}

void LayerTableWidget::slotSortIndexChanged(int column, Qt::SortOrder order)
{
    QTableView *other = isFrozenColumn(column) ? this : static_cast<QTableView *>(m_d->frozen);
    other->horizontalHeader()->setSortIndicator(column, order);
}

void LayerTableWidget::updateSectionWidth(int logicalIndex, int oldSize, int newSize)
{
    if (!isFrozenColumn(logicalIndex))
        return;
    // A column that is hidden or shown again does not change what the frozen view shows.
    if (oldSize > 0 && newSize > 0) {
        const int markers = m_d->frozen->columnWidth(CurrentColumn);
        if (logicalIndex == CurrentColumn && columnWidth(NameColumn) == 0)
            m_d->frozen->setColumnWidth(NameColumn, qMax(newSize - markers, narrowestColumn));
        else
            m_d->frozen->setColumnWidth(logicalIndex, newSize);
    }
    m_d->placeFrozenView();
}

void LayerTableWidget::updateSectionHeight(int logicalIndex, int, int newSize)
{
    m_d->frozen->setRowHeight(logicalIndex, newSize);
}

void LayerTableWidget::Private::setUp(QTableView &view)
{
    QHeaderView *header = view.horizontalHeader();
    header->setHighlightSections(false);
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header->setMinimumSectionSize(narrowestColumn);
    header->setSortIndicator(NameColumn, Qt::AscendingOrder);

    QHeaderView *side = view.verticalHeader();
    side->setMinimumSectionSize(layerRowHeight);
    side->setDefaultSectionSize(layerRowHeight);
    side->hide();

    view.setModel(rows);
    view.setSortingEnabled(true);
    view.setShowGrid(false);
    view.setSelectionBehavior(SelectRows);
    view.setEditTriggers(NoEditTriggers);
    view.setVerticalScrollMode(ScrollPerPixel);

    // When rows move, a header puts its hidden rows right one by one and would measure all rows
    // anew after each.
    connect(rows, &QAbstractItemModel::layoutAboutToBeChanged, side,
            [side] { side->setUpdatesEnabled(false); });
    connect(rows, &QAbstractItemModel::layoutChanged, side,
            [side] { side->setUpdatesEnabled(true); });
}

void LayerTableWidget::Private::setUpFrozenView()
{
    q->setHorizontalScrollMode(ScrollPerPixel);
    q->viewport()->stackUnder(frozen);

    frozen->setObjectName(QStringLiteral("frozenTable"));
    frozen->setFrameShape(QFrame::NoFrame);
    frozen->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    frozen->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    frozen->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    for (int column = 0; column < LayerColumnCount; ++column) {
        if (isFrozenColumn(column))
            frozen->setColumnWidth(column, q->columnWidth(column));
        else
            frozen->setColumnHidden(column, true);
    }
    connect(q->horizontalHeader(), &QHeaderView::sectionResized, q,
            &LayerTableWidget::updateSectionWidth);
    connect(frozen->horizontalHeader(), &QHeaderView::sectionResized, q,
            [this] { placeFrozenView(); });
    frozen->show();
    placeFrozenView();
    frozen->setFocus();
    frozen->setCurrentIndex(rows->index(0, NameColumn));
}

void LayerTableWidget::Private::connectViews()
{
    for (QTableView *view : views()) {
        QHeaderView *header = view->horizontalHeader();
        header->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(header, &QWidget::customContextMenuRequested, q,
                &LayerTableWidget::show_contextMenu);
        connect(header, &QHeaderView::sortIndicatorChanged, q,
                &LayerTableWidget::slotSortIndexChanged);
    }
    connect(q->selectionModel(), &QItemSelectionModel::selectionChanged, q,
            [this] { selectionChanged(); });
    QScrollBar *bar = q->verticalScrollBar();
    const QScrollBar *horizontalBar = q->horizontalScrollBar();
    QScrollBar *frozenBar = frozen->verticalScrollBar();
    // What stands in the middle of the view does not scroll.
    connect(horizontalBar, &QScrollBar::valueChanged, q, [this] {
        if (hasNoMatch())
            q->viewport()->update();
    });
    connect(bar, &QScrollBar::valueChanged, frozenBar, &QScrollBar::setValue);
    connect(frozenBar, &QScrollBar::valueChanged, bar, &QScrollBar::setValue);
    connect(
            editing, &TableEditing::editorClosed, q, [this] { followEditor(); },
            Qt::QueuedConnection);
    rowEvents = std::make_unique<RowEvents>(
            views(), RowEvents::Handlers{[this](const QModelIndex &cell) { return open(cell); },
                                         [this] { return opensRowMenu(); },
                                         [this](const QModelIndex &cell, QPoint place) {
                                             showRowMenu(cell, place);
                                         }});
    connect(editing, &TableEditing::added, q, &LayerTableWidget::layerAdded);
    connect(editing, &TableEditing::renamed, q,
            [this](const QPersistentModelIndex &cell, const QString &from, const QString &to) {
                noteRenamed(cell, from, to);
                emit q->layerRenamed(from, to);
            });
    connect(editing->delegate(), &LayerDelegate::updateCurretnLayer, q,
            &LayerTableWidget::updateCurretnLayer);
    connect(editing->delegate(), &LayerDelegate::layerDataChanged, q,
            &LayerTableWidget::slotLayerChanged);
    connect(editing->delegate(), &LayerDelegate::changesBegin, q, &LayerTableWidget::changesBegin);
    connect(editing->delegate(), &LayerDelegate::changesEnd, q, &LayerTableWidget::changesEnd);
    connect(editing->delegate(), &LayerDelegate::layersToggled, q,
            &LayerTableWidget::layersToggled);
}

/// The columns under the frozen view are as wide as it is: without the names, the markers stand for
/// both. So everything else begins right of it, and the border of the names can be dragged.
void LayerTableWidget::Private::placeFrozenView()
{
    const int markers = frozen->columnWidth(CurrentColumn);
    const int names = frozen->columnWidth(NameColumn);
    const bool hasNames = q->columnWidth(NameColumn) > 0;
    if (hasNames)
        q->setColumnWidth(NameColumn, names);
    if (q->columnWidth(CurrentColumn) > 0)
        q->setColumnWidth(CurrentColumn, hasNames ? markers : markers + names);
    frozen->setGeometry(q->verticalHeader()->width() + q->frameWidth(), q->frameWidth(),
                        markers + names, q->viewport()->height() + q->horizontalHeader()->height());
}

} // namespace OvCc
