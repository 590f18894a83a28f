#include "StatusImages.h"

#include <OvCustomControl/Swatches.h>

QPixmap OvCc::lightImage(bool isOn)
{
    return loadImage(isOn ? QStringLiteral(":/core_ccvon.bmp")
                          : QStringLiteral(":/core_ccvoff.bmp"));
}

QPixmap OvCc::freezeImage(bool isFrozen)
{
    return loadImage(isFrozen ? QStringLiteral(":/core_ccfrz.bmp")
                              : QStringLiteral(":/core_ccthw.bmp"));
}

QPixmap OvCc::lockImage(bool isLocked)
{
    return loadImage(isLocked ? QStringLiteral(":/core_cclk.bmp")
                              : QStringLiteral(":/core_cculk.bmp"));
}
