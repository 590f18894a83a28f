// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "ReplaceFile.h"

#include <QRandomGenerator>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace OvCc::Files {

namespace {

constexpr int kMostLinks = 40;
constexpr int kMostTries = 10;
constexpr mode_t kModeBits = 07777;

/// The errno of a call that failed, or 0.
int errorOf(int result)
{
    return result < 0 ? errno : 0;
}

/// The same of a call that a signal may have ended before it did anything.
template <typename Call>
int resultOf(Call call)
{
    int result = 0;
    do
        result = call();
    while (result < 0 && errno == EINTR);
    return result;
}

/// With the slash.
QByteArray folderOf(const QByteArray &path)
{
    return path.left(path.lastIndexOf('/') + 1);
}

/// Puts where a file of that name goes in its place: behind all links, be there something or not. Links
/// are followed by their bytes, which need not be text.
int followLinks(QByteArray &path)
{
    for (int link = 0; link < kMostLinks; ++link) {
        char target[PATH_MAX];
        const ssize_t size = ::readlink(path.constData(), target, sizeof target);
        if (size < 0)
            return errno == EINVAL || errno == ENOENT ? 0 : errno;
        if (size == sizeof target)
            return ENAMETOOLONG;
        path = (target[0] == '/' ? QByteArray() : folderOf(path))
               + QByteArray(target, static_cast<int>(size));
    }
    return ELOOP;
}

/// A new file beside another one, which takes that one's name or is gone in the end. Each step returns
/// why it failed, or 0.
class Replacement
{
public:
    explicit Replacement(const QByteArray &path)
        : m_path(path)
    {
    }
    ~Replacement()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
        if (!m_name.isEmpty())
            ::unlink(m_name.constData());
    }
    Q_DISABLE_COPY(Replacement)

    int descriptor() const { return m_descriptor; }

    /// Its name is short, since that of the other one may be as long as names can be.
    int open(mode_t mode)
    {
        for (int tries = 0; m_descriptor < 0 && tries < kMostTries; ++tries) {
            const quint64 number = QRandomGenerator::global()->generate64();
            const QByteArray name = folderOf(m_path) + ".ovcc-" + QByteArray::number(number, 36);
            m_descriptor = resultOf([&] {
                return ::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
            });
            if (m_descriptor >= 0)
                m_name = name;
            else if (errno != EEXIST)
                break;
        }
        return errorOf(m_descriptor);
    }

    /// Who must not give files away may still have the right group. What runs as its owner must not
    /// do so as another one.
    int takeOver(const struct stat &old)
    {
        constexpr auto sameUser = static_cast<uid_t>(-1);
        const bool isOwned = ::fchown(m_descriptor, old.st_uid, old.st_gid) == 0
                             || ::fchown(m_descriptor, sameUser, old.st_gid) == 0;
        const mode_t mode = old.st_mode & (isOwned ? kModeBits : 0777);
        const int error = errorOf(::fchmod(m_descriptor, mode));
        struct stat made = {}; // some file systems have one mode for all, and no other
        const bool isSame = error != 0 && ::fstat(m_descriptor, &made) == 0
                            && (made.st_mode & kModeBits) == mode;
        return isSame ? 0 : error;
    }

    /// Some file systems have nothing to flush to, and say so; some tell only in the end that there
    /// was no room.
    int finish(struct stat *status)
    {
        if (resultOf([this] { return ::fsync(m_descriptor); }) < 0 && errno != EINVAL)
            return errno;
        if (status && ::fstat(m_descriptor, status) != 0)
            return errno;
        const bool isClosed = ::close(std::exchange(m_descriptor, -1)) == 0 || errno == EINTR;
        return isClosed ? 0 : errno;
    }

    /// The name is the new file's at once; that it stays so without power takes the folder's flush.
    int putInPlace()
    {
        if (std::rename(m_name.constData(), m_path.constData()) != 0)
            return errno;
        m_name.clear();
        const QByteArray folder = folderOf(m_path) + '.';
        const int descriptor = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (descriptor >= 0) {
            ::fsync(descriptor);
            ::close(descriptor);
        }
        return 0;
    }

private:
    const QByteArray m_path;
    QByteArray m_name; ///< empty where there is nothing to remove
    int m_descriptor = -1;
};

} // namespace

int replaceFile(const QByteArray &path, const Fill &fill, struct stat *status)
{
    struct stat old = {};
    const bool isThere = ::stat(path.constData(), &old) == 0;
    if (!isThere && (errno != ENOENT || path.isEmpty()))
        return errno;
    if (isThere && !S_ISREG(old.st_mode))
        return S_ISDIR(old.st_mode) ? EISDIR : EINVAL;
    if (isThere && ::access(path.constData(), W_OK) != 0)
        return errno;

    QByteArray target = path;
    int error = followLinks(target);
    Replacement file(target);
    // Nobody may open what nobody may have opened before.
    if (error == 0)
        error = file.open(isThere ? 0600 : 0666);
    if (error == 0 && isThere)
        error = file.takeOver(old);
    if (error == 0)
        error = fill(file.descriptor());
    if (error == 0)
        error = file.finish(status);
    return error == 0 ? file.putInPlace() : error;
}

int replaceFile(const QByteArray &path, const QByteArray &content, struct stat *status)
{
    const auto fill = [&content](int descriptor) {
        return writeAll(descriptor, content.constData(), content.size());
    };
    return replaceFile(path, fill, status);
}

/// Goes on after the part that still found room, so that the failure tells its reason.
int writeAll(int descriptor, const char *bytes, qint64 size)
{
    for (qint64 done = 0; done < size;) {
        const ssize_t count = ::write(descriptor, bytes + done, static_cast<size_t>(size - done));
        if (count == 0) // a disk that takes nothing and says nothing
            return ENOSPC;
        if (count < 0 && errno != EINTR)
            return errno;
        done += qMax<qint64>(count, 0);
    }
    return 0;
}

} // namespace OvCc::Files
