// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "RibbonGalleryPrivate.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>

using Embedded::GalleryGrid;

namespace NsRc {

namespace {

constexpr int marginAround = 1;
constexpr int mostRowsByItself = 3;
constexpr int wheelStep = 120;

} // namespace

RibbonGallery::RibbonGallery(QWidget *parent)
    : QWidget(parent)
    , m_d(new Private(this))
{
    setContentsMargins(marginAround, marginAround, marginAround, marginAround);
    setFocusPolicy(Qt::TabFocus);
    setMouseTracking(true);
    connect(m_d->scrollUp, &QAbstractButton::clicked, this,
            [this] { m_d->scrollTo(m_d->grid.topRow - 1); });
    connect(m_d->scrollDown, &QAbstractButton::clicked, this,
            [this] { m_d->scrollTo(m_d->grid.topRow + 1); });
    connect(m_d->openMenuButton, &QAbstractButton::pressed, this, [this] { m_d->openMenu(); });
    m_d->arrange();
}

RibbonGallery::~RibbonGallery()
{
    if (m_d->group)
        m_d->group->disconnect(this);
    delete m_d->menu;
}

void RibbonGallery::setLabelsVisible(bool visible)
{
    m_d->areLabelsVisible = visible;
    update();
}

void RibbonGallery::setBorderVisible(bool visible)
{
    m_d->isBorderVisible = visible;
    m_d->arrange();
    updateGeometry();
}

void RibbonGallery::setGalleryGroup(RibbonGalleryGroup *group)
{
    if (m_d->group)
        m_d->group->disconnect(this);
    m_d->group = group;
    m_d->checked = m_d->pressed = nullptr;
    m_d->current = -1;
    m_d->grid.topRow = 0;
    if (group) {
        connect(group, &RibbonGalleryGroup::changed, this, [this] { m_d->followGroup(); });
        connect(group, &QObject::destroyed, this, [this] { m_d->followGroup(); });
    }
    m_d->followGroup();
}

RibbonGalleryGroup *RibbonGallery::galleryGroup() const
{
    return m_d->group;
}

void RibbonGallery::setCheckedIndex(int index)
{
    m_d->check(m_d->item(index));
}

void RibbonGallery::setCheckedItem(const RibbonGalleryItem *item)
{
    m_d->check(item);
}

RibbonGalleryItem *RibbonGallery::checkedItem() const
{
    return m_d->item(m_d->checkedIndex());
}

void RibbonGallery::setPopupMenu(OfficePopupMenu *menu)
{
    if (menu == m_d->menu)
        return;
    delete m_d->menu;
    m_d->menu = menu;
    m_d->openMenuButton->setDown(false);
    if (menu) {
        menu->setParent(this, menu->windowFlags());
        connect(menu, &QMenu::aboutToHide, m_d->openMenuButton,
                [this] { m_d->openMenuButton->setDown(false); });
        // A widget says so while it still is there for a QPointer.
        connect(menu, &QObject::destroyed, this, [this] {
            m_d->menu.clear();
            m_d->arrange();
        });
    }
    m_d->arrange();
    updateGeometry();
}

OfficePopupMenu *RibbonGallery::popupMenu() const
{
    return m_d->menu;
}

void RibbonGallery::setScrollBarPolicy(Qt::ScrollBarPolicy policy)
{
    m_d->policy = policy;
    m_d->arrange();
    updateGeometry();
}

QSize RibbonGallery::sizeHint() const
{
    const GalleryGrid &grid = m_d->grid;
    const bool isWhole = m_d->policy == Qt::ScrollBarAlwaysOff;
    const int rows = isWhole ? grid.count : qMin(grid.count, mostRowsByItself);
    const bool hasButtons = m_d->menu || m_d->policy == Qt::ScrollBarAlwaysOn
                            || (!isWhole && grid.count > mostRowsByItself);
    const int column = hasButtons ? m_d->scrollUp->sizeHint().width() : 0;

    const QMargins margins = contentsMargins();
    const int frame = m_d->frameWidth();
    return {m_d->neededCellWidth() + column + qMax(frame, margins.left())
                    + qMax(frame, margins.right()),
            grid.cell.height() * qMax(1, rows) + qMax(frame, margins.top())
                    + qMax(frame, margins.bottom())};
}

void RibbonGallery::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    m_d->arrange();
}

