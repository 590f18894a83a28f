// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DrawingFrame.h"

#include <OvCustomControl/CustomControl.h>
#include <OvCustomControl/LayerComboBox.h>
#include <OvCustomControl/MinMaxButton.h>
#include <OvCustomControl/ViewButton.h>

#include <QApplication>
#include <QLabel>
#include <QLayout>
#include <QMouseEvent>

namespace Tessa {

namespace {

constexpr int captionHeight = 28;
constexpr int minimizedWidth = 300;
constexpr int margin = 6;
constexpr int border = 1;
/// The part of the place that a frame fills when it first floats.
constexpr double floatingPart = 0.75;

/// Light on dark, as the canvas is: the pictures of the buttons are white.
QPalette chromePalette()
{
    QPalette palette(QColor(0x3a, 0x43, 0x4e), QColor(0x2b, 0x32, 0x3b));
    palette.setColor(QPalette::WindowText, QColor(0xe6, 0xea, 0xee));
    palette.setColor(QPalette::ButtonText, QColor(0xe6, 0xea, 0xee));
    return palette;
}

} // namespace

DrawingFrame::DrawingFrame(QWidget *content, QWidget *parent)
    : QWidget(parent)
    , m_window(new QWidget(this))
    , m_content(content)
    , m_caption(new QLabel(m_window))
    , m_control(new OvCc::CustomControl(m_window))
    , m_views(new OvCc::ViewButton)
    , m_buttons(new OvCc::MinMaxButton(m_window))
{
    setPalette(QColor(0x16, 0x1b, 0x21));
    setAutoFillBackground(true);
    m_window->setPalette(chromePalette());
    m_window->setAutoFillBackground(true);
    m_content->setParent(m_window);
    m_content->lower();
    m_caption->setIndent(margin);
    m_caption->setCursor(Qt::SizeAllCursor);

    m_control->layout()->addWidget(m_views);
    m_control->setWidthCompanion(m_views);
    m_control->adjustGeometry();
    m_control->resize(m_control->minimumWidth(), m_control->sizeHint().height());
    connect(m_views, &OvCc::ViewButton::geometryChanged, m_control,
            &OvCc::CustomControl::adjustGeometry);

    connect(m_buttons, &OvCc::MinMaxButton::clickedMin, this, &DrawingFrame::minimize);
    connect(m_buttons, &OvCc::MinMaxButton::clickedNormal, this, &DrawingFrame::restore);
    connect(m_buttons, &OvCc::MinMaxButton::clickedClosed, this, &DrawingFrame::closeWanted);
    m_window->installEventFilter(this);
    m_caption->installEventFilter(this);
    setTitle({});
}

OvCc::LayerComboBox *DrawingFrame::layers() const
{
    return m_control->layerComboBox();
}

void DrawingFrame::setTitle(const QString &title)
{
    m_caption->setText(title);
    if (title.isEmpty())
        setState(State::Filling);
    showChrome();
}

bool DrawingFrame::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_window && (event->type() == QEvent::Enter || event->type() == QEvent::Leave)) {
        // A drop-down takes the pointer, and must not lose the box that it belongs to.
        m_isHovered = event->type() == QEvent::Enter || QApplication::activePopupWidget();
        showChrome();
    } else if (watched == m_caption && event->type() == QEvent::MouseButtonDblClick) {
        restore();
    } else if (watched == m_caption
               && (event->type() == QEvent::MouseButtonPress
                   || event->type() == QEvent::MouseMove)) {
        dragCaption(*static_cast<QMouseEvent *>(event));
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void DrawingFrame::resizeEvent(QResizeEvent *)
{
    layOut();
}

void DrawingFrame::setState(State state)
{
    m_state = state;
    if (state == State::Floating && m_floating.isNull()) {
        m_floating.setSize(size() * floatingPart);
        m_floating.moveCenter(rect().center());
    }
    layOut();
}

void DrawingFrame::minimize()
{
    if (m_state == State::Minimized)
        return;
    m_beforeMinimized = m_state;
    setState(State::Minimized);
}

void DrawingFrame::restore()
{
    if (m_state == State::Minimized)
        setState(m_beforeMinimized);
    else
        setState(m_state == State::Filling ? State::Floating : State::Filling);
}

void DrawingFrame::dragCaption(const QMouseEvent &event)
{
    if (event.type() == QEvent::MouseButtonPress) {
        m_dragFrom = event.pos();
    } else if (m_state == State::Floating && event.buttons().testFlag(Qt::LeftButton)) {
        m_floating.translate(event.pos() - m_dragFrom);
        layOut();
    }
}

void DrawingFrame::layOut()
{
    const bool isFilling = m_state == State::Filling;
    const int captionSpace = isFilling ? 0 : captionHeight;
    if (isFilling) {
        m_window->setGeometry(rect());
    } else if (m_state == State::Minimized) {
        m_window->setGeometry(margin, height() - captionHeight - margin, minimizedWidth,
                              captionHeight);
    } else {
        // The caption stays in reach, however small the place becomes.
        m_floating.setSize(m_floating.size().boundedTo(size()));
        m_floating.moveTopLeft({qBound(0, m_floating.x(), width() - m_floating.width()),
                                qBound(0, m_floating.y(), height() - m_floating.height())});
        m_window->setGeometry(m_floating);
    }
    const int edge = isFilling ? 0 : border;
    m_caption->setVisible(!isFilling);
    m_caption->setGeometry(0, 0, m_window->width(), captionHeight);
    m_content->setVisible(m_state != State::Minimized);
    m_content->setGeometry(m_window->rect().adjusted(edge, captionSpace, -edge, -edge));
    const int top = isFilling ? margin : (captionHeight - m_buttons->height()) / 2;
    m_buttons->move(m_window->width() - m_buttons->width() - margin, top);
    m_control->move(margin, captionSpace + margin);
    showChrome();
}

void DrawingFrame::showChrome()
{
    const bool isShown = m_isHovered && !m_caption->text().isEmpty();
    m_control->setVisible(isShown && m_state != State::Minimized);
    m_buttons->setVisible(isShown);
}

} // namespace Tessa
