#include "Database.h"

#include "Colors.h"
#include "HostServices.h"

#include <KcEd.h>

#include <QGlobalStatic>
#include <QHash>
#include <QMutex>

#include <algorithm>
#include <vector>

using namespace Kcore;
using Embedded::Drawing;
using Embedded::Layer;
using Embedded::LayerState;

namespace {

/// The databases there are, by the number in their objects' ids. Drawings may be read in another
/// thread than that of the ones in use.
class Registry
{
public:
    std::uint32_t add(KcDbDatabase *database)
    {
        const QMutexLocker lock(&m_mutex);
        m_databases.insert(++m_last, database);
        return m_last;
    }

    void remove(std::uint32_t serial)
    {
        const QMutexLocker lock(&m_mutex);
        m_databases.remove(serial);
    }

    const KcDbDatabase *find(std::uint32_t serial) const
    {
        const QMutexLocker lock(&m_mutex);
        return m_databases.value(serial);
    }

private:
    mutable QMutex m_mutex;
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

KTCHAR *newString(const std::wstring &text)
{
    auto *copy = new KTCHAR[text.size() + 1];
    std::copy_n(text.c_str(), text.size() + 1, copy);
    return copy;
}

} // namespace

/// The objects are the layer table, the linetypes, the viewports and, growing, the layers.
struct __attribute__((visibility("hidden"))) KcDbDatabase::Data
{
    std::uint32_t serial = 0;
    Drawing drawing;
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

void KcDbObjectAccess::addLayer(KcDbDatabase &database, const QString &name)
{
    KcDbDatabase::Data &data = *database.m_data;
    Layer layer;
    layer.name = name.toStdWString();
    layer.isAdded = true;
    layer.linetype = data.drawing.continuous;
    const int index = data.drawing.addLayer(std::move(layer));
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

template <class T>
ErrorStatus KcDbObjectAccess::open(T *&opened, KcDbObject *object, KcDb::OpenMode mode,
                                   bool openErased)
{
    opened = nullptr;
    if (!object)
        return eNullObjectId;
    T *const typed = dynamic_cast<T *>(object);
    if (!typed)
        return eNotThatKindOfClass;
    const ErrorStatus status = check(*object, mode, openErased);
    if (status != eOk)
        return status;
    if (mode == KcDb::kForWrite)
        object->m_isWriting = true;
    else
        ++object->m_readers;
    ++openCount;
    opened = typed;
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
    const Layer &layer = KcDbObjectAccess::layer(record);
    const bool isIndexed = layer.trueColor < 0;
    const Embedded::Rgb rgb =
            isIndexed ? Embedded::indexColor(layer.color) : Embedded::trueColor(layer.trueColor);
    KcCmColor color;
    color.m_red = rgb.red;
    color.m_green = rgb.green;
    color.m_blue = rgb.blue;
    color.m_name = isIndexed ? Embedded::indexColorName(layer.color) : Embedded::trueColorName(rgb);
    return color;
}

KcDbObjectId KcDbObjectAccess::linetypeId(const KcDbLayerTableRecord &record)
{
    return idOf(linetypeRecord(record.m_database, layer(record).linetype));
}

std::wstring KcDbObjectAccess::plotStyleName(const KcDbLayerTableRecord &record)
{
    const Drawing &drawing = KcDbObjectAccess::drawing(record.m_database);
    if (!drawing.hasNamedPlotStyles)
        return L"Color-" + std::to_wstring(layer(record).color);
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

void kcutDelString(KTCHAR *&text)
{
    delete[] text;
    text = nullptr;
}

bool KcDbObjectId::operator==(const KcDbObjectId &other) const
{
    return m_database == other.m_database && m_object == other.m_object;
}

KcDbObject::KcDbObject(KcDbDatabase &database, std::uint32_t number)
    : m_database(database)
    , m_number(number)
{
}

KcDbObject::~KcDbObject()
{
    KcDbObjectAccess::openCount -= m_readers + (m_isWriting ? 1 : 0);
}

KcDbObjectId KcDbObject::objectId() const
{
    return KcDbObjectAccess::idOf(*this);
}

ErrorStatus KcDbObject::upgradeOpen()
{
    if (m_readers != 1)
        return m_readers == 0 ? eNotOpenForRead : eWasOpenForRead;
    m_readers = 0;
    m_isWriting = true;
    return eOk;
}

ErrorStatus KcDbObject::downgradeOpen()
{
    if (!m_isWriting)
        return eNotOpenForWrite;
    m_isWriting = false;
    m_readers = 1;
    return eOk;
}

ErrorStatus KcDbObject::close()
{
    if (!KcDbObjectAccess::isOpen(*this))
        return eNotOpenForRead;
    if (m_isWriting)
        m_isWriting = false;
    else
        --m_readers;
    --KcDbObjectAccess::openCount;
    if (m_readers == 0)
        onClosed();
    return eOk;
}

bool KcDbObject::isErased() const
{
    return false;
}

void KcDbObject::onClosed() {}

const KTCHAR *KcCmColor::colorNameForDisplay() const
{
    return m_name.c_str();
}

std::uint8_t KcCmColor::red() const
{
    return m_red;
}

std::uint8_t KcCmColor::green() const
{
    return m_green;
}

std::uint8_t KcCmColor::blue() const
{
    return m_blue;
}

KcDbSymbolTableRecord::~KcDbSymbolTableRecord() = default;

ErrorStatus KcDbSymbolTableRecord::getName(KTCHAR *&name) const
{
    name = KcDbObjectAccess::isOpen(*this) ? newString(symbolName()) : nullptr;
    return name ? eOk : eNotOpenForRead;
}

KcDbLayerTableRecord::KcDbLayerTableRecord(KcDbDatabase &database, std::uint32_t number, int layer)
    : KcDbSymbolTableRecord(database, number)
    , m_layer(layer)
{
}

KcDbLayerTableRecord::~KcDbLayerTableRecord() = default;

bool KcDbLayerTableRecord::isOff() const
{
    return KcDbObjectAccess::layer(*this).state.isOff;
}

bool KcDbLayerTableRecord::isFrozen() const
{
    return KcDbObjectAccess::layer(*this).state.isFrozen;
}

bool KcDbLayerTableRecord::isLocked() const
{
    return KcDbObjectAccess::layer(*this).state.isLocked;
}

bool KcDbLayerTableRecord::isPlottable() const
{
    return KcDbObjectAccess::layer(*this).state.isPlottable;
}

bool KcDbLayerTableRecord::VPDFLT() const
{
    return KcDbObjectAccess::layer(*this).isFrozenInNewViewports;
}

KcCmColor KcDbLayerTableRecord::color() const
{
    return KcDbObjectAccess::color(*this);
}

KcDbObjectId KcDbLayerTableRecord::linetypeObjectId() const
{
    return KcDbObjectAccess::linetypeId(*this);
}

KcDb::LineWeight KcDbLayerTableRecord::lineWeight() const
{
    return static_cast<KcDb::LineWeight>(KcDbObjectAccess::layer(*this).lineWeight);
}

KTCHAR *KcDbLayerTableRecord::plotStyleName() const
{
    return newString(KcDbObjectAccess::plotStyleName(*this));
}

const KTCHAR *KcDbLayerTableRecord::description() const
{
    return KcDbObjectAccess::layer(*this).description.c_str();
}

ErrorStatus KcDbLayerTableRecord::setIsOff(bool off)
{
    return KcDbObjectAccess::setFlag(*this, &LayerState::isOff, off);
}

ErrorStatus KcDbLayerTableRecord::setIsFrozen(bool frozen)
{
    if (frozen && KcDbObjectAccess::isCurrent(*this))
        return eLayerIsCurrent;
    return KcDbObjectAccess::setFlag(*this, &LayerState::isFrozen, frozen);
}

ErrorStatus KcDbLayerTableRecord::setIsLocked(bool locked)
{
    return KcDbObjectAccess::setFlag(*this, &LayerState::isLocked, locked);
}

ErrorStatus KcDbLayerTableRecord::setIsPlottable(bool plottable)
{
    return KcDbObjectAccess::setFlag(*this, &LayerState::isPlottable, plottable);
}

bool KcDbLayerTableRecord::isErased() const
{
    return KcDbObjectAccess::layer(*this).isErased;
}

/// Nothing of the record is touched after the announcement, in which anything may happen.
void KcDbLayerTableRecord::onClosed()
{
    Layer &layer = KcDbObjectAccess::layer(*this);
    if (layer.state == layer.announced)
        return;
    layer.announced = layer.state;
    Embedded::announceChange(layer.name);
}

const std::wstring &KcDbLayerTableRecord::symbolName() const
{
    return KcDbObjectAccess::layer(*this).name;
}

KcDbSymbolTableIterator::KcDbSymbolTableIterator(const KcDbDatabase &database)
    : m_database(database)
{
}

KcDbSymbolTableIterator::~KcDbSymbolTableIterator() = default;

void KcDbSymbolTableIterator::start(bool atBeginning, bool skipDeleted)
{
    const int count = static_cast<int>(KcDbObjectAccess::drawing(m_database).layers.size());
    m_position = atBeginning ? 0 : count - 1;
    if (skipDeleted)
        skipErased(atBeginning ? 1 : -1);
}

void KcDbSymbolTableIterator::step(bool forward, bool skipDeleted)
{
    if (done())
        return;
    m_position += forward ? 1 : -1;
    if (skipDeleted)
        skipErased(forward ? 1 : -1);
}

bool KcDbSymbolTableIterator::done() const
{
    const std::size_t count = KcDbObjectAccess::drawing(m_database).layers.size();
    return m_position < 0 || m_position >= static_cast<int>(count);
}

void KcDbSymbolTableIterator::skipErased(int direction)
{
    const std::deque<Layer> &layers = KcDbObjectAccess::drawing(m_database).layers;
    while (!done() && layers[m_position].isErased)
        m_position += direction;
}

KcDbLayerTableIterator::~KcDbLayerTableIterator() = default;

ErrorStatus KcDbLayerTableIterator::getRecord(KcDbLayerTableRecord *&record, KcDb::OpenMode mode,
                                              bool openErased) const
{
    record = nullptr;
    if (done())
        return eKeyNotFound;
    return KcDbObjectAccess::open(record, &KcDbObjectAccess::layerRecord(m_database, m_position),
                                  mode, openErased);
}

KcDbLayerTable::~KcDbLayerTable() = default;

ErrorStatus KcDbLayerTable::newIterator(KcDbLayerTableIterator *&iterator, bool atBeginning,
                                        bool skipDeleted) const
{
    iterator = nullptr;
    if (!KcDbObjectAccess::isOpen(*this))
        return eNotOpenForRead;
    iterator = KcDbObjectAccess::newIterator(*this);
    iterator->start(atBeginning, skipDeleted);
    return eOk;
}

KcDbViewport::KcDbViewport(KcDbDatabase &database, std::uint32_t number, int viewport)
    : KcDbObject(database, number)
    , m_viewport(viewport)
{
}

KcDbViewport::~KcDbViewport() = default;

bool KcDbViewport::isLayerFrozenInViewport(const KcDbObjectId &layer) const
{
    return KcDbObjectAccess::freezes(*this, layer);
}

KcDbDatabase::KcDbDatabase(std::unique_ptr<Data> data)
    : m_data(std::move(data))
{
}

KcDbDatabase::~KcDbDatabase()
{
    Embedded::forgetDatabase(this);
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

KcDbObjectId kcdbGetCurVportId(KcDbDatabase *database)
{
    resbuf tileMode;
    const bool isInModelSpace =
            kcedGetVar(L"TILEMODE", &tileMode) != RTNORM || tileMode.resval.rint != 0;
    const int viewport = database ? KcDbObjectAccess::drawing(*database).currentViewport : -1;
    if (isInModelSpace || viewport < 0)
        return KcDbObjectId();
    return KcDbObjectAccess::viewport(*database, viewport).objectId();
}

template <>
ErrorStatus kcdbOpenObject(KcDbViewport *&viewport, KcDbObjectId id, KcDb::OpenMode mode,
                           bool openErased)
{
    return KcDbObjectAccess::open(viewport, KcDbObjectAccess::find(id), mode, openErased);
}

template <>
ErrorStatus kcdbOpenObject(KcDbLayerTableRecord *&layer, KcDbObjectId id, KcDb::OpenMode mode,
                           bool openErased)
{
    return KcDbObjectAccess::open(layer, KcDbObjectAccess::find(id), mode, openErased);
}

ErrorStatus KcDbSymbolUtilities::getSymbolName(KTCHAR *&name, KcDbObjectId id)
{
    name = nullptr;
    const KcDbObject *object = KcDbObjectAccess::find(id);
    if (!object)
        return eNullObjectId;
    const auto *record = dynamic_cast<const KcDbSymbolTableRecord *>(object);
    if (!record)
        return eNotThatKindOfClass;
    name = newString(KcDbObjectAccess::symbolName(*record));
    return eOk;
}
