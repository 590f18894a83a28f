#include "Kernel32Errors.h"
#include "Kernel32Handles.h"
#include "Kernel32Paths.h"

#include <QDir>
#include <QRegularExpression>

#include <cerrno>
#include <cstring>
#include <limits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;
using OvCc::Kernel32::copyOut;
using OvCc::Kernel32::existingPath;
using OvCc::Kernel32::fail;
using OvCc::Kernel32::mappedPath;
using OvCc::Kernel32::windowsError;
using Dword = OvKernel32::Dword;
using Handle = OvKernel32::Handle;

namespace {

struct File
{
    int descriptor = -1;
    Dword access = 0;
    Dword share = 0;
    struct stat status = {};
    fs::path deleteOnClose;

    File() = default;
    Q_DISABLE_COPY(File)
    ~File()
    {
        if (descriptor >= 0)
            ::close(descriptor);
        if (!deleteOnClose.empty())
            ::unlink(deleteOnClose.c_str());
    }
};

struct Find
{
    std::mutex mutex;
    fs::path folder;
    std::vector<fs::path> names;
    std::size_t next = 0;
};

/// The access that deleting asks for: what FileShareDelete permits.
constexpr Dword deleteAccess = 0x00010000;

OvCc::Kernel32::HandleTable<File> &files()
{
    static OvCc::Kernel32::HandleTable<File> table;
    return table;
}

OvCc::Kernel32::HandleTable<Find> &finds()
{
    static OvCc::Kernel32::HandleTable<Find> table;
    return table;
}

/// Held while a file is opened, so that no two threads pass the test of sharing together.
std::mutex &openMutex()
{
    static std::mutex mutex;
    return mutex;
}

bool failErrno(int number)
{
    return fail(windowsError(number), false);
}

/// An errno that has to do with @p path: where its folder is missing, the path was not found.
bool failAt(const fs::path &path, int number)
{
    std::error_code ignored;
    const fs::path folder = path.parent_path();
    if ((number == ENOENT || number == ENOTDIR) && !folder.empty()
        && !fs::is_directory(folder, ignored))
        return fail(OvKernel32::ErrorPathNotFound, false);
    return failErrno(number);
}

bool isPermitted(Dword access, Dword share)
{
    return !(access & OvKernel32::GenericRead && !(share & OvKernel32::FileShareRead))
           && !(access & OvKernel32::GenericWrite && !(share & OvKernel32::FileShareWrite))
           && !(access & deleteAccess && !(share & OvKernel32::FileShareDelete));
}

/// Whether the handles of this process let a file be opened so.
bool isShared(const struct stat &status, Dword access, Dword share)
{
    const Handle other = files().findIf([&](const File &file) {
        return file.status.st_dev == status.st_dev && file.status.st_ino == status.st_ino
               && !(isPermitted(access, file.share) && isPermitted(file.access, share));
    });
    return !other || fail(OvKernel32::ErrorSharingViolation, false);
}

/// Whether @p path, if it is there, lets itself be removed or written over.
bool mayReplace(const fs::path &path, Dword access)
{
    struct stat status;
    if (::stat(path.c_str(), &status) != 0)
        return true;
    if (!S_ISDIR(status.st_mode) && !(status.st_mode & S_IWUSR))
        return fail(OvKernel32::ErrorAccessDenied, false);
    constexpr Dword shareAll =
            OvKernel32::FileShareRead | OvKernel32::FileShareWrite | OvKernel32::FileShareDelete;
    return isShared(status, access, shareAll);
}

/// A file of the table that was opened with @p access, or null with the last error set.
std::shared_ptr<File> fileWith(Dword access, Handle handle)
{
    std::shared_ptr<File> file = files().find(handle);
    if (file && !(file->access & access))
        return fail(OvKernel32::ErrorAccessDenied, nullptr);
    return file;
}

bool areFlagsSupported(Dword flags)
{
    using K = OvKernel32;
    constexpr Dword known = K::FileAttributeReadOnly | K::FileAttributeArchive
                            | K::FileAttributeNormal | K::FileFlagDeleteOnClose
                            | K::FileFlagSequentialScan | K::FileFlagRandomAccess
                            | K::FileFlagWriteThrough;
    return !(flags & ~known);
}

/// The flags for open(), or -1 for an access that Linux has not.
int openFlags(Dword access, Dword flags)
{
    const int common = O_CLOEXEC | (flags & OvKernel32::FileFlagWriteThrough ? O_SYNC : 0);
    switch (access) {
    case 0:
        return common | O_PATH;
    case OvKernel32::GenericRead:
        return common | O_RDONLY;
    case OvKernel32::GenericWrite:
        return common | O_WRONLY;
    case OvKernel32::GenericRead | OvKernel32::GenericWrite:
        return common | O_RDWR;
    default:
        return -1;
    }
}

/// Opens @p path, or makes it where the disposition says so.
/// @param[out] isNew whether it was made
/// @return a descriptor, or -1 with errno
int openOrMake(const fs::path &path, int flags, Dword disposition, mode_t mode, bool *isNew)
{
    const bool mayMake =
            disposition != OvKernel32::OpenExisting && disposition != OvKernel32::TruncateExisting;
    *isNew = false;
    if (mayMake) {
        // With O_PATH a file cannot be made: it is made by another descriptor, then opened.
        const int makeFlags = flags & O_PATH ? O_RDONLY | O_CLOEXEC : flags;
        const int made = ::open(path.c_str(), makeFlags | O_CREAT | O_EXCL, mode);
        *isNew = made >= 0;
        if (made < 0 && (errno != EEXIST || disposition == OvKernel32::CreateNew))
            return made;
        if (*isNew && !(flags & O_PATH))
            return made;
        if (*isNew)
            ::close(made);
    }
    return ::open(path.c_str(), flags);
}

/// Tests what was opened, and empties it where it was not new and the disposition says so.
bool prepare(File &file, Dword disposition, bool isNew)
{
    if (::fstat(file.descriptor, &file.status) != 0)
        return failErrno(errno);
    if (S_ISDIR(file.status.st_mode))
        return fail(OvKernel32::ErrorAccessDenied, false);
    const bool empties = !isNew
                         && (disposition == OvKernel32::CreateAlways
                             || disposition == OvKernel32::TruncateExisting);
    const bool writes = empties || file.access & OvKernel32::GenericWrite;
    if (!isNew && writes && !(file.status.st_mode & S_IWUSR))
        return fail(OvKernel32::ErrorAccessDenied, false);
    const Dword access = writes ? file.access | OvKernel32::GenericWrite : file.access;
    if (!isShared(file.status, access, file.share))
        return false;
    if (!empties)
        return true;
    // The descriptor itself may not be one that writes.
    const std::string self = "/proc/self/fd/" + std::to_string(file.descriptor);
    return ::truncate(self.c_str(), 0) == 0 || failErrno(errno);
}

Dword attributesOf(const fs::path &path, mode_t mode)
{
    const std::string name = path.filename().string();
    const bool isHidden = name.size() > 1 && name.front() == '.' && name != "..";
    Dword attributes = 0;
    if (S_ISDIR(mode))
        attributes |= OvKernel32::FileAttributeDirectory;
    if (!(mode & S_IWUSR))
        attributes |= OvKernel32::FileAttributeReadOnly;
    if (isHidden)
        attributes |= OvKernel32::FileAttributeHidden;
    return attributes ? attributes : Dword(OvKernel32::FileAttributeNormal);
}

OvKernel32::FileTime fileTime(const struct statx_timestamp &time)
{
    constexpr std::int64_t secondsFrom1601To1970 = 11644473600;
    const auto ticks = static_cast<std::uint64_t>((time.tv_sec + secondsFrom1601To1970) * 10000000
                                                  + time.tv_nsec / 100);
    return {static_cast<Dword>(ticks), static_cast<Dword>(ticks >> 32)};
}

/// Fills @p data for the next name that is still there.
bool findNext(Find &find, OvKernel32::FindData *data)
{
    const std::lock_guard<std::mutex> lock(find.mutex);
    while (find.next < find.names.size()) {
        const fs::path name = find.names[find.next++];
        const std::string path = (find.folder / name).string();
        struct statx status;
        constexpr unsigned wanted = STATX_BASIC_STATS | STATX_BTIME;
        if (::statx(AT_FDCWD, path.c_str(), 0, wanted, &status) != 0
            && ::statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, wanted, &status) != 0)
            continue;
        *data = {};
        data->fileAttributes = attributesOf(name, status.stx_mode);
        if (status.stx_mask & STATX_BTIME)
            data->creationTime = fileTime(status.stx_btime);
        data->lastAccessTime = fileTime(status.stx_atime);
        data->lastWriteTime = fileTime(status.stx_mtime);
        data->fileSizeHigh = static_cast<Dword>(status.stx_size >> 32);
        data->fileSizeLow = static_cast<Dword>(status.stx_size);
        const std::wstring text = QString::fromStdString(name.string()).toStdWString();
        text.copy(data->fileName, std::size(data->fileName) - 1);
        return true;
    }
    return fail(OvKernel32::ErrorNoMoreFiles, false);
}

