#include "LayerTableWidget.h"

#include "layer/table/ColumnTable.h"
#include "layer/table/LayerNumbers.h"
#include "layer/table/LayerRows.h"
#include "layer/table/LayoutSettings.h"
#include "layer/table/NamePattern.h"
#include "layer/table/TableEditing.h"

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

LayerTableWidget::LayerTableWidget(QWidget *parent)
    : QTableView(parent)
    , m_frozen(new FrozenTableWidget(this))
    , m_rows(new LayerRows(LayerColumnCount, this))
    , m_rowTemplate(columnTexts(&ColumnTraits::defaultText))
{
    headerList += columnTexts(&ColumnTraits::title);
    for (const ColumnTraits &column : columnTable)
        m_rows->setHeaderData(column.column, Qt::Horizontal, shownTitle(column));
    setUpView(*this);
    setUpView(*m_frozen);
    m_editing = new TableEditing(*this, *m_frozen);
    InitLayerModel();

    for (const ColumnTraits &column : columnTable) {
        if (column.width > 0)
            setColumnWidth(column.column, column.width);
    }
    setUpFrozenView();
    creatActions();
    setColumnHidden(ViewportFreezeColumn, true);

    for (QTableView *view :
         {static_cast<QTableView *>(this), static_cast<QTableView *>(m_frozen)}) {
        QHeaderView *header = view->horizontalHeader();
        header->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(header, &QWidget::customContextMenuRequested, this,
                &LayerTableWidget::show_contextMenu);
        connect(header, &QHeaderView::sortIndicatorChanged, this,
                &LayerTableWidget::slotSortIndexChanged);
    }
    connect(verticalScrollBar(), &QScrollBar::valueChanged, m_frozen->verticalScrollBar(),
            &QScrollBar::setValue);
    connect(m_frozen->verticalScrollBar(), &QScrollBar::valueChanged, verticalScrollBar(),
            &QScrollBar::setValue);
    connect(m_editing, &TableEditing::added, this, &LayerTableWidget::layerAdded);
    connect(m_editing, &TableEditing::renamed, this, &LayerTableWidget::layerRenamed);
    connect(m_editing->delegate(), &LayerDelegate::updateCurretnLayer, this,
            &LayerTableWidget::updateCurretnLayer);
    connect(m_editing->delegate(), &LayerDelegate::layerDataChanged, this,
            &LayerTableWidget::slotLayerChanged);
}

LayerTableWidget::~LayerTableWidget()
{
    writeSettings();
    // An editor that is still open loses the focus as it goes: nobody is to hear of that any more.
    delete m_editing;
}

void LayerTableWidget::InitLayerModel()
{
    if (m_isLoading)
        return;
    const QPointer<LayerTableWidget> self(this);
    m_isLoading = true;
    QList<QStringList> rows;
    OvLayerUtility().getAllLayerDate(rows);
    if (rows.isEmpty())
        m_rows->setRows({});
    else
        emit updateCurretnLayer(showRows(rows));
    if (self)
        m_isLoading = false;
}

/// Returns the name of the current layer; empty if none is.
QString LayerTableWidget::showRows(const QList<QStringList> &read)
{
    if (OvLayerUtility().isModelSpace())
        setColumnHidden(ViewportFreezeColumn, true);
    m_rowTemplate = read.constLast();
    m_rowTemplate[CurrentColumn] = QStringLiteral("false");
    headerList[0] = QStringLiteral("status");

    QVector<QStringList> rows = read.toVector();
    std::stable_sort(rows.begin(), rows.end(),
                     [](const QStringList &left, const QStringList &right) {
                         return left.at(NameColumn) < right.at(NameColumn);
                     });
    const auto current = std::find_if(rows.cbegin(), rows.cend(), [](const QStringList &row) {
        return row.at(CurrentColumn) == QLatin1String("true");
    });
    const bool hasCurrent = current != rows.cend();
    const int currentRow = hasCurrent ? static_cast<int>(current - rows.cbegin()) : 0;

    const int position = verticalScrollBar()->value();
    m_rows->setRows(rows);
    selectionModel()->setCurrentIndex(m_rows->index(currentRow, NameColumn),
                                      QItemSelectionModel::ClearAndSelect
                                              | QItemSelectionModel::Rows);
    for (QTableView *view :
         {static_cast<QTableView *>(this), static_cast<QTableView *>(m_frozen)}) {
        view->horizontalHeader()->setSortIndicator(NameColumn, Qt::AscendingOrder);
        view->doItemsLayout();
        view->verticalScrollBar()->setValue(position);
    }
    return hasCurrent ? rows.at(currentRow).at(NameColumn) : QString();
}

