// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "StatusBar.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QProgressBar>
#include <QStyle>
#include <QToolButton>

namespace Tessa {

namespace {

constexpr int margin = 12;
constexpr int progressWidth = 160;

} // namespace

StatusBar::StatusBar(QWidget *parent)
    : QStatusBar(parent)
    , m_work(new QLabel)
    , m_progress(new QProgressBar)
    , m_remarks(new QToolButton)
    , m_position(new QLabel)
    , m_counts(new QLabel)
{
    m_work->setTextFormat(Qt::PlainText);
    m_progress->setRange(0, 0);
    m_progress->setMaximumWidth(progressWidth);
    m_remarks->setAutoRaise(true);
    m_remarks->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_remarks->setIcon(style()->standardIcon(QStyle::SP_MessageBoxWarning));
    m_remarks->setToolTip(tr("List all remarks on the drawing"));
    m_position->setContentsMargins(margin, 0, margin, 0);
    m_counts->setContentsMargins(margin, 0, margin, 0);
    addWidget(m_work);
    for (QWidget *widget : {static_cast<QWidget *>(m_progress), static_cast<QWidget *>(m_remarks),
                            static_cast<QWidget *>(m_position), static_cast<QWidget *>(m_counts)})
        addPermanentWidget(widget);
    setWork({});
    setRemarkCount(0);
    connect(m_remarks, &QToolButton::clicked, this, &StatusBar::remarksWanted);
    qApp->installEventFilter(this);
}

void StatusBar::setWork(const QString &work)
{
    m_work->setText(work);
    m_progress->setVisible(!work.isEmpty());
}

void StatusBar::setRemarkCount(int count)
{
    m_remarks->setText(tr("Remarks: %1").arg(count));
    m_remarks->setVisible(count > 0);
}

void StatusBar::setPosition(QPointF position)
{
    m_position->setText(
            QStringLiteral("%1, %2").arg(position.x(), 0, 'f', 2).arg(position.y(), 0, 'f', 2));
}

void StatusBar::setCounts(const QString &counts)
{
    m_counts->setText(counts);
}

/// Presses begin a command. A key is offered as a shortcut's override before anybody answers it; its
/// press may come to several widgets, and after the answer.
bool StatusBar::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::ShortcutOverride:
        clearMessage();
        break;
    default:
        break;
    }
    return QStatusBar::eventFilter(watched, event);
}

} // namespace Tessa
