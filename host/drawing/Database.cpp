// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Database.h"

#include "Colors.h"
#include "HostServices.h"

#include <QGlobalStatic>
#include <QHash>

#include <algorithm>
#include <iterator>
#include <mutex>
#include <vector>

using namespace Kcore;
using Embedded::Drawing;
using Embedded::Layer;
using Embedded::LayerState;
using Embedded::UndoJournal;

namespace {

/// The databases there are, by the number in their objects' ids. Drawings may be read in another
/// thread than that of the ones in use.
class Registry
{
public:
    std::uint32_t add(KcDbDatabase *database)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_databases.insert(++m_last, database);
        return m_last;
    }

    void remove(std::uint32_t serial)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_databases.remove(serial);
    }

    const KcDbDatabase *find(std::uint32_t serial) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_databases.value(serial);
    }

private:
    mutable std::mutex m_mutex;
    QHash<std::uint32_t, KcDbDatabase *> m_databases;
    std::uint32_t m_last = 0;
};

// A drawing that outlives main() may outlive this, too.
Q_GLOBAL_STATIC(Registry, registry)

class LinetypeRecord : public KcDbSymbolTableRecord
{
public:
    LinetypeRecord(KcDbDatabase &database, std::uint32_t number, const std::wstring &name)
        : KcDbSymbolTableRecord(database, number)
        , m_name(name)
    {
    }

private:
    const std::wstring &symbolName() const override { return m_name; }
    const std::wstring &m_name;
};

} // namespace

/// The objects are the layer table, the linetypes, the viewports and, growing, the layers.
struct __attribute__((visibility("hidden"))) KcDbDatabase::Data
{
    std::uint32_t serial = 0;
    Drawing drawing;
    std::shared_ptr<UndoJournal> journal;
    std::vector<std::unique_ptr<KcDbObject>> objects;

    std::size_t firstLinetype() const { return 1; }
    std::size_t firstViewport() const { return firstLinetype() + drawing.linetypes.size(); }
    std::size_t firstLayer() const { return firstViewport() + drawing.viewports.size(); }
    std::uint32_t nextNumber() const { return static_cast<std::uint32_t>(objects.size()); }
};

std::atomic<int> KcDbObjectAccess::openCount{0};

std::unique_ptr<KcDbDatabase> KcDbObjectAccess::makeDatabase(Drawing drawing)
{
    auto owned = std::make_unique<KcDbDatabase::Data>();
    KcDbDatabase::Data &data = *owned;
    data.drawing = std::move(drawing);
    const std::size_t layers = data.drawing.layers.size();
    data.objects.reserve(data.firstLayer() + layers);

    std::unique_ptr<KcDbDatabase> database(new KcDbDatabase(std::move(owned)));
    data.serial = registry->add(database.get());
    data.journal = std::make_shared<UndoJournal>(*database);
    data.objects.emplace_back(new KcDbLayerTable(*database, data.nextNumber()));
    for (const std::wstring &name : data.drawing.linetypes)
        data.objects.emplace_back(new LinetypeRecord(*database, data.nextNumber(), name));
    for (std::size_t index = 0; index < data.drawing.viewports.size(); ++index) {
        data.objects.emplace_back(
                new KcDbViewport(*database, data.nextNumber(), static_cast<int>(index)));
    }
    for (std::size_t index = 0; index < layers; ++index) {
        data.objects.emplace_back(
                new KcDbLayerTableRecord(*database, data.nextNumber(), static_cast<int>(index)));
    }
    return database;
}

Drawing &KcDbObjectAccess::drawing(const KcDbDatabase &database)
{
    return database.m_data->drawing;
}

UndoJournal &KcDbObjectAccess::journal(const KcDbDatabase &database)
{
    return *database.m_data->journal;
}

KcDbObject &KcDbObjectAccess::layerTable(const KcDbDatabase &database)
{
    return *database.m_data->objects.front();
}

KcDbObject &KcDbObjectAccess::layerRecord(const KcDbDatabase &database, int layer)
{
    const KcDbDatabase::Data &data = *database.m_data;
    return *data.objects[data.firstLayer() + static_cast<std::size_t>(layer)];
}

KcDbObject &KcDbObjectAccess::linetypeRecord(const KcDbDatabase &database, int linetype)
{
    const KcDbDatabase::Data &data = *database.m_data;
    return *data.objects[data.firstLinetype() + static_cast<std::size_t>(linetype)];
}

KcDbObject &KcDbObjectAccess::viewport(const KcDbDatabase &database, int viewport)
{
    const KcDbDatabase::Data &data = *database.m_data;
    return *data.objects[data.firstViewport() + static_cast<std::size_t>(viewport)];
}

void KcDbObjectAccess::announceEntities(const KcDbDatabase &database,
                                        const std::vector<int> &records)
{
    std::vector<int> entities;
    std::copy_if(records.begin(), records.end(), std::back_inserter(entities),
                 [&data = drawing(database)](int record) {
                     return !data.entityRecord(record).isNull();
                 });
    for (const int entity : entities)
        Embedded::announceEntity(entity);
}

void KcDbObjectAccess::announceLayer(const KcDbDatabase &database, int layer)
{
    Embedded::announceChange(drawing(database).layers[layer].name);
}

