#include "LayerManager.h"

#include "layer/data/ElidedLabel.h"

#include <OvCustomControl/LayerTableWidget.h>
#include <OvCustomControl/SearchLayerEdit.h>
#include <OvCustomControl/Swatches.h>

#include <QHBoxLayout>
#include <QPainter>

namespace OvCc {

namespace {

constexpr int headerHeight = 20;
constexpr int narrowestSearch = 80; // a word, and the button
constexpr QSize tileSize(16, 16);

} // namespace

LayerManager::LayerManager(QWidget *parent)
    : QWidget(parent)
    , m_table(new LayerTableWidget)
    , m_label(new ElidedLabel(tr("Current layer: ") + QLatin1Char('0')))
    , m_searchEdit(new SearchLayerEdit)
{
    setObjectName(QStringLiteral("Layer Manager"));
    setWindowTitle(tr("Layer Manager"));
    loadPixmap();
    m_label->setFixedHeight(headerHeight);
    m_searchEdit->setFixedHeight(headerHeight);
    m_searchEdit->setMinimumWidth(narrowestSearch);

    auto *header = new QWidget;
    auto *headerRow = new QHBoxLayout(header);
    headerRow->setContentsMargins(0, 0, 0, 0);
    headerRow->setSpacing(20);
    headerRow->addWidget(m_label);
    // The field is content with what the name leaves, down to its least width.
    headerRow->addWidget(m_searchEdit, 1);

    setContentsMargins(0, 0, 0, 0);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(2, 2, 2, 2);
    column->setSpacing(1);
    column->addWidget(header);
    column->addWidget(m_table);

    connect(m_table, &LayerTableWidget::updateCurretnLayer, this,
            &LayerManager::slotUpdateLineEdit);
    connect(m_searchEdit, &SearchLayerEdit::searchTextChanged, m_table,
            &LayerTableWidget::slotSearchLayer);
    connect(m_table, &LayerTableWidget::updateLayerCombo, this, &LayerManager::slotLayerChanged);
    connect(m_table, &LayerTableWidget::layerAdded, this, &LayerManager::layerAdded);
    connect(m_table, &LayerTableWidget::layersRemoved, this, &LayerManager::layersRemoved);
    connect(m_table, &LayerTableWidget::layerRenamed, this, &LayerManager::layerRenamed);
}

LayerManager::~LayerManager()
{
    // While this is still a panel: an editor that loses the focus as it goes would send a last
    // signal through what is left of it.
    delete m_table;
}

QSize LayerManager::sizeHint() const
{
    return {300, 500};
}

QPixmap LayerManager::drawIcon(LayerIcons icon, QSize size) const
{
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    const QPoint tile(icon * (tileSize.width() + 1) + 1, 0);
    QPainter(&picture).drawPixmap(QPoint(), m_iconStrip, QRect(tile, tileSize));
    return picture;
}

void LayerManager::slotUpLayerModel()
{
    const QPointer<LayerManager> self(this);
    if (m_table)
        m_table->InitLayerModel();
    if (self && m_table)
        m_table->slotSearchLayer(m_searchEdit->text());
}

void LayerManager::slotLayerChanged()
{
    emit layerManagerChanged();
}

void LayerManager::slotNewLayer()
{
    if (m_table)
        m_table->addLayer();
}

void LayerManager::slotDeleteLayer()
{
    if (m_table)
        m_table->remove();
}

void LayerManager::slotCurrentLayer()
{
    if (m_table)
        m_table->setCurrentLayer();
}

void LayerManager::slotUpdateLineEdit(QString name)
{
    m_label->setText(tr("Current layer: ") + name);
}

void LayerManager::loadPixmap()
{
    m_iconStrip = loadImage(QStringLiteral(":/layertoolbar.bmp"));
}

} // namespace OvCc
