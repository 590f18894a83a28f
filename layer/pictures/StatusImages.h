#pragma once

#include <QPixmap>

/// @file
/// The pictures that show a layer's state in the compact controls.

namespace OvCc {

QPixmap lightImage(bool isOn);
QPixmap freezeImage(bool isFrozen);
QPixmap lockImage(bool isLocked);

} // namespace OvCc
