// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QWidget>

#include <memory>

namespace OvCc {

class LayerComboBox;

/// A slim bar for a panel of the host: a picture of layers, a layer combo box, and a button that
/// folds and unfolds what belongs to the bar, as a StackWidget does. It is folded at first.
///
/// @ingroup layers
/// @image html LayerControl.png
class OVCC_EXPORT LayerControl : public QWidget
{
    Q_OBJECT

    /// Whether the bar is folded, and with it what belongs to it.
    Q_PROPERTY(bool folded READ isFolded WRITE setFolded NOTIFY folded)

public:
    /// Folded, with a layer combo box that has no rows yet.
    explicit LayerControl(QWidget *parent = nullptr);

    /// A StackWidget that hangs on the bar goes with it.
    ~LayerControl() override;

    /// 190 × 24 pixels.
    QSize sizeHint() const override;

    /// It belongs to the bar. The host fills it with LayerComboBox::slotUpdate().
    LayerComboBox *layerComboBox() const;

    /// True at first.
    bool isFolded() const;

public Q_SLOTS:
    /// Does what folderClicked() does, unless the bar is so already.
    void setFolded(bool isFolded);

    /// Folds the bar if it is unfolded, unfolds it otherwise, and sends folded(). The fold button
    /// calls it.
    void folderClicked();

Q_SIGNALS:
    /// The bar is folded now, or unfolded. It may be deleted here.
    void folded(bool isFolded);

    /// The bar was moved in its parent or resized. When the window around it moves, the bar stays
    /// where it is, and nothing is sent. Qt goes on with the bar after this: use deleteLater() to
    /// delete it here.
    void geometryChanged();

protected:
    bool event(QEvent *event) override;

private:
    struct Private;
    const std::unique_ptr<Private> m_d;
};

} // namespace OvCc
