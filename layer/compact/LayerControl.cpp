// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerControl.h"

#include "layer/pictures/SmallImage.h"

#include <OvCustomControl/LayerComboBox.h>

#include <QEvent>
#include <QHBoxLayout>
#include <QPointer>
#include <QPushButton>

namespace OvCc {

namespace {

QString foldImage(bool isFolded)
{
    return isFolded ? QStringLiteral(":/ribbonMaximize.png")
                    : QStringLiteral(":/ribbonMinimize.png");
}

QPushButton *smallButton(const QString &image)
{
    auto *button = new QPushButton;
    button->setIcon(smallImage(image));
    button->setFixedSize(16, 16);
    button->setFlat(true);
    return button;
}

} // namespace

struct LayerControl::Private
{
    bool isFolded = true;
    QPushButton *foldButton = smallButton(foldImage(isFolded));
    LayerComboBox *combo = new LayerComboBox;
};

LayerControl::LayerControl(QWidget *parent)
    : QWidget(parent)
    , m_d(new Private)
{
    auto *row = new QHBoxLayout(this);
    row->setSpacing(2);
    row->setContentsMargins(1, 2, 1, 2);
    row->addWidget(smallButton(QStringLiteral(":/OVRC_LAYERS.png")));
    row->addWidget(m_d->combo);
    row->addWidget(m_d->foldButton);

    connect(m_d->foldButton, &QPushButton::clicked, this, &LayerControl::folderClicked);
}

LayerControl::~LayerControl() = default;

QSize LayerControl::sizeHint() const
{
    return {190, 24};
}

LayerComboBox *LayerControl::layerComboBox() const
{
    return m_d->combo;
}

void LayerControl::setFolded(bool isFolded)
{
    if (isFolded != m_d->isFolded)
        folderClicked();
}

bool LayerControl::isFolded() const
{
    return m_d->isFolded;
}

void LayerControl::folderClicked()
{
    m_d->isFolded = !m_d->isFolded;
    const QPointer<LayerControl> guard(this);
    emit folded(m_d->isFolded);
    if (guard)
        m_d->foldButton->setIcon(QIcon(foldImage(m_d->isFolded)));
}

bool LayerControl::event(QEvent *event)
{
    const bool isHandled = QWidget::event(event);
    if (event->type() == QEvent::Move || event->type() == QEvent::Resize)
        emit geometryChanged();
    return isHandled;
}

} // namespace OvCc
