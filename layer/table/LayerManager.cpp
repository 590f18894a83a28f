// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerManager.h"

#include "layer/data/ElidedLabel.h"
#include "layer/table/FilterButton.h"

#include <OvCustomControl/LayerTableWidget.h>
#include <OvCustomControl/SearchLayerEdit.h>
#include <OvCustomControl/Swatches.h>

#include <QHBoxLayout>
#include <QPainter>
#include <QPointer>

#include <functional>

namespace OvCc {

namespace {

constexpr int headerHeight = 20;
constexpr int narrowestSearch = 80; // a word, and the button
constexpr QSize tileSize(16, 16);

} // namespace

struct LayerManager::Private
{
    bool refresh(const std::function<bool(LayerTableWidget &)> &refreshTable);
    void passSignals();
    void makeFilter();
    void showCount();

    LayerManager *const q;
    QPixmap iconStrip{};
    const QPointer<LayerTableWidget> table = new LayerTableWidget;
    QLabel *const label = new ElidedLabel;
    SearchLayerEdit *const searchEdit = new SearchLayerEdit;
    QHBoxLayout *const finding = new QHBoxLayout;
    FilterButton *filterButton = nullptr; ///< made when it is wanted
    QLabel *countLabel = nullptr;         ///< with it
};

LayerManager::LayerManager(QWidget *parent)
    : QWidget(parent)
    , m_d(new Private{this})
{
    setObjectName(QStringLiteral("Layer Manager"));
    setWindowTitle(tr("Layer Manager"));
    loadPixmap();
    slotUpdateLineEdit(QStringLiteral("0"));
    m_d->label->setFixedHeight(headerHeight);
    m_d->searchEdit->setFixedHeight(headerHeight);
    m_d->searchEdit->setMinimumWidth(narrowestSearch);

    auto *header = new QWidget;
    auto *headerRow = new QHBoxLayout(header);
    headerRow->setContentsMargins(0, 0, 0, 0);
    headerRow->setSpacing(20);
    headerRow->addWidget(m_d->label);
    // The field is content with what the name leaves, down to its least width.
    headerRow->addLayout(m_d->finding, 1);
    m_d->finding->setSpacing(4);
    m_d->finding->addWidget(m_d->searchEdit, 1);

    setContentsMargins(0, 0, 0, 0);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(2, 2, 2, 2);
    column->setSpacing(1);
    column->addWidget(header);
    column->addWidget(m_d->table);

    m_d->passSignals();
}

/// The panel speaks for its table.
void LayerManager::Private::passSignals()
{
    connect(table, &LayerTableWidget::updateCurretnLayer, q, &LayerManager::slotUpdateLineEdit);
    connect(searchEdit, &SearchLayerEdit::searchTextChanged, table,
            &LayerTableWidget::slotSearchLayer);
    connect(table, &LayerTableWidget::updateLayerCombo, q, &LayerManager::slotLayerChanged);
    connect(table, &LayerTableWidget::layerAdded, q, &LayerManager::layerAdded);
    connect(table, &LayerTableWidget::layersRemoved, q, &LayerManager::layersRemoved);
    connect(table, &LayerTableWidget::layerRenamed, q, &LayerManager::layerRenamed);
    connect(table, &LayerTableWidget::updateCurretnLayer, q, &LayerManager::updateCurretnLayer);
    connect(table, &LayerTableWidget::currentLayerRequested, q,
            &LayerManager::currentLayerRequested);
    connect(table, &LayerTableWidget::changesBegin, q, &LayerManager::changesBegin);
    connect(table, &LayerTableWidget::changesEnd, q, &LayerManager::changesEnd);
    connect(table, &LayerTableWidget::layersToggled, q, &LayerManager::layersToggled);
    connect(table, &LayerTableWidget::visibilityFollowsSelectionChanged, q,
            &LayerManager::visibilityFollowsSelectionChanged);
    connect(table, &LayerTableWidget::colorRequested, q, &LayerManager::colorRequested);
    connect(table, &LayerTableWidget::linetypeRequested, q, &LayerManager::linetypeRequested);
    connect(table, &LayerTableWidget::lineWeightRequested, q, &LayerManager::lineWeightRequested);
    connect(table, &LayerTableWidget::descriptionRequested, q, &LayerManager::descriptionRequested);
    connect(table, &LayerTableWidget::mergeRequested, q, &LayerManager::mergeRequested);
}

LayerManager::~LayerManager()
{
    // While this is still a panel: an editor that loses the focus as it goes would send a last
    // signal through what is left of it.
    delete m_d->table;
}

QSize LayerManager::sizeHint() const
{
    return {300, 500};
}

LayerTableWidget *LayerManager::table() const
{
    return m_d->table;
}

SearchLayerEdit *LayerManager::searchEdit() const
{
    return m_d->searchEdit;
}

void LayerManager::setFilterVisible(bool visible)
{
    if (visible == isFilterVisible() || !m_d->table)
        return;
    if (!m_d->filterButton)
        m_d->makeFilter();
    m_d->filterButton->setVisible(visible);
    m_d->countLabel->setVisible(visible);
    m_d->table->setNoMatchText(visible ? tr("No match") : QString());
    if (!visible)
        m_d->table->setFilter(LayerTableWidget::NoFilter);
}

bool LayerManager::isFilterVisible() const
{
    return m_d->filterButton && !m_d->filterButton->isHidden();
}

void LayerManager::Private::makeFilter()
{
    countLabel = new QLabel;
    countLabel->setObjectName(QStringLiteral("filterCount"));
    countLabel->setToolTip(tr("Layers shown"));
    countLabel->setFixedHeight(headerHeight);
    filterButton = new FilterButton(table);
    filterButton->setFixedHeight(headerHeight);
    finding->addWidget(countLabel);
    finding->addWidget(filterButton);
    setTabOrder(searchEdit, filterButton);
    connect(table, &LayerTableWidget::shownRowsChanged, q, [this] { showCount(); });
    showCount();
}

void LayerManager::Private::showCount()
{
    countLabel->setText(tr("%1 of %2").arg(table->shownRowCount()).arg(table->model()->rowCount()));
}

void LayerManager::setUsage(const QHash<QString, int> &usage)
{
    if (m_d->table)
        m_d->table->setUsage(usage);
}

void LayerManager::setPicked(const QStringList &names)
{
    if (m_d->table)
        m_d->table->setPicked(names);
}

QPixmap LayerManager::drawIcon(LayerIcons icon, QSize size) const
{
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    const QPoint tile(icon * (tileSize.width() + 1) + 1, 0);
    QPainter(&picture).drawPixmap(QPoint(), m_d->iconStrip, QRect(tile, tileSize));
    return picture;
}

bool LayerManager::visibilityFollowsSelection() const
{
    return m_d->table && m_d->table->visibilityFollowsSelection();
}

void LayerManager::setVisibilityFollowsSelection(bool follows)
{
    if (m_d->table)
        m_d->table->setVisibilityFollowsSelection(follows);
}

void LayerManager::setLinetypes(const QStringList &linetypes)
{
    if (m_d->table)
        m_d->table->setLinetypes(linetypes);
}

void LayerManager::slotUpLayerModel()
{
    const QPointer<LayerManager> self(this);
    if (m_d->table)
        m_d->table->InitLayerModel();
    if (self && m_d->table)
        m_d->table->slotSearchLayer(m_d->searchEdit->text());
}

bool LayerManager::refresh()
{
    return m_d->refresh([](LayerTableWidget &table) { return table.refresh(); });
}

bool LayerManager::refreshLayers(const QStringList &names)
{
    return m_d->refresh([&names](LayerTableWidget &table) { return table.refreshLayers(names); });
}

bool LayerManager::showOtherDrawing()
{
    return m_d->refresh([](LayerTableWidget &table) { return table.showOtherDrawing(); });
}

/// The panel may be gone at the end.
bool LayerManager::Private::refresh(const std::function<bool(LayerTableWidget &)> &refreshTable)
{
    if (!table)
        return false;
    const QPointer<LayerManager> panel(q);
    const bool isTableOther = refreshTable(*table);
    if (!panel || !table)
        return isTableOther;
    // The table told its first current layer before there was a label.
    const QString before = label->text();
    q->slotUpdateLineEdit(table->currentLayer());
    return isTableOther || label->text() != before;
}

void LayerManager::slotLayerChanged()
{
    emit layerManagerChanged();
}

void LayerManager::newLayer()
{
    if (m_d->table)
        m_d->table->addLayer();
}

void LayerManager::deleteLayers()
{
    if (m_d->table)
        m_d->table->remove();
}

void LayerManager::makeCurrent()
{
    if (m_d->table)
        m_d->table->setCurrentLayer();
}

void LayerManager::renameLayer()
{
    if (m_d->table)
        m_d->table->renameLayer();
}

void LayerManager::slotNewLayer()
{
    newLayer();
}

void LayerManager::slotDeleteLayer()
{
    deleteLayers();
}

void LayerManager::slotCurrentLayer()
{
    makeCurrent();
}

void LayerManager::slotUpdateLineEdit(QString name)
{
    m_d->label->setText(tr("Current layer: ") + name);
}

void LayerManager::loadPixmap()
{
    m_d->iconStrip = loadImage(QStringLiteral(":/layertoolbar.bmp"));
}

} // namespace OvCc
