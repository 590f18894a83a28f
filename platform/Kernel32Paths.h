// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace OvCc::Kernel32 {

/// The Linux path of a Windows one, spelled as it was given; null, with the last error set, on
/// failure.
QString mappedPath(const wchar_t *name);

/// @p path, spelled as far as it exists as the folders have it; null, with the last error set, if
/// one that is there cannot be read.
QString spelledOnDisk(const QString &path);

/// mappedPath(), spelled as on disk.
QString existingPath(const wchar_t *name);

} // namespace OvCc::Kernel32
