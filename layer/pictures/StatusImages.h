// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QPixmap>

/// @file
/// The pictures that show a layer's state.

namespace OvCc {

/// The paths of the pictures of a flag; an empty one stands for no picture.
struct FlagImages
{
    const char *whenTrue;
    const char *whenFalse;
};

constexpr FlagImages noImages{"", ""};
constexpr FlagImages currentImages{":/IDB_LSTATE_CURRENT.png", ""};
constexpr FlagImages onImages{":/core_ccvon.bmp", ":/core_ccvoff.bmp"};
constexpr FlagImages thawedImages{":/core_ccthw.bmp", ":/core_ccfrz.bmp"};
constexpr FlagImages unlockedImages{":/core_cculk.bmp", ":/core_cclk.bmp"};
constexpr FlagImages plotImages{":/core_ccpldi.bmp", ":/core_ccnpl.bmp"};
constexpr FlagImages viewportFreezeImages{":/core_ccvfrz.bmp", ":/core_ccvthw.bmp"};

/// The picture of a flag that is @p value; a null one if there is none.
QPixmap flagImage(const FlagImages &images, bool value);

QPixmap lightImage(bool isOn);
QPixmap freezeImage(bool isFrozen);
QPixmap lockImage(bool isLocked);

} // namespace OvCc
