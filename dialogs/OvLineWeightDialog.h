// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QDialog>

#include <memory>

class Ui_LineWeightDialog;

namespace OvCc {

/// The lineweight settings, shown with exec(): a lineweight and the unit of the labels.
///
/// Its list has the 27 rows of LineWidthComboBox: "By Layer", "By Block", "Default" and the standard
/// lineweights from the thinnest to the thickest. It can be shown any number of times; call
/// setCurrentLineweight() before each. The unit stays as the user left it, even by "Cancel".
///
/// The display switch, the display scale and the default lineweight can be set but change nothing.
///
/// @ingroup dialogs
/// @image html OvLineWeightDialog.png
class OVCC_EXPORT OvLineWeightDialog : public QDialog
{
    Q_OBJECT

public:
    /// It stays in front of @p parent, which owns it; null is no parent.
    explicit OvLineWeightDialog(QWidget *parent);
    ~OvLineWeightDialog() override;

    /// Makes @p row the current one and shows it as the current lineweight. A row that is not in the
    /// list changes nothing.
    void setCurrentLineweight(int row);

Q_SIGNALS:
    /// The user pressed "Ok"; the dialog is still open.
    /// @param isInitMM   whether the labels are in millimetres
    /// @param currentRow the list's current row, -1 when there is none
    void lineWeightChanged(bool isInitMM, int currentRow);

private Q_SLOTS:
    void millimeterConvert(bool checked);
    void InConvert(bool checked);
    void slotAccepted();
    void slotCancel();
    void slotHelp();

    /// Shows @p row as the current lineweight. When no row is current any more, the last one stays.
    void slotCurrentLabelChaged(int row);

private:
    void initListViewData();
    void showLabels(const QStringList &labels);

    std::unique_ptr<Ui_LineWeightDialog> m_ui;
};

} // namespace OvCc
