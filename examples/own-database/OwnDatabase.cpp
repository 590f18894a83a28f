// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "OwnDatabase.h"

#include "LayerFile.h"

#include <cwchar>
#include <utility>

using namespace Kcore;

namespace {

/// What belongs to no single drawing.
struct Host
{
    KcDbDatabase *working = nullptr;
    std::map<QString, int> variables{{"TILEMODE", 1}, {"LWUNITS", 1}};
    std::function<void()> layerTableChanges;
    std::function<void(const QString &)> layerModified;
    int openObjects = 0;
    std::map<std::string, int> calls;
};

Host &host()
{
    static Host host;
    return host;
}

/// Each function of the SDK says that it was called.
void called(const char *function)
{
    ++host().calls[function];
}

KTCHAR *copyOf(const std::wstring &text)
{
    return std::wcscpy(new KTCHAR[text.size() + 1], text.c_str());
}

/// Opens the object for who wants it.
template <class Object>
ErrorStatus openAs(Object *&opened, Object &object, KcDb::OpenMode mode)
{
    const ErrorStatus status = object.open(mode);
    opened = status == eOk ? &object : nullptr;
    return status;
}

ErrorStatus openLayer(KcDbLayerTableRecord *&record, Layer &layer, KcDb::OpenMode mode,
                      bool openErased)
{
    record = nullptr;
    return layer.isErased && !openErased ? eErased : openAs(record, layer.record, mode);
}

/// Changes the layer of that name, unless it is open.
template <class Change>
ErrorStatus withLayer(const KcDbDatabase &drawing, const QString &name, Change change)
{
    Layer *layer = drawing.file().find(name);
    if (!layer)
        return eNoSuchObject;
    ErrorStatus status = layer->record.open(KcDb::kForWrite);
    if (status == eOk) {
        status = change(drawing.file(), *layer);
        layer->record.close();
    }
    return status;
}

} // namespace

void kcutDelString(KTCHAR *&text)
{
    called(__func__);
    delete[] std::exchange(text, nullptr);
}

void ovSetLayerTableChanges()
{
    called(__func__);
    if (const auto handler = host().layerTableChanges)
        handler();
}

int kcedGetVar(const KTCHAR *name, resbuf *result)
{
    called(__func__);
    const auto variable = host().variables.find(QString::fromWCharArray(name));
    if (variable == host().variables.end())
        return RTERROR;
    result->resval.rint = static_cast<short>(variable->second);
    return RTNORM;
}

KcDbHostApplicationServices *kcdbHostApplicationServices()
{
    called(__func__);
    static KcDbHostApplicationServices services;
    return &services;
}

KcDbDatabase *KcDbHostApplicationServices::workingDatabase() const
{
    called(__func__);
    return host().working;
}

KcDbDatabase::KcDbDatabase(std::unique_ptr<LayerFile> file)
    : m_file(std::move(file))
    , m_layerTable(*m_file)
{
}

KcDbDatabase::~KcDbDatabase()
{
    if (host().working == this)
        host().working = nullptr;
}

ErrorStatus KcDbDatabase::getLayerTable(KcDbLayerTable *&table, KcDb::OpenMode mode)
{
    called(__func__);
    return openAs(table, m_layerTable, mode);
}

KcDbObjectId KcDbDatabase::clayer() const
{
    called(__func__);
    return m_file->current();
}

LayerFile &KcDbDatabase::file() const
{
    return *m_file;
}

ErrorStatus KcDbObject::open(KcDb::OpenMode mode)
{
    if (m_isWriting || (mode == KcDb::kForWrite && m_readers > 0))
        return eOpenAlready;
    ++host().openObjects;
    if (mode == KcDb::kForRead)
        ++m_readers;
    else
        m_isWriting = true;
    return eOk;
}

ErrorStatus KcDbObject::upgradeOpen()
{
    called(__func__);
    if (m_readers != 1)
        return m_readers > 1 ? eOpenAlready : eNotOpen;
    m_readers = 0;
    m_isWriting = true;
    return eOk;
}

ErrorStatus KcDbObject::downgradeOpen()
{
    called(__func__);
    if (!m_isWriting)
        return eNotOpen;
    m_readers = 1;
    m_isWriting = false;
    return eOk;
}

