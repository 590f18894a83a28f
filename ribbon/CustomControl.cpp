// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "CustomControl.h"

#include <OvCustomControl/LayerComboBox.h>

#include <QHBoxLayout>
#include <QPointer>

namespace OvCc {

struct CustomControl::Private
{
    QPointer<LayerComboBox> combo;
    QPointer<QWidget> companion;
};

CustomControl::CustomControl(QWidget *parent)
    : QWidget(parent, Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
    , m_d(new Private{new LayerComboBox(parent), nullptr})
{
    setAttribute(Qt::WA_TranslucentBackground);
    setObjectName(tr("customControl"));
    // Elsewhere its width is fixed; here it fills the strip.
    m_d->combo->setMaximumWidth(QWIDGETSIZE_MAX);
    auto *row = new QHBoxLayout(this);
    row->addWidget(m_d->combo, 0);
    row->setContentsMargins(0, 0, 0, 0);
}

CustomControl::~CustomControl()
{
    delete m_d->combo;
    delete m_d->companion;
}

QSize CustomControl::sizeHint() const
{
    return {210, 20};
}

LayerComboBox *CustomControl::layerComboBox() const
{
    return m_d->combo;
}

void CustomControl::setWidthCompanion(QWidget *companion)
{
    if (companion == m_d->companion)
        return;
    delete m_d->companion;
    m_d->companion = companion;
}

QWidget *CustomControl::widthCompanion() const
{
    return m_d->companion;
}

void CustomControl::adjustGeometry()
{
    if (m_d->companion)
        setFixedWidth(m_d->companion->width() + 165);
}

void CustomControl::enterEvent(EnterEvent *event)
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
