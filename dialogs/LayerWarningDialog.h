// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QDialog>
#include <QString>

#include <memory>

namespace OvCc {

/// The warning before the current layer is switched off or frozen, shown with exec().
///
/// It is either a question or a notice, see setButtonStatus(). A question that is answered "Yes"
/// switches the layer in the drawing and ends with QDialog::Accepted. "No", the button of a notice,
/// Escape and closing the window change nothing and end with QDialog::Rejected.
///
/// One dialog serves any number of warnings: text, buttons, state and name stay until they are set
/// again.
///
/// @ingroup dialogs
/// @image html LayerWarningDialog.png
class OVCC_EXPORT LayerWarningDialog : public QDialog
{
    Q_OBJECT

public:
    /// It stays in front of @p parent, which owns it; null is no parent.
    explicit LayerWarningDialog(QWidget *parent);
    ~LayerWarningDialog() override;

    /// Sets the sentence beside the warning sign.
    void setTipsText(QString text);

    /// Chooses between a question with "Yes" and "No" and a notice with "OK" alone. The first of
    /// these buttons gets the focus, whatever the warning before was answered with.
    void setButtonStatus(bool question);

    /// Whether the layer is on now, false until said otherwise: "Yes" turns it into the opposite.
    void setIsOn(bool on);

    /// The layer that "Yes" switches.
    void setLayerName(QString name);

Q_SIGNALS:
    /// "Yes" was chosen: the layer is switched next.
    void aboutToSwitch();

private Q_SLOTS:
    void slotAccepted();
    void slotCancel();

private:
    struct Private;
    const std::unique_ptr<Private> m_d;
};

} // namespace OvCc
