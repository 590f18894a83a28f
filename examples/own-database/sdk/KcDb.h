// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <memory>
#include <string>

/// @file
/// A drawing database with what the widgets ask of one, and nothing besides. They are compiled against
/// this; docs/host.md says how often they call what, and which answers matter to them.

/// The host's texts. Those that come as a `KTCHAR *` are the caller's, who frees them with
/// kcutDelString(); a `const KTCHAR *` is lent.
using KTCHAR = wchar_t;
void kcutDelString(KTCHAR *&text);

namespace Kcore {

enum ErrorStatus {
    eOk,
    eNoSuchObject,
    eErased,      ///< here, or by another program
    eOpenAlready, ///< the object is, or another program is writing the file
    eNotOpen,
    eRefused, ///< the drawing will not have it: the name is taken, or the layer is the current one
    eFileFailed,
};

} // namespace Kcore

namespace KcDb {

enum OpenMode { kForRead, kForWrite };

} // namespace KcDb

class KcDbDatabase;
class LayerFile;
struct Layer;
struct Symbol;

/// Names a layer or a linetype for as long as its database lives, erased or not.
using KcDbObjectId = Symbol *;

/// What is opened by any number of readers, or one writer, and closed again by each.
class KcDbObject
{
public:
    KcDbObject() = default;
    KcDbObject(const KcDbObject &) = delete;
    KcDbObject &operator=(const KcDbObject &) = delete;

    Kcore::ErrorStatus open(KcDb::OpenMode mode);
    Kcore::ErrorStatus upgradeOpen();
    Kcore::ErrorStatus downgradeOpen();
    Kcore::ErrorStatus close();

protected:
    virtual ~KcDbObject() = default;
    virtual void onClosed() {}
    int m_readers = 0;
    bool m_isWriting = false;
};

class KcCmColor
{
public:
    KcCmColor(std::uint32_t rgb, std::wstring name);
    const KTCHAR *colorNameForDisplay() const;
    int red() const;
    int green() const;
    int blue() const;

private:
    std::uint32_t m_rgb;
    std::wstring m_name;
};

/// A setter writes the file at once.
class KcDbLayerTableRecord : public KcDbObject
{
public:
    KcDbLayerTableRecord(Layer &layer, LayerFile &file);

    KcDbObjectId objectId() const;
    Kcore::ErrorStatus getName(KTCHAR *&name) const;
    bool isOff() const;
    bool isFrozen() const;
    bool isLocked() const;
    bool isPlottable() const;
    bool VPDFLT() const;
    KcCmColor color() const;
    KcDbObjectId linetypeObjectId() const;
    int lineWeight() const;
    KTCHAR *plotStyleName() const;
    const KTCHAR *description() const;

    Kcore::ErrorStatus setIsOff(bool off);
    Kcore::ErrorStatus setIsFrozen(bool frozen);
    Kcore::ErrorStatus setIsLocked(bool locked);
    Kcore::ErrorStatus setIsPlottable(bool plottable);

private:
    void onClosed() override;
    Kcore::ErrorStatus setFlag(const char *column, bool Layer::*flag, bool value);
    Layer &m_layer;
    LayerFile &m_file;
    bool m_isChanged = false;
};

class KcDbLayerTableIterator
{
public:
    explicit KcDbLayerTableIterator(const LayerFile &file);
    void start(bool atBeginning, bool skipDeleted);
    void step(bool forward, bool skipDeleted);
    bool done() const;
    Kcore::ErrorStatus getRecord(KcDbLayerTableRecord *&record, KcDb::OpenMode mode,
                                 bool openErased) const;

private:
    const LayerFile &m_file;
    std::size_t m_position = 0;
};

class KcDbLayerTable : public KcDbObject
{
public:
    explicit KcDbLayerTable(const LayerFile &file);
    Kcore::ErrorStatus newIterator(KcDbLayerTableIterator *&iterator, bool atBeginning,
                                   bool skipDeleted) const;

private:
    const LayerFile &m_file;
};

class KcDbDatabase
{
public:
    explicit KcDbDatabase(std::unique_ptr<LayerFile> file);
    ~KcDbDatabase();

    Kcore::ErrorStatus getLayerTable(KcDbLayerTable *&table, KcDb::OpenMode mode);
    KcDbObjectId clayer() const;
    LayerFile &file() const;

private:
    const std::unique_ptr<LayerFile> m_file;
    KcDbLayerTable m_layerTable;
};

class KcDbHostApplicationServices
{
public:
    KcDbDatabase *workingDatabase() const;
};

KcDbHostApplicationServices *kcdbHostApplicationServices();

Kcore::ErrorStatus kcdbOpenObject(KcDbLayerTableRecord *&record, KcDbObjectId id,
                                  KcDb::OpenMode mode, bool openErased);

/// These drawings have no sheets, and so no viewport is ever opened.
class KcDbViewport
{
public:
    bool isLayerFrozenInViewport(KcDbObjectId) const { return false; }
    void close() {}
};

KcDbObjectId kcdbGetCurVportId(KcDbDatabase *database);
Kcore::ErrorStatus kcdbOpenObject(KcDbViewport *&viewport, KcDbObjectId id, KcDb::OpenMode mode,
                                  bool openErased);

namespace KcDbSymbolUtilities {

Kcore::ErrorStatus getSymbolName(KTCHAR *&name, KcDbObjectId id);

} // namespace KcDbSymbolUtilities
