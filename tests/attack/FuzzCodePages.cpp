// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "FuzzSupport.h"

#include "host/drawing/TextCodec.h"

#include <OvCustomControl/OvKernel32.h>

#include <iconv.h>

#include <map>
#include <optional>
#include <vector>

using K = OvKernel32;

namespace {

constexpr K::Dword pages[] = {K::CpUtf8, 1250, 1251, 1252, 1253, 1254, 1255,
                              1256,      1257, 1258, 932,  936,  949,  950};

/// Whether that holds what is no character.
bool isBroken(const std::wstring &text)
{
    return std::any_of(text.begin(), text.end(), [](wchar_t character) {
        return character < 0 || character > 0x10ffff || (character >> 11) == 27;
    });
}

/// What the C library says that @p bytes mean; nothing where it knows no meaning for all of them. It
/// composes letters with the accents that the code page of Vietnamese has apart, in any order, and takes as
/// UTF-8 what would be characters beyond the last one.
std::optional<std::wstring> opinion(K::Dword page, QByteArray bytes)
{
    static std::map<K::Dword, iconv_t> decoders;
    iconv_t &decoder = decoders[page];
    if (!decoder)
        decoder = iconv_open("WCHAR_T",
                             page == K::CpUtf8 ? "UTF-8" : "CP" + QByteArray::number(page));
    std::wstring wide(size_t(bytes.size()) + 1, 0);
    char *from = bytes.data(), *to = reinterpret_cast<char *>(wide.data());
    size_t left = size_t(bytes.size()), room = wide.size() * sizeof(wchar_t);
    iconv(decoder, nullptr, nullptr, nullptr, nullptr);
    const bool isWhole = iconv(decoder, &from, &left, &to, &room) != size_t(-1)
                         && iconv(decoder, nullptr, nullptr, &to, &room) != size_t(-1);
    wide.resize(wide.size() - room / sizeof(wchar_t));
    return isWhole && !isBroken(wide) ? std::make_optional(wide) : std::nullopt;
}

/// Asks @p convert for the size, then gives it just that, or one unit less.
template <typename Char, typename Convert>
std::optional<std::basic_string<Char>> result(Convert convert)
{
    const int size = convert(nullptr, 0);
    if (size == 0)
        return std::nullopt;
    std::vector<Char> whole(size_t(size), '#'), small(size_t(size) - 1, '#');
    const std::vector<Char> untouched = small;
    require(size == 1
                    || (!convert(small.data(), size - 1)
                        && K::getLastError() == K::ErrorInsufficientBuffer && small == untouched),
            "where it is short nothing is written");
    require(convert(whole.data(), size) == size, "it takes what it asked for");
    return std::basic_string<Char>(whole.begin(), whole.end());
}

std::optional<std::wstring> decoded(K::Dword page, K::Dword flags, const QByteArray &bytes)
{
    const std::vector<char> text(bytes.begin(), bytes.end());
    return result<wchar_t>([&](wchar_t *buffer, int size) {
        return K::multiByteToWideChar(page, flags, text.data(), bytes.size(), buffer, size);
    });
}

void decode(K::Dword page, const QByteArray &bytes)
{
    const auto apart = [page](const std::wstring &text) {
        QString all = QString::fromStdWString(text);
        if (page == 1258) {
            all = all.normalized(QString::NormalizationForm_D);
            std::sort(all.begin(), all.end());
        }
        return all;
    };
    const auto wide = decoded(page, 0, bytes), strict = decoded(page, K::MbErrInvalidChars, bytes),
               other = opinion(page, bytes);
    require(wide && (!other || apart(*wide) == apart(*other)), "two readers agree");
    require(page != K::CpUtf8 || strict == other, "they agree on what is UTF-8");
    require(strict ? strict == wide : wide->find(L'\ufffd') != wide->npos, "there is a sign");
    const int length = K::multiByteToWideChar(page, 0, bytes.constData(), -1, nullptr, 0);
    require(length > 0 && length <= bytes.size() + 1, "the NUL is counted");
}

void encode(K::Dword page, const std::wstring &wide)
{
    const std::vector<wchar_t> text(wide.begin(), wide.end());
    const int length = int(wide.size());
    const bool isUtf8 = page == K::CpUtf8;
    K::Bool isLossy = isUtf8
                      && !K::wideCharToMultiByte(page, K::WcErrInvalidChars, text.data(), length,
                                                 nullptr, 0, nullptr, nullptr);
    const auto bytes = result<char>([&](char *buffer, int size) {
        return K::wideCharToMultiByte(page, 0, text.data(), length, buffer, size,
                                      isUtf8 ? nullptr : "_", isUtf8 ? nullptr : &isLossy);
    });
    require(bytes && (isUtf8 ? isLossy == isBroken(wide) : isLossy || !isBroken(wide)),
            "what is lost is told");
    const auto back = decoded(page, 0, QByteArray::fromStdString(*bytes));
    require(back && back->size() == wide.size(), "one character is one character");
    const wchar_t instead = isUtf8 ? L'\ufffd' : L'_';
    for (size_t at = 0; at < wide.size(); ++at)
        require(back->at(at) == wide[at] || (isLossy && back->at(at) == instead), "it comes back");
}

void throughDrawing(const char *page, const QByteArray &bytes)
{
    Embedded::TextCodec codec;
    require(codec.setCodePage(page), "the code page is known");
    const std::vector<char> exact(bytes.begin(), bytes.end());
    const QString read = codec.decode({exact.data(), exact.size()});
    require(read.isValidUtf16() && !read.contains(QChar(0)), "it is a text");
    for (const QString &text : {read, QString::fromUtf8(bytes.constData())})
        require(codec.decode(codec.encode(text).toStdString()) == text, "a text comes back");
}

} // namespace

void tryInput(Choices &choices, const QByteArray &bytes)
{
    constexpr const char *drawings[] = {"ansi_1252", "ansi_1251", "ansi_932", "ansi_936",
                                        "ansi_949",  "ansi_950",  "dos850",   "dos437",
                                        "utf-8",     "gb18030"};
    constexpr std::array pieces{L'!', L'\ufffd', wchar_t(-1), wchar_t(0xd800), wchar_t(0x110000)};
    const int way = choices.below(3);
    if (way == 0)
        throughDrawing(choices.of(drawings), bytes);
    else if (way == 1)
        encode(choices.of(pages), choices.of(pieces) + QString::fromUtf8(bytes).toStdWString());
    else if (!bytes.isEmpty())
        decode(choices.of(pages), bytes);
}
