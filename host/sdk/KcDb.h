// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "KcBase.h"

#include <cstdint>
#include <memory>
#include <string>

/// @file
/// @ingroup sdk
/// The drawing database: its objects, the layer table and the viewports.
///
/// Objects belong to their database. They are opened for read or for write, used, and closed again
/// by whoever opened them. Any number of callers may read an object at the same time; one that is
/// open for write cannot be opened a second time, neither for read nor for write.

class KcDbDatabase;
class KcDbLayerTable;
class KcDbLayerTableIterator;
class KcDbLayerTableRecord;
class KcDbViewport;

namespace KcDb {

/// What an object is opened for.
///
/// @ingroup sdk
enum OpenMode {
    kForRead,  ///< to look at; shared with other readers
    kForWrite, ///< to change; nobody else may have it open
};

/// Lineweights in hundredths of a millimetre, or one of three codes.
///
/// @ingroup sdk
enum LineWeight : int {
    kLnWtByLayer = -1,
    kLnWtByBlock = -2,
    kLnWtByLwDefault = -3,
};

} // namespace KcDb

/// Names a database object for as long as its database lives; copied freely, closed or not.
///
/// @ingroup sdk
class KCSDK_EXPORT KcDbObjectId
{
public:
    /// The id of no object.
    KcDbObjectId() = default;

    /// Whether both name the same object, or both none.
    bool operator==(const KcDbObjectId &other) const;

private:
    friend class KcDbObjectAccess;
    std::uint32_t m_database = 0;
    std::uint32_t m_object = 0;
};

/// What all database objects have in common.
///
/// @ingroup sdk
class KCSDK_EXPORT KcDbObject
{
public:
    KcDbObject(const KcDbObject &) = delete;
    KcDbObject &operator=(const KcDbObject &) = delete;
    virtual ~KcDbObject();

    /// Names the object also after it is closed, for as long as its database lives.
    KcDbObjectId objectId() const;

    /// Turns an object that is open for read into one that is open for write.
    /// @return eOk; eWasOpenForRead when others read it too, eNotOpenForRead when it is not open
    ///         for read: it then stays as it was
    Kcore::ErrorStatus upgradeOpen();

    /// Turns an object that is open for write back into one that is open for read.
    /// @return eOk, or eNotOpenForWrite
    Kcore::ErrorStatus downgradeOpen();

    /// Ends one use of the object; the pointer must not be used again. Changes made while it was
    /// open for write have then reached the database.
    /// @return eOk, or eNotOpenForRead when it was not open
    Kcore::ErrorStatus close();

protected:
    /// An object of @p database, which alone makes them; @p number is its own there.
    KcDbObject(KcDbDatabase &database, std::uint32_t number);

private:
    friend class KcDbObjectAccess;
    virtual bool isErased() const;
    virtual void onClosed();
    KcDbDatabase &m_database;
    const std::uint32_t m_number;
    int m_readers = 0;
    bool m_isWriting = false;
};

/// A colour of the drawing: an index, a true colour, or one of the codes "by layer", "by block".
///
/// @ingroup sdk
class KCSDK_EXPORT KcCmColor
{
public:
    /// What a user calls the colour; the host chooses the wording. Lives as long as this colour.
    const KTCHAR *colorNameForDisplay() const;

    /// The parts of the colour as shown, 0 to 255.
    /// @{
    std::uint8_t red() const;
    std::uint8_t green() const;
    std::uint8_t blue() const;
    /// @}

private:
    friend class KcDbObjectAccess;
    std::uint8_t m_red = 255;
    std::uint8_t m_green = 255;
    std::uint8_t m_blue = 255;
    std::wstring m_name;
};

/// A named entry of one of the database's symbol tables.
///
/// @ingroup sdk
class KCSDK_EXPORT KcDbSymbolTableRecord : public KcDbObject
{
public:
    ~KcDbSymbolTableRecord() override;

