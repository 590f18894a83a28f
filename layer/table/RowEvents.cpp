// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "RowEvents.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>

#include <utility>

namespace OvCc {

RowEvents::RowEvents(const std::array<QTableView *, 2> &views, Handlers handlers)
    : m_views(views)
    , m_handlers(std::move(handlers))
{
    for (QTableView *view : m_views) {
        view->installEventFilter(this);
        view->viewport()->installEventFilter(this);
    }
}

/// Views get keys, and their viewports what the mouse does.
bool RowEvents::eventFilter(QObject *watched, QEvent *event)
{
    for (const QTableView *view : m_views) {
        if (watched == view->viewport() && event->type() == QEvent::MouseButtonDblClick) {
            const auto *mouse = static_cast<QMouseEvent *>(event);
            if (mouse->button() == Qt::LeftButton && mouse->modifiers() == Qt::NoModifier)
                m_handlers.open(view->indexAt(mouse->pos()));
        } else if (watched == view->viewport() && event->type() == QEvent::ContextMenu) {
            const auto *menu = static_cast<QContextMenuEvent *>(event);
            return showMenu(view->indexAt(menu->pos()), menu->globalPos());
        } else if (watched == view && event->type() == QEvent::ContextMenu) {
            // One of the mouse has been at the viewport before.
            return static_cast<QContextMenuEvent *>(event)->reason() == QContextMenuEvent::Keyboard
                   && showMenuAtCurrent();
        } else if (watched == view && event->type() == QEvent::KeyPress) {
            return isUsedUp(*view, *static_cast<QKeyEvent *>(event));
        }
    }
    return false;
}

bool RowEvents::isUsedUp(const QTableView &view, const QKeyEvent &key) const
{
    const Qt::KeyboardModifiers modifiers = key.modifiers() & ~Qt::KeypadModifier;
    // Held down, it would answer what it opens.
    if ((key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) && modifiers == Qt::NoModifier)
        return !key.isAutoRepeat() && m_handlers.open(view.currentIndex());
    // Of the two keys for a menu this is the one of which window systems tell nothing else.
    return key.key() == Qt::Key_F10 && modifiers == Qt::ShiftModifier && showMenuAtCurrent();
}

/// @return false if there is none
bool RowEvents::showMenu(const QModelIndex &cell, QPoint place) const
{
    if (!cell.isValid() || !m_handlers.hasMenu())
        return false;
    m_handlers.showMenu(cell, place);
    return true;
}

bool RowEvents::showMenuAtCurrent() const
{
    const QModelIndex cell = m_views.front()->currentIndex();
    if (!cell.isValid() || m_views.front()->isRowHidden(cell.row()) || !m_handlers.hasMenu())
        return false;
    QTableView *view =
            m_views.back()->isColumnHidden(cell.column()) ? m_views.front() : m_views.back();
    view->scrollTo(cell);
    const QRect place = view->visualRect(cell) & view->viewport()->rect();
    return showMenu(cell, view->viewport()->mapToGlobal(place.bottomLeft()));
}

} // namespace OvCc
