// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "FuzzSupport.h"

#include "host/drawing/TextCodec.h"

#include <OvCustomControl/CString.h>
#include <OvCustomControl/OvKernel32.h>

#include <iconv.h>

#include <cstring>
#include <optional>
#include <vector>

using K = OvKernel32;
using std::size_t;

namespace {

/// UTF-8 is the first.
constexpr K::Dword pages[] = {65001, 1250, 1251, 1252, 1253, 1254, 1255,
                              1256,  1257, 1258, 932,  936,  949,  950};

/// What the C library says that @p bytes mean; nothing where it knows no meaning for all of them.
std::optional<std::wstring> opinion(size_t place, QByteArray bytes)
{
    static iconv_t decoders[std::size(pages)] = {};
    iconv_t &decoder = decoders[place];
    if (!decoder)
        decoder = iconv_open("WCHAR_T", place ? "CP" + QByteArray::number(pages[place]) : "UTF-8");
    std::wstring wide(size_t(bytes.size()) + 1, 0);
    char *from = bytes.data(), *to = reinterpret_cast<char *>(wide.data());
    size_t left = size_t(bytes.size()), room = wide.size() * sizeof(wchar_t);
    iconv(decoder, nullptr, nullptr, nullptr, nullptr);
    const bool isWhole = iconv(decoder, &from, &left, &to, &room) != size_t(-1)
                         && iconv(decoder, nullptr, nullptr, &to, &room) != size_t(-1);
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

std::optional<std::wstring> decoded(size_t place, K::Dword flags, const char *bytes, int count)
{
    return result<wchar_t>([=](wchar_t *buffer, int size) {
        return K::multiByteToWideChar(pages[place], flags, bytes, count, buffer, size);
    });
}

/// The C library composes letters with the accents that the code page of Vietnamese has apart.
std::optional<std::wstring> composed(const std::optional<std::wstring> &text)
{
    const QString all = QString::fromStdWString(text.value_or(L""));
    return text ? std::make_optional(all.normalized(QString::NormalizationForm_C).toStdWString())
                : text;
}

void decode(size_t place, const QByteArray &bytes)
{
    const auto text = exactly(bytes, size_t(bytes.size()));
    const auto wide = decoded(place, 0, text.get(), bytes.size()),
               strict = decoded(place, K::MbErrInvalidChars, text.get(), bytes.size()),
               other = opinion(place, bytes);
    require(wide
                    && (!other || wide == other
                        || (pages[place] == 1258 && composed(wide) == composed(other))),
            "two readers agree");
    require(place > 0 || strict == other, "they agree on what is UTF-8");
    require(strict ? strict == wide : wide->find(L'\ufffd') != wide->npos, "there is a sign");
    const int length = K::multiByteToWideChar(pages[place], 0, bytes.constData(), -1, nullptr, 0);
    require(length > 0 && length <= bytes.size() + 1, "the NUL is counted");
}

void encode(size_t place, const std::wstring &wide)
{
    const auto text = exactly(wide, wide.size());
    const int length = int(wide.size());
    K::Bool isLossy = place == 0
                      && !K::wideCharToMultiByte(pages[place], K::WcErrInvalidChars, text.get(),
                                                 length, nullptr, 0, nullptr, nullptr);
    const auto bytes = result<char>([&](char *buffer, int size) {
        return K::wideCharToMultiByte(pages[place], 0, text.get(), length, buffer, size,
                                      place ? "_" : nullptr, place ? &isLossy : nullptr);
    });
    const auto isWrong = [](wchar_t it) { return it < 0 || it > 0x10ffff || (it >> 11) == 27; };
    const bool isBroken = std::any_of(wide.begin(), wide.end(), isWrong);
    require(bytes && (isLossy || !isBroken) && (place || isBroken == isLossy),
            "what is lost is told");
    const auto back = decoded(place, 0, bytes->data(), int(bytes->size()));
    require(back && back->size() == wide.size(), "one character is one character");
    const wchar_t instead = place ? L'_' : L'\ufffd';
    for (size_t at = 0; at < wide.size(); ++at)
        require(back->at(at) == wide[at] || (isLossy && back->at(at) == instead), "it comes back");
}

std::wstring wideOf(const QByteArray &bytes)
{
    std::wstring wide(size_t(bytes.size()) / 4 + 1, 0);
    std::memcpy(wide.data(), bytes.constData(), size_t(bytes.size()));
    return wide;
}

void encodeText(size_t place, const QByteArray &bytes)
{
    encode(place, QString::fromUtf8(bytes).toStdWString() + L'!');
}

void encodeUnits(size_t place, const QByteArray &bytes)
{
    encode(place, wideOf(bytes));
}

void throughDrawing(size_t place, const QByteArray &bytes)
{
    constexpr const char *names[] = {"ansi_1252", "ansi_1251", "ansi_932", "ansi_936", "ansi_949",
                                     "ansi_950",  "dos850",    "dos437",   "utf-8",    "gb18030"};
    static const std::vector<Embedded::TextCodec> codecs = [&] {
        std::vector<Embedded::TextCodec> all(std::size(names));
        for (size_t at = 0; at < all.size(); ++at)
            require(all[at].setCodePage(names[at]), "the code page is known");
        return all;
    }();
    const Embedded::TextCodec &codec = codecs[place % codecs.size()];
    const auto exact = exactly(bytes, size_t(bytes.size()));
    const QString read = codec.decode({exact.get(), size_t(bytes.size())});
    require(read.isValidUtf16() && !read.contains(QChar(0)), "it is a text");
    for (const QString &text : {read, QString::fromUtf8(bytes.constData())})
        require(codec.decode(codec.encode(text).toStdString()) == text, "a text comes back");
}

void throughCString(size_t, const QByteArray &bytes)
{
    const std::wstring wide = wideOf(bytes).c_str(); // up to a NUL
    const QString text = QString::fromStdWString(wide);
    const CString one(wide.c_str()), other(text);
    require(one.operator const wchar_t *() == wide, "it holds all");
    require(other.toQString() == text || !text.isValidUtf16(), "it holds what Qt has");
    require(CString(text.toUtf8().constData()) == other || !text.isValidUtf16(), "it reads UTF-8");
    CString twice = one + one;
    require((twice += twice).GetLength() == 4 * one.GetLength(), "it grows by itself");
}

} // namespace

void tryInput(size_t choice, const QByteArray &input)
{
    constexpr void (*tries[])(size_t, const QByteArray &) = {throughDrawing, decode, encodeText,
                                                             encodeUnits, throughCString};
    if (!input.isEmpty())
        tries[choice % std::size(tries)](choice / std::size(tries) % std::size(pages), input);
}
