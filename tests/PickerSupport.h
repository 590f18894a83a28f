// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Support.h"
#include "layer/compact/LayerList.h"

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QScopeGuard>
#include <QTimer>

#include <functional>

/// @file
/// What a user does with a picker and with the dialogs that it opens.

inline OvCc::ListWidget *listOf(const OvCc::BaseComboBox &picker)
{
    return picker.view()->findChild<OvCc::ListWidget *>(QStringLiteral("customListView"));
}

inline QPushButton *buttonOf(const OvCc::BaseComboBox &picker)
{
    return picker.view()->findChild<QPushButton *>(QStringLiteral("customSettingBtn"));
}

inline QString textOf(const QComboBox &picker)
{
    return picker.lineEdit()->findChildren<QLabel *>().at(1)->text();
}

inline QListWidget *listOf(const OvCc::LayerComboBox &box)
{
    return qobject_cast<QListWidget *>(box.view());
}

/// A button or label in a row of the drop-down, which is brought into sight.
template <class Piece>
Piece *inRow(OvCc::LayerComboBox &box, int row, int place = 0)
{
    listOf(box)->scrollToItem(listOf(box)->item(row));
    return box.layerItem(row)->findChildren<Piece *>().at(place);
}

/// Whether a layer box has a row for each layer of the drawing, which tells what it is like.
inline bool isAsDrawing(OvCc::LayerComboBox &box)
{
    const std::unique_ptr<QList<OvCc::LayerItemData>> layers(OvLayerUtility().getAllLayer());
    bool isSo = box.count() == layers->size();
    for (int row = 0; isSo && row < layers->size(); ++row)
        isSo = listOf(box)->item(row)->text() == layers->at(row).name
               && isSame(box.layerItem(row)->currentLayerData(), layers->at(row));
    return isSo;
}

inline void show(QComboBox &picker)
{
    picker.window()->show();
    picker.activateWindow();
    picker.setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&picker));
}

/// Of one in an active window.
inline void openPopupAtOnce(const QComboBox &picker)
{
    click(picker.lineEdit());
    QVERIFY(QTest::qWaitForWindowExposed(picker.view()->window()));
    QVERIFY(picker.view()->isVisible());
}

inline void openPopup(QComboBox &picker)
{
    show(picker);
    openPopupAtOnce(picker);
}

inline void onRow(OvCc::BaseComboBox &picker, QEvent::Type type, int row,
                  Qt::MouseButton button = Qt::LeftButton)
{
    OvCc::ListWidget *list = listOf(picker);
    mouse(type, list->viewport(), list->visualItemRect(list->item(row)).center(), button);
}

inline void clickRow(OvCc::BaseComboBox &picker, int row, Qt::MouseButton button = Qt::LeftButton)
{
    openPopup(picker);
    listOf(picker)->scrollToItem(picker.item(row));
    onRow(picker, QEvent::MouseButtonPress, row, button);
    onRow(picker, QEvent::MouseButtonRelease, row, button);
}

/// Whether a press of the right button there brings up a menu.
inline bool opensMenu(const QComboBox &picker)
{
    const QPoint place(5, 5);
    QContextMenuEvent menu(QContextMenuEvent::Mouse, place, picker.mapToGlobal(place));
    QApplication::sendEvent(picker.lineEdit(), &menu);
    return qobject_cast<QMenu *>(QApplication::activePopupWidget());
}

inline void pressButton(OvCc::BaseComboBox &picker)
{
    openPopup(picker);
    click(buttonOf(picker));
}

/// Runs @p ask, in which a dialog comes up, or one after the other, and each of @p acts on its dialog.
/// If a check in one fails, and so leaves the dialog open, it is cancelled.
template <class Ask, class... Acts>
void answerDialog(Ask ask, Acts... acts)
{
    QList<std::function<void(QDialog &)>> left{acts...};
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog || !dialog->windowHandle() || !dialog->windowHandle()->isExposed())
            return;
        timer.stop();
        const auto cancel = qScopeGuard([open = QPointer<QDialog>(dialog)] {
            if (open && open->isVisible())
                open->reject();
        });
        QVERIFY(!QApplication::activePopupWidget());
        left.takeFirst()(*dialog);
        if (!left.isEmpty())
            timer.start(0);
    });
    timer.start(0);
    ask();
    QVERIFY(left.isEmpty());
}
