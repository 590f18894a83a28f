// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Phrases.h"

#include <QCoreApplication>

#include <cstdio>

namespace Tessa {

namespace {

constexpr int longestQuote = 40;

} // namespace

QString quoted(const QString &name)
{
    const bool isLong = name.size() > longestQuote;
    return QLatin1Char('"') + (isLong ? name.left(longestQuote - 1) + QChar(0x2026) : name)
           + QLatin1Char('"');
}

QString listed(const QStringList &texts, int most)
{
    const QString named = texts.mid(0, most).join(QLatin1String(", "));
    if (texts.size() <= most)
        return named;
    return QCoreApplication::translate("Phrases", "%1 and %2 more")
            .arg(named, QString::number(texts.size() - most));
}

void printLine(const QString &line)
{
    std::fprintf(stderr, "tessa-viewer: %s\n", qUtf8Printable(line));
}

} // namespace Tessa
