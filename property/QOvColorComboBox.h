// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/BaseComboBox.h>

#include <QColor>

namespace OvCc {

/// The rows of QOvColorComboBox.
///
/// @ingroup pickers
enum ColorRow {
    ColorByLayerRow,
    ColorByBlockRow,
    RedRow,
    YellowRow,
    GreenRow,
    CyanRow,
    BlueRow,
    MagentaRow,
    WhiteRow,
    FirstCustomColorRow ///< where the colours from the dialog begin, and what a host adds
};

/// The colour picker: "By Layer", "By Block", seven standard colours, and a button for the colour
/// dialog. A colour from the dialog is appended as a row that is named by its components
/// (`255,128,0`) and lives as long as the picker; one that has such a row already changes nothing.
///
/// @ingroup pickers
/// @image html QOvColorComboBox.png
class OVCC_EXPORT QOvColorComboBox : public BaseComboBox
{
    Q_OBJECT

public:
    /// "By Layer" is chosen.
    explicit QOvColorComboBox(QWidget *parent = nullptr);
    ~QOvColorComboBox() override;

    /// The colour of a row: white for ColorByLayerRow and ColorByBlockRow; invalid for a row that
    /// is not there or that the host added.
    QColor colorOf(int row) const;

public Q_SLOTS:
    /// Asks for a colour in the colour dialog and chooses it.
    void openDialog() override;

Q_SIGNALS:
    /// The user chose a row: once per choice, never for setCurrentIndex().
    /// @param color as colorOf() tells it
    void colorChosen(int row, QColor color);

private:
    void addColor(const QString &name, const QColor &color);

    struct Private;
    const std::unique_ptr<Private> m_d;
};

} // namespace OvCc