/// The names in @p folder that match @p pattern, sorted.
std::vector<fs::path> matchingNames(const fs::path &folder, const QString &pattern,
                                    std::error_code &error)
{
    std::vector<fs::path> names{".", ".."};
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        names.push_back(entry->path().filename());

    QString expression =
            QRegularExpression::escape(pattern == QLatin1String("*.*") ? "*" : pattern);
    while (expression.contains(QLatin1String("\\*\\*")))
        expression.replace(QLatin1String("\\*\\*"), QLatin1String("\\*"));
    expression.replace(QLatin1String("\\*"), QLatin1String(".*"));
    expression.replace(QLatin1String("\\?"), QLatin1String("."));
    const QRegularExpression wildcard(QRegularExpression::anchoredPattern(expression),
                                      QRegularExpression::CaseInsensitiveOption
                                              | QRegularExpression::DotMatchesEverythingOption);
    const auto isOther = [&wildcard](const fs::path &name) {
        return !wildcard.match(QString::fromStdString(name.string())).hasMatch();
    };
    names.erase(std::remove_if(names.begin(), names.end(), isOther), names.end());
    std::sort(names.begin(), names.end());
    return names;
}

bool copyContent(const fs::path &from, const fs::path &to, bool mayReplaceIt)
{
    std::error_code error;
    if (fs::is_directory(from, error) || fs::is_directory(to, error))
        return fail(OvKernel32::ErrorAccessDenied, false);
    if (mayReplaceIt && fs::equivalent(from, to, error))
        return fail(OvKernel32::ErrorSharingViolation, false);
    if (mayReplaceIt && !mayReplace(to, OvKernel32::GenericWrite))
        return false;
    const auto options =
            mayReplaceIt ? fs::copy_options::overwrite_existing : fs::copy_options::none;
    fs::copy_file(from, to, options, error);
    if (error)
        return failAt(fs::exists(from) ? to : from, error.value());
    fs::last_write_time(to, fs::last_write_time(from, error), error);
    return true;
}

} // namespace

