#pragma once

#include <OvCustomControl/LayerComboBox.h>

/// The layer box of the tool bar, kept quick however many layers there are.
///
/// The box builds some widgets per layer: a moment for a thousand layers, half a minute for a hundred
/// thousand, among which nobody finds one in a list. Beyond a few thousand layers it shows the current
/// one only, and a press on it asks for the layer manager, which can search.
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
