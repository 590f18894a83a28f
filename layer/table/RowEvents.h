// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QTableView>

#include <array>
#include <functional>

class QKeyEvent;

namespace OvCc {

/// What the user does to cells beyond what views know of, in views that show parts of one model: a
/// double click or Return opens a cell, a right click or a key wants a menu.
class RowEvents : public QObject
{
    Q_OBJECT

public:
    struct Handlers
    {
        /// @return whether anything is to be opened: Return is used up then
        std::function<bool(const QModelIndex &cell)> open;

        /// Whether there is a menu: otherwise the event goes where it would have gone.
        std::function<bool()> hasMenu;

        /// @param place on the screen
        std::function<void(const QModelIndex &cell, QPoint place)> showMenu;
    };

    /// The views live longer. They are in the middle of an event when a handler is
    /// called, which is not to delete them then.
    RowEvents(const std::array<QTableView *, 2> &views, Handlers handlers);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool isUsedUp(const QTableView &view, const QKeyEvent &key) const;
    bool showMenu(const QModelIndex &cell, QPoint place) const;
    bool showMenuAtCurrent() const;

    const std::array<QTableView *, 2> m_views;
    const Handlers m_handlers;
};

} // namespace OvCc
