// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "UndoCommands.h"

#include <QAction>
#include <QApplication>
#include <QStyle>
#include <QUndoStack>

namespace Tessa {

UndoCommands::UndoCommands(QObject *parent)
    : QObject(parent)
    , m_undo(create(tr("Undo"), QStringLiteral("edit-undo"), QStyle::SP_ArrowBack,
                    &QUndoGroup::undo))
    , m_redo(create(tr("Redo"), QStringLiteral("edit-redo"), QStyle::SP_ArrowForward,
                    &QUndoGroup::redo))
{
    m_undo->setShortcut(QKeySequence::Undo);
    m_redo->setShortcut(QKeySequence::Redo);
    connect(&m_steps, &QUndoGroup::indexChanged, this, &UndoCommands::showState);
    connect(&m_steps, &QUndoGroup::cleanChanged, this, &UndoCommands::cleanChanged);
    showState();
}

/// Unlike QUndoGroup's own actions these have what is being edited ended first.
QAction *UndoCommands::create(const QString &text, const QString &themeIcon, int icon, Act act)
{
    const QIcon picture = qApp->style()->standardIcon(QStyle::StandardPixmap(icon));
    auto *action = new QAction(QIcon::fromTheme(themeIcon, picture), text, this);
    action->setIconText(text);
    connect(action, &QAction::triggered, this, [this, act] {
        emit aboutToAct();
        (m_steps.*act)();
    });
    return action;
}

void UndoCommands::setStack(QUndoStack *stack)
{
    if (stack)
        m_steps.addStack(stack);
    m_steps.setActiveStack(stack);
}

void UndoCommands::setEnabled(bool enabled)
{
    m_isEnabled = enabled;
    showState();
}

void UndoCommands::showState()
{
    const auto show = [this](QAction *action, const QString &text, bool can, const QString &step) {
        action->setEnabled(m_isEnabled && can);
        const QString whole = step.isEmpty() ? text : tr("%1 %2").arg(text, step);
        action->setToolTip(whole);
        action->setText(QString(whole).replace(QLatin1Char('&'), QLatin1String("&&")));
    };
    show(m_undo, tr("Undo"), m_steps.canUndo(), m_steps.undoText());
    show(m_redo, tr("Redo"), m_steps.canRedo(), m_steps.redoText());
}

} // namespace Tessa
