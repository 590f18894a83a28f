// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/BaseComboBox.h>
#include <OvCustomControl/LineWeights.h>

namespace OvCc {

/// The rows of LineWidthComboBox, and those in the list of OvLineWeightDialog.
///
/// @ingroup pickers
enum LineWeightRow {
    LineWeightByLayerRow,
    LineWeightByBlockRow,
    LineWeightDefaultRow,
    FirstNumericLineWeightRow ///< the thinnest; the other standard lineweights follow
};

/// The lineweight picker, 150 × 20 pixels: "By Layer", "By Block", "Default" and the standard
/// lineweights from the thinnest to the thickest, and a button for the lineweight settings.
///
/// The first 9 rows are there at once. The other 18 come with the first drop-down that opens in the
/// process, and only to the picker that it belongs to: any other one keeps 9 rows, unless the host
/// calls addRemainingRows().
///
/// Labels are in millimetres until the user accepts the settings with inches; from then on they stay
/// in inches.
///
/// @ingroup pickers
/// @image html LineWidthComboBox.png
class OVCC_EXPORT LineWidthComboBox : public BaseComboBox
{
    Q_OBJECT

public:
    /// "By Layer" is chosen.
    explicit LineWidthComboBox(QWidget *parent = nullptr);
    ~LineWidthComboBox() override;

    /// The row of a lineweight, be it in this picker or still missing; -1 if there is none.
    /// @param lineWeight hundredths of a millimetre or a LineWeightCode
    static int rowOf(int lineWeight);

    /// Adds the rows that are missing in this picker, whatever drop-down was opened before.
    void addRemainingRows();

public Q_SLOTS:
    /// Shows the lineweight settings and chooses the row that the user accepts there, if this picker
    /// has it.
    void openDialog() override;

    /// Adds the rows that are missing, on the first call in the process.
    void slotAddMoreItem();

    /// Remembers what was accepted in the lineweight settings.
    void slotSettingsChanged(bool isMM, int row);

Q_SIGNALS:
    /// The user chose a row: once per choice, never for setCurrentIndex().
    /// @param lineWeight hundredths of a millimetre or a LineWeightCode
    void lineWeightChosen(int lineWeight);

private:
    void addRows(int first, int end);
    void showInches();

    struct Private;
    const std::unique_ptr<Private> m_d;
};

} // namespace OvCc
