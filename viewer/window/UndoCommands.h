// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QUndoGroup>

class QAction;
class QUndoStack;

namespace Tessa {

/// The commands "Undo" and "Redo", for the steps of one drawing at a time. Menus name the step; a
/// button of a tool bar has a short text that stays, and names it in its tool tip.
class UndoCommands : public QObject
{
    Q_OBJECT

public:
    explicit UndoCommands(QObject *parent = nullptr);

    QAction *undoAction() const { return m_undo; }
    QAction *redoAction() const { return m_redo; }

    /// The steps of another drawing, which must live until they are replaced; null for none.
    void setStack(QUndoStack *stack);

    void setEnabled(bool enabled);

signals:
    /// What the user has not ended to edit is to be among the steps after this.
    void aboutToAct();

    /// Whether the drawing is, step by step, as it was saved last.
    void cleanChanged(bool isClean);

private:
    using Names = void (QUndoGroup::*)(const QString &);
    using Act = void (QUndoGroup::*)();

    QAction *create(const QString &text, const QString &themeIcon, int icon, Act act);
    void showState();

    QUndoGroup m_steps;
    QAction *m_undo;
    QAction *m_redo;
    bool m_isEnabled = true;
};

} // namespace Tessa
