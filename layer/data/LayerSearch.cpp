// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerSearch.h"

#include "layer/data/HostRecords.h"

#include <OvCustomControl/OvLayerUtility.h>

namespace OvCc {

namespace {

struct Remembered
{
    KcDbDatabase *drawing;
    QString name;
    KcDbObjectId id;
    int position;
};

int memories = 0;
std::optional<Remembered> &lastFound()
{
    static std::optional<Remembered> layer;
    return layer;
}

std::optional<FoundLayer> rememberedLayer(const QString &name)
{
    const std::optional<Remembered> &last = lastFound();
    if (!last || last->name != name || last->drawing != getCurrentDb())
        return std::nullopt;
    KcDbLayerTableRecord *layer = nullptr;
    if (kcdbOpenObject(layer, last->id, KcDb::kForRead, false) != Kcore::eOk || !layer)
        return std::nullopt;
    if (layerName(*layer) == name)
        return FoundLayer{layer, last->position};
    layer->close();
    return std::nullopt;
}

} // namespace

std::optional<FoundLayer> findLayer(const QString &name)
{
    std::optional<FoundLayer> found = rememberedLayer(name);
    if (found)
        return found;
    found = searchLayer(name);
    if (found && memories > 0)
        lastFound() = {getCurrentDb(), name, found->record->objectId(), found->position};
    return found;
}

std::optional<FoundLayer> searchLayer(const QString &name)
{
    const std::wstring wanted = name.toStdWString();
    int position = -1;
    KcDbLayerTableRecord *found =
            walkLayers(getCurrentDb(), [&](const KcDbLayerTableRecord &layer) {
                ++position;
                KTCHAR *text = nullptr;
                layer.getName(text);
                const bool isWanted = text && wanted == text;
                kcutDelString(text);
                return !isWanted;
            });
    return found ? std::optional(FoundLayer{found, position}) : std::nullopt;
}

LayerMemory::LayerMemory()
{
    ++memories;
}

LayerMemory::~LayerMemory()
{
    --memories;
    clear();
}

void LayerMemory::clear()
{
    lastFound().reset();
}

} // namespace OvCc
