// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/LayerItemData.h>

#include <KcDb.h>
#include <KcEd.h>

#include <QColor>
#include <QString>

#include <memory>

/// @file
/// How texts, colours and layers are taken from the host.

namespace OvCc {

/// A string that the host lent.
inline QString hostText(const KTCHAR *text)
{
    return text ? QString::fromWCharArray(text) : QString();
}

/// A string that the host gave away: it is freed here.
inline QString hostText(KTCHAR *text)
{
    const QString result = hostText(static_cast<const KTCHAR *>(text));
    kcutDelString(text);
    return result;
}

inline QColor rgbOf(const KcCmColor &color)
{
    return QColor(color.red(), color.green(), color.blue());
}

inline QString layerName(const KcDbLayerTableRecord &layer)
{
    KTCHAR *name = nullptr;
    layer.getName(name);
    return hostText(name);
}

/// What the compact layer controls show.
inline LayerItemData layerRecord(const KcDbLayerTableRecord &layer)
{
    LayerItemData data;
    data.isOn = !layer.isOff();
    data.isLocked = layer.isLocked();
    data.isFrozen = layer.isFrozen();
    data.color = rgbOf(layer.color());
    data.name = layerName(layer);
    return data;
}

inline QString symbolName(KcDbObjectId id)
{
    KTCHAR *name = nullptr;
    KcDbSymbolUtilities::getSymbolName(name, id);
    return hostText(name);
}

/// @param drawing null for none
/// @return null where there is no layer table
inline std::unique_ptr<KcDbLayerTableIterator> layerIterator(KcDbDatabase *drawing)
{
    KcDbLayerTable *table = nullptr;
    if (!drawing || drawing->getLayerTable(table, KcDb::kForRead) != Kcore::eOk || !table)
        return nullptr;
    KcDbLayerTableIterator *iterator = nullptr;
    table->newIterator(iterator, true, true);
    table->close();
    return std::unique_ptr<KcDbLayerTableIterator>(iterator);
}

/// Walks the layer table and closes each record behind @p visit, which takes it by reference; layers
/// that cannot be opened are passed over. Where @p visit returns false the walk ends, and that record
/// is returned, still open.
template <class Visitor>
KcDbLayerTableRecord *walkLayers(KcDbDatabase *drawing, Visitor visit)
{
    const auto iterator = layerIterator(drawing);
    if (!iterator)
        return nullptr;
    for (iterator->start(true, true); !iterator->done(); iterator->step(true, true)) {
        KcDbLayerTableRecord *layer = nullptr;
        if (iterator->getRecord(layer, KcDb::kForRead, false) != Kcore::eOk || !layer)
            continue;
        if (!visit(*layer))
            return layer;
        layer->close();
    }
    return nullptr;
}

} // namespace OvCc
