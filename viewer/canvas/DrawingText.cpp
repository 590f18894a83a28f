// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DrawingText.h"

#include <utility>

namespace Tessa {

namespace {

/// The factors to the usual distance of lines that a file may have.
constexpr double tightest = 0.25;
constexpr double widest = 4;

} // namespace

QFont drawingFont()
{
    QFont font;
    font.setPixelSize(64);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

QString plainText(const QString &text)
{
    QString result;
    for (int i = 0; i < text.size(); ++i) {
        if (!QStringView(text).mid(i).startsWith(QLatin1String("%%")) || i + 2 >= text.size()) {
            result += text.at(i);
            continue;
        }
        const QChar code = text.at(i + 2).toLower();
        const QStringView digits = QStringView(text).mid(i + 2, 3);
        bool isNumber = false;
        const ushort number = digits.toUShort(&isNumber);
        i += 2;
        if (code == QLatin1Char('c'))
            result += QChar(0x2300);
        else if (code == QLatin1Char('d'))
            result += QChar(0x00b0);
        else if (code == QLatin1Char('p'))
            result += QChar(0x00b1);
        else if (code == QLatin1Char('%'))
            result += code;
        else if (isNumber && digits.size() == 3) {
            result += QChar(number);
            i += 2;
        } else if (!QStringLiteral("uok").contains(code)) {
            result += QLatin1String("%%");
            i -= 1;
        }
    }
    return result;
}

QStringList paragraphs(const QString &text)
{
    QString result;
    for (int i = 0; i < text.size(); ++i) {
        const QChar character = text.at(i);
        if (character == QLatin1Char('{') || character == QLatin1Char('}'))
            continue;
        if (character != QLatin1Char('\\') || i + 1 == text.size()) {
            result += character;
            continue;
        }
        const QChar code = text.at(++i);
        if (code == QLatin1Char('P') || code == QLatin1Char('X')) {
            result += QLatin1Char('\n');
        } else if (code == QLatin1Char('~')) {
            result += QChar(QChar::Nbsp);
        } else if (QStringLiteral("\\{}").contains(code)) {
            result += code;
        } else if (QStringLiteral("ACcfFHpQSTW").contains(code)) {
            const int end = text.indexOf(QLatin1Char(';'), i);
            if (code == QLatin1Char('S'))
                result += text.mid(i + 1, end < 0 ? -1 : end - i - 1)
                                  .replace(QLatin1Char('^'), QLatin1Char('/'))
                                  .replace(QLatin1Char('#'), QLatin1Char('/'));
            i = end < 0 ? text.size() : end;
        } else if (!QStringLiteral("LlOoKk").contains(code)) {
            result += code;
        }
    }
    return plainText(result).split(QLatin1Char('\n'));
}

TextSetter::TextSetter()
    : m_metrics(drawingFont())
{
}

TextLines TextSetter::aligned(const QString &text, int horizontal, int vertical) const
{
    const double width = m_metrics.horizontalAdvance(text);
    QPointF at;
    if (horizontal == Center || horizontal == Middle)
        at.setX(-width / 2);
    else if (horizontal == Right)
        at.setX(-width);
    if (vertical == VerticalMiddle || horizontal == Middle)
        at.setY(capHeight() / 2);
    else if (vertical == Top)
        at.setY(capHeight());
    else if (vertical == Bottom)
        at.setY(-m_metrics.descent());
    TextLines lines;
    add(lines, at, text);
    return lines;
}

TextLines TextSetter::broken(const QStringList &paragraphs, double width, double spacing,
                             int attachment) const
{
    QStringList texts;
    for (const QString &paragraph : paragraphs)
        texts += width > 0 ? brokenParagraph(paragraph, width) : QStringList(paragraph);

    const int place = qBound(1, attachment, 9) - 1;
    const int column = place % 3;
    const int row = place / 3;
    const double distance = capHeight() * 5 / 3 * qBound(tightest, spacing, widest);
    double y = capHeight() - (capHeight() + (texts.size() - 1) * distance) * row / 2;
    TextLines lines;
    for (const QString &text : std::as_const(texts)) {
        add(lines, QPointF(-m_metrics.horizontalAdvance(text) * column / 2, y), text);
        y += distance;
    }
    return lines;
}

QStringList TextSetter::brokenParagraph(const QString &paragraph, double width) const
{
    QStringList lines;
    double lineWidth = 0;
    const double space = m_metrics.horizontalAdvance(QLatin1Char(' '));
    const QStringList words = paragraph.split(QLatin1Char(' '));
    for (const QString &word : words) {
        const double wordWidth = m_metrics.horizontalAdvance(word);
        if (lines.isEmpty() || lineWidth + space + wordWidth > width) {
            lines += word;
            lineWidth = wordWidth;
        } else {
            lines.last() += QLatin1Char(' ') + word;
            lineWidth += space + wordWidth;
        }
    }
    return lines;
}

void TextSetter::add(TextLines &lines, QPointF at, const QString &text) const
{
    lines.lines += TextLines::Line{at, text};
    const QSizeF size(m_metrics.horizontalAdvance(text), m_metrics.height());
    if (size.width() > 0)
        lines.bounds |= QRectF(at - QPointF(0, m_metrics.ascent()), size);
}

} // namespace Tessa
