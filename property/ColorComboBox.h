// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QColor>
#include <QComboBox>

#include <memory>

namespace OvCc {

/// A plain colour combo box: seven standard colours and "Select Color...", which asks for another one
/// in the colour dialog. A colour from the dialog becomes the first row, named by its components
/// (`255,128,0`), and lives as long as the combo box.
///
/// Only choices among the first seven rows are reported: a standard colour that new ones have moved
/// further down can still be shown, but tells nobody.
///
/// The dialog comes up inside currentIndexChanged(), and Qt goes on with the combo box after it: to
/// delete the combo box meanwhile, or inside its signals, use deleteLater(), which waits for the end
/// of the dialog. What the combo box is in has to stay until then.
///
/// @ingroup pickers
/// @image html ColorComboBox.png
class OVCC_EXPORT ColorComboBox : public QComboBox
{
    Q_OBJECT

    /// See currentColor().
    Q_PROPERTY(QColor currentColor READ currentColor NOTIFY currentColorChanged
                       DESIGNABLE false STORED false)

public:
    /// Shows the first colour, red, and reports nothing.
    explicit ColorComboBox(QWidget *parent = nullptr);
    ~ColorComboBox() override;

    /// The colour that any of these combo boxes reported last; red at first. Only the one that reported
    /// it sends currentColorChanged().
    static QColor currentColor();

Q_SIGNALS:
    /// A colour became the current one, once per change, by the user or by setCurrentIndex(). A
    /// cancelled colour dialog reports nothing.
    void currentColorChanged(QColor color);

protected:
    bool event(QEvent *event) override;

private Q_SLOTS:
    void slotCurrentChanged(int index);

private:
    void report(const QColor &color);
    void selectColor(int index);
    void addColor(const QColor &color, int index);

    struct Private;
    const std::unique_ptr<Private> m_d;
};

} // namespace OvCc
