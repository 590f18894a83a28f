// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerEdit.h"

#include "layer/data/ElidedLabel.h"
#include "layer/pictures/StatusImages.h"

#include <OvCustomControl/Swatches.h>

#include <QHBoxLayout>

namespace OvCc {

struct LayerEdit::Private
{
    QLabel *nameLabel = new ElidedLabel;
    QLabel *lightLabel = new QLabel;
    QLabel *lockLabel = new QLabel;
    QLabel *freezeLabel = new QLabel;
    QLabel *colorLabel = new QLabel;
};

LayerEdit::LayerEdit(QWidget *parent)
    : QLineEdit(parent)
    , m_d(new Private)
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(3);
    row->addWidget(m_d->lightLabel);
    row->addWidget(m_d->freezeLabel);
    row->addWidget(m_d->lockLabel);
    row->addWidget(m_d->colorLabel);
    row->addWidget(m_d->nameLabel);
    row->addStretch();

    setReadOnly(true);
    setContextMenuPolicy(Qt::NoContextMenu);
}

LayerEdit::~LayerEdit() = default;

void LayerEdit::setCurrentLayer(LayerItemData data)
{
    for (int index = OnStatus; index <= NameStatus; ++index)
        setLabelChange(index, data);
}

void LayerEdit::setLabelChange(int index, LayerItemData data)
{
    switch (index) {
    case OnStatus:
        m_d->lightLabel->setPixmap(lightImage(data.isOn));
        Q_FALLTHROUGH();
    case FreezeStatus:
        m_d->freezeLabel->setPixmap(freezeImage(data.isFrozen));
        Q_FALLTHROUGH();
    case LockStatus:
        m_d->lockLabel->setPixmap(lockImage(data.isLocked));
        break;
    case ColorStatus:
        m_d->colorLabel->setPixmap(creatColorPix(data.color));
        break;
    case NameStatus:
        m_d->nameLabel->setText(data.name);
        break;
    }
}

void LayerEdit::showText(const QString &text)
{
    for (QLabel *label : {m_d->lightLabel, m_d->freezeLabel, m_d->lockLabel, m_d->colorLabel})
        label->clear();
    m_d->nameLabel->setText(text);
}

} // namespace OvCc