ErrorStatus KcDbObject::close()
{
    called(__func__);
    if (!m_isWriting && m_readers == 0)
        return eNotOpen;
    --host().openObjects;
    if (!std::exchange(m_isWriting, false))
        --m_readers;
    onClosed();
    return eOk;
}

KcDbLayerTable::KcDbLayerTable(const LayerFile &file)
    : m_file(file)
{
}

ErrorStatus KcDbLayerTable::newIterator(KcDbLayerTableIterator *&iterator, bool, bool) const
{
    called(__func__);
    iterator = new KcDbLayerTableIterator(m_file);
    return eOk;
}

KcDbLayerTableIterator::KcDbLayerTableIterator(const LayerFile &file)
    : m_file(file)
{
}

void KcDbLayerTableIterator::start(bool, bool)
{
    called(__func__);
    m_position = 0;
}

void KcDbLayerTableIterator::step(bool, bool)
{
    called(__func__);
    ++m_position;
}

bool KcDbLayerTableIterator::done() const
{
    called(__func__);
    return m_position >= m_file.layers().size();
}

ErrorStatus KcDbLayerTableIterator::getRecord(KcDbLayerTableRecord *&record, KcDb::OpenMode mode,
                                              bool openErased) const
{
    called(__func__);
    return openLayer(record, *m_file.layers().at(m_position), mode, openErased);
}

ErrorStatus kcdbOpenObject(KcDbLayerTableRecord *&record, KcDbObjectId id, KcDb::OpenMode mode,
                           bool openErased)
{
    called("kcdbOpenObject (layer)");
    auto *layer = dynamic_cast<Layer *>(id);
    record = nullptr;
    return layer ? openLayer(record, *layer, mode, openErased) : eNoSuchObject;
}

KcDbObjectId kcdbGetCurVportId(KcDbDatabase *)
{
    called(__func__);
    return nullptr;
}

ErrorStatus kcdbOpenObject(KcDbViewport *&viewport, KcDbObjectId, KcDb::OpenMode, bool)
{
    called("kcdbOpenObject (viewport)");
    viewport = nullptr;
    return eNoSuchObject;
}

ErrorStatus KcDbSymbolUtilities::getSymbolName(KTCHAR *&name, KcDbObjectId id)
{
    called(__func__);
    name = id ? copyOf(id->name) : nullptr;
    return id ? eOk : eNoSuchObject;
}

KcCmColor::KcCmColor(std::uint32_t rgb, std::wstring name)
    : m_rgb(rgb)
    , m_name(std::move(name))
{
}

const KTCHAR *KcCmColor::colorNameForDisplay() const
{
    called(__func__);
    return m_name.c_str();
}

int KcCmColor::red() const
{
    called(__func__);
    return m_rgb >> 16 & 0xff;
}

int KcCmColor::green() const
{
    called(__func__);
    return m_rgb >> 8 & 0xff;
}

int KcCmColor::blue() const
{
    called(__func__);
    return m_rgb & 0xff;
}

KcDbLayerTableRecord::KcDbLayerTableRecord(Layer &layer, LayerFile &file)
    : m_layer(layer)
    , m_file(file)
{
}

KcDbObjectId KcDbLayerTableRecord::objectId() const
{
    called(__func__);
    return &m_layer;
}

ErrorStatus KcDbLayerTableRecord::getName(KTCHAR *&name) const
{
    called(__func__);
    name = copyOf(m_layer.name);
    return eOk;
}

bool KcDbLayerTableRecord::isOff() const
{
    called(__func__);
    return m_layer.isOff;
}

bool KcDbLayerTableRecord::isFrozen() const
{
    called(__func__);
    return m_layer.isFrozen;
}

bool KcDbLayerTableRecord::isLocked() const
{
    called(__func__);
    return m_layer.isLocked;
}

bool KcDbLayerTableRecord::isPlottable() const
{
    called(__func__);
    return m_layer.isPlottable;
}

bool KcDbLayerTableRecord::VPDFLT() const
{
    called(__func__);
    return m_layer.isFrozenInNewViewports;
}

KcCmColor KcDbLayerTableRecord::color() const
{
    called(__func__);
    return {m_layer.rgb, m_layer.colorName};
}

