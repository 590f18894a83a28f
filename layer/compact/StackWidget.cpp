// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "StackWidget.h"

#include <OvCustomControl/LayerControl.h>
#include <OvCustomControl/PropertyManager.h>

#include <QPointer>

namespace OvCc {

namespace {

constexpr int propertyPage = 0;
constexpr int emptyPage = 1;

constexpr int overlap = 8;

} // namespace

struct StackWidget::Private
{
    QPointer<LayerControl> control;
};

StackWidget::StackWidget(LayerControl *control, QWidget *parent)
    : QStackedWidget(parent)
    , m_d(new Private{control})
{
    setParent(control, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
    setAttribute(Qt::WA_TranslucentBackground);
    insertWidget(propertyPage, new PropertyManager(this));
    insertWidget(emptyPage, new QWidget);
    // The place depends on the height, which has to be the real one before the first showing.
    resize(sizeHint());

    connect(this, &QStackedWidget::currentChanged, this, &StackWidget::maskEmptyPage);
    connect(control, &LayerControl::folded, this, QOverload<bool>::of(&StackWidget::hide));
    connect(control, &LayerControl::geometryChanged, this, &StackWidget::adjustGeometry);
}

StackWidget::~StackWidget() = default;

PropertyManager *StackWidget::propertyManager() const
{
    return qobject_cast<PropertyManager *>(widget(propertyPage));
}

void StackWidget::setVisible(bool visible)
{
    if (visible)
        setWindowState(windowState() & ~Qt::WindowMinimized);
    QStackedWidget::setVisible(visible);
}

void StackWidget::hide(bool bHide)
{
    setCurrentIndex(bHide ? emptyPage : propertyPage);
    if (!isVisible())
        show();
}

void StackWidget::adjustGeometry()
{
    if (!m_d->control || !propertyManager())
        return;
    const QPoint bar = m_d->control->mapToGlobal(QPoint(0, 0));
    move(bar.x(), bar.y() + height() - overlap);
}

/// Nothing to be seen must be nothing in the way of the mouse.
void StackWidget::maskEmptyPage(int page)
{
    if (page == emptyPage)
        setMask(QRegion(-1, -1, 1, 1));
    else
        clearMask();
}

} // namespace OvCc
