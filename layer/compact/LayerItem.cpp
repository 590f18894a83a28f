#include "LayerItem.h"

#include "layer/data/StatusImages.h"

#include <OvCustomControl/OvLayerUtility.h>
#include <OvCustomControl/Swatches.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTextBoundaryFinder>

namespace OvCc {

namespace {

/// What statusChanged() calls the three states.
enum StatusIndex { LightIndex, FreezeIndex, LockIndex };

/// The record by its name in the string of statusChanged(), where spies and queued
/// connections look for it.
void registerRecord()
{
    qRegisterMetaType<LayerItemData>("LayerItemData");
}
Q_CONSTRUCTOR_FUNCTION(registerRecord)

LayerItemData initialLayer()
{
    LayerItemData layer;
    layer.isOn = true;
    layer.color = Qt::white;
    layer.name = QStringLiteral("layer0");
    return layer;
}

/// The position in @p text behind its first @p count characters; all of it if it has no more.
int endOfCharacters(const QString &text, int count)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    int end = 0;
    for (int character = 0; character < count && end < text.size(); ++character)
        end = finder.toNextBoundary();
    return end;
}

} // namespace

LayerItem::LayerItem(QWidget *parent)
    : QWidget(parent)
    , m_layer(initialLayer())
    , m_nameLabel(new QLabel)
    , m_lightButton(createLayerItemButton(lightImage(m_layer.isOn)))
    , m_freezeButton(createLayerItemButton(freezeImage(m_layer.isFrozen)))
    , m_lockButton(createLayerItemButton(lockImage(m_layer.isLocked)))
    , m_colorButton(createLayerItemButton(creatColorPix(m_layer.color)))
{
    // Set last: a layout that is set before it is filled posts an event to look through per row.
    auto *row = new QHBoxLayout;
    row->setContentsMargins(3, 0, 0, 0);
    row->setSpacing(3);
    row->addWidget(m_lightButton);
    row->addWidget(m_freezeButton);
    row->addWidget(m_lockButton);
    row->addWidget(m_colorButton);
    row->addWidget(m_nameLabel);
    row->addItem(new QSpacerItem(10, 0));
    setLayout(row);

    // A layer's name is a name, whatever it looks like.
    m_nameLabel->setTextFormat(Qt::PlainText);

    connect(m_lightButton, &QPushButton::clicked, this, &LayerItem::slotLightChange);
    connect(m_freezeButton, &QPushButton::clicked, this, &LayerItem::slotFreezeStatus);
    connect(m_lockButton, &QPushButton::clicked, this, &LayerItem::slotLockChange);
    connect(m_colorButton, &QPushButton::clicked, this, &LayerItem::slotColorChanged);
}

LayerItem::~LayerItem() = default;

LayerItemData LayerItem::currentLayerData() const
{
    return m_layer;
}

void LayerItem::setCurrentLayer(LayerItemData data)
{
    const bool isColorNew = data.color != m_layer.color;
    m_layer = data;
    showStatus();
    if (isColorNew)
        m_colorButton->setIcon(creatColorPix(m_layer.color));
    m_nameLabel->setText(m_layer.name);
    update();
}

QString LayerItem::layerName() const
{
    return m_nameLabel->text();
}

void LayerItem::setLayerName(QString name)
{
    constexpr int mostCharacters = 10;
    if (endOfCharacters(name, mostCharacters) < name.size())
        name = name.left(endOfCharacters(name, mostCharacters - 1)) + QLatin1String("...");
    m_nameLabel->setText(name);
}

void LayerItem::slotLightChange()
{
    m_layer.isOn = !m_layer.isOn;
    change(LightIndex, &OvLayerUtility::setLayerOff, m_layer.isOn);
}

void LayerItem::slotFreezeStatus()
{
    m_layer.isFrozen = !m_layer.isFrozen;
    change(FreezeIndex, &OvLayerUtility::setLayerFrozen, m_layer.isFrozen);
}

void LayerItem::slotLockChange()
{
    m_layer.isLocked = !m_layer.isLocked;
    change(LockIndex, &OvLayerUtility::setLayerLock, m_layer.isLocked);
}

void LayerItem::slotColorChanged() {}

void LayerItem::showStatus()
{
    m_lightButton->setIcon(lightImage(m_layer.isOn));
    m_freezeButton->setIcon(freezeImage(m_layer.isFrozen));
    m_lockButton->setIcon(lockImage(m_layer.isLocked));
}

/// Brings buttons and drawing in step with the record, by @p set with @p value, and reports @p index.
void LayerItem::change(int index, void (OvLayerUtility::*set)(QString, bool), bool value)
{
    showStatus();
    const QPointer<LayerItem> guard(this);
    (OvLayerUtility().*set)(m_layer.name, value);
    if (guard)
        emit statusChanged(index, m_layer);
}

} // namespace OvCc
