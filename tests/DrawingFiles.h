// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

/// @file
/// Small drawings for the tests of the viewer.

/// What the canvas shows where there is nothing.
inline const QColor ground(0x21, 0x28, 0x30);

/// A filled square of 10 × 10 at that corner. Groups of a file are written as "code value|".
inline QString square(int x, int y, const QString &style)
{
    return QStringLiteral("0 SOLID|%1|10 %2|20 %3|11 %4|21 %3|12 %2|22 %5|13 %4|23 %5|")
            .arg(style, QString::number(x), QString::number(y), QString::number(x + 10),
                 QString::number(y + 10));
}

inline QString block(const QString &name, const QString &content, const QString &base = "10 0|20 0")
{
    return QStringLiteral("0 BLOCK|8 0|2 %1|70 0|%2|%3|0 ENDBLK|8 0|").arg(name, base, content);
}

/// Writes a drawing with the layers 0, Red, Blue (dashed), Off (green) and Frozen (green). The
/// linetype Dash is a dash of 28 units and a dot 12 units behind it, every 50 units.
inline QString file(const QString &blocks, const QString &entities)
{
    static const QTemporaryDir folder;
    QString text = "0 SECTION|2 HEADER|9 $ACADVER|1 AC1018|9 $LTSCALE|40 0.5|0 ENDSEC|"
                   "0 SECTION|2 TABLES|0 TABLE|2 LTYPE|0 LTYPE|2 Dash|70 0|73 4|40 100|"
                   "49 56|49 -24|49 0|49 -20|0 ENDTAB|0 TABLE|2 LAYER|"
                   "0 LAYER|2 0|62 7|0 LAYER|2 Red|62 1|0 LAYER|2 Blue|62 5|6 Dash|"
                   "0 LAYER|2 Off|62 -3|0 LAYER|2 Frozen|70 1|62 3|0 ENDTAB|0 ENDSEC|"
                   "0 SECTION|2 BLOCKS|%1|0 ENDSEC|0 SECTION|2 ENTITIES|%2|0 ENDSEC|0 EOF|";
    QFile file(folder.filePath("drawing.dxf"));
    file.open(QIODevice::WriteOnly);
    static const QRegularExpression separators("[| ]+");
    text = text.arg(blocks, entities).replace(separators, "\n");
    file.write(text.toUtf8());
    return file.fileName();
}

/// Adds tests, one per line: ";" stands between their fields, the first of which is the name.
inline void addTests(std::initializer_list<const char *> lines)
{
    QTest::addColumn<QStringList>("fields");
    for (const char *line : lines)
        QTest::newRow(QByteArray(line).split(';').first()) << QString(line).split(';');
}