    /// @param[out] name a new string that the caller frees with kcutDelString(); null on failure
    /// @return eOk, or eNotOpenForRead
    Kcore::ErrorStatus getName(KTCHAR *&name) const;

protected:
    /// As any object, it is made by its database.
    using KcDbObject::KcDbObject;

private:
    friend class KcDbObjectAccess;
    virtual const std::wstring &symbolName() const = 0;
};

/// One layer of the drawing. The setters need the record open for write.
///
/// @ingroup sdk
class KCSDK_EXPORT KcDbLayerTableRecord : public KcDbSymbolTableRecord
{
public:
    ~KcDbLayerTableRecord() override;

    /// What the setters below set.
    /// @{
    bool isOff() const;
    bool isFrozen() const;
    bool isLocked() const;
    bool isPlottable() const;
    /// @}

    /// Whether viewports that are made from now on start with this layer frozen.
    bool VPDFLT() const;

    /// A copy, which stays as it is when the record changes or is closed.
    KcCmColor color() const;

    /// The linetype's record; its name comes from KcDbSymbolUtilities::getSymbolName().
    KcDbObjectId linetypeObjectId() const;

    /// In hundredths of a millimetre, or one of the codes.
    KcDb::LineWeight lineWeight() const;

    /// @return a new string that the caller frees with kcutDelString()
    KTCHAR *plotStyleName() const;

    /// @return the host's own string, never null
    const KTCHAR *description() const;

    /// @return eOk, or eNotOpenForWrite
    Kcore::ErrorStatus setIsOff(bool off);

    /// @return eOk, eNotOpenForWrite, or eLayerIsCurrent: the current layer cannot be frozen
    Kcore::ErrorStatus setIsFrozen(bool frozen);

    /// @return eOk, or eNotOpenForWrite
    Kcore::ErrorStatus setIsLocked(bool locked);

    /// @return eOk, or eNotOpenForWrite
    Kcore::ErrorStatus setIsPlottable(bool plottable);

private:
    friend class KcDbObjectAccess;
    KcDbLayerTableRecord(KcDbDatabase &database, std::uint32_t number, int layer);
    bool isErased() const override;
    void onClosed() override;
    const std::wstring &symbolName() const override;
    const int m_layer;
};

/// Walks the records of a symbol table; made by the table, deleted by the caller.
///
/// @ingroup sdk
class KCSDK_EXPORT KcDbSymbolTableIterator
{
public:
    KcDbSymbolTableIterator(const KcDbSymbolTableIterator &) = delete;
    KcDbSymbolTableIterator &operator=(const KcDbSymbolTableIterator &) = delete;
    virtual ~KcDbSymbolTableIterator();

    /// Goes to the first record, or to the last one.
    void start(bool atBeginning = true, bool skipDeleted = true);

    /// Goes one record on, or one back.
    void step(bool forward = true, bool skipDeleted = true);

    /// Whether there is no record here, since the walk has passed the last one.
    bool done() const;

protected:
    /// At the first place of the table, whatever there is: see start().
    explicit KcDbSymbolTableIterator(const KcDbDatabase &database);
    const KcDbDatabase &m_database; ///< whose table this is
    int m_position = 0;             ///< in the table, erased records included

private:
    void skipErased(int direction);
};

/// Walks the layer table. It needs the table open when it is made, and not afterwards.
///
/// @ingroup sdk
class KCSDK_EXPORT KcDbLayerTableIterator : public KcDbSymbolTableIterator
{
public:
    ~KcDbLayerTableIterator() override;

    /// Opens the record at this place; the caller closes it.
    /// @param[out] record null on failure
    /// @return eOk, eWasErased, eWasOpenForRead or eWasOpenForWrite, or eKeyNotFound past the end
    Kcore::ErrorStatus getRecord(KcDbLayerTableRecord *&record, KcDb::OpenMode mode,
                                 bool openErased = false) const;

private:
    friend class KcDbObjectAccess;
    using KcDbSymbolTableIterator::KcDbSymbolTableIterator;
};

