#include "LayerTableWidget.h"

#include "layer/table/ColumnTable.h"
#include "layer/table/LayerNumbers.h"
#include "layer/table/LayerRows.h"
#include "layer/table/LayoutSettings.h"
#include "layer/table/NamePattern.h"
#include "layer/table/TableEditing.h"
#include "layer/table/ViewAccess.h"

#include <OvCustomControl/FrozenTableWidget.h>
#include <OvCustomControl/LayerAction.h>
#include <OvCustomControl/LayerDelegate.h>
#include <OvCustomControl/OvLayerTableWidget.h>
#include <OvCustomControl/OvLayerUtility.h>

#include <QCursor>
#include <QHeaderView>
#include <QMenu>
#include <QPointer>
#include <QScrollBar>

#include <algorithm>
#include <array>

namespace OvCc {

namespace {

constexpr int layerRowHeight = 22;
constexpr int narrowestColumn = 30;

/// What names that are fitted to their texts leave of the view: enough for the columns "On",
/// "Freeze" and "Lock", and for the border of the names.
constexpr int roomBesideNames = 115;

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

/// As the user reads it. The column of the marker has none.
QString shownTitle(const ColumnTraits &column)
{
    return *column.title ? LayerTableWidget::tr(column.title) : QString();
}

bool isFrozenColumn(int column)
{
    return column <= NameColumn;
}

} // namespace

struct LayerTableWidget::Private
{
    explicit Private(LayerTableWidget *table)
        : q(table)
        , frozen(new FrozenTableWidget(table))
        , rows(new LayerRows(LayerColumnCount, table))
        , rowTemplate(columnTexts(&ColumnTraits::defaultText))
    {
    }

    std::array<QTableView *, 2> views() const { return {q, frozen}; }
    QVector<int> selectedRows() const;
    QString showRows(const QList<QStringList> &read);

    void setUp(QTableView &view);
    void setUpFrozenView();
    void placeFrozenView();
    void connectViews();

    LayerTableWidget *const q;
    FrozenTableWidget *const frozen;
    LayerRows *const rows;
    TableEditing *editing = nullptr;
    QMenu *menu = nullptr;
    QStringList rowTemplate;
    bool isLoading = false;
};

LayerTableWidget::LayerTableWidget(QWidget *parent)
    : QTableView(parent)
    , m_d(new Private(this))
{
    headerList += columnTexts(&ColumnTraits::title);
    for (const ColumnTraits &column : columnTable)
        m_d->rows->setHeaderData(column.column, Qt::Horizontal, shownTitle(column));
    for (QTableView *view : m_d->views())
        m_d->setUp(*view);
    m_d->editing = new TableEditing(*this, *m_d->frozen);
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
    writeSettings();
    // An editor that is still open loses the focus as it goes: nobody is to hear of that any more.
    delete m_d->editing;
}

void LayerTableWidget::InitLayerModel()
{
    if (m_d->isLoading)
        return;
    const QPointer<LayerTableWidget> self(this);
    m_d->isLoading = true;
    QList<QStringList> rows;
    OvLayerUtility().getAllLayerDate(rows);
    if (rows.isEmpty())
        m_d->rows->setRows({});
    else
        emit updateCurretnLayer(m_d->showRows(rows));
    if (self)
        m_d->isLoading = false;
}

/// Returns the name of the current layer; empty if none is.
QString LayerTableWidget::Private::showRows(const QList<QStringList> &read)
{
    if (OvLayerUtility().isModelSpace())
        q->setColumnHidden(ViewportFreezeColumn, true);
    rowTemplate = read.constLast();
    rowTemplate[CurrentColumn] = QStringLiteral("false");
    headerList[0] = QStringLiteral("status");

    QVector<QStringList> sorted = read.toVector();
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const QStringList &left, const QStringList &right) {
                         return left.at(NameColumn) < right.at(NameColumn);
                     });
    const auto current = std::find_if(sorted.cbegin(), sorted.cend(), [](const QStringList &row) {
        return row.at(CurrentColumn) == QLatin1String("true");
    });
    const bool hasCurrent = current != sorted.cend();
    const int currentRow = hasCurrent ? static_cast<int>(current - sorted.cbegin()) : 0;

    const int position = q->verticalScrollBar()->value();
    rows->setRows(sorted);
    q->selectionModel()->setCurrentIndex(rows->index(currentRow, NameColumn),
                                         QItemSelectionModel::ClearAndSelect
                                                 | QItemSelectionModel::Rows);
    for (QTableView *view : views()) {
        view->horizontalHeader()->setSortIndicator(NameColumn, Qt::AscendingOrder);
        view->doItemsLayout();
        view->verticalScrollBar()->setValue(position);
    }
    return hasCurrent ? sorted.at(currentRow).at(NameColumn) : QString();
}

