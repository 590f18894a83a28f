// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "MinMaxButton.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QPointer>
#include <QPushButton>

namespace OvCc {

namespace {

constexpr int buttonSize = 20;

template <class Draw>
QIcon paintedIcon(Draw draw)
{
    QPixmap picture(buttonSize, buttonSize);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setPen(QPen(Qt::white, 2, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
    draw(painter);
    painter.end();
    return picture;
}

void drawMinimize(QPainter &painter)
{
    painter.drawLine(3, 10, 17, 10);
}

/// The second sheet sticks out at the right.
void drawRestore(QPainter &painter)
{
    painter.drawRect(5, 5, 10, 10);
    painter.drawLine(8, 2, 20, 2);
    painter.drawLine(19, 2, 19, 12);
}

void drawClose(QPainter &painter)
{
    painter.drawLine(5, 5, 15, 15);
    painter.drawLine(15, 5, 5, 15);
}

} // namespace

struct MinMaxButton::Private
{
    QPointer<QPushButton> minimizeButton;
    QPointer<QPushButton> restoreButton;
    QPointer<QPushButton> closeButton;
};

MinMaxButton::MinMaxButton(QWidget *parent)
    : QWidget(parent, Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
    , m_d(new Private{new QPushButton(paintedIcon(drawMinimize), QString(), parent),
                      new QPushButton(paintedIcon(drawRestore), QString(), parent),
                      new QPushButton(paintedIcon(drawClose), QString(), parent)})
{
    setAttribute(Qt::WA_TranslucentBackground);
    setObjectName(tr("MinnMaxButton"));
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    for (QPushButton *button : {m_d->minimizeButton, m_d->restoreButton, m_d->closeButton}) {
        button->setFixedSize(buttonSize, buttonSize);
        row->addWidget(button);
    }
    setFixedSize(3 * buttonSize, buttonSize);

    connect(m_d->closeButton, &QPushButton::clicked, this, &MinMaxButton::clickedClosed);
    connect(m_d->minimizeButton, &QPushButton::clicked, this, &MinMaxButton::clickedMin);
    connect(m_d->restoreButton, &QPushButton::clicked, this, &MinMaxButton::clickedNormal);
}

MinMaxButton::~MinMaxButton()
{
    delete m_d->closeButton;
    delete m_d->minimizeButton;
    delete m_d->restoreButton;
}

void MinMaxButton::enterEvent(EnterEvent *event)
{
    emit enter(true);
    QWidget::enterEvent(event);
}

void MinMaxButton::leaveEvent(QEvent *event)
{
    emit enter(false);
    QWidget::leaveEvent(event);
}

} // namespace OvCc
