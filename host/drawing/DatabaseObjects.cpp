// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Database.h"
#include "HostServices.h"

#include <algorithm>

using namespace Kcore;
using Embedded::Layer;
using Embedded::LayerState;

namespace {

KTCHAR *newString(const std::wstring &text)
{
    auto *copy = new KTCHAR[text.size() + 1];
    std::copy_n(text.c_str(), text.size() + 1, copy);
    return copy;
}

} // namespace

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
    return static_cast<KcDb::LineWeight>(KcDbObjectAccess::layer(*this).state.lineWeight);
}

KTCHAR *KcDbLayerTableRecord::plotStyleName() const
{
    return newString(KcDbObjectAccess::plotStyleName(*this));
}

const KTCHAR *KcDbLayerTableRecord::description() const
{
    return KcDbObjectAccess::layer(*this).state.description.c_str();
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

void KcDbLayerTableRecord::onClosed()
{
    KcDbObjectAccess::finishChange(*this);
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

KcDbObjectId kcdbGetCurVportId(KcDbDatabase *database)
{
    const int viewport = database ? KcDbObjectAccess::drawing(*database).currentViewport : -1;
    if (Embedded::isInModelSpace() || viewport < 0)
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
