#include "TextCodec.h"

#include <QTextCodec>

namespace Embedded {

namespace {

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

QString replaceEscapes(const QString &text)
{
    QString result;
    int done = 0;
    for (int at = text.indexOf(QLatin1String("\\U+")); at >= 0;
         at = text.indexOf(QLatin1String("\\U+"), at + 1)) {
        bool isNumber = false;
        const QString digits = text.mid(at + 3, 4);
        const ushort unit = digits.toUShort(&isNumber, 16);
        if (!isNumber || digits.size() != 4 || at < done)
            continue;
        result += text.midRef(done, at - done);
        result += QChar(unit);
        done = at + kEscapeLength;
    }
    return done == 0 ? text : result + text.midRef(done);
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
    return replaceEscapes(m_codec->toUnicode(bytes.data(), static_cast<int>(bytes.size())));
}

QByteArray TextCodec::encode(const QString &text) const
{
    QByteArray result;
    for (int at = 0; at < text.size();) {
        const bool isPair = text.at(at).isHighSurrogate() && at + 1 < text.size()
                            && text.at(at + 1).isLowSurrogate();
        const QString character = text.mid(at, isPair ? 2 : 1);
        if (m_codec->canEncode(character)) {
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
