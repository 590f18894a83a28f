// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DrawingLayers.h"

#include "layer/data/HostRecords.h"

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
{
    OvCc::walkLayers(&drawing, [this](const KcDbLayerTableRecord &record) {
        m_indexes.insert(OvCc::layerName(record).toCaseFolded(), count());
        m_looks.insert(m_looks.end() - 1, lookOf(record));
        m_ids.push_back(record.objectId());
        return true;
    });
}

void DrawingLayers::reload(const QString &name)
{
    const int index = indexOf(name);
    KcDbLayerTableRecord *record = nullptr;
    if (index == count() || kcdbOpenObject(record, m_ids.at(index), KcDb::kForRead) != Kcore::eOk)
        return;
    m_looks.at(index) = lookOf(*record);
    record->close();
}

void DrawingLayers::rename(const QString &name, const QString &newName)
{
    const auto known = m_indexes.constFind(name.toCaseFolded());
    if (known == m_indexes.constEnd())
        return;
    const int index = *known;
    m_indexes.erase(known);
    m_indexes.insert(newName.toCaseFolded(), index);
}

int DrawingLayers::count() const
{
    return int(m_ids.size());
}

int DrawingLayers::indexOf(const QString &name) const
{
    return m_indexes.value(name.toCaseFolded(), count());
}

const LayerLook &DrawingLayers::at(int index) const
{
    return m_looks.at(index);
}

} // namespace Tessa
