// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "layer/data/LayerFlags.h"

#include <OvCustomControl/LayerWarningDialog.h>

#include <QPointer>
#include <QString>
#include <QStringList>

#include <functional>

namespace OvCc {

class LayerDelegate;

/// Changes of flags by the user of a layer table, of one layer or of many. Each stands between
/// changesBegin() and changesEnd() of the delegate, and layersToggled() follows where anything is
/// different.
///
/// The host may delete the delegate inside any of these, and while the user is asked. Nothing more is
/// changed then, and nothing told.
class FlagGestures
{
public:
    /// What is to show the outcome; it is called before changesEnd(), not for the current layer if that
    /// was declined.
    using Show = std::function<void(const FlagOrders &orders)>;

    /// What became of the current layer, which is not frozen, nor switched off but after a question.
    enum class Guard { NotNeeded, Passed, Declined };

    explicit FlagGestures(LayerDelegate *delegate);

    /// Those of a delegate.
    static FlagGestures &of(const LayerDelegate &delegate);

    /// What the change of so many layers is called; at least one.
    using Text = std::function<QString(int layers)>;

    /// Changes flags.
    /// @param[in,out] orders  those that were attempted in the end; none if nothing was begun
    /// @param         guarded the place in it of the current layer, if that needs the guard; or -1
    Guard change(const Text &text, FlagOrders &orders, const Show &show, int guarded = -1);

    /// Tells the host, and sends layerDataChanged() if there still is a delegate.
    static void tell(const QPointer<LayerDelegate> &delegate, const QStringList &layers);

    /// Takes back what the user is being asked, and all that hangs on it.
    void dropQuestion();

private:
    Guard switchOff(const Text &text, const FlagOrder &current, FlagOrders &others,
                    const Show &show);
    Guard freeze(const Text &text, const FlagOrder &current, FlagOrders &others, const Show &show);
    int ask(const QString &text, bool isQuestion);

    bool isAsking() const;
    LayerWarningDialog *dialog();

    LayerDelegate *const m_delegate;
    QPointer<LayerWarningDialog> m_dialog;
};

} // namespace OvCc
