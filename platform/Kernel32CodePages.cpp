#include "Kernel32Errors.h"

#include <QLocale>
#include <QTextCodec>

#include <array>
#include <cwchar>
#include <map>
#include <memory>
#include <mutex>
#include <optional>

using OvCc::Kernel32::fail;
using OvCc::Kernel32::isCharacter;
using Dword = OvKernel32::Dword;

namespace {

constexpr wchar_t replacement = 0xfffd;

/// A code page of one and two bytes as tables, made from Qt's codec: only so it shows which bytes
/// have no meaning, which the codecs tell in ways of their own. Bytes below 128 are ASCII.
struct CodePage
{
    explicit CodePage(QTextCodec &codec);

    static constexpr char16_t none = replacement; ///< no code page has a code for it

    std::array<bool, 0x100> isLead{};
    std::array<char16_t, 0x10000> toWide{};    ///< of a byte, or of the lead byte times 256 and one
    std::array<std::uint16_t, 0x10000> code{}; ///< back; 0 for none
};

QByteArray bytesOf(unsigned code)
{
    const QByteArray trail(1, static_cast<char>(code));
    return code < 0x100 ? trail : QByteArray(1, static_cast<char>(code >> 8)) + trail;
}

CodePage::CodePage(QTextCodec &codec)
{
    toWide.fill(none);
    QByteArray bytes;
    std::vector<unsigned> codes;
    const auto add = [&bytes, &codes](unsigned code) {
        bytes += bytesOf(code) + '\n'; // a line end is never the second byte of a pair
        codes.push_back(code);
    };
    for (unsigned byte = 0x80; byte < 0x100; ++byte) {
        isLead[byte] = codec.toUnicode(bytesOf(byte)).isEmpty();
        for (unsigned trail = 0x40; isLead[byte] && trail < 0x100; ++trail)
            add(byte << 8 | trail);
        if (!isLead[byte])
            add(byte);
    }

    const QStringList texts = codec.toUnicode(bytes).split('\n');
    QString text;
    for (std::size_t index = 0; index < codes.size(); ++index) {
        const QString &meaning = texts.at(static_cast<int>(index));
        if (meaning.size() == 1 && meaning.at(0).unicode() >= 0x80)
            toWide[codes[index]] = meaning.at(0).unicode();
    }
    for (char16_t ascii = 0; ascii < 0x80; ++ascii)
        toWide[ascii] = static_cast<char16_t>(code[ascii] = ascii);

    // Where several codes have one meaning, the codec says which of them is written.
    for (const unsigned each : codes) {
        const char16_t meaning = toWide[each];
        if (meaning == none)
            continue;
        code[meaning] = code[meaning] ? code[meaning] : static_cast<std::uint16_t>(each);
        text += QChar(meaning) + QStringLiteral("\n");
    }
    const QList<QByteArray> encodings = codec.fromUnicode(text).split('\n');
    for (int index = 0; 2 * index < text.size(); ++index) {
        const QByteArray &encoding = encodings.at(index);
        const char16_t meaning = text.at(2 * index).unicode();
        unsigned written = 0;
        for (const char byte : encoding)
            written = written << 8 | static_cast<unsigned char>(byte);
        if (written && written < toWide.size() && toWide[written] == meaning)
            code[meaning] = static_cast<std::uint16_t>(written);
    }
}

/// Null for a code page that there is not.
const CodePage *codePage(Dword number)
{
    static std::mutex mutex;
    static std::map<Dword, std::unique_ptr<const CodePage>> pages;
    const bool isKnown = (number >= 1250 && number <= 1258) || number == 932 || number == 936
                         || number == 949 || number == 950;
    if (!isKnown)
        return nullptr;
    const std::lock_guard<std::mutex> lock(mutex);
    std::unique_ptr<const CodePage> &page = pages[number];
    if (!page) {
        QTextCodec *codec = QTextCodec::codecForName("windows-" + QByteArray::number(number));
        if (!codec)
            return nullptr;
        page = std::make_unique<const CodePage>(*codec);
    }
    return page.get();
}

bool isUtf8(Dword number)
{
    return number == OvKernel32::CpUtf8 || number == OvKernel32::CpAcp
           || number == OvKernel32::CpOemCp || number == OvKernel32::CpThreadAcp;
}

/// One character of UTF-8, or the replacement for the longest part that could have begun one.
wchar_t nextUtf8(const unsigned char *&next, const unsigned char *end, bool *isValid)
{
    const unsigned lead = *next++;
    if (lead < 0x80)
        return static_cast<wchar_t>(lead);
    const int more = lead >= 0xf0 ? 3 : lead >= 0xe0 ? 2 : 1;
    *isValid = false;
    if (lead < 0xc2 || lead > 0xf4)
        return replacement;
    // The second byte rules out long forms, surrogates and what is past the end of Unicode.
    const unsigned least = lead == 0xe0 ? 0xa0 : lead == 0xf0 ? 0x90 : 0x80;
    const unsigned most = lead == 0xed ? 0x9f : lead == 0xf4 ? 0x8f : 0xbf;
    unsigned code = lead & (0x3fU >> more);
    for (int index = 0; index < more; ++index) {
        const bool isFirst = index == 0;
        if (next == end || *next < (isFirst ? least : 0x80) || *next > (isFirst ? most : 0xbf))
            return replacement;
        code = code << 6 | (*next++ & 0x3fU);
    }
    *isValid = true;
    return static_cast<wchar_t>(code);
}

/// Nothing if @p isStrict and something has no meaning.
std::optional<std::wstring> decoded(const CodePage *page, const char *text, int length,
                                    bool isStrict)
{
    std::wstring wide;
    const auto *next = reinterpret_cast<const unsigned char *>(text);
    const unsigned char *end = next + length;
    while (next < end) {
        bool isValid = true;
        if (!page) {
            wide += nextUtf8(next, end, &isValid);
        } else {
            const unsigned first = *next++;
            const bool isPair = page->isLead[first] && next < end
                                && page->toWide[first << 8 | *next] != CodePage::none;
            wide += page->toWide[isPair ? first << 8 | *next : first];
            next += isPair ? 1 : 0;
            isValid = wide.back() != CodePage::none;
        }
        if (!isValid && isStrict)
            return std::nullopt;
    }
    return wide;
}

std::string utf8(wchar_t character)
{
    const auto code = static_cast<unsigned>(character);
    const auto tail = [code](int shift) {
        return static_cast<char>(0x80 | (code >> shift & 0x3f));
    };
    if (code < 0x80)
        return {static_cast<char>(code)};
    if (code < 0x800)
        return {static_cast<char>(0xc0 | code >> 6), tail(0)};
    if (code < 0x10000)
        return {static_cast<char>(0xe0 | code >> 12), tail(6), tail(0)};
    return {static_cast<char>(0xf0 | code >> 18), tail(12), tail(6), tail(0)};
}

/// @param[out] hasLoss whether a character was replaced
std::string encoded(const CodePage *page, const wchar_t *text, int length, const char *defaultChar,
                    bool *hasLoss)
{
    std::string bytes;
    *hasLoss = false;
    for (const wchar_t *next = text; next < text + length; ++next) {
        const auto character = static_cast<char32_t>(*next);
        const unsigned code = page && character < page->code.size() ? page->code[character] : 0;
        const bool isKnown = page ? code || !character : isCharacter(*next);
        *hasLoss = *hasLoss || !isKnown;
        if (!page)
            bytes += utf8(isKnown ? *next : replacement);
        else if (isKnown)
            bytes += bytesOf(code).toStdString();
        else
            bytes += defaultChar ? *defaultChar : '?';
    }
    return bytes;
}

/// What both conversions ask of their parameters; the length is the number of units of @p text.
template <typename From, typename To>
bool checkArguments(Dword number, const From *text, int *length, const To *buffer, int size)
{
    const bool isSame = static_cast<const void *>(text) == static_cast<const void *>(buffer);
    if (!text || *length == 0 || size < 0 || (size > 0 && !buffer) || isSame
        || !(isUtf8(number) || codePage(number)))
        return fail(OvKernel32::ErrorInvalidParameter, false);
    if (*length < 0)
        *length = static_cast<int>(std::char_traits<From>::length(text)) + 1;
    return true;
}

template <typename Text, typename Char>
int copyResult(const Text &text, Char *buffer, int size)
{
    const int length = static_cast<int>(text.size());
    if (size == 0)
        return length;
    if (size < length)
        return fail(OvKernel32::ErrorInsufficientBuffer, 0);
    text.copy(buffer, text.size());
    return length;
}

struct LanguageRow
{
    const char *locale;
    OvKernel32::Word number;
};

constexpr LanguageRow languages[] = {
        {"ar-SA", 0x0401}, {"bg-BG", 0x0402}, {"ca-ES", 0x0403}, {"zh-TW", 0x0404},
        {"cs-CZ", 0x0405}, {"da-DK", 0x0406}, {"de-DE", 0x0407}, {"el-GR", 0x0408},
        {"en-US", 0x0409}, {"fi-FI", 0x040b}, {"fr-FR", 0x040c}, {"he-IL", 0x040d},
        {"hu-HU", 0x040e}, {"is-IS", 0x040f}, {"it-IT", 0x0410}, {"ja-JP", 0x0411},
        {"ko-KR", 0x0412}, {"nl-NL", 0x0413}, {"nb-NO", 0x0414}, {"pl-PL", 0x0415},
        {"pt-BR", 0x0416}, {"ro-RO", 0x0418}, {"ru-RU", 0x0419}, {"hr-HR", 0x041a},
        {"sk-SK", 0x041b}, {"sq-AL", 0x041c}, {"sv-SE", 0x041d}, {"th-TH", 0x041e},
        {"tr-TR", 0x041f}, {"uk-UA", 0x0422}, {"sl-SI", 0x0424}, {"et-EE", 0x0425},
        {"lv-LV", 0x0426}, {"lt-LT", 0x0427}, {"vi-VN", 0x042a}, {"eu-ES", 0x042d},
        {"hi-IN", 0x0439}, {"zh-CN", 0x0804}, {"de-CH", 0x0807}, {"en-GB", 0x0809},
        {"es-MX", 0x080a}, {"fr-BE", 0x080c}, {"it-CH", 0x0810}, {"nl-BE", 0x0813},
        {"nn-NO", 0x0814}, {"pt-PT", 0x0816}, {"zh-HK", 0x0c04}, {"de-AT", 0x0c07},
        {"en-AU", 0x0c09}, {"es-ES", 0x0c0a}, {"fr-CA", 0x0c0c}, {"zh-SG", 0x1004},
        {"en-CA", 0x1009}, {"fr-CH", 0x100c}, {"en-NZ", 0x1409}, {"en-IE", 0x1809}};

/// "de-AT"; empty for the C locale.
QString userLocale()
{
    // QLocale::system() would tell what they were when it was first asked.
    QByteArray name;
    for (const char *variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (name.isEmpty())
            name = qgetenv(variable);
    }
    const QLocale locale(QString::fromLatin1(name));
    return locale.language() == QLocale::C ? QString() : locale.name().replace('_', '-');
}

} // namespace

