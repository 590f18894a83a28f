// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

class QComboBox;
class QKeyEvent;
class QMouseEvent;
class QWheelEvent;

namespace OvCc {

class ListWidget;

/// Gives a picker the keyboard, wheel and mouse of an ordinary combo box. To the combo box itself its
/// popup is one single item; the rows that the user sees are in a list inside that item.
///
/// Closed, keys and wheel choose the next row. Open, the mouse highlights the row under it, and keys go
/// on from there and move the list's current row; if the popup closes without a choice, the row that
/// the face shows is current and highlighted again. Without the list there is nothing to do.
class PickerInput : public QObject
{
    Q_OBJECT

public:
    /// Watches @p combo, its line edit and its popup, which must be installed, and @p list in the
    /// popup. This must go before any of them.
    PickerInput(QComboBox *combo, ListWidget *list);
    ~PickerInput() override;

    /// Says that the face shows the list's current row from now on.
    void keepRow();

    /// Makes the row that the face shows current and highlighted again.
    void restoreRow();

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    /// The user chose @p row in another way than by a press and release in the list.
    void rowChosen(int row);

private:
    bool faceEvent(QEvent *event);
    bool faceKey(const QKeyEvent *event);
    bool faceWheel(QWheelEvent *event);
    void chooseRow(int row);
    void popupEvent(const QEvent *event);
    bool listEvent(QEvent *event);
    bool listKey(const QKeyEvent *event);
    void takeHighlightedRow();
    bool rowsEvent(QEvent *event);
    void rowsMove(const QMouseEvent *event);
    bool rowsRelease(const QMouseEvent *event);

    QComboBox *m_combo;
    ListWidget *m_list; ///< null once it is gone
    QObject *m_popup;
    int m_faceRow = -1;
    bool m_isPressInside = false;
    bool m_isDraggedIn = false;
};

} // namespace OvCc
