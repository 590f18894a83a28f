// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Stage.h"

#include "viewer/window/WindowPicture.h"

#include <QCoreApplication>
#include <QTimer>
#include <QVBoxLayout>
#include <QtTest>

#include <stdexcept>

namespace {

constexpr int margin = 12;
constexpr int gap = 8;

} // namespace

Stage::Stage(std::initializer_list<QWidget *> widgets)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(gap);
    for (QWidget *widget : widgets)
        column->addWidget(widget, 0, Qt::AlignLeft);
    column->addStretch();
    // Where a widget had the focus, a text cursor would blink.
    setFocusPolicy(Qt::StrongFocus);
    setFocus();
    move(0, 0);
    show();
    if (!QTest::qWaitForWindowExposed(this))
        throw std::runtime_error("a window does not show");
}

void Stage::darken()
{
    const QColor panel(48, 52, 60);
    QPalette dark = palette();
    for (const QPalette::ColorRole role : {QPalette::Window, QPalette::Button})
        dark.setColor(role, panel);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::ButtonText})
        dark.setColor(role, Qt::white);
    setPalette(dark);
}

QPixmap Stage::picture()
{
    QCoreApplication::processEvents();
    QRect place = childrenRect().adjusted(0, 0, margin, margin);
    const QWidgetList others = Tessa::windowsOver(*this);
    for (const QWidget *other : others) {
        const QRect beside(mapFromGlobal(other->pos()), other->size());
        place |= beside.adjusted(-margin, -margin, margin, margin);
    }
    resize(place.right() + 1, place.bottom() + 1);
    QCoreApplication::processEvents();
    return Tessa::pictureOf(*this, palette().window().color());
}

QPixmap Stage::pictureDuring(const std::function<void()> &open)
{
    QPixmap result;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] {
        const QWidgetList others = Tessa::windowsOver(*this);
        if (others.isEmpty())
            return;
        timer.stop();
        result = picture();
        QTest::keyClick(others.first(), Qt::Key_Escape);
    });
    timer.start(0);
    open();
    return result;
}
