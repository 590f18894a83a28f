#include "Kernel32Errors.h"

#include <QChar>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cwchar>
#include <limits>
#include <string_view>

namespace {

/// The sizes that callers without sizes must have, as documented.
enum PartSize : std::size_t { DriveSize = 3, FolderSize = 256, NameSize = 256, PathSize = 260 };
enum NumberSize : std::size_t { Size32 = 33, Size64 = 65 };

char lower(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character + 'a' - 'A')
                                                : character;
}

char upper(char character)
{
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - ('a' - 'A'))
                                                : character;
}

wchar_t lower(wchar_t character)
{
    const bool isKnown = OvCc::Kernel32::isCharacter(character);
    return isKnown ? static_cast<wchar_t>(QChar::toLower(static_cast<uint>(character))) : character;
}

wchar_t upper(wchar_t character)
{
    const bool isKnown = OvCc::Kernel32::isCharacter(character);
    return isKnown ? static_cast<wchar_t>(QChar::toUpper(static_cast<uint>(character))) : character;
}

int fails(int number)
{
    errno = number;
    return number;
}

template <typename Char>
int compare(const Char *one, const Char *other, std::size_t count)
{
    if (!one || !other)
        return fails(EINVAL), OvKernel32::RuntimeCompareError;
    for (; count > 0; --count, ++one, ++other) {
        const Char left = lower(*one);
        const Char right = lower(*other);
        if (left != right)
            return std::char_traits<Char>::lt(left, right) ? -1 : 1;
        if (!left)
            break;
    }
    return 0;
}

template <typename Char>
Char *changeEach(Char *text, Char (*change)(Char))
{
    if (text)
        std::transform(text, text + std::char_traits<Char>::length(text), text, change);
    else
        fails(EINVAL);
    return text;
}

template <typename Char>
Char *reverse(Char *text)
{
    if (text)
        std::reverse(text, text + std::char_traits<Char>::length(text));
    else
        fails(EINVAL);
    return text;
}

template <typename Char>
int empty(Char *buffer, int number)
{
    *buffer = 0;
    return fails(number);
}

template <typename Char>
int writeDigits(std::uint64_t magnitude, bool isNegative, Char *buffer, std::size_t size, int radix)
{
    if (!buffer || size == 0)
        return fails(EINVAL);
    if (radix < 2 || radix > 36)
        return empty(buffer, EINVAL);
    Char digits[Size64 + 1];
    Char *const end = digits + std::size(digits);
    Char *next = end;
    do {
        const auto digit = static_cast<int>(magnitude % static_cast<unsigned>(radix));
        *--next = static_cast<Char>(digit < 10 ? '0' + digit : 'a' + digit - 10);
        magnitude /= static_cast<unsigned>(radix);
    } while (magnitude > 0);
    if (isNegative)
        *--next = '-';
    if (static_cast<std::size_t>(end - next) >= size)
        return empty(buffer, ERANGE);
    *std::copy(next, end, buffer) = 0;
    return 0;
}

/// Only in radix 10 is a negative number more than its bits.
template <typename Char, typename Number>
int writeNumber(Number value, Char *buffer, std::size_t size, int radix)
{
    using Bits = std::make_unsigned_t<Number>;
    const bool isNegative = std::is_signed_v<Number> && radix == 10 && value < Number(0);
    const Bits bits = static_cast<Bits>(value);
    return writeDigits<Char>(isNegative ? Bits(0) - bits : bits, isNegative, buffer, size, radix);
}

