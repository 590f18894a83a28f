// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "ViewButton.h"

#include "ribbon/ViewEntries.h"

#include <QActionGroup>
#include <QEvent>
#include <QMenu>
#include <QPointer>
#include <QStyleOptionButton>
#include <QStylePainter>

namespace OvCc {

struct ViewButton::Private
{
    QPointer<QActionGroup> actions;
    int view = TopView;
};

ViewButton::ViewButton(QWidget *parent)
    : QPushButton(QLatin1String(viewEntries[TopView].caption), parent)
    , m_d(new Private{new QActionGroup(this)})
{
    setFixedHeight(20);
    fitWidth();
    setFlat(true);

    auto *menu = new QMenu(this);
    for (const GalleryEntry &view : viewEntries) {
        const QString name = QLatin1String(view.caption);
        QAction *action = menu->addAction(name);
        action->setObjectName(name);
        action->setCheckable(true);
        m_d->actions->addAction(action);
    }
    m_d->actions->actions().at(m_d->view)->setChecked(true);
    setMenu(menu);
    connect(m_d->actions, &QActionGroup::triggered, this, &ViewButton::options);

    menu->setObjectName(tr("topMenu"));
    setObjectName(tr("viewBtn"));
}

ViewButton::~ViewButton() = default;

int ViewButton::view() const
{
    return m_d->view;
}

void ViewButton::setView(int view)
{
    QAction *action = m_d->actions ? m_d->actions->actions().value(view) : nullptr;
    if (action && view != m_d->view)
        options(action);
}

void ViewButton::options(QAction *action)
{
    const QString name = action->objectName();
    m_d->view = m_d->actions->actions().indexOf(action);
    setText(name);
    fitWidth();
    const QList<QAction *> actions = m_d->actions->actions();
    for (QAction *other : actions)
        other->setChecked(other->objectName() == name);
    emit geometryChanged();
}

void ViewButton::changeEvent(QEvent *event)
{
    QPushButton::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        fitWidth();
}

/// Leaves out the arrow of buttons with a menu: the text needs the whole width.
void ViewButton::paintEvent(QPaintEvent *)
{
    QStyleOptionButton option;
    initStyleOption(&option);
    option.features &= ~QStyleOptionButton::HasMenu;
    QStylePainter(this).drawControl(QStyle::CE_PushButton, option);
}

void ViewButton::fitWidth()
{
    setFixedWidth(fontMetrics().horizontalAdvance(text()) + 4);
}

} // namespace OvCc
