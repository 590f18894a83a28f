#include "ListWidget.h"

#include <QMouseEvent>

namespace OvCc {

ListWidget::ListWidget(QWidget *parent)
    : QListWidget(parent)
{
}

ListWidget::~ListWidget() = default;

void ListWidget::forgetPress()
{
    m_isPressed = false;
    setState(NoState);
}

void ListWidget::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        m_isPressed = true;
        m_pressPosition = mapToGlobal(event->pos());
    }
    QListWidget::mousePressEvent(event);
}

/// The base class would make a click of it, which is more than the choice of a row.
void ListWidget::mouseReleaseEvent(QMouseEvent *)
{
    const bool wasPressed = m_isPressed;
    forgetPress();
    if (wasPressed)
        emit showItem(currentRow());
}

} // namespace OvCc
