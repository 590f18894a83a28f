// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "ElidedLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QTextDocument>
#include <QToolTip>

namespace OvCc {

ElidedLabel::ElidedLabel(const QString &text, QWidget *parent)
    : QLabel(text, parent)
{
    setTextFormat(Qt::PlainText);
}

QSize ElidedLabel::minimumSizeHint() const
{
    constexpr QChar ellipsis(0x2026);
    const QSize whole = QLabel::minimumSizeHint();
    return {qMin(whole.width(), fontMetrics().horizontalAdvance(ellipsis)), whole.height()};
}

bool ElidedLabel::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip || shownText() == text())
        return QLabel::event(event);
    // A tool tip guesses what is meant to be rich.
    const QString tip = Qt::mightBeRichText(text()) ? Qt::convertFromPlainText(text()) : text();
    QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), tip, this);
    return true;
}

void ElidedLabel::paintEvent(QPaintEvent *event)
{
    const QString shown = shownText();
    if (shown == text()) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    drawFrame(&painter);
    style()->drawItemText(&painter, textRect(),
                          int(QStyle::visualAlignment(layoutDirection(), alignment())), palette(),
                          isEnabled(), shown, foregroundRole());
}

QRect ElidedLabel::textRect() const
{
    return contentsRect().adjusted(margin(), margin(), -margin(), -margin());
}

QString ElidedLabel::shownText() const
{
    return fontMetrics().elidedText(text(), Qt::ElideRight, textRect().width());
}

} // namespace OvCc