int OvKernel32::multiByteToWideChar(Dword number, Dword flags, const char *text, int length,
                                    wchar_t *buffer, int size)
{
    if (!checkArguments(number, text, &length, buffer, size))
        return 0;
    if (flags & ~(isUtf8(number) ? Dword(MbErrInvalidChars) : MbErrInvalidChars | MbPrecomposed))
        return fail(ErrorInvalidFlags, 0);
    const auto wide = decoded(codePage(number), text, length, flags & MbErrInvalidChars);
    return wide ? copyResult(*wide, buffer, size) : fail(ErrorNoUnicodeTranslation, 0);
}

int OvKernel32::wideCharToMultiByte(Dword number, Dword flags, const wchar_t *text, int length,
                                    char *buffer, int size, const char *defaultChar,
                                    Bool *usedDefaultChar)
{
    if (!checkArguments(number, text, &length, buffer, size))
        return 0;
    if (isUtf8(number) && (defaultChar || usedDefaultChar))
        return fail(ErrorInvalidParameter, 0);
    if (flags & ~Dword(isUtf8(number) ? WcErrInvalidChars : WcNoBestFitChars))
        return fail(ErrorInvalidFlags, 0);
    bool hasLoss = false;
    const std::string bytes = encoded(codePage(number), text, length, defaultChar, &hasLoss);
    if (hasLoss && flags & WcErrInvalidChars)
        return fail(ErrorNoUnicodeTranslation, 0);
    if (usedDefaultChar)
        *usedDefaultChar = hasLoss;
    return copyResult(bytes, buffer, size);
}

Dword OvKernel32::getACP()
{
    return CpUtf8;
}

OvKernel32::Word OvKernel32::getUserDefaultLangID()
{
    constexpr Word invariant = 0x007f;
    constexpr Word unspecified = 0x1000;
    const QString locale = userLocale();
    for (const LanguageRow &row : languages) {
        if (locale == QLatin1String(row.locale))
            return row.number;
    }
    return locale.isEmpty() ? invariant : unspecified;
}

int OvKernel32::getUserDefaultLocaleName(wchar_t *buffer, int size)
{
    if (!buffer || size <= 0)
        return fail(ErrorInvalidParameter, 0);
    const std::wstring name = userLocale().toStdWString();
    if (static_cast<std::size_t>(size) <= name.size())
        return fail(ErrorInsufficientBuffer, 0);
    return static_cast<int>(OvCc::Kernel32::copyOut(name, buffer, static_cast<Dword>(size))) + 1;
}
