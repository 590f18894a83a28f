// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerItem.h"

#include "layer/data/LayerFlags.h"
#include "layer/pictures/StatusImages.h"

#include <OvCustomControl/Swatches.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTextBoundaryFinder>

#include <utility>

namespace OvCc {

namespace {

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

struct LayerItem::Private
{
    void showStatus();
    void toggle(int index);

    LayerItem *const q;
    LayerItemData layer = initialLayer();
    QLabel *nameLabel = new QLabel;
    QPushButton *lightButton = createLayerItemButton(lightImage(layer.isOn));
    QPushButton *freezeButton = createLayerItemButton(freezeImage(layer.isFrozen));
    QPushButton *lockButton = createLayerItemButton(lockImage(layer.isLocked));
    QPushButton *colorButton = createLayerItemButton(creatColorPix(layer.color));
    Setter setter = [](int index, const QString &name, bool value) {
        const StatusFlag &flag = statusFlags.at(size_t(index));
        setLayerFlag(findLayer(name), flag.column, value != flag.isInverted);
    };
};

LayerItem::LayerItem(QWidget *parent)
    : QWidget(parent)
    , m_d(new Private{this})
{
    // Set last: a layout that is set before it is filled posts an event to look through per row.
    auto *row = new QHBoxLayout;
    row->setContentsMargins(3, 0, 0, 0);
    row->setSpacing(3);
    row->addWidget(m_d->lightButton);
    row->addWidget(m_d->freezeButton);
    row->addWidget(m_d->lockButton);
    row->addWidget(m_d->colorButton);
    row->addWidget(m_d->nameLabel);
    row->addItem(new QSpacerItem(10, 0));
    setLayout(row);

    // A layer's name is a name, whatever it looks like.
    m_d->nameLabel->setTextFormat(Qt::PlainText);

    connect(m_d->lightButton, &QPushButton::clicked, this, &LayerItem::slotLightChange);
    connect(m_d->freezeButton, &QPushButton::clicked, this, &LayerItem::slotFreezeStatus);
    connect(m_d->lockButton, &QPushButton::clicked, this, &LayerItem::slotLockChange);
    connect(m_d->colorButton, &QPushButton::clicked, this, &LayerItem::slotColorChanged);
}

LayerItem::~LayerItem() = default;

LayerItemData LayerItem::currentLayerData() const
{
    return m_d->layer;
}

void LayerItem::setCurrentLayer(LayerItemData data)
{
    const bool isColorNew = data.color != m_d->layer.color;
    m_d->layer = data;
    m_d->showStatus();
    if (isColorNew)
        m_d->colorButton->setIcon(creatColorPix(m_d->layer.color));
    m_d->nameLabel->setText(m_d->layer.name);
    update();
}

QString LayerItem::layerName() const
{
    return m_d->nameLabel->text();
}

void LayerItem::setLayerName(QString name)
{
    constexpr int mostCharacters = 10;
    if (endOfCharacters(name, mostCharacters) < name.size())
        name = name.left(endOfCharacters(name, mostCharacters - 1)) + QLatin1String("...");
    m_d->nameLabel->setText(name);
}

void LayerItem::slotLightChange()
{
    m_d->toggle(OnStatus);
}

void LayerItem::slotFreezeStatus()
{
    m_d->toggle(FreezeStatus);
}

void LayerItem::slotLockChange()
{
    m_d->toggle(LockStatus);
}

void LayerItem::slotColorChanged() {}

void LayerItem::setSetter(Setter setter)
{
    m_d->setter = std::move(setter);
}

void LayerItem::Private::showStatus()
{
    lightButton->setIcon(lightImage(layer.isOn));
    freezeButton->setIcon(freezeImage(layer.isFrozen));
    lockButton->setIcon(lockImage(layer.isLocked));
}

/// Changes the record, the buttons and the drawing, and reports @p index.
void LayerItem::Private::toggle(int index)
{
    const bool value = !(layer.*statusFlags.at(size_t(index)).value);
    layer.*statusFlags.at(size_t(index)).value = value;
    showStatus();
    const QPointer<LayerItem> guard(q);
    const Setter lasting = setter; // in case that the row goes
    lasting(index, QString(layer.name), value);
    if (guard)
        emit q->statusChanged(index, layer);
}

} // namespace OvCc
