// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "ListWidget.h"

#include <QMouseEvent>

namespace OvCc {

struct ListWidget::Private
{
    bool isPressed = false;
    QPoint pressPosition; ///< on the screen; recorded, and read by nobody yet
};

ListWidget::ListWidget(QWidget *parent)
    : QListWidget(parent)
    , m_d(new Private)
{
}

ListWidget::~ListWidget() = default;

void ListWidget::forgetPress()
{
    m_d->isPressed = false;
    setState(NoState);
}

void ListWidget::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        m_d->isPressed = true;
        m_d->pressPosition = mapToGlobal(event->pos());
    }
    QListWidget::mousePressEvent(event);
}

/// The base class would make a click of it, which is more than the choice of a row.
void ListWidget::mouseReleaseEvent(QMouseEvent *)
{
    const bool wasPressed = m_d->isPressed;
    forgetPress();
    if (wasPressed)
        emit showItem(currentRow());
}

} // namespace OvCc
