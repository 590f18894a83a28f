// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QLabel>

namespace OvCc {

/// A label for a line of plain text that may be longer than there is room for. It takes the room that
/// it is given and never asks for more. What does not fit is cut between two characters, which shows
/// as an ellipsis, and then a tool tip has the whole text. text() is whole in any case.
class ElidedLabel : public QLabel
{
public:
    explicit ElidedLabel(const QString &text = QString(), QWidget *parent = nullptr);

    /// The width of an ellipsis at most.
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QRect textRect() const;
    QString shownText() const;
};

} // namespace OvCc
