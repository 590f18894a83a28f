#include "ViewButton.h"

#include "ribbon/GalleryEntries.h"

#include <QActionGroup>
#include <QEvent>
#include <QMenu>
#include <QStyleOptionButton>
#include <QStylePainter>

namespace OvCc {

ViewButton::ViewButton(QWidget *parent)
    : QPushButton(QLatin1String(viewEntries[TopView].caption), parent)
    , m_actions(new QActionGroup(this))
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
        m_actions->addAction(action);
    }
    m_actions->actions().at(TopView)->setChecked(true);
    setMenu(menu);
    connect(m_actions, &QActionGroup::triggered, this, &ViewButton::options);

    menu->setObjectName(tr("topMenu"));
    setObjectName(tr("viewBtn"));
}

ViewButton::~ViewButton() = default;

void ViewButton::options(QAction *action)
{
    const QString name = action->objectName();
    setText(name);
    fitWidth();
    const QList<QAction *> actions = m_actions->actions();
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