template <typename Char, typename Number>
Char *numberText(Number value, Char *buffer, int radix)
{
    writeNumber(value, buffer, sizeof(Number) > 4 ? Size64 : Size32, radix);
    return buffer;
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

/// Any count but `truncate`, which asks for something else.
constexpr std::size_t all = OvKernel32::truncate - 1;

template <typename Char>
int copy(Char *buffer, std::size_t size, const Char *text, std::size_t count)
{
    return buffer && size > 0 ? append(buffer, size, 0, text, count) : fails(EINVAL);
}

template <typename Char>
int concatenate(Char *buffer, std::size_t size, const Char *text)
{
    if (!buffer || size == 0)
        return fails(EINVAL);
    const auto used = static_cast<std::size_t>(std::find(buffer, buffer + size, Char(0)) - buffer);
    return used < size ? append(buffer, size, used, text, all) : empty(buffer, EINVAL);
}

template <typename Char>
struct Part
{
    Char *buffer;
    std::size_t size;
};

/// @param parts drive, folder, name and extension
template <typename Char>
int split(const Char *path, const Part<Char> (&parts)[4])
{
    for (const Part<Char> &part : parts) {
        if (part.buffer && part.size > 0)
            *part.buffer = 0;
        else if (part.buffer || part.size > 0)
            path = nullptr;
    }
    if (!path)
        return fails(EINVAL);

    const std::basic_string_view<Char> text(path);
    constexpr Char slashes[] = {'/', '\\', 0};
    const std::size_t driveEnd = text.size() > 1 && text[1] == ':' ? 2 : 0;
    const std::size_t slash = text.find_last_of(slashes);
    const std::size_t nameBegin = slash == text.npos ? driveEnd : slash + 1;
    const std::size_t dot = text.rfind(Char('.'));
    const std::size_t nameEnd = dot == text.npos || dot < nameBegin ? text.size() : dot;
    const std::size_t ends[] = {driveEnd, nameBegin, nameEnd, text.size()};

    std::size_t begin = 0;
    for (std::size_t index = 0; index < std::size(parts); ++index) {
        const std::size_t length = ends[index] - begin;
        if (parts[index].buffer && length >= parts[index].size) {
            for (const Part<Char> &part : parts) {
                if (part.buffer)
                    *part.buffer = 0;
            }
            return fails(ERANGE);
        }
        if (parts[index].buffer)
            *std::copy_n(path + begin, length, parts[index].buffer) = 0;
        begin = ends[index];
    }
    return 0;
}

template <typename Char>
int make(Char *path, std::size_t size, const Char *drive, const Char *folder, const Char *name,
         const Char *extension)
{
    if (!path || size == 0)
        return fails(EINVAL);
    std::basic_string<Char> text;
    if (drive && *drive)
        text.append({*drive, ':'});
    if (folder && *folder) {
        text += folder;
        if (text.back() != '/' && text.back() != '\\')
            text += '/';
    }
    if (name)
        text += name;
    if (extension && *extension) {
        if (*extension != '.')
            text += '.';
        text += extension;
    }
    return copy(path, size, text.c_str(), all);
}

template <typename Char>
Part<Char> part(Char *buffer, std::size_t size)
{
    return {buffer, buffer ? size : 0};
}

} // namespace

int OvKernel32::stricmp(const char *one, const char *other)
{
    return compare(one, other, truncate);
}

int OvKernel32::wcsicmp(const wchar_t *one, const wchar_t *other)
{
    return compare(one, other, truncate);
}

int OvKernel32::strnicmp(const char *one, const char *other, std::size_t count)
{
    return compare(one, other, count);
}

int OvKernel32::wcsnicmp(const wchar_t *one, const wchar_t *other, std::size_t count)
{
    return compare(one, other, count);
}

char *OvKernel32::strupr(char *text)
{
    return changeEach<char>(text, upper);
}

wchar_t *OvKernel32::wcsupr(wchar_t *text)
{
    return changeEach<wchar_t>(text, upper);
}

char *OvKernel32::strlwr(char *text)
{
    return changeEach<char>(text, lower);
}

wchar_t *OvKernel32::wcslwr(wchar_t *text)
{
    return changeEach<wchar_t>(text, lower);
}

char *OvKernel32::strrev(char *text)
{
    return reverse(text);
}

wchar_t *OvKernel32::wcsrev(wchar_t *text)
{
    return reverse(text);
}

char *OvKernel32::itoa(int value, char *buffer, int radix)
{
    return numberText(value, buffer, radix);
}

char *OvKernel32::ltoa(Long value, char *buffer, int radix)
{
    return numberText(value, buffer, radix);
}

char *OvKernel32::ultoa(Dword value, char *buffer, int radix)
{
    return numberText(value, buffer, radix);
}

char *OvKernel32::i64toa(std::int64_t value, char *buffer, int radix)
{
    return numberText(value, buffer, radix);
}

char *OvKernel32::ui64toa(std::uint64_t value, char *buffer, int radix)
{
    return numberText(value, buffer, radix);
}

