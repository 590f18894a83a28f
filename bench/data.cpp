#include "Bench.h"

#include <KcHost/KcHost.h>
#include <OvCustomControl/OvCustomControl.h>

#include <QFile>

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
    for (const QStringList &row : qAsConst(rows)) {
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
            {QStringLiteral("dxf_read"), sizes, dxfRead},
    };
}
