// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "OvKernel32.h"

#include <QString>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cwchar>
#include <limits>

namespace {

constexpr std::size_t whole = OvKernel32::truncate - 1; ///< a count that never cuts short

int fails(int number)
{
    errno = number;
    return number;
}

template <typename Char>
int empty(Char *buffer, int number)
{
    *buffer = 0;
    return fails(number);
}

template <typename Char>
Char withCase(Char character, bool isUpper)
{
    const auto code = static_cast<std::make_unsigned_t<Char>>(character);
    constexpr uint last = sizeof(Char) > 1 ? uint(QChar::LastValidCodePoint) : 0x7f;
    if (code > last)
        return character;
    return static_cast<Char>(isUpper ? QChar::toUpper(uint(code)) : QChar::toLower(uint(code)));
}

template <typename Char>
Char *changeCase(Char *text, bool isUpper)
{
    if (!text)
        fails(EINVAL);
    for (Char *next = text; next && *next; ++next)
        *next = withCase(*next, isUpper);
    return text;
}

template <typename Char>
int writeNumber(const QString &digits, Char *buffer, std::size_t size, int radix)
{
    if (!buffer || size == 0)
        return fails(EINVAL);
    if (radix < 2 || radix > 36)
        return empty(buffer, EINVAL);
    if (static_cast<std::size_t>(digits.size()) >= size)
        return empty(buffer, ERANGE);
    *std::transform(digits.begin(), digits.end(), buffer,
                    [](QChar digit) { return static_cast<Char>(digit.unicode()); }) = 0;
    return 0;
}

/// Only in radix 10 is a negative number more than its bits.
template <typename Number>
QString digitsOf(Number value, int radix)
{
    return radix == 10
                   ? QString::number(value)
                   : QString::number(std::make_unsigned_t<Number>(value), std::clamp(radix, 2, 36));
}

/// Adds up to @p count characters of @p text behind the first @p used of @p buffer.
template <typename Char>
int append(Char *buffer, std::size_t size, std::size_t used, const Char *text, std::size_t count)
{
    if (!text)
        return empty(buffer, EINVAL);
    const std::size_t room = size - used - 1;
    std::size_t length = 0;
    while (length < room && length < count && text[length])
        ++length;
    const bool isCut = length == room && length < count && text[length];
    if (isCut && count != OvKernel32::truncate)
        return empty(buffer, ERANGE);
    *std::copy_n(text, length, buffer + used) = 0;
    return isCut ? static_cast<int>(OvKernel32::RuntimeTruncated) : 0;
}

} // namespace

template <typename Char>
int OvKernel32::Runtime<Char>::compare(const Char *one, const Char *other)
{
    return compareCount(one, other, whole);
}

template <typename Char>
int OvKernel32::Runtime<Char>::compareCount(const Char *one, const Char *other, std::size_t count)
{
    if (!one || !other)
        return fails(EINVAL), RuntimeCompareError;
    for (; count > 0; --count, ++one, ++other) {
        const Char left = withCase(*one, false);
        const Char right = withCase(*other, false);
        if (left != right)
            return std::char_traits<Char>::lt(left, right) ? -1 : 1;
        if (!left)
            break;
    }
    return 0;
}

template <typename Char>
Char *OvKernel32::Runtime<Char>::upper(Char *text)
{
    return changeCase(text, true);
}

template <typename Char>
Char *OvKernel32::Runtime<Char>::lower(Char *text)
{
    return changeCase(text, false);
}

template <typename Char>
Char *OvKernel32::Runtime<Char>::reverse(Char *text)
{
    if (text)
        std::reverse(text, text + std::char_traits<Char>::length(text));
    else
        fails(EINVAL);
    return text;
}

template <typename Char>
Char *OvKernel32::Runtime<Char>::number(int value, Char *buffer, int radix)
{
    return numberS(value, buffer, 33, radix), buffer;
}

template <typename Char>
Char *OvKernel32::Runtime<Char>::number64(std::int64_t value, Char *buffer, int radix)
{
    return writeNumber(digitsOf(value, radix), buffer, 65, radix), buffer;
}

template <typename Char>
int OvKernel32::Runtime<Char>::numberS(int value, Char *buffer, std::size_t size, int radix)
{
    return writeNumber(digitsOf(value, radix), buffer, size, radix);
}

template <typename Char>
int OvKernel32::Runtime<Char>::copy(Char *buffer, std::size_t size, const Char *text)
{
    return copyCount(buffer, size, text, whole);
}

