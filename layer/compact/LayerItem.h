// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once
// clazy:excludeall=fully-qualified-moc-types

#include <OvCustomControl/LayerItemData.h>
#include <OvCustomControl/OvccExport.h>

#include <QWidget>

#include <functional>
#include <memory>

namespace OvCc {

/// One row of the layer combo box: buttons that switch a layer on or off, freeze or thaw it and lock
/// or unlock it, its colour and its name.
///
/// A click on one of the three buttons changes the layer in the drawing at once and then sends
/// statusChanged(). Nothing is refused here and no result is looked at; what the row shows is what
/// the user asked for.
///
/// @ingroup layers
/// @image html LayerItem.png
class OVCC_EXPORT LayerItem : public QWidget
{
    Q_OBJECT

public:
    /// A row for a layer "layer0" that is on, thawed, unlocked and white.
    explicit LayerItem(QWidget *parent);
    ~LayerItem() override;

    /// The layer as it is shown, with its name in full.
    LayerItemData currentLayerData() const;

    /// Shows @p data, its name in full. The buttons follow it from now on: the next click on each
    /// turns what is shown into its opposite.
    void setCurrentLayer(LayerItemData data);

    /// The name as shown.
    QString layerName() const;

    /// Shows @p name: beyond 10 characters, its first 9 and "...". A character is what a reader takes
    /// for one, whatever it is made of. The row's record keeps its name.
    void setLayerName(QString name);

public Q_SLOTS:
    /// Turn what is shown into its opposite, as a click on one of the buttons does: on or off,
    /// frozen or thawed, locked or unlocked. statusChanged() follows.
    /// @{
    void slotLightChange();
    void slotFreezeStatus();
    void slotLockChange();
    /// @}

    /// Does nothing: the colour is only shown.
    void slotColorChanged();

Q_SIGNALS:
    /// The user changed the layer. The row may be deleted here, and where the drawing tells its host
    /// of the change: then this is not sent.
    /// @param index       OnStatus, FreezeStatus or LockStatus
    /// @param layerStatus the layer as it is now
    void statusChanged(int index, LayerItemData layerStatus);

private:
    friend class LayerList;
    using Setter = std::function<void(int index, const QString &name, bool value)>;

    /// Has @p setter change the drawing on a click, instead of OvLayerUtility alone. The row may be
    /// deleted meanwhile.
    void setSetter(Setter setter);

    struct Private;
    const std::unique_ptr<Private> m_d;
};

} // namespace OvCc
