// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QStringList>

class QAction;
class QWidget;

namespace Tessa {

class StatusBar;

/// The remarks on the drawing, one sentence each: the status bar tells the first one, a list has all.
class Remarks : public QObject
{
    Q_OBJECT

public:
    /// @param window the list comes up over it; it owns this
    Remarks(StatusBar &status, QWidget *window);

    /// Opens the list, if there is anything in it.
    QAction *listAction() const { return m_list; }

    /// Takes the remarks on a drawing that was read, in place of all before.
    /// @param title the name of its file
    void setRead(const QString &title, const QStringList &remarks);

    /// Takes those on its file as it was saved, in place of the ones on saving it before.
    void setSaved(const QString &title, const QStringList &remarks);

private:
    void tell(const QString &title, const QStringList &remarks);
    void list();

    StatusBar &m_status;
    QWidget *const m_window;
    QAction *m_list;
    QString m_title;
    QStringList m_read;
    QStringList m_all;
};

} // namespace Tessa
