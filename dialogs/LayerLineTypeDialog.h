// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QDialog>
#include <QStringList>

#include <memory>

class Ui_LayerLTypeDialog;

namespace OvCc {

/// The list of loaded linetypes, shown with exec(). There is one, "Continuous", until setLinetypes()
/// names others; it cannot be edited, and the button "loaded..." loads no more. The dialog ends with
/// QDialog::Accepted by "OK", else with QDialog::Rejected.
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

    /// Lists these in their order, of which the user can choose one: a double click on it accepts.
    /// None is current then. An empty list brings back "Continuous" alone, as in the beginning.
    void setLinetypes(const QStringList &linetypes);

    /// Selects the linetype of that name, in whatever letter case; none if it is not in the list.
    void setCurrentLinetype(const QString &linetype);

    /// The linetype that is selected, as it is listed; empty if none is.
    QString currentLinetype() const;

private Q_SLOTS:
    void slotAccepted();
    void slotCancel();
    void slotHelp();

private:
    void appendRow(const QString &text, const QString &linetype);

    std::unique_ptr<Ui_LayerLTypeDialog> m_ui;
};

} // namespace OvCc
