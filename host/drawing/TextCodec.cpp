// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "TextCodec.h"

#include <QTextCodec>

#include <algorithm>
#include <cctype>

namespace Embedded {

namespace {

const QLatin1String kEscape("\\U+");
constexpr int kEscapeLength = 7;

/// The codec's name for a code page of DXF.
QByteArray codecName(std::string_view codePage)
{
    const QByteArray name =
            QByteArray(codePage.data(), static_cast<int>(codePage.size())).toLower();
    if (name.startsWith("ansi_"))
        return "windows-" + name.mid(5);
    if (name.startsWith("dos"))
        return "IBM" + name.mid(3);
    return name;
}

/// Whether plain ASCII is the same in the codec, which a drawing's file cannot do without.
bool keepsAscii(const QTextCodec &codec)
{
    const QByteArray sample("Layer0\\");
    return codec.toUnicode(sample) == QLatin1String(sample);
}

/// The UTF-16 unit that the text has as an escape at @p at; null where it has none.
QChar escapedUnit(const QString &text, int at)
{
    const QStringView escape = QStringView(text).mid(at, kEscapeLength);
    const QStringView digits = escape.mid(kEscape.size());
    const bool isEscape = escape.startsWith(kEscape) && escape.size() == kEscapeLength
                          && std::all_of(digits.begin(), digits.end(), [](QChar digit) {
                                 return digit.unicode() < 0x80 && std::isxdigit(digit.unicode());
                             });
    return isEscape ? QChar(digits.toUShort(nullptr, 16)) : QChar();
}

/// The character that the text has as an escape at @p at; empty where it has none. Half a surrogate
/// pair and the end of a text are none.
QString escapedCharacter(const QString &text, int at)
{
    QString character(escapedUnit(text, at));
    if (character.at(0).isHighSurrogate())
        character += escapedUnit(text, at + kEscapeLength);
    return character.at(0).isNull() || !character.isValidUtf16() ? QString() : character;
}

/// What stands for no character stays as it is.
QString replaceEscapes(const QString &text)
{
    QString result;
    int done = 0;
    for (int at = text.indexOf(kEscape); at >= 0; at = text.indexOf(kEscape, qMax(at + 1, done))) {
        const QString character = escapedCharacter(text, at);
        if (character.isEmpty())
            continue;
        result.append(text.constData() + done, at - done);
        result += character;
        done = at + character.size() * kEscapeLength;
    }
    return done == 0 ? text : result + text.mid(done);
}

} // namespace

TextCodec::TextCodec()
    : m_codec(QTextCodec::codecForName("windows-1252"))
{
}

bool TextCodec::setCodePage(std::string_view name)
{
    QTextCodec *codec = QTextCodec::codecForName(codecName(name));
    if (!codec || !keepsAscii(*codec))
        return false;
    m_codec = codec;
    return true;
}

void TextCodec::setUtf8()
{
    m_codec = QTextCodec::codecForName("UTF-8");
}

QString TextCodec::decode(std::string_view bytes) const
{
    QString text = m_codec->toUnicode(bytes.data(), static_cast<int>(bytes.size()));
    text.replace(QChar(), QChar::ReplacementCharacter);
    return replaceEscapes(text);
}

/// A backslash that readers would take for the beginning of an escape becomes one itself.
QByteArray TextCodec::encode(const QString &text) const
{
    QByteArray result;
    for (int at = 0; at < text.size();) {
        const bool isPair = text.at(at).isHighSurrogate() && at + 1 < text.size()
                            && text.at(at + 1).isLowSurrogate();
        const QString character = text.mid(at, isPair ? 2 : 1);
        if (m_codec->canEncode(character) && escapedCharacter(text, at).isEmpty()) {
            result += m_codec->fromUnicode(character);
        } else {
            for (const QChar unit : character)
                result += "\\U+"
                          + QByteArray::number(unit.unicode(), 16).toUpper().rightJustified(4, '0');
        }
        at += character.size();
    }
    return result;
}

} // namespace Embedded
