// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/BaseComboBox.h>

namespace OvCc {

/// The visual styles: the rows of VisualStyleComboBox.
///
/// @ingroup pickers
enum VisualStyle {
    Wireframe2dStyle,
    Wireframe3dStyle,
    HiddenStyle,
    FlatStyle,
    GouraudStyle,
    FlatEdgesStyle,
    GouraudEdgesStyle
};

/// The visual style picker, 150 × 20 pixels: seven styles with their pictures, from "2D wireframe"
/// to "Gouraud+Egdes", in a drop-down 280 pixels wide and without a button.
///
/// @ingroup pickers
/// @image html VisualStyleComboBox.png
class OVCC_EXPORT VisualStyleComboBox : public BaseComboBox
{
    Q_OBJECT

public:
    /// "2D wireframe" is chosen.
    explicit VisualStyleComboBox(QWidget *parent = nullptr);
    ~VisualStyleComboBox() override;
};

} // namespace OvCc
