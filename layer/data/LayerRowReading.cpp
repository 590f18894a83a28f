// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerRowReading.h"

#include "layer/data/HostRecords.h"
#include "layer/data/LayerFlags.h"

#include <OvCustomControl/ColorText.h>
#include <OvCustomControl/LayerColumns.h>
#include <OvCustomControl/LineWeights.h>
#include <OvCustomControl/OvLayerUtility.h>

#include <QSet>

namespace OvCc {

namespace {

QString textOf(const KcCmColor &color)
{
    return colorText({hostText(color.colorNameForDisplay()), rgbOf(color)});
}

bool isFrozenInCurrentViewport(KcDbDatabase *drawing, KcDbObjectId layer)
{
    KcDbViewport *viewport = nullptr;
    const KcDbObjectId id = kcdbGetCurVportId(drawing);
    if (kcdbOpenObject(viewport, id, KcDb::kForRead, false) != Kcore::eOk || !viewport)
        return false;
    const bool isFrozen = viewport->isLayerFrozenInViewport(layer);
    viewport->close();
    return isFrozen;
}

/// Few drawings have more than a handful of linetypes or colours but many layers, so rows share the
/// strings that repeat.
class SharedStrings
{
public:
    QString shared(const QString &text) { return *m_strings.insert(text); }

private:
    QSet<QString> m_strings;
};

QStringList layerRow(KcDbDatabase *drawing, const KcDbLayerTableRecord &layer,
                     SharedStrings &strings)
{
    const QString texts[] = {
            flagText(layer.objectId() == drawing->clayer()),
            layerName(layer),
            flagText(!layer.isOff()),
            flagText(!layer.isFrozen()),
            flagText(!layer.isLocked()),
            strings.shared(textOf(layer.color())),
            strings.shared(symbolName(layer.linetypeObjectId())),
            strings.shared(StringByLineWeight(layer.lineWeight(), false)),
            strings.shared(hostText(layer.plotStyleName())),
            flagText(layer.isPlottable()),
            flagText(layer.VPDFLT()),
            flagText(isFrozenInCurrentViewport(drawing, layer.objectId())),
            hostText(layer.description()),
    };
    static_assert(std::size(texts) == LayerColumnCount);
    return {std::begin(texts), std::end(texts)};
}

} // namespace

void readLayerRows(const std::function<void(const QStringList &)> &visit)
{
    KcDbDatabase *drawing = getCurrentDb();
    SharedStrings strings;
    walkLayers(drawing, [&](const KcDbLayerTableRecord &layer) {
        visit(layerRow(drawing, layer, strings));
        return true;
    });
}

std::optional<QStringList> readLayerRow(const QString &name)
{
    const std::optional<FoundLayer> found = findLayer(name);
    if (!found)
        return std::nullopt;
    SharedStrings strings;
    const QStringList row = layerRow(getCurrentDb(), *found->record, strings);
    found->record->close();
    return row;
}

} // namespace OvCc
