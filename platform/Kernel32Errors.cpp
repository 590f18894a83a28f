// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Kernel32Errors.h"

#include <boost/system/error_code.hpp>

#include <algorithm>
#include <cerrno>
#include <cwchar>

using boost::system::error_code;
using OvCc::Kernel32::fail;

namespace {

struct ErrorRow
{
    OvKernel32::Error windows;
    int number;       ///< the errno, 0 for none
    const char *text; ///< null where errno's text will do
};

/// The first row of a number is the one that counts.
constexpr ErrorRow errorTable[] = {
        {OvKernel32::ErrorSuccess, 0, "The operation completed successfully"},
        {OvKernel32::ErrorFileNotFound, ENOENT, nullptr},
        {OvKernel32::ErrorPathNotFound, 0, "The path does not lead to a folder"},
        {OvKernel32::ErrorDirectory, ENOTDIR, nullptr},
        {OvKernel32::ErrorTooManyOpenFiles, EMFILE, nullptr},
        {OvKernel32::ErrorTooManyOpenFiles, ENFILE, nullptr},
        {OvKernel32::ErrorAccessDenied, EACCES, nullptr},
        {OvKernel32::ErrorAccessDenied, EPERM, nullptr},
        {OvKernel32::ErrorAccessDenied, EISDIR, nullptr},
        {OvKernel32::ErrorInvalidHandle, EBADF, nullptr},
        {OvKernel32::ErrorNotEnoughMemory, ENOMEM, nullptr},
        {OvKernel32::ErrorNotSameDevice, EXDEV, nullptr},
        {OvKernel32::ErrorNoMoreFiles, 0, "There are no more files"},
        {OvKernel32::ErrorWriteProtect, EROFS, nullptr},
        {OvKernel32::ErrorGenFailure, 0, "The operation failed"},
        {OvKernel32::ErrorSharingViolation, ETXTBSY, "The file is in use"},
        {OvKernel32::ErrorNotSupported, ENOTSUP, nullptr},
        {OvKernel32::ErrorBadNetPath, 0, "The network path was not found"},
        {OvKernel32::ErrorFileExists, EEXIST, nullptr},
        {OvKernel32::ErrorInvalidParameter, EINVAL, nullptr},
        {OvKernel32::ErrorBrokenPipe, EPIPE, nullptr},
        {OvKernel32::ErrorDiskFull, ENOSPC, nullptr},
        {OvKernel32::ErrorDiskFull, EDQUOT, nullptr},
        {OvKernel32::ErrorDiskFull, EFBIG, nullptr},
        {OvKernel32::ErrorInsufficientBuffer, 0, "The buffer is too small"},
        {OvKernel32::ErrorInvalidName, EILSEQ, "The name is not valid"},
        {OvKernel32::ErrorModNotFound, 0, "The module was not found"},
        {OvKernel32::ErrorProcNotFound, 0, "The module has no such function"},
        {OvKernel32::ErrorNegativeSeek, 0, "The position is before the start of the file"},
        {OvKernel32::ErrorDirNotEmpty, ENOTEMPTY, nullptr},
        {OvKernel32::ErrorBusy, EBUSY, nullptr},
        {OvKernel32::ErrorAlreadyExists, 0, "There is such a file already"},
        {OvKernel32::ErrorEnvVarNotFound, 0, "There is no such environment variable"},
        {OvKernel32::ErrorFilenameExceedsRange, ENAMETOOLONG, nullptr},
        {OvKernel32::ErrorMessageNotFound, 0, "There is no text for this number"},
        {OvKernel32::ErrorInvalidFlags, 0, "The flags are not valid"},
        {OvKernel32::ErrorNoUnicodeTranslation, 0, "A character cannot be converted"},
        {OvKernel32::ErrorIoDevice, EIO, nullptr}};

const ErrorRow *rowOf(OvKernel32::Dword error)
{
    const auto *row = std::find_if(std::begin(errorTable), std::end(errorTable),
                                   [error](const ErrorRow &each) { return each.windows == error; });
    return row == std::end(errorTable) ? nullptr : row;
}

class WindowsCategory : public boost::system::error_category
{
public:
    const char *name() const noexcept override { return "windows"; }

    /// Empty for an unknown number.
    std::string message(int error) const override
    {
        const ErrorRow *row = rowOf(static_cast<OvKernel32::Dword>(error));
        if (!row)
            return {};
        return row->text ? row->text : boost::system::generic_category().message(row->number);
    }
};

const WindowsCategory &windowsCategory()
{
    static const WindowsCategory category;
    return category;
}

error_code windowsCode(OvKernel32::Dword error)
{
    return {static_cast<int>(error), windowsCategory()};
}

error_code &lastError()
{
    thread_local error_code error = windowsCode(OvKernel32::ErrorSuccess);
    return error;
}

} // namespace

bool OvCc::Kernel32::failErrno(int number)
{
    const auto *row =
            std::find_if(std::begin(errorTable), std::end(errorTable),
                         [number](const ErrorRow &each) { return each.number == number; });
    return fail(row == std::end(errorTable) ? OvKernel32::ErrorGenFailure : row->windows, false);
}

OvKernel32::Dword OvCc::Kernel32::copyOut(const QString &text, wchar_t *buffer,
                                          OvKernel32::Dword size)
{
    const std::wstring wide = text.toStdWString();
    if (size <= wide.size())
        return static_cast<OvKernel32::Dword>(wide.size() + 1);
    if (!buffer)
        return fail(OvKernel32::ErrorInvalidParameter, 0U);
    std::wmemcpy(buffer, wide.c_str(), wide.size() + 1);
    return static_cast<OvKernel32::Dword>(wide.size());
}

bool OvCc::Kernel32::isWellFormed(const wchar_t *text)
{
    return std::all_of(text, text + std::wcslen(text), isCharacter);
}

OvKernel32::Dword OvKernel32::getLastError()
{
    return static_cast<Dword>(lastError().value());
}

void OvKernel32::setLastError(Dword error)
{
    lastError() = windowsCode(error);
}

OvKernel32::Dword OvKernel32::formatMessage(Dword flags, const void *, Dword message, Dword,
                                            wchar_t *buffer, Dword size, void *)
{
    if (!buffer || !(flags & FormatMessageFromSystem))
        return fail(ErrorInvalidParameter, 0U);
    if (flags & ~(FormatMessageIgnoreInserts | FormatMessageFromSystem))
        return fail(ErrorNotSupported, 0U);
    const QString text = QString::fromStdString(windowsCode(message).message());
    if (text.isEmpty())
        return fail(ErrorMessageNotFound, 0U);
    const Dword length = OvCc::Kernel32::copyOut(text + ".\r\n", buffer, size);
    return length < size ? length : fail(ErrorInsufficientBuffer, 0U);
}
