#include "CustomControl.h"

#include <OvCustomControl/LayerComboBox.h>

#include <QHBoxLayout>

namespace OvCc {

CustomControl::CustomControl(QWidget *parent)
    : QWidget(parent, Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
    , m_combo(new LayerComboBox(parent))
{
    setAttribute(Qt::WA_TranslucentBackground);
    setObjectName(tr("customControl"));
    // Elsewhere its width is fixed; here it fills the strip.
    m_combo->setMaximumWidth(QWIDGETSIZE_MAX);
    auto *row = new QHBoxLayout(this);
    row->addWidget(m_combo, 0);
    row->setContentsMargins(0, 0, 0, 0);
}

CustomControl::~CustomControl()
{
    delete m_combo;
    delete m_companion;
}

QSize CustomControl::sizeHint() const
{
    return {210, 20};
}

LayerComboBox *CustomControl::layerComboBox() const
{
    return m_combo;
}

void CustomControl::setWidthCompanion(QWidget *companion)
{
    if (companion == m_companion)
        return;
    delete m_companion;
    m_companion = companion;
}

QWidget *CustomControl::widthCompanion() const
{
    return m_companion;
}

void CustomControl::adjustGeometry()
{
    if (m_companion)
        setFixedWidth(m_companion->width() + 165);
}

void CustomControl::enterEvent(QEvent *event)
{
    emit enter(true);
    QWidget::enterEvent(event);
}

void CustomControl::leaveEvent(QEvent *event)
{
    emit enter(false);
    QWidget::leaveEvent(event);
}

} // namespace OvCc