template <typename Char>
int OvKernel32::Runtime<Char>::copyCount(Char *buffer, std::size_t size, const Char *text,
                                         std::size_t count)
{
    return buffer && size > 0 ? append(buffer, size, 0, text, count) : fails(EINVAL);
}

template <typename Char>
int OvKernel32::Runtime<Char>::concatenate(Char *buffer, std::size_t size, const Char *text)
{
    if (!buffer || size == 0)
        return fails(EINVAL);
    const auto used = static_cast<std::size_t>(std::find(buffer, buffer + size, Char(0)) - buffer);
    return used < size ? append(buffer, size, used, text, whole) : empty(buffer, EINVAL);
}

template <typename Char>
int OvKernel32::Runtime<Char>::split(const Char *path, Char *drive, Char *folder, Char *name,
                                     Char *extension)
{
    return splitS(path, drive, drive ? 3 : 0, folder, folder ? 256 : 0, name, name ? 256 : 0,
                  extension, extension ? 256 : 0);
}

template <typename Char>
int OvKernel32::Runtime<Char>::splitS(const Char *path, Char *drive, std::size_t driveSize,
                                      Char *folder, std::size_t folderSize, Char *name,
                                      std::size_t nameSize, Char *extension,
                                      std::size_t extensionSize)
{
    Char *const buffers[] = {drive, folder, name, extension};
    const std::size_t sizes[] = {driveSize, folderSize, nameSize, extensionSize};
    for (int part = 0; part < 4; ++part) {
        if (buffers[part] && sizes[part] > 0)
            *buffers[part] = 0;
        else if (buffers[part] || sizes[part] > 0)
            path = nullptr;
    }
    if (!path)
        return fails(EINVAL);

    const Char *const end = path + std::char_traits<Char>::length(path);
    const Char *const folderBegin = *path && path[1] == ':' ? path + 2 : path;
    const Char *nameBegin = folderBegin;
    const Char *nameEnd = end;
    for (const Char *next = folderBegin; next < end; ++next) {
        if (*next == '/' || *next == '\\')
            nameBegin = next + 1;
    }
    for (const Char *next = nameBegin; next < end; ++next) {
        if (*next == '.')
            nameEnd = next;
    }
    const Char *const begins[] = {path, folderBegin, nameBegin, nameEnd, end};
    for (int part = 0; part < 4; ++part) {
        if (buffers[part] && begins[part + 1] - begins[part] >= std::ptrdiff_t(sizes[part])) {
            for (Char *const buffer : buffers) {
                if (buffer)
                    *buffer = 0;
            }
            return fails(ERANGE);
        }
        if (buffers[part])
            *std::copy(begins[part], begins[part + 1], buffers[part]) = 0;
    }
    return 0;
}

template <typename Char>
int OvKernel32::Runtime<Char>::make(Char *path, const Char *drive, const Char *folder,
                                    const Char *name, const Char *extension)
{
    return makeS(path, 260, drive, folder, name, extension);
}

template <typename Char>
int OvKernel32::Runtime<Char>::makeS(Char *path, std::size_t size, const Char *drive,
                                     const Char *folder, const Char *name, const Char *extension)
{
    std::basic_string<Char> text;
    if (drive && *drive)
        text.append({*drive, ':'});
    if (folder)
        text += folder;
    if (folder && *folder && text.back() != '/' && text.back() != '\\')
        text += '/';
    if (name)
        text += name;
    if (extension && *extension && *extension != '.')
        text += '.';
    if (extension)
        text += extension;
    return copy(path, size, text.c_str());
}

template struct OvKernel32::Runtime<char>;
template struct OvKernel32::Runtime<wchar_t>;

int OvKernel32::wtoi(const wchar_t *text)
{
    using Limits = std::numeric_limits<int>;
    const long long value = text ? std::wcstoll(text, nullptr, 10) : (fails(EINVAL), 0);
    if (value < Limits::min() || value > Limits::max())
        fails(ERANGE);
    return static_cast<int>(std::clamp<long long>(value, Limits::min(), Limits::max()));
}

double OvKernel32::wtof(const wchar_t *text)
{
    static const locale_t pointLocale = ::newlocale(LC_ALL_MASK, "C", nullptr);
    return text ? ::wcstod_l(text, nullptr, pointLocale) : (fails(EINVAL), 0.0);
}
