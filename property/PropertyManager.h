// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QColor>
#include <QWidget>

#include <memory>

namespace OvCc {

class LineTypeComboBox;
class LineWidthComboBox;
class QOvColorComboBox;

/// A small panel with the pickers for the properties of new objects, one below the other: colour,
/// lineweight and linetype.
///
/// @ingroup pickers
/// @image html PropertyManager.png
class OVCC_EXPORT PropertyManager : public QWidget
{
    Q_OBJECT

public:
    /// "By Layer" is chosen in each of the pickers.
    explicit PropertyManager(QWidget *parent = nullptr);
    ~PropertyManager() override;

    /// The pickers; they belong to the panel.
    /// @{
    QOvColorComboBox *colorPicker() const;
    LineWidthComboBox *lineWeightPicker() const;
    LineTypeComboBox *lineTypePicker() const;
    /// @}

Q_SIGNALS:
    /// See QOvColorComboBox::colorChosen().
    void colorChosen(int row, QColor color);

    /// See LineWidthComboBox::lineWeightChosen().
    void lineWeightChosen(int lineWeight);

    /// See LineTypeComboBox::lineTypeChosen().
    void lineTypeChosen(QString name);

private:
    struct Private;
    const std::unique_ptr<Private> m_d;
};

} // namespace OvCc
