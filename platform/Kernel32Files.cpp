// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Kernel32Errors.h"
#include "Kernel32Handles.h"
#include "Kernel32Paths.h"
#include "ReplaceFile.h"

#include <QDateTime>
#include <QDir>

#include <array>
#include <atomic>
#include <cerrno>
#include <cwchar>
#include <filesystem>
#include <limits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;
using namespace OvCc::Kernel32;
using Dword = OvKernel32::Dword;
using Handle = OvKernel32::Handle;

namespace {

struct File
{
    File(int number, Dword access)
        : descriptor(number)
        , access(access)
    {
    }
    Q_DISABLE_COPY(File)
    ~File() { ::close(descriptor); }

    off_t size() const
    {
        struct stat status = {};
        ::fstat(descriptor, &status); // cannot fail: the descriptor is open
        return status.st_size;
    }

    const int descriptor;
    const Dword access;
};

struct Find
{
    QString folder;
    QStringList names;
    std::atomic<unsigned> next{0};
};

HandleTable<File> &files()
{
    static HandleTable<File> table(0);
    return table;
}

HandleTable<Find> &finds()
{
    static HandleTable<Find> table(1);
    return table;
}

/// An errno that has to do with @p path: where its folder is missing, the path was not found.
bool failAt(const QString &path, int number)
{
    const bool isMissing = number == ENOENT || number == ENOTDIR;
    if (isMissing && !QFileInfo(QFileInfo(path).path()).isDir())
        return fail(OvKernel32::ErrorPathNotFound, false);
    return failErrno(number);
}

/// Whether a path was given, and @p call does with it what it should.
bool callWith(const QString &path, int (*call)(const char *path))
{
    return !path.isNull()
           && (call(QFile::encodeName(path).constData()) == 0 || failAt(path, errno));
}

/// Whether @p path, if it is there, is a file that lets itself be opened, or written and removed.
bool isOpenTo(const QString &path, bool writes)
{
    const QFileInfo file(path);
    const bool isClosed = file.isDir() || (writes && !file.permission(QFile::WriteOwner));
    return !file.exists() || !isClosed || fail(OvKernel32::ErrorAccessDenied, false);
}

/// A file of the table that was opened with @p access, or null with the last error set.
std::shared_ptr<File> fileWith(Dword access, Handle handle)
{
    std::shared_ptr<File> file = files().find(handle);
    if (file && !(file->access & access))
        return fail(OvKernel32::ErrorAccessDenied, nullptr);
    return file;
}

/// Reads or writes until @p size is reached or @p transfer, which gets a descriptor, an offset and
/// a size, has nothing more.
template <typename Transfer>
bool transferAll(Handle handle, Dword access, const void *buffer, Dword size, Dword *count,
                 void *overlapped, Transfer transfer)
{
    if (count)
        *count = 0;
    const std::shared_ptr<File> file = fileWith(access, handle);
    if (!file)
        return false;
    if (overlapped)
        return fail(OvKernel32::ErrorNotSupported, false);
    if (!count || (!buffer && size > 0))
        return fail(OvKernel32::ErrorInvalidParameter, false);
    ssize_t last = 1;
    while (*count < size && last != 0) {
        last = transfer(file->descriptor, *count, size - *count);
        if (last < 0 && errno != EINTR)
            return failErrno(errno);
        *count += last < 0 ? 0 : static_cast<Dword>(last);
    }
    return true;
}

Dword attributesOf(const QFileInfo &file)
{
    Dword attributes = 0;
    if (file.isDir())
        attributes |= OvKernel32::FileAttributeDirectory;
    if (!file.permission(QFile::WriteOwner))
        attributes |= OvKernel32::FileAttributeReadOnly;
    if (file.isHidden() && file.fileName() != QLatin1String(".")
        && file.fileName() != QLatin1String(".."))
        attributes |= OvKernel32::FileAttributeHidden;
    return attributes ? attributes : Dword(OvKernel32::FileAttributeNormal);
}

OvKernel32::FileTime fileTime(const QDateTime &time)
{
    constexpr qint64 msecsFrom1601To1970 = 11644473600000;
    const qint64 ticks =
            time.isValid() ? (time.toMSecsSinceEpoch() + msecsFrom1601To1970) * 10000 : 0;
    return {static_cast<Dword>(ticks), static_cast<Dword>(ticks >> 32)};
}

/// Writes what a file holds to the descriptor, with its mode.
/// @return 0, or the errno
int copyContent(const QByteArray &source, int descriptor)
{
    struct stat status = {};
    if (::stat(source.constData(), &status) != 0)
        return errno;
    if (!S_ISREG(status.st_mode))
        return ENOTSUP;
    const int opened = ::open(source.constData(), O_RDONLY | O_CLOEXEC);
    if (opened < 0)
        return errno;
    const File file(opened, OvKernel32::GenericRead);
    std::array<char, 65536> buffer = {};
    ssize_t count = 0;
    do {
        count = ::read(file.descriptor, buffer.data(), buffer.size());
        if (count < 0 && errno != EINTR)
            return errno;
        if (const int error = OvCc::Files::writeAll(descriptor, buffer.data(), count))
            return error;
    } while (count != 0);
    return ::fchmod(descriptor, status.st_mode) == 0 ? 0 : errno;
}

/// Fills @p data for the next name that is still there.
bool findNext(Find &find, OvKernel32::FindData *data)
{
    const auto count = static_cast<unsigned>(find.names.size());
    for (unsigned index = find.next++; index < count; index = find.next++) {
        const QString name = find.names.at(static_cast<int>(index));
        const QFileInfo file(find.folder + '/' + name);
        if (!file.exists() && !file.isSymLink())
            continue;
        *data = {attributesOf(file),
                 fileTime(file.birthTime()),
                 fileTime(file.lastRead()),
                 fileTime(file.lastModified()),
                 static_cast<Dword>(file.size() >> 32),
                 static_cast<Dword>(file.size()),
                 {}};
        name.toStdWString().copy(data->fileName, std::size(data->fileName) - 1);
        return true;
    }
    find.next = count;
    return fail(OvKernel32::ErrorNoMoreFiles, false);
}

} // namespace