/// The table of the drawing's layers.
///
/// @ingroup sdk
class KCSDK_EXPORT KcDbLayerTable : public KcDbObject
{
public:
    ~KcDbLayerTable() override;

    /// @param[out] iterator a new iterator that the caller deletes; null on failure
    /// @return eOk, or eNotOpenForRead
    Kcore::ErrorStatus newIterator(KcDbLayerTableIterator *&iterator, bool atBeginning = true,
                                   bool skipDeleted = true) const;

private:
    friend class KcDbObjectAccess;
    using KcDbObject::KcDbObject;
};

/// A viewport of the paper space: a window onto the model, with layers of its own frozen in it.
///
/// @ingroup sdk
class KCSDK_EXPORT KcDbViewport : public KcDbObject
{
public:
    ~KcDbViewport() override;

    /// Whether the layer is frozen in this viewport, be it frozen as a whole or not.
    bool isLayerFrozenInViewport(const KcDbObjectId &layer) const;

private:
    friend class KcDbObjectAccess;
    KcDbViewport(KcDbDatabase &database, std::uint32_t number, int viewport);
    const int m_viewport;
};

/// A drawing. It owns all its objects; they must be closed before it goes.
///
/// @ingroup sdk
class KCSDK_EXPORT KcDbDatabase
{
public:
    KcDbDatabase(const KcDbDatabase &) = delete;
    KcDbDatabase &operator=(const KcDbDatabase &) = delete;
    ~KcDbDatabase();

    /// Opens the layer table; the caller closes it.
    /// @param[out] table null on failure
    /// @return eOk, eWasOpenForRead or eWasOpenForWrite
    Kcore::ErrorStatus getLayerTable(KcDbLayerTable *&table, KcDb::OpenMode mode);

    /// The current layer.
    KcDbObjectId clayer() const;

private:
    friend class KcDbObjectAccess;
    struct Data;
    explicit KcDbDatabase(std::unique_ptr<Data> data);
    std::unique_ptr<Data> m_data;
};

/// What the host application offers to code that runs inside it.
///
/// @ingroup sdk
class KCSDK_EXPORT KcDbHostApplicationServices
{
public:
    /// The drawing that the user works on; null when none is open. It stays the host's.
    KcDbDatabase *workingDatabase() const;
};

/// The services of the running host; null before it has any. They stay the host's.
KCSDK_EXPORT KcDbHostApplicationServices *kcdbHostApplicationServices();

/// The viewport of @p database in which the user works. In model space, or where there is none,
/// an id that cannot be opened as a KcDbViewport.
KCSDK_EXPORT KcDbObjectId kcdbGetCurVportId(KcDbDatabase *database);

/// Opens the object that @p id names, if it is a @p T; the caller closes it.
/// @param[out] object null on failure
/// @return eOk, eNullObjectId, eNotThatKindOfClass, eWasErased, eWasOpenForRead or eWasOpenForWrite
template <class T>
Kcore::ErrorStatus kcdbOpenObject(T *&object, KcDbObjectId id, KcDb::OpenMode mode,
                                  bool openErased = false);

/// What kcdbOpenObject() opens: for other classes there is no such function.
/// @{
template <>
KCSDK_EXPORT Kcore::ErrorStatus kcdbOpenObject(KcDbViewport *&viewport, KcDbObjectId id,
                                               KcDb::OpenMode mode, bool openErased);
template <>
KCSDK_EXPORT Kcore::ErrorStatus kcdbOpenObject(KcDbLayerTableRecord *&layer, KcDbObjectId id,
                                               KcDb::OpenMode mode, bool openErased);
/// @}

namespace KcDbSymbolUtilities {

/// The name of the layer, linetype or other symbol that @p id names.
/// @param[out] name a new string that the caller frees with kcutDelString(); null on failure
/// @return eOk, eNullObjectId, or eNotThatKindOfClass for an object without a name
KCSDK_EXPORT Kcore::ErrorStatus getSymbolName(KTCHAR *&name, KcDbObjectId id);

} // namespace KcDbSymbolUtilities
