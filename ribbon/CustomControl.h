// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>
#include <OvCustomControl/QtVersions.h>

#include <QWidget>

#include <memory>

namespace OvCc {

class LayerComboBox;

/// A layer combo box in a transparent strip that tells when the mouse is over it.
///
/// It can take its width from a companion, say a ViewButton beside it: connect the companion's
/// geometryChanged() to adjustGeometry().
///
/// @ingroup ribbon
/// @image html CustomControl.png
class OVCC_EXPORT CustomControl : public QWidget
{
    Q_OBJECT

public:
    /// With a layer combo box that has no rows yet, and without a width companion.
    explicit CustomControl(QWidget *parent = nullptr);

    /// Deletes the width companion, too.
    ~CustomControl() override;

    /// 210 × 20 pixels.
    QSize sizeHint() const override;

    /// It belongs to the control. The host fills it with LayerComboBox::slotUpdate().
    LayerComboBox *layerComboBox() const;

    /// Sets the widget that adjustGeometry() measures. The control owns it from now on, without
    /// becoming its parent, and deletes the one before; null leaves it without one. The companion
    /// may be deleted elsewhere first. It must not contain the control.
    void setWidthCompanion(QWidget *companion);

    /// Null without one, or where it was deleted elsewhere.
    QWidget *widthCompanion() const;

public Q_SLOTS:
    /// Fixes the width at 165 pixels more than that of the width companion; without one nothing
    /// changes.
    void adjustGeometry();

Q_SIGNALS:
    /// The mouse came over the control (true) or left it (false).
    void enter(bool isInside);

protected:
    void enterEvent(EnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    struct Private;
    const std::unique_ptr<Private> m_d;
};

} // namespace OvCc
