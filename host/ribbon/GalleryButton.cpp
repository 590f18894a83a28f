// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "GalleryButton.h"

#include <QPainter>
#include <QStyleOption>

namespace Embedded {

namespace {

constexpr int arrowSize = 8;
constexpr int gripWidth = 6;

} // namespace

GalleryButton::GalleryButton(Kind kind, const QString &name, QWidget *parent)
    : QAbstractButton(parent)
    , m_kind(kind)
{
    setAccessibleName(name);
    setToolTip(name);
    setFocusPolicy(Qt::NoFocus);
    setAutoRepeat(kind != OpenMenu);
    setAttribute(Qt::WA_Hover);
    // A move that the button does not need goes on to the gallery, whose items are left then.
    setMouseTracking(true);
}

QSize GalleryButton::sizeHint() const
{
    const int width = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
    return {width, width};
}

void GalleryButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QStyleOption option;
    option.initFrom(this);
    option.state |=
            QStyle::State_AutoRaise | (isDown() ? QStyle::State_Sunken : QStyle::State_Raised);
    if (isEnabled() && (isDown() || underMouse()))
        style()->drawPrimitive(QStyle::PE_PanelButtonTool, &option, &painter, this);

    option.rect =
            QStyle::alignedRect(layoutDirection(), Qt::AlignCenter, {arrowSize, arrowSize}, rect());
    if (m_kind == OpenMenu) {
        // A line above the arrow tells the button from the one that scrolls.
        const QRect line(option.rect.center().x() - gripWidth / 2, option.rect.top(), gripWidth, 1);
        painter.fillRect(line, option.palette.buttonText());
        option.rect.translate(0, 2);
    }
    style()->drawPrimitive(m_kind == ScrollUp ? QStyle::PE_IndicatorArrowUp
                                              : QStyle::PE_IndicatorArrowDown,
                           &option, &painter, this);
}

} // namespace Embedded