KcDbObjectId KcDbLayerTableRecord::linetypeObjectId() const
{
    called(__func__);
    return m_layer.linetype;
}

int KcDbLayerTableRecord::lineWeight() const
{
    called(__func__);
    return m_layer.lineWeight;
}

KTCHAR *KcDbLayerTableRecord::plotStyleName() const
{
    called(__func__);
    return copyOf(m_layer.plotStyle);
}

const KTCHAR *KcDbLayerTableRecord::description() const
{
    called(__func__);
    return m_layer.description.c_str();
}

ErrorStatus KcDbLayerTableRecord::setIsOff(bool off)
{
    called(__func__);
    return setFlag("off", &Layer::isOff, off);
}

ErrorStatus KcDbLayerTableRecord::setIsFrozen(bool frozen)
{
    called(__func__);
    return setFlag("frozen", &Layer::isFrozen, frozen);
}

ErrorStatus KcDbLayerTableRecord::setIsLocked(bool locked)
{
    called(__func__);
    return setFlag("locked", &Layer::isLocked, locked);
}

ErrorStatus KcDbLayerTableRecord::setIsPlottable(bool plottable)
{
    called(__func__);
    return setFlag("plottable", &Layer::isPlottable, plottable);
}

ErrorStatus KcDbLayerTableRecord::setFlag(const char *column, bool Layer::*flag, bool value)
{
    if (!m_isWriting)
        return eNotOpen;
    if (m_layer.*flag == value)
        return eOk;
    const ErrorStatus status = m_file.setFlag(m_layer, column, value);
    if (status == eOk) {
        m_layer.*flag = value;
        m_isChanged = true;
    }
    return status;
}

/// The handler may do anything, even destroy the drawing.
void KcDbLayerTableRecord::onClosed()
{
    const auto handler = host().layerModified;
    if (std::exchange(m_isChanged, false) && handler)
        handler(QString::fromStdWString(m_layer.name));
}

std::unique_ptr<KcDbDatabase> OwnDatabase::open(const QString &fileName, QString *error)
{
    auto file = LayerFile::open(fileName, error);
    return file ? std::make_unique<KcDbDatabase>(std::move(file)) : nullptr;
}

void OwnDatabase::setWorkingDatabase(KcDbDatabase *drawing)
{
    host().working = drawing;
}

void OwnDatabase::setVariable(const QString &name, int value)
{
    host().variables[name] = value;
}

ErrorStatus OwnDatabase::addLayer(KcDbDatabase &drawing, const QString &name)
{
    return drawing.file().add(name);
}

ErrorStatus OwnDatabase::eraseLayer(KcDbDatabase &drawing, const QString &name)
{
    return withLayer(drawing, name,
                     [](LayerFile &file, Layer &layer) { return file.erase(layer); });
}

ErrorStatus OwnDatabase::renameLayer(KcDbDatabase &drawing, const QString &name,
                                     const QString &newName)
{
    return withLayer(drawing, name, [&newName](LayerFile &file, Layer &layer) {
        return file.rename(layer, newName);
    });
}

ErrorStatus OwnDatabase::changeLayer(KcDbDatabase &drawing, const QString &name,
                                     const LayerChange &change)
{
    return withLayer(drawing, name, [&change](LayerFile &file, Layer &layer) {
        ErrorStatus status = eOk;
        if (change.trueColor)
            status = file.setColor(layer, *change.trueColor);
        if (status == eOk && change.lineWeight)
            status = file.setLineWeight(layer, *change.lineWeight);
        return status;
    });
}

ErrorStatus OwnDatabase::setCurrentLayer(KcDbDatabase &drawing, const QString &name)
{
    Layer *layer = drawing.file().find(name);
    return layer ? drawing.file().makeCurrent(*layer) : eNoSuchObject;
}

void OwnDatabase::setLayerTableChangesHandler(std::function<void()> handler)
{
    host().layerTableChanges = std::move(handler);
}

void OwnDatabase::setLayerModifiedHandler(std::function<void(const QString &)> handler)
{
    host().layerModified = std::move(handler);
}

int OwnDatabase::openObjectCount()
{
    return host().openObjects;
}

std::map<std::string, int> OwnDatabase::takeCalls()
{
    return std::exchange(host().calls, {});
}
