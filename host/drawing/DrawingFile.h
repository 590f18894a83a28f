// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <sys/stat.h>

namespace Embedded {

/// What a drawing's file was when it was read or written last.
class DrawingFile
{
public:
    /// Belongs to a drawing that has no file yet.
    DrawingFile() = default;

    /// Reads a whole file, and remembers it. What is no file of its own but a folder, a pipe or a
    /// device is refused at once.
    /// @param[out] reason why there is nothing, to go on after the name; else null
    QByteArray read(const QString &fileName, QString &reason);

    /// Replaces the file, or the one that a link leads to, whole or not at all, and remembers it. It
    /// has reached the disk before it takes the name. The mode stays, and the owner as far as the
    /// system lets this user give files away.
    /// @param[out] reason why it was not, to go on after the name; else null
    /// @return whether it was replaced; otherwise this remembers what it did before
    bool write(const QString &fileName, const QByteArray &bytes, QString &reason);

    /// Whether the file has another content now, or is gone. Its times and its place on the disk tell
    /// as a rule; where they do not, it is read.
    bool isChanged() const;

private:
    void remember(const QString &fileName, const struct stat &status);

    QString m_path; ///< absolute; null without a file
    struct stat m_status = {};
    bool m_isSettled = false; ///< a change from now on would show in the times
    QByteArray m_content;     ///< as it was read, shared with the drawing
    QByteArray m_digest;      ///< of what was written since
};

} // namespace Embedded
