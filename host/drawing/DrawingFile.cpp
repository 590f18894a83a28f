// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DrawingFile.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>
#include <ctime>

#include <unistd.h>

namespace Embedded {

namespace {

/// Places in the file are counted in an int, of which its changes need some, too; and one read of the
/// system ends a little below it.
constexpr qint64 kLargestFile = 2'000'000'000;

/// How long ago a change must be for the coarsest of the usual file systems to tell it from another.
constexpr std::time_t kCoarsestTime = 2;

constexpr int kMostLinks = 40;
constexpr int kMostTries = 10;

QString systemMessage()
{
    return qt_error_string(errno);
}

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

/// Where a file of that name goes: behind all links, be there something or not.
QString pathBehindLinks(const QString &fileName)
{
    QFileInfo file(fileName);
    for (int link = 0; file.isSymLink() && link < kMostLinks; ++link)
        file.setFile(file.symLinkTarget());
    return file.absoluteFilePath();
}

/// A new file beside another one, which takes that one's name or is gone in the end.
class Replacement
{
public:
    explicit Replacement(const QString &path)
        : m_path(path)
    {
    }
    ~Replacement()
    {
        if (m_file.isOpen() && !m_isInPlace)
            m_file.remove();
    }
    Q_DISABLE_COPY(Replacement)

    // Each step returns why it failed, or nothing.

    /// Its name is short, since that of the other one may be as long as names can be.
    QString open()
    {
        int tries = 0;
        do {
            const quint64 number = QRandomGenerator::global()->generate64();
            m_file.setFileName(QFileInfo(m_path).path() + QLatin1String("/.ovcc-")
                               + QString::number(number, 36));
        } while (++tries < kMostTries && m_file.exists());
        const bool isOpen =
                m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered);
        return isOpen ? QString() : m_file.errorString();
    }

    /// Who must not give files away may still have the right group. What runs as its owner must not
    /// do so as another one.
    void takeOver(const struct stat &status)
    {
        constexpr auto sameUser = static_cast<uid_t>(-1);
        const bool isOwned = ::fchown(m_file.handle(), status.st_uid, status.st_gid) == 0
                             || ::fchown(m_file.handle(), sameUser, status.st_gid) == 0;
        ::fchmod(m_file.handle(), status.st_mode & (isOwned ? 07777 : 0777));
    }

    /// Goes on after the part that still found room, so that the failure tells its reason.
    QString write(const QByteArray &bytes)
    {
        for (int done = 0; done < bytes.size();) {
            const qint64 count = m_file.write(bytes.constData() + done, bytes.size() - done);
            if (count <= 0)
                return m_file.errorString();
            done += static_cast<int>(count);
        }
        // Some file systems have nothing to flush to, and say so.
        const bool isFlushed = ::fsync(m_file.handle()) == 0 || errno == EINVAL;
        return isFlushed ? QString() : systemMessage();
    }

    /// @param[out] status of the file in its place
    QString putInPlace(struct stat &status)
    {
        m_isInPlace = std::rename(QFile::encodeName(m_file.fileName()).constData(),
                                  QFile::encodeName(m_path).constData())
                      == 0;
        const bool isDone = m_isInPlace && ::fstat(m_file.handle(), &status) == 0;
        return isDone ? QString() : systemMessage();
    }

private:
    const QString m_path;
    QFile m_file;
    bool m_isInPlace = false;
};

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
    const bool isThere = ::stat(name.constData(), &status) == 0;
    if (isThere ? ::access(name.constData(), W_OK) != 0 : errno != ENOENT || fileName.isEmpty())
        reason = systemMessage();
    if (isThere && !refusal(status).isNull())
        reason = refusal(status);
    if (!reason.isNull())
        return false;

    Replacement file(pathBehindLinks(fileName));
    reason = file.open();
    if (reason.isNull() && isThere)
        file.takeOver(status);
    if (reason.isNull())
        reason = file.write(bytes);
    if (reason.isNull())
        reason = file.putInPlace(status);
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
