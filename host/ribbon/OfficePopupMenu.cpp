// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include <NsRc.h>

#include <QWidgetAction>

namespace NsRc {

namespace {

/// Gives a menu its widget, and goes away with it: the menu would go on using it.
class HeldWidget : public QWidgetAction
{
public:
    HeldWidget(QWidget *widget, QMenu *menu)
        : QWidgetAction(menu)
        , m_widget(widget)
    {
        menu->addAction(this);
        // The connection of the base class is older: it has forgotten the widget by then.
        m_gone = connect(widget, &QObject::destroyed, this, [this] { delete this; });
    }

    /// The base class deletes a widget that is still there, which must not come back here.
    ~HeldWidget() override { disconnect(m_gone); }

protected:
    QWidget *createWidget(QWidget *parent) override
    {
        m_widget->setParent(parent);
        return m_widget;
    }

private:
    QWidget *const m_widget;
    QMetaObject::Connection m_gone;
};

} // namespace

OfficePopupMenu *OfficePopupMenu::createPopupMenu(QWidget *parent)
{
    return new OfficePopupMenu(parent);
}

OfficePopupMenu::OfficePopupMenu(QWidget *parent)
    : QMenu(parent)
{
}

OfficePopupMenu::~OfficePopupMenu() = default;

void OfficePopupMenu::addWidget(QWidget *widget)
{
    if (widget)
        new HeldWidget(widget, this);
}

void OfficePopupMenu::showEvent(QShowEvent *event)
{
    QMenu::showEvent(event);
    for (QWidget *next = nextInFocusChain(); next != this; next = next->nextInFocusChain()) {
        if (isAncestorOf(next) && next->focusPolicy() != Qt::NoFocus && next->isEnabledTo(this)) {
            next->setFocus(Qt::PopupFocusReason);
            return;
        }
    }
}

} // namespace NsRc