Handle OvKernel32::createFile(const wchar_t *name, Dword access, Dword, const void *security,
                              Dword disposition, Dword flags, Handle templateFile)
{
    constexpr int openFlags[] = {-1, O_CREAT | O_EXCL, O_CREAT | O_TRUNC, 0, O_CREAT, O_TRUNC};
    constexpr Dword known = FileAttributeReadOnly | FileAttributeArchive | FileAttributeNormal
                            | FileFlagSequentialScan | FileFlagRandomAccess;
    const QString path = existingPath(name);
    if (path.isNull())
        return invalidHandle;
    const bool writes = access & GenericWrite;
    if (disposition < CreateNew || disposition > TruncateExisting
        || (disposition == TruncateExisting && !writes))
        return fail(ErrorInvalidParameter, invalidHandle);
    if (access & ~(GenericRead | GenericWrite) || flags & ~known || security || templateFile)
        return fail(ErrorNotSupported, invalidHandle);
    if (disposition != CreateNew && !isOpenTo(path, writes || disposition == CreateAlways))
        return invalidHandle;

    const bool isOld = QFileInfo::exists(path);
    const int mode = !writes ? O_RDONLY : access & GenericRead ? O_RDWR : O_WRONLY;
    const int descriptor =
            ::open(QFile::encodeName(path).constData(), openFlags[disposition] | mode | O_CLOEXEC,
                   flags & FileAttributeReadOnly ? 0444 : 0666);
    if (descriptor < 0)
        return failAt(path, errno), invalidHandle;
    const Handle handle = files().add(std::make_shared<File>(descriptor, access));
    const bool tellsOfOld = disposition == CreateAlways || disposition == OpenAlways;
    return fail(tellsOfOld && isOld ? ErrorAlreadyExists : ErrorSuccess, handle);
}

OvKernel32::Bool OvKernel32::readFile(Handle handle, void *buffer, Dword size, Dword *read,
                                      void *overlapped)
{
    return transferAll(handle, GenericRead, buffer, size, read, overlapped,
                       [buffer](int descriptor, Dword offset, std::size_t rest) {
                           return ::read(descriptor, static_cast<char *>(buffer) + offset, rest);
                       });
}