Handle OvKernel32::createFile(const wchar_t *name, Dword access, Dword share, const void *security,
                              Dword disposition, Dword flags, Handle templateFile)
{
    const auto path = existingPath(name);
    if (!path)
        return invalidHandle;
    const bool truncatesUnwritten = disposition == TruncateExisting && !(access & GenericWrite);
    if (disposition < CreateNew || disposition > TruncateExisting || truncatesUnwritten)
        return fail(ErrorInvalidParameter, invalidHandle);
    const int mode = openFlags(access, flags);
    if (mode < 0 || security || templateFile || !areFlagsSupported(flags))
        return fail(ErrorNotSupported, invalidHandle);

    const std::lock_guard<std::mutex> lock(openMutex());
    const auto file = std::make_shared<File>();
    file->access = access;
    file->share = share;
    bool isNew = false;
    // O_NONBLOCK: opening a pipe must not wait for its other end.
    file->descriptor = openOrMake(*path, mode | O_NONBLOCK, disposition,
                                  flags & FileAttributeReadOnly ? 0444 : 0666, &isNew);
    if (file->descriptor < 0)
        return failAt(*path, errno), invalidHandle;
    if (!prepare(*file, disposition, isNew))
        return invalidHandle;
    if (flags & FileFlagDeleteOnClose)
        file->deleteOnClose = fs::absolute(*path);

    const bool tellsOfOld = disposition == CreateAlways || disposition == OpenAlways;
    setLastError(tellsOfOld && !isNew ? ErrorAlreadyExists : ErrorSuccess);
    return files().add(file);
}

OvKernel32::Bool OvKernel32::readFile(Handle handle, void *buffer, Dword size, Dword *read,
                                      void *overlapped)
{
    if (read)
        *read = 0;
    const std::shared_ptr<File> file = fileWith(GenericRead, handle);
    if (!file)
        return false;
    if (overlapped)
        return fail(ErrorNotSupported, false);
    if (!read || (!buffer && size > 0))
        return fail(ErrorInvalidParameter, false);
    while (*read < size) {
        const ssize_t count =
                ::read(file->descriptor, static_cast<char *>(buffer) + *read, size - *read);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return failErrno(errno);
        if (count == 0)
            break;
        *read += static_cast<Dword>(count);
    }
    return true;
}

OvKernel32::Bool OvKernel32::writeFile(Handle handle, const void *buffer, Dword size,
                                       Dword *written, void *overlapped)
{
    if (written)
        *written = 0;
    const std::shared_ptr<File> file = fileWith(GenericWrite, handle);
    if (!file)
        return false;
    if (overlapped)
        return fail(ErrorNotSupported, false);
    if (!written || (!buffer && size > 0))
        return fail(ErrorInvalidParameter, false);
    while (*written < size) {
        const ssize_t count = ::write(
                file->descriptor, static_cast<const char *>(buffer) + *written, size - *written);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return failErrno(errno);
        *written += static_cast<Dword>(count);
    }
    return true;
}

