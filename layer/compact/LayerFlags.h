#pragma once

#include <OvCustomControl/OvLayerUtility.h>

#include <QCoreApplication>

#include <array>

/// @file
/// The flags of a layer that a click in the drop-down of the layer combo box changes.

namespace OvCc {

struct LayerFlag
{
    bool LayerItemData::*value;
    void (OvLayerUtility::*set)(QString name, bool value);
    const char *whenTrue;  ///< what setting it to true is called in a list of undo steps
    const char *whenFalse; ///< what setting it to false is called there
};

/// By their StatusIndex. The texts are the layer combo box's.
constexpr std::array<LayerFlag, 3> layerFlags{{
        {&LayerItemData::isOn, &OvLayerUtility::setLayerOff,
         QT_TRANSLATE_NOOP("OvCc::LayerComboBox", "Switch layer on"),
         QT_TRANSLATE_NOOP("OvCc::LayerComboBox", "Switch layer off")},
        {&LayerItemData::isFrozen, &OvLayerUtility::setLayerFrozen,
         QT_TRANSLATE_NOOP("OvCc::LayerComboBox", "Freeze layer"),
         QT_TRANSLATE_NOOP("OvCc::LayerComboBox", "Thaw layer")},
        {&LayerItemData::isLocked, &OvLayerUtility::setLayerLock,
         QT_TRANSLATE_NOOP("OvCc::LayerComboBox", "Lock layer"),
         QT_TRANSLATE_NOOP("OvCc::LayerComboBox", "Unlock layer")},
}};

} // namespace OvCc