OvKernel32::Bool OvKernel32::writeFile(Handle handle, const void *buffer, Dword size,
                                       Dword *written, void *overlapped)
{
    const auto *bytes = static_cast<const char *>(buffer);
    return transferAll(handle, GenericWrite, buffer, size, written, overlapped,
                       [bytes](int descriptor, Dword offset, std::size_t rest) {
                           return ::write(descriptor, bytes + offset, rest);
                       });
}

Dword OvKernel32::setFilePointer(Handle handle, Long distance, Long *high, Dword method)
{
    const std::shared_ptr<File> file = files().find(handle);
    if (!file)
        return invalidDword;
    if (method > FileEnd)
        return fail(ErrorInvalidParameter, invalidDword);
    const off_t starts[] = {0, ::lseek(file->descriptor, 0, SEEK_CUR), file->size()};
    const off_t upper = high ? static_cast<off_t>(*high) * (INT64_C(1) << 32) : 0;
    const off_t lower = high ? static_cast<off_t>(static_cast<Dword>(distance)) : distance;
    off_t position = 0;
    if (__builtin_add_overflow(starts[method], upper + lower, &position)
        || (!high && position > std::numeric_limits<Dword>::max()))
        return fail(ErrorInvalidParameter, invalidDword);
    if (position < 0)
        return fail(ErrorNegativeSeek, invalidDword);
    if (::lseek(file->descriptor, position, SEEK_SET) < 0)
        return failErrno(errno), invalidDword;
    if (high)
        *high = static_cast<Long>(position >> 32);
    return fail(ErrorSuccess, static_cast<Dword>(position));
}

Dword OvKernel32::getFileSize(Handle handle, Dword *high)
{
    const std::shared_ptr<File> file = files().find(handle);
    if (!file)
        return invalidDword;
    const off_t size = file->size();
    if (high)
        *high = static_cast<Dword>(size >> 32);
    return fail(ErrorSuccess, static_cast<Dword>(size));
}

OvKernel32::Bool OvKernel32::flushFileBuffers(Handle handle)
{
    const std::shared_ptr<File> file = fileWith(GenericWrite, handle);
    return file && (::fsync(file->descriptor) == 0 || failErrno(errno));
}

OvKernel32::Bool OvKernel32::closeHandle(Handle file)
{
    return files().remove(file);
}

OvKernel32::Bool OvKernel32::copyFile(const wchar_t *from, const wchar_t *to, Bool failIfExists)
{
    const QString source = existingPath(from);
    const QString target = source.isNull() ? source : existingPath(to);
    if (target.isNull() || !isOpenTo(source, false) || (!failIfExists && !isOpenTo(target, true)))
        return false;
    const fs::path paths[] = {QFile::encodeName(source).toStdString(),
                              QFile::encodeName(target).toStdString()};
    std::error_code error;
    if (failIfExists || fs::equivalent(paths[0], paths[1], error)) {
        fs::copy_file(paths[0], paths[1], error);
    } else {
        const int number = OvCc::Files::replaceFile(
                QFile::encodeName(target), [name = QFile::encodeName(source)](int descriptor) {
                    return copyContent(name, descriptor);
                });
        error.assign(number, std::generic_category());
    }
    if (error)
        return failAt(QFileInfo::exists(source) ? target : source, error.value());
    fs::last_write_time(paths[1], fs::last_write_time(paths[0], error), error);
    return true;
}

OvKernel32::Bool OvKernel32::moveFile(const wchar_t *from, const wchar_t *to)
{
    const QString source = existingPath(from);
    const QString wanted = source.isNull() ? source : mappedPath(to);
    if (wanted.isNull())
        return false;
    QString target = spelledOnDisk(wanted);
    if (target.isNull())
        return false;
    if (target == source) // another case for the same name
        target = QFileInfo(target).dir().filePath(QFileInfo(wanted).fileName());
    else if (QFileInfo::exists(target))
        return fail(ErrorAlreadyExists, false);
    const int result =
            ::rename(QFile::encodeName(source).constData(), QFile::encodeName(target).constData());
    const int number = errno;
    if (result != 0 && number == EXDEV)
        return copyFile(from, to, true) && deleteFile(from);
    return result == 0 || failAt(QFileInfo::exists(source) ? target : source, number);
}

OvKernel32::Bool OvKernel32::deleteFile(const wchar_t *name)
{
    const QString path = existingPath(name);
    return isOpenTo(path, true) && callWith(path, ::unlink);
}

