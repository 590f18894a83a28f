// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QDialog>

#include <memory>

class Ui_LayerLTypeDialog;

namespace OvCc {

/// The list of loaded linetypes, shown with exec(). There is one, "Continuous", and it cannot be
/// edited; the button "loaded..." loads no more. What the dialog tells is how it was closed:
/// QDialog::Accepted by "OK", else QDialog::Rejected.
///
/// @ingroup dialogs
/// @image html LayerLineTypeDialog.png
class OVCC_EXPORT LayerLineTypeDialog : public QDialog
{
    Q_OBJECT

public:
    /// It stays in front of @p parent, which owns it; null is no parent.
    explicit LayerLineTypeDialog(QWidget *parent);
    ~LayerLineTypeDialog() override;

private Q_SLOTS:
    void slotAccepted();
    void slotCancel();
    void slotHelp();

private:
    std::unique_ptr<Ui_LayerLTypeDialog> m_ui;
};

} // namespace OvCc