bool LayerTableWidget::insertRowData(int row)
{
    if (!m_rows->insertRow(row))
        return false;
    for (int column = 0; column < m_rows->columnCount(); ++column)
        m_rows->setData(m_rows->index(row, column), m_rowTemplate.at(column), Qt::EditRole);
    return true;
}

void LayerTableWidget::creatActions()
{
    m_menu = new QMenu(tr("layerManager"), horizontalHeader());
    const LayoutSettings settings;
    for (const ColumnTraits &column : columnTable) {
        if (column.hiding == Hiding::Never)
            continue;
        auto *action = new LayerAction(shownTitle(column), this);
        action->setObjectName(QLatin1String(column.title));
        settings.restore(*action);
        m_menu->addAction(action);
        if (column.hiding == Hiding::OnceSaved)
            action->setEnabled(settings.wasCheckable(*action));
        if (!action->isChecked())
            setColumnHidden(column.column, true);
        connect(action, &LayerAction::layerTriggered, this, &LayerTableWidget::layerColumnVisiable);
    }
}

void LayerTableWidget::writeSettings()
{
    if (!m_menu)
        return;
    LayoutSettings settings;
    const QList<QAction *> actions = m_menu->actions();
    for (const QAction *action : actions)
        settings.save(*action);
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
    m_editing->finish();
    if (!self)
        return;
    const int row = m_rows->rowCount();
    m_layerNumbers = layerNumbers(m_rows->rows());
    const int number = row == 0 ? 0 : firstFreeNumber(m_layerNumbers);
    m_rowTemplate[NameColumn] = QStringLiteral("Layer%1").arg(number);
    insertRowData(row);

    const QModelIndex name = m_rows->index(row, NameColumn);
    m_editing->expectNew(name);
    m_frozen->setFocus();
    m_frozen->setCurrentIndex(name);
    m_frozen->edit(name);
}

void LayerTableWidget::remove()
{
    const QVector<int> places = selectedRows();
    if (places.isEmpty())
        return;
    const QPointer<LayerTableWidget> self(this);
    QStringList names;
    {
        // Who hears of a name that is settled by this is not to come between.
        const TableEditing::Hold hold(*m_editing);
        m_editing->finish();
        for (const int row : places)
            names.append(m_rows->rows().at(row).at(NameColumn));
        m_rows->removeRowsAt(places);
    }
    if (self)
        emit layersRemoved(names);
}

void LayerTableWidget::setCurrentLayer()
{
    const int row = selectedRow();
    if (row < 0)
        return;
    const QVector<QStringList> &rows = m_rows->rows();
    const auto marked = std::find_if(rows.cbegin(), rows.cend(), [](const QStringList &texts) {
        return texts.at(CurrentColumn) == currentMarker();
    });
    const int oldRow = marked == rows.cend() ? 0 : static_cast<int>(marked - rows.cbegin());
    if (row == oldRow)
        return;

    const QString name = rows.at(row).at(NameColumn);
    m_rows->setData(m_rows->index(row, CurrentColumn), currentMarker(), Qt::EditRole);
    m_rows->setData(m_rows->index(oldRow, CurrentColumn), QString(), Qt::EditRole);
    emit updateCurretnLayer(name);
}

void LayerTableWidget::slotSearchLayer(const QString &text)
{
    const NamePattern pattern(text);
    const std::array<QTableView *, 2> views{this, m_frozen};
    // Each row would otherwise make the headers measure all rows anew.
    for (QTableView *view : views)
        view->verticalHeader()->setUpdatesEnabled(false);
    for (int row = 0; row < m_rows->rowCount(); ++row) {
        const bool isHidden = !pattern.matches(m_rows->rows().at(row).at(NameColumn));
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
    placeFrozenView();
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
    const int markers = m_frozen->columnWidth(CurrentColumn);
    const int room = viewport()->width() - markers - roomBesideNames;
    const int names = qMin(QTableView::sizeHintForColumn(NameColumn), room);
    return qMax(names, narrowestColumn) + (standsForBoth ? markers : 0);
}

QModelIndex LayerTableWidget::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    QModelIndex current = QTableView::moveCursor(action, modifiers);
    // This view knows no way out of a column that it hides.
    if (!current.isValid())
        current = m_frozen->moveCursor(action, modifiers);
    const int frozenWidth = m_frozen->width();
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
    QTableView *other = isFrozenColumn(column) ? this : static_cast<QTableView *>(m_frozen);
    other->horizontalHeader()->setSortIndicator(column, order);
}

