// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "SmallImage.h"

QPixmap OvCc::smallImage(const QString &path)
{
    const QPixmap image(path);
    return image.isNull() ? image
                          : image.scaled(16, 16, Qt::IgnoreAspectRatio, Qt::FastTransformation);
}
