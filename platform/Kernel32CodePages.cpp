// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Kernel32Errors.h"

#include <QLocale>
#include <QTextCodec>

#include <algorithm>

using OvCc::Kernel32::fail;
using OvCc::Kernel32::isCharacter;
using Dword = OvKernel32::Dword;

namespace {

constexpr wchar_t replacement = 0xfffd; ///< no code page but UTF-8 has a code for it

bool isUtf8(Dword number)
{
    return number == OvKernel32::CpUtf8 || number == OvKernel32::CpAcp
           || number == OvKernel32::CpOemCp || number == OvKernel32::CpThreadAcp;
}

/// Null for a code page that there is not.
QTextCodec *codecOf(Dword number)
{
    const bool isKnown = (number >= 1250 && number <= 1258) || number == 932 || number == 936
                         || number == 949 || number == 950;
    if (isUtf8(number))
        return QTextCodec::codecForName("UTF-8");
    return isKnown ? QTextCodec::codecForName("windows-" + QByteArray::number(number)) : nullptr;
}

/// Code pages go byte by byte: each codec has its own way to tell what has no meaning.
std::wstring decoded(const QByteArray &bytes, QTextDecoder &decoder)
{
    std::wstring wide;
    bool isPending = false;
    for (const char byte : bytes) {
        if (!isPending && static_cast<unsigned char>(byte) < 0x80) {
            wide += static_cast<wchar_t>(byte);
            continue;
        }
        const QString text = decoder.toUnicode(&byte, 1);
        isPending = text.isEmpty();
        wide += text.toStdWString();
    }
    return isPending ? wide + replacement : wide;
}

std::wstring decodedUtf8(const QByteArray &bytes, QTextCodec &codec, bool *isValid)
{
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    QString text = codec.toUnicode(bytes.constData(), bytes.size(), &state);
    if (state.remainingChars > 0)
        text += QChar(replacement);
    *isValid = state.invalidChars == 0 && state.remainingChars == 0;
    return text.toStdWString();
}

/// @param substitute for what the code page has not, which is told by @p hasLoss
QByteArray encoded(const std::wstring &text, QTextCodec &codec, char substitute, bool *hasLoss)
{
    QTextEncoder encoder(&codec, QTextCodec::IgnoreHeader);
    QTextDecoder decoder(&codec);
    QByteArray bytes;
    for (const wchar_t character : text) {
        if (static_cast<char32_t>(character) < 0x80) {
            bytes += static_cast<char>(character);
            continue;
        }
        // What does not come back the same is only like it.
        const QByteArray code = encoder.fromUnicode(QString::fromWCharArray(&character, 1));
        const bool isKnown =
                isCharacter(character) && decoded(code, decoder) == std::wstring(1, character);
        bytes += isKnown ? code : QByteArray(1, substitute);
        *hasLoss = *hasLoss || !isKnown;
    }
    return bytes;
}

QByteArray encodedUtf8(std::wstring text, bool *hasLoss)
{
    const auto isWrong = [](wchar_t character) { return !isCharacter(character); };
    *hasLoss = std::any_of(text.begin(), text.end(), isWrong);
    std::replace_if(text.begin(), text.end(), isWrong, replacement);
    return QString::fromStdWString(text).toUtf8();
}

/// Null if the parameters of a conversion are wrong; the length becomes the units of @p text.
template <typename From, typename To>
QTextCodec *checkedCodec(Dword number, const From *text, int *length, const To *buffer, int size)
{
    QTextCodec *codec = codecOf(number);
    const bool isSame = static_cast<const void *>(text) == static_cast<const void *>(buffer);
    if (!codec || !text || *length == 0 || size < 0 || (size > 0 && !buffer) || isSame)
        return fail(OvKernel32::ErrorInvalidParameter, nullptr);
    if (*length < 0)
        *length = static_cast<int>(std::char_traits<From>::length(text)) + 1;
    return codec;
}

template <typename Text, typename Char>
int copyResult(const Text &text, Char *buffer, int size)
{
    const int length = static_cast<int>(text.size());
    if (size > 0 && size < length)
        return fail(OvKernel32::ErrorInsufficientBuffer, 0);
    if (size > 0)
        std::copy(text.begin(), text.end(), buffer);
    return length;
}

struct LanguageRow
{
    const char *locale;
    OvKernel32::Word number;
};

constexpr LanguageRow languages[] = {
        {"zh-TW", 0x0404}, {"cs-CZ", 0x0405}, {"da-DK", 0x0406}, {"de-DE", 0x0407},
        {"en-US", 0x0409}, {"fi-FI", 0x040b}, {"fr-FR", 0x040c}, {"hu-HU", 0x040e},
        {"it-IT", 0x0410}, {"ja-JP", 0x0411}, {"ko-KR", 0x0412}, {"nl-NL", 0x0413},
        {"nb-NO", 0x0414}, {"pl-PL", 0x0415}, {"pt-BR", 0x0416}, {"ru-RU", 0x0419},
        {"sv-SE", 0x041d}, {"tr-TR", 0x041f}, {"zh-CN", 0x0804}, {"de-CH", 0x0807},
        {"en-GB", 0x0809}, {"pt-PT", 0x0816}, {"de-AT", 0x0c07}, {"es-ES", 0x0c0a}};

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
    QTextCodec *codec = checkedCodec(number, text, &length, buffer, size);
    if (!codec)
        return 0;
    if (flags & ~(isUtf8(number) ? Dword(MbErrInvalidChars) : MbErrInvalidChars | MbPrecomposed))
        return fail(ErrorInvalidFlags, 0);
    const QByteArray bytes = QByteArray::fromRawData(text, length);
    QTextDecoder decoder(codec);
    bool isValid = true;
    const std::wstring wide =
            isUtf8(number) ? decodedUtf8(bytes, *codec, &isValid) : decoded(bytes, decoder);
    isValid = isValid && (isUtf8(number) || wide.find(replacement) == wide.npos);
    if (!isValid && flags & MbErrInvalidChars)
        return fail(ErrorNoUnicodeTranslation, 0);
    return copyResult(wide, buffer, size);
}

int OvKernel32::wideCharToMultiByte(Dword number, Dword flags, const wchar_t *text, int length,
                                    char *buffer, int size, const char *defaultChar,
                                    Bool *usedDefaultChar)
{
    QTextCodec *codec = checkedCodec(number, text, &length, buffer, size);
    if (!codec)
        return 0;
    if (isUtf8(number) && (defaultChar || usedDefaultChar))
        return fail(ErrorInvalidParameter, 0);
    if (flags & ~Dword(isUtf8(number) ? WcErrInvalidChars : WcNoBestFitChars))
        return fail(ErrorInvalidFlags, 0);
    bool hasLoss = false;
    const std::wstring wide(text, static_cast<std::size_t>(length));
    const QByteArray bytes =
            isUtf8(number) ? encodedUtf8(wide, &hasLoss)
                           : encoded(wide, *codec, defaultChar ? *defaultChar : '?', &hasLoss);
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
    const Dword length = OvCc::Kernel32::copyOut(userLocale(), buffer, static_cast<Dword>(size));
    return length < static_cast<Dword>(size) ? static_cast<int>(length) + 1
                                             : fail(ErrorInsufficientBuffer, 0);
}