bool RibbonGallery::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto *help = static_cast<QHelpEvent *>(event);
        const int index = m_d->grid.indexAt(help->pos());
        QToolTip::showText(help->globalPos(), m_d->toolTipAt(index), this,
                           index < 0 ? QRect() : m_d->grid.rect(index));
        return true;
    }
    const bool isHandled = QWidget::event(event);
    if (event->type() == QEvent::ContentsRectChange)
        m_d->arrange();
    return isHandled;
}

void RibbonGallery::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    m_d->setCurrent(m_d->startIndex());
    if (m_d->current >= 0)
        m_d->scrollTo(m_d->grid.topRowFor(m_d->current));
}

void RibbonGallery::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    if (!underMouse())
        m_d->setCurrent(-1);
}

void RibbonGallery::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    m_d->pressed = nullptr;
    m_d->isPressInside = m_d->isDraggedIn = false;
    m_d->setCurrent(-1);
}

void RibbonGallery::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    const bool isAlt = event->modifiers() & Qt::AltModifier;
    if (m_d->menu && (key == Qt::Key_F4 || (isAlt && key == Qt::Key_Down))) {
        m_d->openMenu();
        return;
    }
    if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space) {
        RibbonGalleryItem *item = m_d->item(m_d->current);
        if (item && !event->isAutoRepeat())
            m_d->press(item);
        return;
    }
    const int index = m_d->indexByKey(key);
    if (index < 0) {
        QWidget::keyPressEvent(event);
        return;
    }
    m_d->setCurrent(index);
    m_d->scrollTo(m_d->grid.topRowFor(index));
}

void RibbonGallery::leaveEvent(QEvent *event)
{
    QWidget::leaveEvent(event);
    m_d->setCurrent(-1);
}

void RibbonGallery::mouseMoveEvent(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton))
        m_d->pressed = nullptr;
    else if (!m_d->isPressInside && window()->windowType() == Qt::Popup)
        m_d->isDraggedIn = true;
    const int index = m_d->grid.indexAt(event->pos());
    const bool isElsewhere = m_d->pressed && m_d->item(index) != m_d->pressed;
    m_d->setCurrent(isElsewhere ? -1 : index);
}

void RibbonGallery::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const int index = m_d->grid.indexAt(event->pos());
    m_d->pressed = m_d->item(index);
    m_d->isPressInside = true;
    m_d->setCurrent(index);
    update();
}

void RibbonGallery::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    RibbonGalleryItem *item = m_d->item(m_d->grid.indexAt(event->pos()));
    const bool isPressed = item && (item == m_d->pressed || m_d->isDraggedIn);
    m_d->pressed = nullptr;
    m_d->isPressInside = m_d->isDraggedIn = false;
    update();
    if (isPressed)
        m_d->press(item);
}

void RibbonGallery::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_d->isBorderVisible)
        m_d->paintFrame(painter);
    painter.setClipRect(m_d->grid.area);
    const int first = m_d->grid.topRow * m_d->grid.columns();
    for (int index = first; index < m_d->grid.endOfSight(); ++index)
        m_d->paintCell(painter, index);
}

void RibbonGallery::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    m_d->arrange();
    const int index = m_d->checkedIndex();
    if (index >= 0)
        m_d->scrollTo(m_d->grid.topRowFor(index));
}

void RibbonGallery::wheelEvent(QWheelEvent *event)
{
    if (m_d->grid.lastTopRow() == 0) {
        event->ignore();
        return;
    }
    m_d->wheelTurn += event->angleDelta().y();
    const int rows = m_d->wheelTurn / wheelStep;
    m_d->wheelTurn -= rows * wheelStep;
    m_d->scrollTo(m_d->grid.topRow - rows);
    m_d->setCurrent(m_d->grid.indexAt(event->position().toPoint()));
}

} // namespace NsRc
