// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QPixmap>
#include <QString>

namespace OvCc {

/// The picture at @p path in the size of a small icon, 16 × 16 pixels; a null one if there is none.
QPixmap smallImage(const QString &path);

} // namespace OvCc
