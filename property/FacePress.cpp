#include "FacePress.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QMouseEvent>

namespace OvCc {

FacePress::FacePress(QComboBox *combo)
    : QObject(combo)
    , m_combo(combo)
    , m_face(combo->lineEdit())
{
    m_face->installEventFilter(this);
    combo->view()->window()->installEventFilter(this);
}

bool FacePress::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::MouseButtonPress)
        return false;
    const auto *press = static_cast<QMouseEvent *>(event);

    if (watched == m_face) {
        if (press->button() != Qt::LeftButton)
            return false;
        m_combo->showPopup();
        return true;
    }

    // A press on the face while the popup is open closes it; played again to the face, the same
    // press would open it at once.
    if (m_combo->rect().contains(m_combo->mapFromGlobal(press->globalPos())))
        static_cast<QWidget *>(watched)->setAttribute(Qt::WA_NoMouseReplay);
    return false;
}

} // namespace OvCc
