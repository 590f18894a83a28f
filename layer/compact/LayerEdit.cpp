#include "LayerEdit.h"

#include "layer/data/ElidedLabel.h"
#include "layer/data/StatusImages.h"

#include <OvCustomControl/Swatches.h>

#include <QHBoxLayout>

namespace OvCc {

LayerEdit::LayerEdit(QWidget *parent)
    : QLineEdit(parent)
    , m_nameLabel(new ElidedLabel)
    , m_lightLabel(new QLabel)
    , m_lockLabel(new QLabel)
    , m_freezeLabel(new QLabel)
    , m_colorLabel(new QLabel)
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(3);
    row->addWidget(m_lightLabel);
    row->addWidget(m_freezeLabel);
    row->addWidget(m_lockLabel);
    row->addWidget(m_colorLabel);
    row->addWidget(m_nameLabel);
    row->addStretch();

    setReadOnly(true);
    setContextMenuPolicy(Qt::NoContextMenu);
}

LayerEdit::~LayerEdit() = default;

void LayerEdit::setCurrentLayer(LayerItemData data)
{
    for (int index = 0; index <= 4; ++index)
        setLabelChange(index, data);
}

void LayerEdit::setLabelChange(int index, LayerItemData data)
{
    switch (index) {
    case 0:
        m_lightLabel->setPixmap(lightImage(data.isOn));
        Q_FALLTHROUGH();
    case 1:
        m_freezeLabel->setPixmap(freezeImage(data.isFrozen));
        Q_FALLTHROUGH();
    case 2:
        m_lockLabel->setPixmap(lockImage(data.isLocked));
        break;
    case 3:
        m_colorLabel->setPixmap(creatColorPix(data.color));
        break;
    case 4:
        m_nameLabel->setText(data.name);
        break;
    }
}

} // namespace OvCc
