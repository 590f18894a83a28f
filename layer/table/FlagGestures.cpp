// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "FlagGestures.h"

#include "layer/data/HostNotice.h"

#include <OvCustomControl/LayerDelegate.h>
#include <OvCustomControl/OvLayerUtility.h>

#include <QApplication>
#include <QPointer>
#include <QSet>

#include <utility>

namespace OvCc {

namespace {

/// How a question ends that was dropped; it is neither "Yes" nor "No".
constexpr int dropped = QDialog::Accepted + 1;

/// Dialogs that must outlive whoever shows them, but not the application; the host may delete one itself,
/// as all top-level widgets at its end.
QSet<QWidget *> &lastingDialogs()
{
    static QSet<QWidget *> dialogs;
    return dialogs;
}

void deleteLastingDialogs()
{
    qDeleteAll(std::exchange(lastingDialogs(), {}));
}

LayerWarningDialog *createWarningDialog()
{
    auto *dialog = new LayerWarningDialog(nullptr);
    lastingDialogs().insert(dialog);
    QObject::connect(dialog, &QObject::destroyed, dialog,
                     [dialog] { lastingDialogs().remove(dialog); });
    qRemovePostRoutine(deleteLastingDialogs); // once is enough
    qAddPostRoutine(deleteLastingDialogs);
    return dialog;
}

/// @return false if there is nobody any more to go on
bool begin(const QPointer<LayerDelegate> &delegate, const QString &text)
{
    if (delegate)
        emit delegate->changesBegin(text);
    return delegate;
}

void end(const QPointer<LayerDelegate> &delegate, const FlagOrders &orders)
{
    const QStringList changed = changedIn(orders);
    const int refused = int(refusedIn(orders).size());
    if (delegate)
        emit delegate->changesEnd(int(changed.size()), refused);
    if (delegate && !changed.isEmpty())
        emit delegate->layersToggled(changed);
}

} // namespace

FlagGestures::FlagGestures(LayerDelegate *delegate)
    : m_delegate(delegate)
    , m_dialog(createWarningDialog())
{
}

FlagGestures::Guard FlagGestures::change(const Text &text, FlagOrders &orders, const Show &show,
                                         int guarded)
{
    if (guarded >= 0) {
        const auto place = orders.begin() + guarded;
        const FlagOrder current = *place;
        orders.erase(place);
        if (isAsking()) { // it is about another gesture, and would switch this one's layer
            orders.clear();
            return Guard::Declined;
        }
        const bool isToBeOff = current.wanted == oneFlag(OnColumn, false);
        return isToBeOff ? switchOff(text, current, orders, show)
                         : freeze(text, current, orders, show);
    }
    const QPointer<LayerDelegate> delegate(m_delegate);
    if (!begin(delegate, text(int(orders.size())))) {
        orders.clear();
        return Guard::NotNeeded;
    }
    setLayerFlags(orders);
    show(orders);
    end(delegate, orders);
    return Guard::NotNeeded;
}

void FlagGestures::tell(const QPointer<LayerDelegate> &delegate, const QStringList &layers)
{
    tellHost(layers);
    if (delegate)
        emit delegate->layerDataChanged();
}

void FlagGestures::dropQuestion()
{
    if (isAsking())
        m_dialog->done(dropped);
}

/// The dialog switches the current layer itself, and before it does, all begins. Where the user says no,
/// it is the others alone.
FlagGestures::Guard FlagGestures::switchOff(const Text &text, const FlagOrder &current,
                                            FlagOrders &others, const Show &show)
{
    const QPointer<LayerDelegate> delegate(m_delegate);
    const KcDbDatabase *drawing = getCurrentDb();
    const int count = int(others.size()) + 1;
    std::optional<bool> before;
    const auto switching = [&, delegate] {
        begin(delegate, text(count));
        before = layerFlag(current.name, OnColumn);
    };
    const auto begun = QObject::connect(dialog(), &LayerWarningDialog::aboutToSwitch, switching);
    dialog()->setIsOn(true);
    dialog()->setLayerName(current.name);
    const int answer = ask(LayerDelegate::tr("The current layer is turned off."), true);
    QObject::disconnect(begun);

    if (!delegate || answer == dropped || getCurrentDb() != drawing)
        others.clear();
    if (answer != QDialog::Accepted) {
        if (!others.empty())
            change(text, others, show);
        return Guard::Declined;
    }
    setLayerFlags(others);
    FlagOrder switched = current;
    const std::optional<bool> after = layerFlag(current.name, OnColumn);
    if (after)
        switched.shown = oneFlag(OnColumn, *after);
    switched.isRefused = !before || after != false;
    switched.isChanged = !switched.isRefused && *before;
    others.push_back(switched);
    show(others);
    end(delegate, others);
    return Guard::Passed;
}

FlagGestures::Guard FlagGestures::freeze(const Text &text, const FlagOrder &current,
                                         FlagOrders &others, const Show &show)
{
    const QPointer<LayerDelegate> delegate(m_delegate);
    const KcDbDatabase *drawing = getCurrentDb();
    const int count = int(others.size()) + 1;
    ask(LayerDelegate::tr("The current layer can't be frozen!"), false);
    if (getCurrentDb() != drawing)
        others.clear();
    if (!begin(delegate, text(count))) {
        others.clear();
        return Guard::Declined;
    }
    setLayerFlags(others);
    show(others);
    others.push_back(current);
    end(delegate, others);
    return Guard::Declined;
}

/// @return what the dialog ends with; the delegate may be gone then, but not the dialog
int FlagGestures::ask(const QString &text, bool isQuestion)
{
    dialog()->setButtonStatus(isQuestion);
    dialog()->setTipsText(text);
    return dialog()->exec();
}

bool FlagGestures::isAsking() const
{
    return m_dialog && m_dialog->isVisible();
}

/// Another one where the host has deleted it.
LayerWarningDialog *FlagGestures::dialog()
{
    if (!m_dialog)
        m_dialog = createWarningDialog();
    return m_dialog;
}

} // namespace OvCc
