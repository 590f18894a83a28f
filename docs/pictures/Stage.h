// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QPixmap>
#include <QWidget>

#include <functional>
#include <initializer_list>

/// A window with the widgets of a picture, one below the other, and a margin around them and around
/// what drops down from them.
class Stage : public QWidget
{
public:
    /// Shows the widgets, which belong to the stage.
    explicit Stage(std::initializer_list<QWidget *> widgets);

    /// As it is in a host with dark panels.
    void darken();

    /// The stage with what drops down from its widgets.
    QPixmap picture();

    /// The same while something is up that @p open opens and waits for, as a menu. It is closed then.
    QPixmap pictureDuring(const std::function<void()> &open);
};