bool LayerTableWidget::insertRowData(int row)
{
    if (!m_d->rows->insertRow(row))
        return false;
    for (int column = 0; column < LayerColumnCount; ++column)
        m_d->rows->item(row, column)->setText(m_d->rowTemplate.at(column));
    return true;
}

void LayerTableWidget::creatActions()
{
    m_d->menu = new QMenu(tr("layerManager"), horizontalHeader());
    const LayoutSettings settings;
    for (const ColumnTraits &column : columnTable) {
        if (column.hiding == Hiding::Never)
            continue;
        auto *action = new LayerAction(shownTitle(column), this);
        action->setObjectName(QLatin1String(column.title));
        settings.restore(*action);
        m_d->menu->addAction(action);
        if (column.hiding == Hiding::OnceSaved)
            action->setEnabled(settings.wasCheckable(*action));
        if (!action->isChecked())
            setColumnHidden(column.column, true);
        connect(action, &LayerAction::layerTriggered, this, &LayerTableWidget::layerColumnVisiable);
    }
}

void LayerTableWidget::writeSettings()
{
    if (!m_d->menu)
        return;
    LayoutSettings settings;
    const QList<QAction *> actions = m_d->menu->actions();
    for (const QAction *action : actions)
        settings.save(*action);
}

FrozenTableWidget *LayerTableWidget::frozenView() const
{
    return m_d->frozen;
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
    insertRowData(row);

    const QModelIndex name = m_d->rows->index(row, NameColumn);
    m_d->editing->expectNew(name);
    m_d->frozen->setFocus();
    m_d->frozen->setCurrentIndex(name);
    m_d->frozen->edit(name);
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
        for (const int row : places)
            names.append(m_d->rows->rows().at(row).at(NameColumn));
        m_d->rows->removeRowsAt(places);
    }
    if (self)
        emit layersRemoved(names);
}

void LayerTableWidget::setCurrentLayer()
{
    const int row = selectedRow();
    if (row < 0)
        return;
    const QVector<QStringList> &rows = m_d->rows->rows();
    const auto marked = std::find_if(rows.cbegin(), rows.cend(), [](const QStringList &texts) {
        return texts.at(CurrentColumn) == currentMarker();
    });
    const int oldRow = marked == rows.cend() ? 0 : static_cast<int>(marked - rows.cbegin());
    if (row == oldRow)
        return;

    const QString name = rows.at(row).at(NameColumn);
    m_d->rows->setData(m_d->rows->index(row, CurrentColumn), currentMarker(), Qt::EditRole);
    m_d->rows->setData(m_d->rows->index(oldRow, CurrentColumn), QString(), Qt::EditRole);
    emit updateCurretnLayer(name);
}

void LayerTableWidget::slotSearchLayer(const QString &text)
{
    const NamePattern pattern(text);
    const std::array<QTableView *, 2> views = m_d->views();
    // Each row would otherwise make the headers measure all rows anew.
    for (QTableView *view : views)
        view->verticalHeader()->setUpdatesEnabled(false);
    for (int row = 0; row < m_d->rows->rowCount(); ++row) {
        const bool isHidden = !pattern.matches(m_d->rows->rows().at(row).at(NameColumn));
        for (QTableView *view : views) {
            if (view->isRowHidden(row) != isHidden)
                view->setRowHidden(row, isHidden);
        }
    }
    for (QTableView *view : views)
        view->verticalHeader()->setUpdatesEnabled(true);
}

void LayerTableWidget::slotLayerChanged()
{
    emit updateLayerCombo();
}

void LayerTableWidget::resizeEvent(QResizeEvent *event)
{
    QTableView::resizeEvent(event);
    m_d->placeFrozenView();
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

void LayerTableWidget::show_contextMenu(const QPoint &)
{
    if (m_d->menu)
        m_d->menu->exec(QCursor::pos());
}

void LayerTableWidget::layerColumnVisiable(int column, bool visible)
{
    setColumnHidden(column, !visible);
}

void LayerTableWidget::Private::setUp(QTableView &view)
{
    QHeaderView *header = view.horizontalHeader();
    header->setSectionsMovable(false);
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
    QScrollBar *bar = q->verticalScrollBar();
    QScrollBar *frozenBar = frozen->verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, frozenBar, &QScrollBar::setValue);
    connect(frozenBar, &QScrollBar::valueChanged, bar, &QScrollBar::setValue);
    connect(editing, &TableEditing::added, q, &LayerTableWidget::layerAdded);
    connect(editing, &TableEditing::renamed, q, &LayerTableWidget::layerRenamed);
    connect(editing->delegate(), &LayerDelegate::updateCurretnLayer, q,
            &LayerTableWidget::updateCurretnLayer);
    connect(editing->delegate(), &LayerDelegate::layerDataChanged, q,
            &LayerTableWidget::slotLayerChanged);
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
