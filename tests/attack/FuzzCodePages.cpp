// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "FuzzSupport.h"

#include "host/drawing/TextCodec.h"

#include <OvCustomControl/CString.h>
#include <OvCustomControl/OvKernel32.h>

#include <iconv.h>

#include <algorithm>
#include <optional>
#include <vector>

using K = OvKernel32;
using std::size_t;

namespace {

constexpr const char *pages[] = {"65001", "1250", "1251", "1252", "1253", "1254", "1255",
                                 "1256",  "1257", "1258", "932",  "936",  "949",  "950"};

/// What the C library says that @p bytes mean; nothing where it knows no meaning for all of them.
std::optional<std::wstring> opinion(size_t place, QByteArray bytes)
{
    static iconv_t decoders[std::size(pages)] = {};
    if (!decoders[place])
        decoders[place] = iconv_open("WCHAR_T", place ? QByteArray("CP") + pages[place] : "UTF-8");
    std::wstring wide(size_t(bytes.size()) + 1, 0);
    char *from = bytes.data(), *to = reinterpret_cast<char *>(wide.data());
    size_t left = size_t(bytes.size()), room = wide.size() * sizeof(wchar_t);
    iconv(decoders[place], nullptr, nullptr, nullptr, nullptr);
    const bool isWhole = iconv(decoders[place], &from, &left, &to, &room) != size_t(-1)
                         && iconv(decoders[place], nullptr, nullptr, &to, &room) != size_t(-1);
    wide.resize(wide.size() - room / sizeof(wchar_t));
    return isWhole ? std::make_optional(wide) : std::nullopt;
}

/// Asks @p convert for the size, then gives it just that, or one unit less.
template <typename Char, typename Convert>
std::optional<std::basic_string<Char>> result(Convert convert)
{
    const int size = convert(nullptr, 0);
    if (size == 0)
        return std::nullopt;
    const std::basic_string<Char> untouched(size_t(size), Char('#'));
    const auto small = exactly(untouched, size_t(size) - 1),
               whole = exactly(untouched, size_t(size));
    require(size == 1 || (!convert(small.get(), size - 1) && K::getLastError() == 122),
            "it is short");
    require(std::equal(small.get(), small.get() + size - 1, untouched.data()),
            "nothing is written");
    require(convert(whole.get(), size) == size, "it takes what it asked for");
    return std::basic_string<Char>(whole.get(), size_t(size));
}

void decode(size_t place, const QByteArray &bytes)
{
    const auto text = exactly(bytes, size_t(bytes.size()));
    const K::Dword page = K::Dword(atoi(pages[place]));
    const auto convert = [&](K::Dword flags) {
        return result<wchar_t>([&, flags](wchar_t *buffer, int size) {
            return K::multiByteToWideChar(page, flags, text.get(), bytes.size(), buffer, size);
        });
    };
    const auto wide = convert(0), strict = convert(K::MbErrInvalidChars),
               other = opinion(place, bytes);
    require(wide && (!other || wide == other), "two readers agree");
    require(place > 0 || strict == other, "they agree on what is UTF-8");
    require(strict ? strict == wide : wide->find(L'\ufffd') != wide->npos, "there is a sign");
    const int length = K::multiByteToWideChar(page, 0, bytes.constData(), -1, nullptr, 0);
    require(length > 0 && length <= bytes.size() + 1, "the NUL is counted");
}

void encode(size_t place, const std::wstring &wide)
{
    const auto text = exactly(wide, wide.size());
    const int length = int(wide.size());
    const K::Dword page = K::Dword(atoi(pages[place]));
    K::Bool isLossy = place == 0
                      && !K::wideCharToMultiByte(page, K::WcErrInvalidChars, text.get(), length,
                                                 nullptr, 0, nullptr, nullptr);
    const auto bytes = result<char>([&](char *buffer, int size) {
        return K::wideCharToMultiByte(page, 0, text.get(), length, buffer, size,
                                      place ? "_" : nullptr, place ? &isLossy : nullptr);
    });
    const auto isWrong = [](wchar_t it) { return it < 0 || it > 0x10ffff || (it >> 11) == 27; };
    const bool isBroken = std::any_of(wide.begin(), wide.end(), isWrong);
    require(bytes && (isLossy || !isBroken) && (place || isBroken == isLossy),
            "what is lost is told");
    const auto back = result<wchar_t>([&](wchar_t *buffer, int size) {
        return K::multiByteToWideChar(page, 0, bytes->data(), int(bytes->size()), buffer, size);
    });
    require(back && back->size() == wide.size(), "one character is one character");
    const wchar_t instead = place ? L'_' : L'\ufffd';
    for (size_t at = 0; at < wide.size(); ++at)
        require(back->at(at) == wide[at] || (isLossy && back->at(at) == instead), "it comes back");
}

void throughDrawing(size_t place, const QByteArray &bytes)
{
    static std::vector<Embedded::TextCodec> codecs;
    for (const char *name : {"ansi_1252", "ansi_1251", "ansi_932", "ansi_936", "ansi_949",
                             "ansi_950", "dos850", "dos437", "utf-8", "gb18030"}) {
        if (codecs.size() == 10)
            break;
        require(codecs.emplace_back().setCodePage(name), "the code page is known");
    }
    const Embedded::TextCodec &codec = codecs.at(place % codecs.size());
    const auto exact = exactly(bytes, size_t(bytes.size()));
    const QString read = codec.decode({exact.get(), size_t(bytes.size())});
    require(read.isValidUtf16() && !read.contains(QChar(0)), "it is a text");
    for (const QString &text : {read, QString::fromUtf8(bytes.constData())})
        require(codec.decode(codec.encode(text).toStdString()) == text, "a text comes back");
}

void throughCString(size_t, const std::wstring &wide)
{
    const QString text = QString::fromWCharArray(wide.c_str());
    const CString one(wide.c_str()), other(text);
    require(one.operator const wchar_t *() == std::wstring(wide.c_str()), "it holds all");
    require(other.toQString() == text || !text.isValidUtf16(), "it holds what Qt has");
    require(CString(text.toUtf8().constData()) == other || !text.isValidUtf16(), "it reads UTF-8");
    CString twice = one + one;
    require((twice += twice).GetLength() == 4 * one.GetLength(), "it grows by itself");
}

QByteArray makeInput(QRandomGenerator &random)
{
    static const char *const pieces[] = {
            "\\U+00E4", "\\U+D83D\\U+DE00", "\\U+0000", "\\U+",
            "\\",       "Layer ",           "\xe4\xf6", "\x81\x40",
            "\xc3\xa4", "\xf0\x9f\x98\x80", "\x8f\x5c", "\xed\xa0\x80"};
    QByteArray input(1, char(random.bounded(5)));
    input += char(random.bounded(14));
    for (int count = random.bounded(1, 8); count > 0; --count)
        input += pieces[random.bounded(int(std::size(pieces)))];
    return input;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    return writeCorpus(*argc, *argv, makeInput);
}

/// The first byte says what is tried, the second one in which code page.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 3 || size > 1024)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char *>(data) + 2, int(size) - 2);
    std::wstring wide(size_t(bytes.size()) / 4 + 1, 0);
    std::memcpy(wide.data(), bytes.constData(), size_t(bytes.size()));
    if (data[0] % 5 < 2)
        (data[0] % 5 ? decode : throughDrawing)(data[1] % std::size(pages), bytes);
    else if (data[0] % 5 == 2)
        wide = QString::fromUtf8(bytes.constData(), bytes.size()).toStdWString() + L'!';
    if (data[0] % 5 >= 2)
        (data[0] % 5 == 4 ? throughCString : encode)(data[1] % std::size(pages), wide);
    return 0;
}
