// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/BaseComboBox.h>

#include <QString>

namespace OvCc {

/// The rows of LineTypeComboBox.
enum LineTypeRow { LineTypeByLayerRow, LineTypeByBlockRow, ContinuousRow };

/// The linetype picker, 150 × 20 pixels: "By Layer", "By Block" and "Continuous". Its button
/// "Others..." is the host's to answer, see BaseComboBox::dialogRequested().
///
/// @ingroup pickers
/// @image html LineTypeComboBox.png
class OVCC_EXPORT LineTypeComboBox : public BaseComboBox
{
    Q_OBJECT

public:
    /// "By Layer" is chosen.
    explicit LineTypeComboBox(QWidget *parent = nullptr);
    ~LineTypeComboBox() override;

public Q_SLOTS:
    void openDialog() override;

Q_SIGNALS:
    /// The user chose a row: once per choice, never for setCurrentIndex().
    /// @param name the row's label
    void lineTypeChosen(QString name);
};

} // namespace OvCc
