#include "LayerControl.h"

#include "layer/data/SmallImage.h"

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

LayerControl::LayerControl(QWidget *parent)
    : QWidget(parent)
    , m_foldButton(smallButton(foldImage(m_isFolded)))
    , m_layersButton(smallButton(QStringLiteral(":/OVRC_LAYERS.png")))
    , m_combo(new LayerComboBox)
{
    auto *row = new QHBoxLayout(this);
    row->setSpacing(2);
    row->setContentsMargins(1, 2, 1, 2);
    row->addWidget(m_layersButton);
    row->addWidget(m_combo);
    row->addWidget(m_foldButton);

    connect(m_foldButton, &QPushButton::clicked, this, &LayerControl::folderClicked);
}

LayerControl::~LayerControl() = default;

QSize LayerControl::sizeHint() const
{
    return {190, 24};
}

LayerComboBox *LayerControl::layerComboBox() const
{
    return m_combo;
}

void LayerControl::folderClicked()
{
    m_isFolded = !m_isFolded;
    const QPointer<LayerControl> guard(this);
    emit folded(m_isFolded);
    if (guard)
        m_foldButton->setIcon(QIcon(foldImage(m_isFolded)));
}

bool LayerControl::event(QEvent *event)
{
    const bool isHandled = QWidget::event(event);
    if (event->type() == QEvent::Move || event->type() == QEvent::Resize)
        emit geometryChanged();
    return isHandled;
}

} // namespace OvCc