wchar_t *OvKernel32::itow(int value, wchar_t *buffer, int radix)
{
    return numberText(value, buffer, radix);
}

wchar_t *OvKernel32::ltow(Long value, wchar_t *buffer, int radix)
{
    return numberText(value, buffer, radix);
}

wchar_t *OvKernel32::ultow(Dword value, wchar_t *buffer, int radix)
{
    return numberText(value, buffer, radix);
}

wchar_t *OvKernel32::i64tow(std::int64_t value, wchar_t *buffer, int radix)
{
    return numberText(value, buffer, radix);
}

wchar_t *OvKernel32::ui64tow(std::uint64_t value, wchar_t *buffer, int radix)
{
    return numberText(value, buffer, radix);
}

int OvKernel32::itoaS(int value, char *buffer, std::size_t size, int radix)
{
    return writeNumber(value, buffer, size, radix);
}

int OvKernel32::itowS(int value, wchar_t *buffer, std::size_t size, int radix)
{
    return writeNumber(value, buffer, size, radix);
}

int OvKernel32::wtoi(const wchar_t *text)
{
    using Limits = std::numeric_limits<int>;
    const std::int64_t value = wtoi64(text);
    if (value < Limits::min() || value > Limits::max())
        fails(ERANGE);
    return static_cast<int>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

std::int64_t OvKernel32::wtoi64(const wchar_t *text)
{
    return text ? std::wcstoll(text, nullptr, 10) : (fails(EINVAL), 0);
}

double OvKernel32::wtof(const wchar_t *text)
{
    static const locale_t pointLocale = ::newlocale(LC_ALL_MASK, "C", nullptr);
    return text ? ::wcstod_l(text, nullptr, pointLocale) : (fails(EINVAL), 0.0);
}

int OvKernel32::strcpyS(char *buffer, std::size_t size, const char *text)
{
    return copy(buffer, size, text, all);
}

int OvKernel32::wcscpyS(wchar_t *buffer, std::size_t size, const wchar_t *text)
{
    return copy(buffer, size, text, all);
}

int OvKernel32::strncpyS(char *buffer, std::size_t size, const char *text, std::size_t count)
{
    return copy(buffer, size, text, count);
}

int OvKernel32::wcsncpyS(wchar_t *buffer, std::size_t size, const wchar_t *text, std::size_t count)
{
    return copy(buffer, size, text, count);
}

int OvKernel32::strcatS(char *buffer, std::size_t size, const char *text)
{
    return concatenate(buffer, size, text);
}

int OvKernel32::wcscatS(wchar_t *buffer, std::size_t size, const wchar_t *text)
{
    return concatenate(buffer, size, text);
}

int OvKernel32::splitpath(const char *path, char *drive, char *folder, char *name, char *extension)
{
    return split<char>(path, {part(drive, DriveSize), part(folder, FolderSize),
                              part(name, NameSize), part(extension, NameSize)});
}

int OvKernel32::wsplitpath(const wchar_t *path, wchar_t *drive, wchar_t *folder, wchar_t *name,
                           wchar_t *extension)
{
    return split<wchar_t>(path, {part(drive, DriveSize), part(folder, FolderSize),
                                 part(name, NameSize), part(extension, NameSize)});
}

int OvKernel32::wsplitpathS(const wchar_t *path, wchar_t *drive, std::size_t driveSize,
                            wchar_t *folder, std::size_t folderSize, wchar_t *name,
                            std::size_t nameSize, wchar_t *extension, std::size_t extensionSize)
{
    return split<wchar_t>(path, {{drive, driveSize},
                                 {folder, folderSize},
                                 {name, nameSize},
                                 {extension, extensionSize}});
}

int OvKernel32::makepath(char *path, const char *drive, const char *folder, const char *name,
                         const char *extension)
{
    return make(path, PathSize, drive, folder, name, extension);
}

int OvKernel32::wmakepath(wchar_t *path, const wchar_t *drive, const wchar_t *folder,
                          const wchar_t *name, const wchar_t *extension)
{
    return make(path, PathSize, drive, folder, name, extension);
}

int OvKernel32::wmakepathS(wchar_t *path, std::size_t size, const wchar_t *drive,
                           const wchar_t *folder, const wchar_t *name, const wchar_t *extension)
{
    return make(path, size, drive, folder, name, extension);
}
