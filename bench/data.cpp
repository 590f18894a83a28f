// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Bench.h"

#include <KcDb.h>
#include <KcHost/KcHost.h>
#include <OvCustomControl/OvCustomControl.h>

#include <QFile>
#include <QTemporaryDir>
#include <QUndoStack>

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

constexpr int changedLayers = 1000;
constexpr int changedEntities = 10000;

/// The drawing with N layers, and lines on the first one.
std::unique_ptr<KcDbDatabase> drawingWithLines(int n)
{
    const QTemporaryDir dir;
    QFile source(drawingFile(n));
    QFile file(dir.filePath(QStringLiteral("lines.dxf")));
    if (!source.open(QIODevice::ReadOnly) || !file.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(file.fileName()));
    const QByteArray lines = QByteArray("  0\nLINE\n  8\n0\n").repeated(changedEntities);
    file.write(source.readAll().replace("ENTITIES\n", "ENTITIES\n" + lines));
    file.close();
    return KcHost::readDrawing(file.fileName());
}

/// Switches the last layers to another state, and gives the lines a colour, as one step of undo.
void changeMuch(KcDbDatabase &drawing, int n)
{
    const KcHost::UndoGroup group(drawing, QStringLiteral("Much"));
    KcDbLayerTable *table = nullptr;
    KcDbLayerTableIterator *iterator = nullptr;
    if (drawing.getLayerTable(table, KcDb::kForRead) != Kcore::eOk
        || table->newIterator(iterator, false) != Kcore::eOk)
        qFatal("cannot read the layers");
    table->close();
    const std::unique_ptr<KcDbLayerTableIterator> layers(iterator);
    for (int count = 0; count < changedLayers; ++count, layers->step(false)) {
        KcDbLayerTableRecord *record = nullptr;
        layers->getRecord(record, KcDb::kForWrite);
        record->setIsOff(!record->isOff());
        record->close();
    }
    const int first = n + 7; // groups of code 0 before the first line
    KcHost::EntityChange change;
    change.color = 1;
    for (int entity = first; entity < first + changedEntities; ++entity) {
        if (KcHost::changeEntity(drawing, entity, change) != Kcore::eOk)
            qFatal("cannot change the entity %d", entity);
    }
}

/// Undoing a change of 1,000 layers and 10,000 entities, against the change.
Times undoMany(int n)
{
    const auto drawing = drawingWithLines(n);
    QUndoStack *stack = KcHost::undoStack(*drawing);
    const double baseline =
            medianTime([&] { changeMuch(*drawing, n); }, [stack] { stack->setIndex(0); });
    const double ours = medianTime([stack] { stack->undo(); }, [stack] { stack->setIndex(1); });
    if (stack->count() != 1)
        qFatal("one change made %d steps", stack->count());
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
            {QStringLiteral("undo_many"), sizes, undoMany},
    };
}
