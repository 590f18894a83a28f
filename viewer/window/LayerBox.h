#pragma once

#include <OvCustomControl/LayerComboBox.h>

namespace Tessa {

/// Gives a layer combo box its face, which it would get with its first rows only.
void prepareFace(OvCc::LayerComboBox &box);

/// Shows the working drawing's layers as they are now in any layer combo box, and keeps it quick
/// however many there are.
///
/// A box builds some widgets per layer: a moment for a thousand layers, half a minute for a hundred
/// thousand, among which nobody finds one in a list. Beyond a few thousand layers it shows the current
/// one only.
/// @return whether the box has rows
bool showLayers(OvCc::LayerComboBox &box, int layerCount);

/// The layer box of the tool bar: where there are too many layers for a list, a press on it asks for
/// the layer manager, which can search.
class LayerBox : public OvCc::LayerComboBox
{
    Q_OBJECT

public:
    explicit LayerBox(QWidget *parent = nullptr);

    /// Shows the working drawing's layers as they are now.
    void refresh(int layerCount);

    void showPopup() override;

signals:
    /// The user pressed the box, but there are too many layers for a list.
    void searchWanted();

private:
    bool m_hasRows = true;
};

} // namespace Tessa
