// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/BaseComboBox.h>

namespace OvCc {

/// The text style picker, 150 × 20 pixels: its face shows the name of the style alone, its drop-down
/// a sample of it. Its button "Manager Text Styles..." is the host's to answer, see
/// BaseComboBox::dialogRequested().
///
/// @ingroup pickers
/// @image html TextStyleComboBox.png
class OVCC_EXPORT TextStyleComboBox : public BaseComboBox
{
    Q_OBJECT

public:
    /// With one style, "Standard".
    explicit TextStyleComboBox(QWidget *parent = nullptr);
    ~TextStyleComboBox() override;

public Q_SLOTS:
    void openDialog() override;
};

} // namespace OvCc
