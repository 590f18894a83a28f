// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

/// Measures the library's work against plain baselines in the same run.
///
///     ovcc-bench [--json] [WORK...]
///
/// prints one line per work and size: the times in milliseconds, or what else is measured, and their
/// ratio.

#include "Bench.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <QTemporaryDir>

#include <cstdio>

namespace {

QJsonObject measured(const Work &work, int n)
{
    const Times times = work.measure(n);
    const QLatin1String unit(work.unit);
    return {
            {QStringLiteral("work"), work.name},
            {QStringLiteral("n"), n},
            {QLatin1String("ours_") + unit, times.ours},
            {QLatin1String("baseline_") + unit, times.baseline},
            {QStringLiteral("ratio"), times.ours / times.baseline},
    };
}

void printLine(const Work &work, const QJsonObject &result)
{
    const QLatin1String unit(work.unit);
    std::printf("%-18s %8d %12.3f %12.3f %-5s %8.3f\n", qPrintable(work.name),
                result.value(QLatin1String("n")).toInt(),
                result.value(QLatin1String("ours_") + unit).toDouble(),
                result.value(QLatin1String("baseline_") + unit).toDouble(), work.unit,
                result.value(QLatin1String("ratio")).toDouble());
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    // The table keeps its layout in the user's settings, and these are not the user's tables.
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());

    QCommandLineParser parser;
    parser.setApplicationDescription(
            QStringLiteral("Measures the widgets against plain baselines in the same run."));
    parser.addHelpOption();
    const QCommandLineOption json(QStringLiteral("json"),
                                  QStringLiteral("Print an array of objects."));
    parser.addOption(json);
    parser.addPositionalArgument(QStringLiteral("work"),
                                 QStringLiteral("What to measure; everything by default."),
                                 QStringLiteral("[work...]"));
    parser.process(application);

    const QStringList wanted = parser.positionalArguments();
    const QList<Work> works = dataWorks() + compactWorks() + tableWorks() + pickerWorks();
    QStringList known;
    for (const Work &work : works)
        known.append(work.name);
    for (const QString &name : wanted) {
        if (!known.contains(name)) {
            std::fprintf(stderr, "ovcc-bench: there is no work \"%s\"; there is: %s\n",
                         qPrintable(name), qPrintable(known.join(QStringLiteral(", "))));
            return 2;
        }
    }

    if (!parser.isSet(json))
        std::printf("%-16s %8s %12s %12s %-5s %8s\n", "work", "N", "ours", "baseline", "", "ratio");
    QJsonArray results;
    for (const Work &work : works) {
        if (!wanted.isEmpty() && !wanted.contains(work.name))
            continue;
        for (const int n : work.sizes) {
            results.append(measured(work, n));
            if (!parser.isSet(json))
                printLine(work, results.last().toObject());
        }
    }
    if (parser.isSet(json))
        std::printf("%s", QJsonDocument(results).toJson().constData());
    return 0;
}
