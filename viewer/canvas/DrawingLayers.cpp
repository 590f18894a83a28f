#include "DrawingLayers.h"

#include <memory>

namespace Tessa {

namespace {

/// Closes what the drawing opened.
struct Close
{
    void operator()(KcDbObject *object) const { object->close(); }
};
template <class T>
using Opened = std::unique_ptr<T, Close>;

QString takeString(KTCHAR *text)
{
    const QString string = text ? QString::fromWCharArray(text) : QString();
    kcutDelString(text);
    return string;
}

QString nameOf(const KcDbLayerTableRecord &record)
{
    KTCHAR *name = nullptr;
    record.getName(name);
    return takeString(name);
}

LayerLook lookOf(const KcDbLayerTableRecord &record)
{
    const KcCmColor color = record.color();
    LayerLook look;
    look.isOn = !record.isOff();
    look.isFrozen = record.isFrozen();
    look.color.setRgb(color.red(), color.green(), color.blue());
    look.lineWeight = record.lineWeight();
    KTCHAR *linetype = nullptr;
    KcDbSymbolUtilities::getSymbolName(linetype, record.linetypeObjectId());
    look.linetype = takeString(linetype);
    return look;
}

} // namespace

DrawingLayers::DrawingLayers(KcDbDatabase &drawing)
{
    KcDbLayerTable *openedTable = nullptr;
    if (drawing.getLayerTable(openedTable, KcDb::kForRead) == Kcore::eOk) {
        const Opened<KcDbLayerTable> table(openedTable);
        KcDbLayerTableIterator *newIterator = nullptr;
        table->newIterator(newIterator);
        const std::unique_ptr<KcDbLayerTableIterator> iterator(newIterator);
        for (; !iterator->done(); iterator->step()) {
            KcDbLayerTableRecord *openedRecord = nullptr;
            if (iterator->getRecord(openedRecord, KcDb::kForRead) != Kcore::eOk)
                continue;
            const Opened<KcDbLayerTableRecord> record(openedRecord);
            m_indexes.insert(nameOf(*record).toCaseFolded(), count());
            m_looks.insert(m_looks.end() - 1, lookOf(*record));
            m_ids.push_back(record->objectId());
        }
    }
}

void DrawingLayers::reload(const QString &name)
{
    const int index = indexOf(name);
    KcDbLayerTableRecord *opened = nullptr;
    if (index == count() || kcdbOpenObject(opened, m_ids.at(index), KcDb::kForRead) != Kcore::eOk)
        return;
    const Opened<KcDbLayerTableRecord> record(opened);
    m_looks.at(index) = lookOf(*record);
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
