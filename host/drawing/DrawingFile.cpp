// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DrawingFile.h"

#include "ReplaceFile.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <ctime>

namespace Embedded {

namespace {

/// Places in the file are counted in an int, of which its changes need some, too; and one read of the
/// system ends a little below it.
constexpr qint64 kLargestFile = 2'000'000'000;

/// How long ago a change must be for the coarsest of the usual file systems to tell it from another.
constexpr std::time_t kCoarsestTime = 2;

/// Why the drawing cannot be there; null for a plain file.
QString refusal(const struct stat &status)
{
    switch (status.st_mode & S_IFMT) {
    case S_IFREG:
        return {};
    case S_IFDIR:
        return QStringLiteral("this is a folder");
    case S_IFIFO:
        return QStringLiteral("this is a pipe");
    case S_IFSOCK:
        return QStringLiteral("this is a socket");
    default:
        return QStringLiteral("this is a device");
    }
}

bool isSame(const timespec &one, const timespec &other)
{
    return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
}

bool isSame(const struct stat &one, const struct stat &other)
{
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino && one.st_size == other.st_size
           && isSame(one.st_mtim, other.st_mtim) && isSame(one.st_ctim, other.st_ctim);
}

QByteArray digestOf(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
}

} // namespace

QByteArray DrawingFile::read(const QString &fileName, QString &reason)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(fileName).constData(), &status) == 0)
        reason = refusal(status); // to open a pipe would be to wait for somebody at its other end
    if (!reason.isNull())
        return {};
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        reason = file.errorString();
        return {};
    }
    if (file.size() > kLargestFile) {
        reason = QStringLiteral("the file is larger than 2 GB");
        return {};
    }
    const bool isKnown = ::fstat(file.handle(), &status) == 0;
    const QByteArray bytes = file.readAll();
    if (file.error() != QFile::NoError)
        reason = file.errorString();
    struct stat after = {};
    if (isKnown && ::fstat(file.handle(), &after) == 0) {
        remember(fileName, after);
        m_isSettled &= isSame(status, after);
        m_content = bytes;
    }
    return bytes;
}

bool DrawingFile::write(const QString &fileName, const QByteArray &bytes, QString &reason)
{
    struct stat status = {};
    const QByteArray name = QFile::encodeName(fileName);
    if (::stat(name.constData(), &status) == 0)
        reason = refusal(status);
    const int error = reason.isNull() ? OvCc::Files::replaceFile(name, bytes, &status) : 0;
    if (error != 0)
        reason = qt_error_string(error);
    if (!reason.isNull())
        return false;
    remember(fileName, status);
    m_content.clear();
    m_digest = digestOf(bytes);
    return true;
}

bool DrawingFile::isChanged() const
{
    if (m_path.isNull())
        return false;
    struct stat now = {};
    if (::stat(QFile::encodeName(m_path).constData(), &now) != 0 || !refusal(now).isNull()
        || now.st_size != m_status.st_size)
        return true;
    if (m_isSettled && isSame(now, m_status))
        return false;
    QFile file(m_path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    return !file.open(QIODevice::ReadOnly) || !hash.addData(&file)
           || hash.result() != (m_digest.isNull() ? digestOf(m_content) : m_digest);
}

void DrawingFile::remember(const QString &fileName, const struct stat &status)
{
    m_path = QFileInfo(fileName).absoluteFilePath();
    m_status = status;
    const std::time_t changed = qMax(status.st_mtim.tv_sec, status.st_ctim.tv_sec);
    m_isSettled = changed + kCoarsestTime < std::time(nullptr);
    m_digest.clear();
}

} // namespace Embedded
