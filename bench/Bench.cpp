// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Bench.h"

#include <KcHost/KcHost.h>

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>

double medianTime(const std::function<void()> &work, const std::function<void()> &prepare)
{
    constexpr int fewestRuns = 5;
    constexpr int mostRuns = 101;
    constexpr double longEnough = 400.0;

    QList<double> times;
    double total = 0.0;
    while (times.size() < fewestRuns || (total < longEnough && times.size() < mostRuns)) {
        prepare();
        QElapsedTimer timer;
        timer.start();
        work();
        times.append(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        total += times.constLast();
    }
    std::sort(times.begin(), times.end());
    return times.at(times.size() / 2);
}

QString drawingFile(int n)
{
    static const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("%1.dxf").arg(n));
    if (QFile::exists(path))
        return path;

    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(path));
    file.write("  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1024\n  9\n$CLAYER\n  8\n0\n"
               "  0\nENDSEC\n  0\nSECTION\n  2\nTABLES\n  0\nTABLE\n  2\nLAYER\n 70\n1\n"
               "  0\nLAYER\n  5\n10\n100\nAcDbSymbolTableRecord\n100\nAcDbLayerTableRecord\n"
               "  2\n0\n 70\n     0\n 62\n     7\n  6\nContinuous\n");
    for (int layer = 1; layer < n; ++layer) {
        file.write(QByteArray("  0\nLAYER\n  5\n") + QByteArray::number(layer + 0x100, 16).toUpper()
                   + "\n330\n2\n100\nAcDbSymbolTableRecord\n100\nAcDbLayerTableRecord\n  2\nLayer "
                   + QByteArray::number(layer) + "\n 70\n     " + (layer % 7 ? "0" : "4")
                   + "\n 62\n     " + QByteArray::number(layer % 255 + 1) + "\n420\n      "
                   + QByteArray::number(layer * 97 % 0xffffff)
                   + "\n  6\nContinuous\n290\n     1\n370\n    " + (layer % 3 ? "25" : "-3")
                   + "\n390\nF\n347\n50\n348\n0\n");
    }
    file.write("  0\nENDTAB\n  0\nENDSEC\n  0\nSECTION\n  2\nENTITIES\n  0\nENDSEC\n  0\nEOF\n");
    return path;
}

std::shared_ptr<KcDbDatabase> openDrawing(int n)
{
    QString error;
    std::shared_ptr<KcDbDatabase> drawing = KcHost::readDrawing(drawingFile(n), &error);
    if (!drawing)
        qFatal("%s", qPrintable(error));
    KcHost::setWorkingDatabase(drawing.get());
    return drawing;
}
