// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "FacePress.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QMouseEvent>

namespace OvCc {

FacePress::FacePress(QComboBox *combo)
    : QObject(combo->lineEdit())
    , m_combo(combo)
{
    parent()->installEventFilter(this);
    combo->view()->window()->installEventFilter(this);
}

bool FacePress::eventFilter(QObject *watched, QEvent *event)
{
    const bool isPress = event->type() == QEvent::MouseButtonPress;
    if (!isPress && event->type() != QEvent::MouseButtonRelease)
        return false;
    auto *widget = static_cast<QWidget *>(watched);
    const auto *mouse = static_cast<QMouseEvent *>(event);

    if (watched == parent()) {
        // Widgets that are disabled get the event after their filters, and ignore it.
        if (!isPress || mouse->button() != Qt::LeftButton || !m_combo->isEnabled())
            return false;
        m_combo->showPopup();
        return true;
    }

    if (!m_combo->rect().contains(m_combo->mapFromGlobal(widget->mapToGlobal(mouse->pos()))))
        return false;
    // The press that closes the popup would be played again to the face and open it at once.
    if (isPress)
        widget->setAttribute(Qt::WA_NoMouseReplay);
    // The release of the press that opened the popup must not close it.
    return !isPress;
}

} // namespace OvCc
