// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "WindowPicture.h"

#include <QApplication>
#include <QPainter>
#include <QWidget>

#include <algorithm>

namespace Tessa {

QWidgetList windowsOver(const QWidget &window)
{
    QWidgetList windows = QApplication::topLevelWidgets();
    windows.erase(std::remove_if(windows.begin(), windows.end(),
                                 [&](const QWidget *w) { return !w->isVisible() || w == &window; }),
                  windows.end());
    return windows;
}

QPixmap pictureOf(QWidget &window, const QColor &ground)
{
    const QWidgetList others = windowsOver(window);
    const auto placeOf = [&window](const QWidget &other) {
        return QRect(window.mapFromGlobal(other.pos()), other.size());
    };
    QRect place = window.rect();
    for (const QWidget *other : others)
        place |= placeOf(*other);

    QPixmap picture(place.size());
    picture.fill(ground);
    QPainter painter(&picture);
    painter.translate(-place.topLeft());
    painter.drawPixmap(0, 0, window.grab());
    for (QWidget *other : others)
        painter.drawPixmap(placeOf(*other).topLeft(), other->grab());
    return picture;
}

} // namespace Tessa
