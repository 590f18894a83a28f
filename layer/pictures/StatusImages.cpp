// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "StatusImages.h"

#include <OvCustomControl/Swatches.h>

QPixmap OvCc::flagImage(const FlagImages &images, bool value)
{
    const QLatin1String path(value ? images.whenTrue : images.whenFalse);
    return path.isEmpty() ? QPixmap() : loadImage(path);
}

QPixmap OvCc::lightImage(bool isOn)
{
    return flagImage(onImages, isOn);
}

QPixmap OvCc::freezeImage(bool isFrozen)
{
    return flagImage(thawedImages, !isFrozen);
}

QPixmap OvCc::lockImage(bool isLocked)
{
    return flagImage(unlockedImages, !isLocked);
}
