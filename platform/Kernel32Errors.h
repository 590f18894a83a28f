// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "OvKernel32.h"

#include <QString>

/// Errors and texts shared by the families of OvKernel32.
namespace OvCc::Kernel32 {

/// Sets the last error, for a function to return @p result.
template <typename Result>
Result fail(OvKernel32::Dword error, Result result)
{
    OvKernel32::setLastError(error);
    return result;
}

/// fail() for an errno.
bool failErrno(int number);

/// Writes @p text with its NUL.
/// @return its length, or the size needed if @p size is too small
OvKernel32::Dword copyOut(const QString &text, wchar_t *buffer, OvKernel32::Dword size);

/// Whether every character of @p text is one of Unicode, surrogates excluded.
bool isWellFormed(const wchar_t *text);

/// No surrogate, and not past the end of Unicode.
constexpr bool isCharacter(wchar_t character)
{
    const auto code = static_cast<char32_t>(character);
    return code < 0xd800 || (code > 0xdfff && code <= 0x10ffff);
}

} // namespace OvCc::Kernel32