void KcDbObjectAccess::addLayer(KcDbDatabase &database, const QString &name)
{
    KcDbDatabase::Data &data = *database.m_data;
    Layer layer;
    layer.name = name.toStdWString();
    layer.isAdded = true;
    layer.state.linetype = data.drawing.continuous;
    layer.announced = layer.stored = layer.state;
    const int index = data.drawing.addNewLayer(std::move(layer));
    data.objects.emplace_back(new KcDbLayerTableRecord(database, data.nextNumber(), index));
}

KcDbObject *KcDbObjectAccess::find(KcDbObjectId id)
{
    const KcDbDatabase *database = registry->find(id.m_database);
    return database ? database->m_data->objects[id.m_object].get() : nullptr;
}

KcDbObjectId KcDbObjectAccess::idOf(const KcDbObject &object)
{
    KcDbObjectId id;
    id.m_database = object.m_database.m_data->serial;
    id.m_object = object.m_number;
    return id;
}

bool KcDbObjectAccess::isOpen(const KcDbObject &object)
{
    return object.m_isWriting || object.m_readers > 0;
}

ErrorStatus KcDbObjectAccess::check(const KcDbObject &object, KcDb::OpenMode mode, bool openErased)
{
    if (object.isErased() && !openErased)
        return eWasErased;
    if (object.m_isWriting)
        return eWasOpenForWrite;
    if (mode == KcDb::kForWrite && object.m_readers > 0)
        return eWasOpenForRead;
    return eOk;
}

ErrorStatus KcDbObjectAccess::setFlag(KcDbLayerTableRecord &record, bool LayerState::*flag,
                                      bool value)
{
    if (!record.m_isWriting)
        return eNotOpenForWrite;
    layer(record).state.*flag = value;
    return eOk;
}

void KcDbObjectAccess::finishChange(const KcDbLayerTableRecord &record)
{
    const Layer &changed = layer(record);
    if (changed.state == changed.announced)
        return;
    UndoJournal &journal = KcDbObjectAccess::journal(record.m_database);
    journal.begin(Embedded::changeText(changed.announced, changed.state));
    drawing(record.m_database).takeOverState(record.m_layer);
    journal.end();
    announceLayer(record.m_database, record.m_layer);
}

Layer &KcDbObjectAccess::layer(const KcDbLayerTableRecord &record)
{
    return drawing(record.m_database).layers[record.m_layer];
}

bool KcDbObjectAccess::isCurrent(const KcDbLayerTableRecord &record)
{
    return drawing(record.m_database).currentLayer == record.m_layer;
}

KcCmColor KcDbObjectAccess::color(const KcDbLayerTableRecord &record)
{
    const LayerState &state = layer(record).state;
    const bool isIndexed = state.trueColor < 0;
    const Embedded::Rgb rgb =
            isIndexed ? Embedded::indexColor(state.color) : Embedded::trueColor(state.trueColor);
    KcCmColor color;
    color.m_red = rgb.red;
    color.m_green = rgb.green;
    color.m_blue = rgb.blue;
    color.m_name = isIndexed ? Embedded::indexColorName(state.color) : Embedded::trueColorName(rgb);
    return color;
}

KcDbObjectId KcDbObjectAccess::linetypeId(const KcDbLayerTableRecord &record)
{
    return idOf(linetypeRecord(record.m_database, layer(record).state.linetype));
}

std::wstring KcDbObjectAccess::plotStyleName(const KcDbLayerTableRecord &record)
{
    const Drawing &drawing = KcDbObjectAccess::drawing(record.m_database);
    if (!drawing.hasNamedPlotStyles)
        return L"Color-" + Embedded::digits(layer(record).state.color);
    return drawing.plotStyles.value(layer(record).plotStyle, QStringLiteral("Normal"))
            .toStdWString();
}

const std::wstring &KcDbObjectAccess::symbolName(const KcDbSymbolTableRecord &record)
{
    return record.symbolName();
}

KcDbLayerTableIterator *KcDbObjectAccess::newIterator(const KcDbLayerTable &table)
{
    return new KcDbLayerTableIterator(table.m_database);
}

bool KcDbObjectAccess::freezes(const KcDbViewport &viewport, KcDbObjectId layer)
{
    const auto *record = dynamic_cast<const KcDbLayerTableRecord *>(find(layer));
    return record && &record->m_database == &viewport.m_database
           && drawing(viewport.m_database).viewports[viewport.m_viewport].freezes(record->m_layer);
}

KcDbDatabase::KcDbDatabase(std::unique_ptr<Data> data)
    : m_data(std::move(data))
{
}

KcDbDatabase::~KcDbDatabase()
{
    Embedded::forgetDatabase(this);
    m_data->journal->forgetDatabase();
    if (!registry.isDestroyed())
        registry->remove(m_data->serial);
}

ErrorStatus KcDbDatabase::getLayerTable(KcDbLayerTable *&table, KcDb::OpenMode mode)
{
    return KcDbObjectAccess::open(table, &KcDbObjectAccess::layerTable(*this), mode);
}

KcDbObjectId KcDbDatabase::clayer() const
{
    return KcDbObjectAccess::layerRecord(*this, m_data->drawing.currentLayer).objectId();
}