Dword OvKernel32::getFileAttributes(const wchar_t *name)
{
    const QString path = existingPath(name);
    if (path.isNull())
        return invalidDword;
    return QFileInfo::exists(path) ? attributesOf(QFileInfo(path))
                                   : (failAt(path, ENOENT), invalidDword);
}

OvKernel32::Bool OvKernel32::setFileAttributes(const wchar_t *name, Dword attributes)
{
    const Dword before = getFileAttributes(name);
    if (before == invalidDword)
        return false;
    if (attributes & ~(FileAttributeReadOnly | FileAttributeNormal | before))
        return fail(ErrorNotSupported, false);
    const QString path = existingPath(name);
    constexpr auto writers =
            QFile::WriteOwner | QFile::WriteUser | QFile::WriteGroup | QFile::WriteOther;
    const auto permissions = QFile::permissions(path);
    return QFile::setPermissions(path, attributes & FileAttributeReadOnly
                                               ? permissions & ~writers
                                               : permissions | QFile::WriteOwner)
           || failErrno(errno);
}

OvKernel32::Bool OvKernel32::createDirectory(const wchar_t *name, const void *security)
{
    if (security)
        return fail(ErrorNotSupported, false);
    const auto make = [](const char *path) { return ::mkdir(path, 0777); };
    const bool isMade = callWith(existingPath(name), make);
    return isMade || (getLastError() == ErrorFileExists && fail(ErrorAlreadyExists, false));
}

OvKernel32::Bool OvKernel32::removeDirectory(const wchar_t *name)
{
    return callWith(existingPath(name), ::rmdir);
}

OvKernel32::Bool OvKernel32::setCurrentDirectory(const wchar_t *name)
{
    return callWith(existingPath(name), ::chdir);
}

Dword OvKernel32::getCurrentDirectory(Dword size, wchar_t *buffer)
{
    const QString path = QDir::currentPath();
    return path.isEmpty() ? fail(ErrorPathNotFound, 0U) : copyOut(path, buffer, size);
}

Dword OvKernel32::getTempPath(Dword size, wchar_t *buffer)
{
    return copyOut(QDir::tempPath() + '/', buffer, size);
}

Dword OvKernel32::getFullPathName(const wchar_t *name, Dword size, wchar_t *buffer,
                                  wchar_t **filePart)
{
    const QString path = mappedPath(name);
    if (path.isNull())
        return 0;
    QString whole = QDir::cleanPath(QDir::current().absoluteFilePath(path));
    if (path.endsWith('/') && !whole.endsWith('/'))
        whole += '/';
    const Dword length = copyOut(whole, buffer, size);
    if (filePart) {
        wchar_t *const slash = length > 0 && length < size ? std::wcsrchr(buffer, L'/') : nullptr;
        *filePart = slash && slash[1] ? slash + 1 : nullptr;
    }
    return length;
}

Handle OvKernel32::findFirstFile(const wchar_t *pattern, FindData *data)
{
    const QString path = mappedPath(pattern);
    if (path.isNull())
        return invalidHandle;
    if (!data)
        return fail(ErrorInvalidParameter, invalidHandle);
    const auto find = std::make_shared<Find>();
    find->folder = spelledOnDisk(QFileInfo(path).path());
    const QFileInfo folder(find->folder);
    if (!folder.isDir() || !folder.isReadable())
        return fail(folder.isDir() ? ErrorAccessDenied : ErrorPathNotFound, invalidHandle);
    QString wildcard = path.section('/', -1);
    if (wildcard == QLatin1String("*.*"))
        wildcard = '*';
    wildcard.replace('[', QLatin1String("[[]")); // brackets stand for themselves
    find->names = QDir(find->folder)
                          .entryList({wildcard}, QDir::AllEntries | QDir::Hidden | QDir::System,
                                     QDir::Name);
    return findNext(*find, data) ? finds().add(find) : fail(ErrorFileNotFound, invalidHandle);
}

OvKernel32::Bool OvKernel32::findNextFile(Handle handle, FindData *data)
{
    const std::shared_ptr<Find> find = finds().find(handle);
    if (!find)
        return false;
    return data ? findNext(*find, data) : fail(ErrorInvalidParameter, false);
}

OvKernel32::Bool OvKernel32::findClose(Handle find)
{
    return finds().remove(find);
}
