// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "UndoJournal.h"

#include <KcDb.h>

#include <atomic>
#include <memory>
#include <vector>

/// What the host itself may do with the objects that it hands out.
class KcDbObjectAccess
{
public:
    /// Objects open at this moment, over all drawings.
    static std::atomic<int> openCount;

    /// Makes the objects of a drawing, which goes into their database.
    static std::unique_ptr<KcDbDatabase> makeDatabase(Embedded::Drawing drawing);

    static Embedded::Drawing &drawing(const KcDbDatabase &database);
    static Embedded::UndoJournal &journal(const KcDbDatabase &database);
    static KcDbObject &layerTable(const KcDbDatabase &database);
    static KcDbObject &layerRecord(const KcDbDatabase &database, int layer);
    static KcDbObject &linetypeRecord(const KcDbDatabase &database, int linetype);
    static KcDbObject &viewport(const KcDbDatabase &database, int viewport);

    /// Makes a change of these records known: of those of entities, which have numbers for others. The
    /// drawing may be gone afterwards.
    static void announceEntities(const KcDbDatabase &database, const std::vector<int> &records);

    /// Makes a change of a layer known, likewise.
    static void announceLayer(const KcDbDatabase &database, int layer);

    /// Adds a layer whose name is valid and free.
    static void addLayer(KcDbDatabase &database, const QString &name);

    /// The object of that id, open or not; null when there is none.
    static KcDbObject *find(KcDbObjectId id);
    static KcDbObjectId idOf(const KcDbObject &object);

    static bool isOpen(const KcDbObject &object);

    /// What opening the object would return.
    static Kcore::ErrorStatus check(const KcDbObject &object, KcDb::OpenMode mode,
                                    bool openErased = false);

    /// Opens @p object as a T; @p opened stays null when that fails.
    template <class T>
    static Kcore::ErrorStatus open(T *&opened, KcDbObject *object, KcDb::OpenMode mode,
                                   bool openErased = false);

    /// Sets a property of a layer that is open for write.
    static Kcore::ErrorStatus setFlag(KcDbLayerTableRecord &record,
                                      bool Embedded::LayerState::*flag, bool value);

    /// Has what was set in the record reach the database, as a step; then tells of it. Nothing of the
    /// record may be touched afterwards, since anything may have happened.
    static void finishChange(const KcDbLayerTableRecord &record);

    static Embedded::Layer &layer(const KcDbLayerTableRecord &record);
    static bool isCurrent(const KcDbLayerTableRecord &record);
    static KcCmColor color(const KcDbLayerTableRecord &record);
    static KcDbObjectId linetypeId(const KcDbLayerTableRecord &record);
    static std::wstring plotStyleName(const KcDbLayerTableRecord &record);

    static const std::wstring &symbolName(const KcDbSymbolTableRecord &record);
    static KcDbLayerTableIterator *newIterator(const KcDbLayerTable &table);
    static bool freezes(const KcDbViewport &viewport, KcDbObjectId layer);
};

template <class T>
Kcore::ErrorStatus KcDbObjectAccess::open(T *&opened, KcDbObject *object, KcDb::OpenMode mode,
                                          bool openErased)
{
    opened = nullptr;
    if (!object)
        return Kcore::eNullObjectId;
    T *const typed = dynamic_cast<T *>(object);
    if (!typed)
        return Kcore::eNotThatKindOfClass;
    const Kcore::ErrorStatus status = check(*object, mode, openErased);
    if (status != Kcore::eOk)
        return status;
    if (mode == KcDb::kForWrite)
        object->m_isWriting = true;
    else
        ++object->m_readers;
    ++openCount;
    opened = typed;
    return Kcore::eOk;
}
