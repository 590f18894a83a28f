// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QStringList>
#include <QVector>

namespace Tessa {

/// @file
/// The texts of a drawing: their codes, and the lines that they make in the one font of all texts.

/// The font, many pixels high: texts are scaled down to size.
QFont drawingFont();

/// Lines of text in the font's pixels, the y axis pointing down, around the point by which they are
/// placed.
struct TextLines
{
    struct Line
    {
        QPointF at; ///< the left end of its base line
        QString text;
    };
    QVector<Line> lines;
    QRectF bounds; ///< null if there is nothing to see
};

/// The text of a TEXT entity with its `%%` codes resolved: diameter, degree, plus-minus and characters
/// by number; those for underlining and the like are left out.
QString plainText(const QString &text);

/// The paragraphs of an MTEXT entity. Formatting is left out, stacked fractions become `a/b`.
QStringList paragraphs(const QString &text);

/// How a TEXT entity lies about its point; the numbers are those of the file.
enum HorizontalAlignment { Left, Center, Right, Aligned, Middle, Fit };
enum VerticalAlignment { Baseline, Bottom, VerticalMiddle, Top };

/// Lays out texts; each thread needs its own.
class TextSetter
{
public:
    TextSetter();

    /// The height of capitals in the font's pixels, which a drawing calls the height of a text.
    double capHeight() const { return m_metrics.capHeight(); }

    TextLines aligned(const QString &text, int horizontal, int vertical) const;

    /// Breaks paragraphs into lines between words. Numbers out of range count as the nearest in it.
    ///
    /// @param width      the longest line in the font's pixels; 0 breaks none
    /// @param spacing    a factor to the usual distance of lines, 0.25 to 4
    /// @param attachment where in the text its point is: 1, top left, to 9, bottom right
    TextLines broken(const QStringList &paragraphs, double width, double spacing,
                     int attachment) const;

private:
    QStringList brokenParagraph(const QString &paragraph, double width) const;
    void add(TextLines &lines, QPointF at, const QString &text) const;

    QFontMetricsF m_metrics;
};

} // namespace Tessa