Dword OvKernel32::setFilePointer(Handle file, Long distance, Long *high, Dword method)
{
    const std::int64_t whole = high ? static_cast<std::int64_t>(*high) * (INT64_C(1) << 32)
                                               + static_cast<Dword>(distance)
                                    : distance;
    std::int64_t before = 0;
    std::int64_t position = 0;
    if (!setFilePointerEx(file, 0, &before, FileCurrent)
        || !setFilePointerEx(file, whole, &position, method))
        return invalidDword;
    if (!high && position > std::numeric_limits<Dword>::max()) {
        setFilePointerEx(file, before, nullptr, FileBegin);
        return fail(ErrorInvalidParameter, invalidDword);
    }
    if (high)
        *high = static_cast<Long>(position >> 32);
    return fail(ErrorSuccess, static_cast<Dword>(position));
}

OvKernel32::Bool OvKernel32::setFilePointerEx(Handle handle, std::int64_t distance,
                                              std::int64_t *position, Dword method)
{
    const std::shared_ptr<File> file = files().find(handle);
    if (!file)
        return false;
    constexpr int whences[] = {SEEK_SET, SEEK_CUR, SEEK_END};
    if (method > FileEnd)
        return fail(ErrorInvalidParameter, false);
    const off_t reached = ::lseek(file->descriptor, distance, whences[method]);
    if (reached < 0)
        return errno == EINVAL ? fail(ErrorNegativeSeek, false) : failErrno(errno);
    if (position)
        *position = reached;
    return true;
}

Dword OvKernel32::getFileSize(Handle file, Dword *high)
{
    std::int64_t size = 0;
    if (!getFileSizeEx(file, &size))
        return invalidDword;
    if (high)
        *high = static_cast<Dword>(size >> 32);
    return fail(ErrorSuccess, static_cast<Dword>(size));
}

OvKernel32::Bool OvKernel32::getFileSizeEx(Handle handle, std::int64_t *size)
{
    const std::shared_ptr<File> file = files().find(handle);
    if (!file)
        return false;
    if (!size)
        return fail(ErrorInvalidParameter, false);
    struct stat status;
    if (::fstat(file->descriptor, &status) != 0)
        return failErrno(errno);
    *size = status.st_size;
    return true;
}

OvKernel32::Bool OvKernel32::setEndOfFile(Handle handle)
{
    const std::shared_ptr<File> file = fileWith(GenericWrite, handle);
    if (!file)
        return false;
    const off_t position = ::lseek(file->descriptor, 0, SEEK_CUR);
    return (position >= 0 && ::ftruncate(file->descriptor, position) == 0) || failErrno(errno);
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
    const auto source = existingPath(from);
    const auto target = existingPath(to);
    return source && target && copyContent(*source, *target, !failIfExists);
}

OvKernel32::Bool OvKernel32::moveFile(const wchar_t *from, const wchar_t *to)
{
    return moveFileEx(from, to, MoveFileCopyAllowed);
}

OvKernel32::Bool OvKernel32::moveFileEx(const wchar_t *from, const wchar_t *to, Dword flags)
{
    const auto source = existingPath(from);
    const auto wanted = mappedPath(to);
    if (!source || !wanted)
        return false;
    if (flags & ~(MoveFileReplaceExisting | MoveFileCopyAllowed))
        return fail(ErrorNotSupported, false);

    fs::path target = OvCc::Kernel32::spelledOnDisk(*wanted);
    std::error_code error;
    if (target == *source)
        target.replace_filename(wanted->filename()); // another case for the same name
    else if (fs::exists(fs::symlink_status(target, error)) && !(flags & MoveFileReplaceExisting))
        return fail(ErrorAlreadyExists, false);
    else if (fs::is_directory(target, error))
        return fail(ErrorAccessDenied, false);
    struct stat status;
    constexpr Dword shareAll = FileShareRead | FileShareWrite | FileShareDelete;
    if (::stat(source->c_str(), &status) == 0 && !isShared(status, deleteAccess, shareAll))
        return false;
    if (target != *source && !mayReplace(target, deleteAccess))
        return false;

    if (::rename(source->c_str(), target.c_str()) == 0)
        return true;
    const int number = errno;
    if (number != EXDEV || !(flags & MoveFileCopyAllowed) || fs::is_directory(*source, error))
        return failAt(fs::exists(*source, error) ? target : *source, number);
    return copyContent(*source, target, true) && deleteFile(from);
}

