// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStatusBar>
#include <QStringList>

class QLabel;
class QProgressBar;
class QToolButton;

namespace Tessa {

/// The line below the drawing: what the last command has to say, what is being done, how many remarks
/// there are on the drawing, what is selected, where the pointer is, and what the drawing holds.
///
/// A message is about the last command: it goes with the user's next press of a button or a key,
/// wherever in the program that is.
class StatusBar : public QStatusBar
{
    Q_OBJECT

public:
    explicit StatusBar(QWidget *parent = nullptr);

    /// Shows that something is being done, below a message that there may be; an empty text ends it.
    void setWork(const QString &work);

    /// Offers to list the remarks; 0 takes the offer away.
    void setRemarkCount(int count);

    /// Tells how many entities are selected, and on which layers, those with the most first.
    void setSelection(int count, const QStringList &layers);

    void setPosition(QPointF position);
    void setCounts(const QString &counts);

signals:
    /// The user took the offer to list the remarks.
    void remarksWanted();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QLabel *m_work;
    QProgressBar *m_progress;
    QToolButton *m_remarks;
    QLabel *m_selection;
    QLabel *m_position;
    QLabel *m_counts;
};

} // namespace Tessa
