// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <functional>

#include <sys/stat.h>

/// How everything here writes files.
namespace OvCc::Files {

/// Writes a new file's content to the descriptor.
/// @return 0, or the errno
using Fill = std::function<int(int descriptor)>;

/// Replaces a file, or the one that a symbolic link leads to, whole or not at all. What is written
/// has reached the disk before it takes the name; until then it is in a file beside it, of which
/// nothing stays unless the process is killed: ".ovcc-" and a random number. A file that is there must
/// be a plain one that this user may write. It keeps its mode, and its owner as far as the system lets
/// this user give files away; another hard link to it keeps the old content.
/// @param      path   as the system has it, that is encoded
/// @param[out] status of the new file; may be null
/// @return 0, or the errno: everything is then as it was
int replaceFile(const QByteArray &path, const Fill &fill, struct stat *status = nullptr);

/// The same, with a content that is there.
int replaceFile(const QByteArray &path, const QByteArray &content, struct stat *status = nullptr);

/// Writes all of it.
/// @return 0, or the errno
int writeAll(int descriptor, const char *bytes, qint64 size);

} // namespace OvCc::Files
