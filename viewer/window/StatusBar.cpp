// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "StatusBar.h"

#include "Phrases.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QStyle>
#include <QToolButton>

#include <algorithm>

namespace Tessa {

namespace {

constexpr int margin = 12;
constexpr int progressWidth = 160;

/// Of the layers of what is selected: how many are named, and how long a name may be there.
constexpr int mostLayers = 2;
constexpr int longestLayer = 24;
constexpr int mostLayersInTip = 20;

/// What the label says of a name, which it does not take for a text with tags.
QString shortened(const QString &name)
{
    return name.size() > longestLayer ? name.left(longestLayer - 1) + QChar(0x2026) : name;
}

} // namespace

StatusBar::StatusBar(QWidget *parent)
    : QStatusBar(parent)
    , m_work(new QLabel)
    , m_progress(new QProgressBar)
    , m_remarks(new QToolButton)
    , m_selection(new QLabel)
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
    m_selection->setObjectName(QStringLiteral("selection"));
    m_selection->setTextFormat(Qt::PlainText);
    m_selection->setContentsMargins(margin, 0, margin, 0);
    m_position->setContentsMargins(margin, 0, margin, 0);
    m_counts->setContentsMargins(margin, 0, margin, 0);
    addWidget(m_work);
    // What comes and goes stands first, so that nothing else moves.
    for (QWidget *widget : {static_cast<QWidget *>(m_selection), static_cast<QWidget *>(m_progress),
                            static_cast<QWidget *>(m_remarks), static_cast<QWidget *>(m_position),
                            static_cast<QWidget *>(m_counts)})
        addPermanentWidget(widget);
    setWork({});
    setRemarkCount(0);
    setSelection(0, {});
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

void StatusBar::setSelection(int count, const QStringList &layers)
{
    QStringList names = layers;
    std::transform(names.begin(), names.end(), names.begin(), shortened);
    const QString text = tr("%1 selected on %2").arg(QLocale().toString(count));
    m_selection->setText(count > 0 ? text.arg(listed(names, mostLayers)) : QString());
    m_selection->setToolTip(count > 0 ? text.arg(listed(layers, mostLayersInTip)).toHtmlEscaped()
                                      : QString());
    m_selection->setVisible(count > 0);
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