void LayerTableWidget::updateSectionWidth(int logicalIndex, int oldSize, int newSize)
{
    if (!isFrozenColumn(logicalIndex))
        return;
    // A column that is hidden or shown again does not change what the frozen view shows.
    if (oldSize > 0 && newSize > 0) {
        const int markers = m_frozen->columnWidth(CurrentColumn);
        if (logicalIndex == CurrentColumn && columnWidth(NameColumn) == 0)
            m_frozen->setColumnWidth(NameColumn, qMax(newSize - markers, narrowestColumn));
        else
            m_frozen->setColumnWidth(logicalIndex, newSize);
    }
    placeFrozenView();
}

void LayerTableWidget::updateSectionHeight(int logicalIndex, int, int newSize)
{
    m_frozen->setRowHeight(logicalIndex, newSize);
}

void LayerTableWidget::show_contextMenu(const QPoint &)
{
    if (m_menu)
        m_menu->exec(QCursor::pos());
}

void LayerTableWidget::layerColumnVisiable(int column, bool visible)
{
    setColumnHidden(column, !visible);
}

void LayerTableWidget::setUpView(QTableView &view)
{
    QHeaderView *header = view.horizontalHeader();
    header->setSectionsMovable(false);
    header->setHighlightSections(false);
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header->setMinimumSectionSize(narrowestColumn);
    header->setSortIndicator(NameColumn, Qt::AscendingOrder);

    QHeaderView *rows = view.verticalHeader();
    rows->setMinimumSectionSize(layerRowHeight);
    rows->setDefaultSectionSize(layerRowHeight);
    rows->hide();

    view.setModel(m_rows);
    view.setSortingEnabled(true);
    view.setShowGrid(false);
    view.setSelectionBehavior(SelectRows);
    view.setEditTriggers(NoEditTriggers);
    view.setVerticalScrollMode(ScrollPerPixel);

    // When rows move, a header puts its hidden rows right one by one and would measure all rows
    // anew after each.
    connect(m_rows, &QAbstractItemModel::layoutAboutToBeChanged, rows,
            [rows] { rows->setUpdatesEnabled(false); });
    connect(m_rows, &QAbstractItemModel::layoutChanged, rows,
            [rows] { rows->setUpdatesEnabled(true); });
}

void LayerTableWidget::setUpFrozenView()
{
    setHorizontalScrollMode(ScrollPerPixel);
    viewport()->stackUnder(m_frozen);

    m_frozen->setObjectName(QStringLiteral("frozenTable"));
    m_frozen->setFrameShape(QFrame::NoFrame);
    m_frozen->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_frozen->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_frozen->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    for (int column = 0; column < LayerColumnCount; ++column) {
        if (isFrozenColumn(column))
            m_frozen->setColumnWidth(column, columnWidth(column));
        else
            m_frozen->setColumnHidden(column, true);
    }
    connect(horizontalHeader(), &QHeaderView::sectionResized, this,
            &LayerTableWidget::updateSectionWidth);
    connect(m_frozen->horizontalHeader(), &QHeaderView::sectionResized, this,
            &LayerTableWidget::placeFrozenView);
    m_frozen->show();
    placeFrozenView();
    m_frozen->setFocus();
    m_frozen->setCurrentIndex(m_rows->index(0, NameColumn));
}

/// The columns under the frozen view are as wide as it is: without the names, the markers stand for
/// both. So everything else begins right of it, and the border of the names can be dragged.
void LayerTableWidget::placeFrozenView()
{
    const int markers = m_frozen->columnWidth(CurrentColumn);
    const int names = m_frozen->columnWidth(NameColumn);
    const bool hasNames = columnWidth(NameColumn) > 0;
    if (hasNames)
        setColumnWidth(NameColumn, names);
    if (columnWidth(CurrentColumn) > 0)
        setColumnWidth(CurrentColumn, hasNames ? markers : markers + names);
    m_frozen->setGeometry(verticalHeader()->width() + frameWidth(), frameWidth(), markers + names,
                          viewport()->height() + horizontalHeader()->height());
}

/// All selected rows that are shown, ascending.
QVector<int> LayerTableWidget::selectedRows() const
{
    QVector<int> rows;
    const QItemSelection selection = selectionModel()->selection();
    for (const QItemSelectionRange &range : selection) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            if (!isRowHidden(row))
                rows.append(row);
        }
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

} // namespace OvCc
