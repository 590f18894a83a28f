// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Bench.h"

#include <KcDb.h>
#include <KcHost/KcHost.h>
#include <OvCustomControl/OvCustomControl.h>

#include <QFile>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

/// Reading all layers as rows, against copying the same strings out of a vector.
Times bridgeRows(int n)
{
    const auto drawing = openDrawing(n);
    QList<QStringList> rows;
    const double ours =
            medianTime([&] { OvLayerUtility().getAllLayerDate(rows); }, [&] { rows.clear(); });

    std::vector<std::vector<std::wstring>> source;
    for (const QStringList &row : std::as_const(rows)) {
        source.emplace_back();
        for (const QString &text : row)
            source.back().push_back(text.toStdWString());
    }
    QList<QStringList> copies;
    const double baseline = medianTime(
            [&] {
                for (const auto &row : source) {
                    QStringList copy;
                    for (const std::wstring &text : row)
                        copy.append(QString::fromStdWString(text));
                    copies.append(copy);
                }
            },
            [&] { copies.clear(); });
    return {ours, baseline};
}

/// Finding the last layer by its name, against finding it in a vector of names.
Times bridgeFind(int n)
{
    const auto drawing = openDrawing(n);
    const QString name = QStringLiteral("Layer %1").arg(n - 1);
    const double ours = medianTime([&] { getLayerByName(name)->close(); });

    const std::unique_ptr<QList<OvCc::LayerItemData>> layers(OvLayerUtility().getAllLayer());
    std::vector<std::wstring> names;
    for (const OvCc::LayerItemData &layer : std::as_const(*layers))
        names.push_back(layer.name.toStdWString());
    const double baseline =
            medianTime([&] { keep(std::find(names.begin(), names.end(), name.toStdWString())); });
    return {ours, baseline};
}

/// Reading a drawing, against reading its file line by line.
Times dxfRead(int n)
{
    const QString path = drawingFile(n);
    std::unique_ptr<KcDbDatabase> drawing;
    const double ours =
            medianTime([&] { drawing = KcHost::readDrawing(path); }, [&] { drawing.reset(); });
    const double baseline = medianTime([&] {
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        while (!file.atEnd())
            keep(file.readLine());
    });
    return {ours, baseline};
}

} // namespace

QList<Work> dataWorks()
{
    const QList<int> sizes{1000, 10000, 100000};
    return {
            {QStringLiteral("bridge_rows"), sizes, bridgeRows},
            {QStringLiteral("bridge_find"), sizes, bridgeFind},
            {QStringLiteral("dxf_read"), sizes, dxfRead},
    };
}
