// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DrawingLayers.h"

#include "layer/data/HostRecords.h"

#include <algorithm>
#include <utility>

namespace Tessa {

namespace {

LayerLook lookOf(const KcDbLayerTableRecord &record)
{
    const KcCmColor color = record.color();
    LayerLook look;
    look.isOn = !record.isOff();
    look.isFrozen = record.isFrozen();
    look.color.setRgb(color.red(), color.green(), color.blue());
    look.lineWeight = record.lineWeight();
    look.linetype = OvCc::symbolName(record.linetypeObjectId());
    return look;
}

} // namespace

DrawingLayers::DrawingLayers(KcDbDatabase &drawing)
    : m_drawing(&drawing)
    , m_isStale(true)
{
    settle();
}

void DrawingLayers::reload(const QString &name)
{
    const int index = m_indexes.value(name.toCaseFolded(), unknown);
    m_isStale = m_isStale || index == unknown || !read(index, name);
}

int DrawingLayers::count() const
{
    settle();
    return int(m_layers.size());
}

int DrawingLayers::indexOf(const QString &name) const
{
    settle();
    const QString key = name.toCaseFolded();
    const int index = m_indexes.value(key, unknown);
    if (index != unknown && read(index, name))
        return index;
    // Whoever asks may have heard of a change before this was told.
    m_isStale = true;
    settle();
    return m_indexes.value(key, unknown);
}

QString DrawingLayers::nameOf(int index) const
{
    settle();
    return index == unknown ? QString() : m_layers.at(index).name;
}

const LayerLook &DrawingLayers::at(int index) const
{
    return index == unknown ? m_unknownLook : m_layers.at(index).look;
}

/// @return whether it is there, under that name; one that somebody else has open counts as such
bool DrawingLayers::read(int index, const QString &name) const
{
    Layer &layer = m_layers.at(index);
    KcDbLayerTableRecord *record = nullptr;
    switch (kcdbOpenObject(record, layer.id, KcDb::kForRead)) {
    case Kcore::eOk:
        break;
    case Kcore::eWasOpenForWrite:
        return true;
    default:
        return false;
    }
    layer.look = lookOf(*record);
    const QString nameNow = OvCc::layerName(*record);
    record->close();
    if (nameNow.compare(name, Qt::CaseInsensitive) != 0)
        return false;
    layer.name = nameNow;
    return true;
}

/// The table has the layers in the order in which they came, so those that are known are found in turn.
/// Names that no layer has any more stay: nothing lies there.
void DrawingLayers::settle() const
{
    if (!std::exchange(m_isStale, false))
        return;
    auto next = m_layers.begin();
    OvCc::walkLayers(m_drawing, [this, &next](const KcDbLayerTableRecord &record) {
        const KcDbObjectId id = record.objectId();
        auto known = std::find_if(next, m_layers.end(),
                                  [&id](const Layer &layer) { return layer.id == id; });
        if (known == m_layers.end())
            known = m_layers.insert(known, Layer());
        *known = {id, OvCc::layerName(record), lookOf(record)};
        m_indexes.insert(known->name.toCaseFolded(), int(known - m_layers.begin()));
        next = known + 1;
        return true;
    });
}

} // namespace Tessa