OvKernel32::Bool OvKernel32::deleteFile(const wchar_t *name)
{
    const auto path = existingPath(name);
    return path && mayReplace(*path, deleteAccess)
           && (::unlink(path->c_str()) == 0 || failAt(*path, errno));
}

Dword OvKernel32::getFileAttributes(const wchar_t *name)
{
    const auto path = existingPath(name);
    if (!path)
        return invalidDword;
    struct stat status;
    if (::stat(path->c_str(), &status) != 0)
        return failAt(*path, errno), invalidDword;
    return attributesOf(*path, status.st_mode);
}

OvKernel32::Bool OvKernel32::setFileAttributes(const wchar_t *name, Dword attributes)
{
    const auto path = existingPath(name);
    struct stat status;
    if (!path)
        return false;
    if (::stat(path->c_str(), &status) != 0)
        return failAt(*path, errno);
    const Dword settable =
            FileAttributeReadOnly | FileAttributeNormal | attributesOf(*path, status.st_mode);
    if (attributes & ~settable)
        return fail(ErrorNotSupported, false);
    constexpr mode_t writers = S_IWUSR | S_IWGRP | S_IWOTH;
    const mode_t mode = attributes & FileAttributeReadOnly ? status.st_mode & ~writers
                                                           : status.st_mode | S_IWUSR;
    return ::chmod(path->c_str(), mode & 07777) == 0 || failErrno(errno);
}

OvKernel32::Bool OvKernel32::createDirectory(const wchar_t *name, const void *security)
{
    const auto path = existingPath(name);
    if (!path)
        return false;
    if (security)
        return fail(ErrorNotSupported, false);
    if (::mkdir(path->c_str(), 0777) == 0)
        return true;
    if (errno == EEXIST)
        return fail(ErrorAlreadyExists, false);
    return errno == ENOENT ? fail(ErrorPathNotFound, false) : failErrno(errno);
}

OvKernel32::Bool OvKernel32::removeDirectory(const wchar_t *name)
{
    const auto path = existingPath(name);
    return path && (::rmdir(path->c_str()) == 0 || failAt(*path, errno));
}

OvKernel32::Bool OvKernel32::setCurrentDirectory(const wchar_t *name)
{
    const auto path = existingPath(name);
    return path && (::chdir(path->c_str()) == 0 || failAt(*path, errno));
}

Dword OvKernel32::getCurrentDirectory(Dword size, wchar_t *buffer)
{
    std::error_code error;
    const fs::path path = fs::current_path(error);
    if (error)
        return failErrno(error.value()), 0;
    return copyOut(QString::fromStdString(path.string()).toStdWString(), buffer, size);
}

Dword OvKernel32::getTempPath(Dword size, wchar_t *buffer)
{
    QString path = QDir::tempPath();
    if (!path.endsWith('/'))
        path += '/';
    return copyOut(path.toStdWString(), buffer, size);
}

Dword OvKernel32::getFullPathName(const wchar_t *name, Dword size, wchar_t *buffer,
                                  wchar_t **filePart)
{
    const auto path = mappedPath(name);
    if (!path)
        return 0;
    std::error_code error;
    const fs::path whole = fs::absolute(*path, error).lexically_normal();
    if (error)
        return failErrno(error.value()), 0;
    const std::wstring text = QString::fromStdString(whole.string()).toStdWString();
    const Dword length = copyOut(text, buffer, size);
    if (filePart) {
        const bool hasName = length == text.size() && text.back() != '/';
        *filePart = hasName ? buffer + text.rfind('/') + 1 : nullptr;
    }
    return length;
}

Handle OvKernel32::findFirstFile(const wchar_t *pattern, FindData *data)
{
    const auto path = mappedPath(pattern);
    if (!path)
        return invalidHandle;
    if (!data)
        return fail(ErrorInvalidParameter, invalidHandle);
    const auto find = std::make_shared<Find>();
    const fs::path folder = path->parent_path();
    find->folder = folder.empty() ? fs::path(".") : OvCc::Kernel32::spelledOnDisk(folder);
    std::error_code error;
    find->names =
            matchingNames(find->folder, QString::fromStdString(path->filename().string()), error);
    if (error) {
        const bool isMissing = error.value() == ENOENT || error.value() == ENOTDIR;
        return fail(isMissing ? Dword(ErrorPathNotFound) : windowsError(error.value()),
                    invalidHandle);
    }
    if (!findNext(*find, data))
        return fail(ErrorFileNotFound, invalidHandle);
    return finds().add(find);
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
