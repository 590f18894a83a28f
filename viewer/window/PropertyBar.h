// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "viewer/canvas/FaceStyle.h"

#include <QWidget>

namespace OvCc {
class PropertyManager;
class TextStyleComboBox;
class VisualStyleComboBox;
} // namespace OvCc

namespace Tessa {

/// The pickers of the tool bar: the panel of properties, and beside it, with their captions, the
/// pickers of text style and visual style.
class PropertyBar : public QWidget
{
    Q_OBJECT

public:
    explicit PropertyBar(QWidget *parent = nullptr);

    OvCc::PropertyManager *panel() const { return m_panel; }
    OvCc::TextStyleComboBox *textStyles() const { return m_textStyles; }
    OvCc::VisualStyleComboBox *visualStyles() const { return m_visualStyles; }

    /// Shows which style the current canvas has.
    void showFaceStyle(FaceStyle style);

signals:
    /// The user chose a visual style.
    void faceStyleChosen(Tessa::FaceStyle style);

private:
    OvCc::PropertyManager *m_panel;
    OvCc::TextStyleComboBox *m_textStyles;
    OvCc::VisualStyleComboBox *m_visualStyles;
};

} // namespace Tessa
