// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QDialog>

#include <memory>

class Ui_LayerLWidthDialog;

namespace OvCc {

/// The dialog in which the user picks a layer's lineweight, shown with exec().
///
/// Its list has 25 rows, "Default" and the standard lineweights from the thinnest to the thickest,
/// always in millimetres. A row number is what goes in and out; the dialog knows neither layers nor
/// the drawing. It can be shown any number of times; call setCurrentLineweight() before each.
///
/// @ingroup dialogs
/// @image html LayerLineWeightDialog.png
class OVCC_EXPORT LayerLineWeightDialog : public QDialog
{
    Q_OBJECT

public:
    /// It stays in front of @p parent, which owns it; null is no parent.
    explicit LayerLineWeightDialog(QWidget *parent);
    ~LayerLineWeightDialog() override;

    /// Makes @p row the current one and shows it both as the original and as the new lineweight. A
    /// row that is not in the list changes nothing.
    void setCurrentLineweight(int row);

    /// The list's current row, -1 when there is none.
    int currentLineweight() const;

Q_SIGNALS:
    /// The user pressed "OK"; the dialog is still open.
    /// @param currentRow the list's current row, -1 when there is none
    void layerLineWeightChanged(int currentRow);

private Q_SLOTS:
    void slotAccepted();
    void slotCancel();
    void slotHelp();

    /// Shows @p row as the new lineweight. When no row is current any more, the last one stays.
    void slotCurrentLabelChaged(int row);

private:
    void initListViewData();

    std::unique_ptr<Ui_LayerLWidthDialog> m_ui;
};

} // namespace OvCc
