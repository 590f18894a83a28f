// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "PickerInput.h"

#include <OvCustomControl/ListWidget.h>

#include <QComboBox>
#include <QLineEdit>
#include <QMouseEvent>
#include <QStyle>

namespace OvCc {

PickerInput::PickerInput(QComboBox *combo, ListWidget *list)
    : m_combo(combo)
    , m_list(list)
    , m_popup(combo->view()->window())
{
    // The combo box gives its view the focus when the popup opens.
    combo->view()->setFocusProxy(list);
    list->viewport()->setMouseTracking(true);
    const QList<QObject *> watched{combo, combo->lineEdit(), m_popup, list, list->viewport()};
    for (QObject *object : watched)
        object->installEventFilter(this);
    // A list that goes before the combo box sends events up to its end.
    connect(list, &QObject::destroyed, this, [this] { m_list = nullptr; });
}

PickerInput::~PickerInput() = default;

void PickerInput::keepRow()
{
    if (m_list)
        m_faceRow = m_list->currentRow();
}

void PickerInput::restoreRow()
{
    if (m_list)
        m_list->setCurrentRow(m_faceRow);
}

bool PickerInput::eventFilter(QObject *watched, QEvent *event)
{
    if (!m_list)
        return false;
    if (watched == m_popup) {
        popupEvent(event);
        return false;
    }
    if (watched == m_combo || watched == m_combo->lineEdit())
        return faceEvent(event);
    return watched == m_list ? listEvent(event) : rowsEvent(event);
}

bool PickerInput::faceEvent(QEvent *event)
{
    // Widgets that are disabled get the event after their filters, and ignore it.
    if (m_combo->view()->isVisible() || !m_combo->isEnabled())
        return false;
    if (event->type() == QEvent::KeyPress)
        return faceKey(static_cast<QKeyEvent *>(event));
    return event->type() == QEvent::Wheel && faceWheel(static_cast<QWheelEvent *>(event));
}

bool PickerInput::faceKey(const QKeyEvent *event)
{
    if (event->modifiers() & ~Qt::KeypadModifier)
        return false;
    const int row = m_list->currentRow();
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_PageUp:
        chooseRow(row - 1);
        return true;
    case Qt::Key_Down:
    case Qt::Key_PageDown:
        chooseRow(row + 1);
        return true;
    case Qt::Key_Home:
        chooseRow(0);
        return true;
    case Qt::Key_End:
        chooseRow(m_list->count() - 1);
        return true;
    case Qt::Key_Space:
        m_combo->showPopup();
        return true;
    default:
        return false;
    }
}

bool PickerInput::faceWheel(QWheelEvent *event)
{
    const int turn = event->angleDelta().y();
    const QStyle *style = m_combo->style();
    if (turn == 0 || !style->styleHint(QStyle::SH_ComboBox_AllowWheelScrolling, nullptr, m_combo))
        return false;
    chooseRow(m_list->currentRow() + (turn > 0 ? -1 : 1));
    event->accept();
    return true;
}

/// Beyond the first and the last row there is nothing to choose.
void PickerInput::chooseRow(int row)
{
    if (row != m_list->currentRow() && m_list->item(row))
        emit rowChosen(row);
}

void PickerInput::popupEvent(const QEvent *event)
{
    if (event->type() == QEvent::Show) {
        keepRow();
        m_list->scrollToItem(m_list->currentItem());
    } else if (event->type() == QEvent::Hide) {
        m_list->forgetPress();
        m_isPressInside = m_isDraggedIn = false;
        restoreRow();
    }
}

bool PickerInput::listEvent(QEvent *event)
{
    // In the open drop-down each key is a key of the list. The combo box would already close its
    // popup on the announcement of a key.
    if (event->type() == QEvent::ShortcutOverride) {
        event->accept();
        return true;
    }
    return event->type() == QEvent::KeyPress && listKey(static_cast<QKeyEvent *>(event));
}

bool PickerInput::listKey(const QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        m_combo->hidePopup();
        return true;
    }
    takeHighlightedRow();
    const bool isAlt = event->modifiers() & Qt::AltModifier;
    switch (event->key()) {
    case Qt::Key_Down:
    case Qt::Key_Up:
        if (!isAlt)
            return false;
        Q_FALLTHROUGH();
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F4:
        if (m_list->currentItem())
            emit rowChosen(m_list->currentRow());
        return true;
    default:
        return false;
    }
}

/// Keys go on from where the mouse has been.
void PickerInput::takeHighlightedRow()
{
    const QModelIndexList highlighted = m_list->selectionModel()->selectedIndexes();
    if (!highlighted.isEmpty())
        m_list->setCurrentIndex(highlighted.first());
}

bool PickerInput::rowsEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        m_isPressInside = true;
        return false;
    case QEvent::MouseMove:
        rowsMove(static_cast<QMouseEvent *>(event));
        return false;
    case QEvent::MouseButtonRelease:
        return rowsRelease(static_cast<QMouseEvent *>(event));
    default:
        return false;
    }
}

/// While a button is held, the list follows the mouse by itself. Otherwise its current row stays the
/// chosen one, which programs read.
void PickerInput::rowsMove(const QMouseEvent *event)
{
    const QModelIndex row = m_list->indexAt(event->pos());
    if (event->buttons() == Qt::NoButton && row.isValid())
        m_list->selectionModel()->select(row, QItemSelectionModel::ClearAndSelect);
    else if (event->buttons() == Qt::LeftButton && !m_isPressInside)
        m_isDraggedIn = true;
}

/// The press that opened the popup may end on a row. The list knows only of presses inside it.
bool PickerInput::rowsRelease(const QMouseEvent *event)
{
    const bool isDraggedIn = m_isDraggedIn;
    m_isPressInside = m_isDraggedIn = false;
    if (!isDraggedIn)
        return false;
    m_list->forgetPress();
    const QModelIndex row = m_list->indexAt(event->pos());
    if (row.isValid())
        emit rowChosen(row.row());
    return true;
}

} // namespace OvCc
