// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DrawingFile.h"
#include "DxfTokens.h"
#include "TextCodec.h"

#include <QHash>
#include <QString>

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Embedded {

// The versions of the format, by the number in $ACADVER, from which on a file can hold something.
constexpr int kR12 = 1009;
constexpr int kR13 = 1012;   ///< handles and subclass markers
constexpr int kR2000 = 1015; ///< owners, plot flags, lineweights and plot styles
constexpr int kR2004 = 1018; ///< true colours
constexpr int kR2007 = 1021; ///< UTF-8
constexpr int kR2018 = 1032;

// The bits of a layer's flags.
constexpr int kFrozenFlag = 1;
constexpr int kFrozenInNewViewportsFlag = 2;
constexpr int kLockedFlag = 4;
constexpr int kHighestFlags = 0x7FFF;

constexpr int kWhite = 7;
constexpr int kDefaultLineWeight = -3;
constexpr int kLineWeightByLayer = -1;

constexpr int kColorByLayer = 256;

/// As whose data the descriptions of layers stand in a file.
constexpr char kDescriptionApplication[] = "AcAecLayerStandard";

// In the place of an index into Drawing::linetypes.
constexpr int kLinetypeByLayer = -1;
constexpr int kLinetypeByBlock = -2;
constexpr int kNoLinetype = -3;

/// The properties of a layer that can be changed.
struct LayerState
{
    bool isOff = false;
    bool isFrozen = false;
    bool isLocked = false;
    bool isPlottable = true;
    int color = kWhite; ///< 1 to 255
    int trueColor = -1; ///< 0xRRGGBB, or -1
    int linetype = 0;   ///< index into Drawing::linetypes
    int lineWeight = kDefaultLineWeight;
    std::wstring description;

    bool operator==(const LayerState &other) const;
    bool operator!=(const LayerState &other) const { return !(*this == other); }
};

/// All of a layer that changes reach. To put back the one from before a change undoes it.
struct LayerValue
{
    std::wstring name;
    LayerState state;
    bool isErased = false;

    bool operator==(const LayerValue &other) const;
};

/// A layer as the drawing has it, and where the file has it.
struct Layer
{
    std::wstring name;
    LayerState state;     ///< as it is now
    LayerState announced; ///< as it was when a change was last made known
    LayerState stored;    ///< as the file that was read has it
    bool isFrozenInNewViewports = false;
    int records = 0;        ///< how many in the sections with entities lie on it
    bool isAdded = false;   ///< made after the file was read
    bool isErased = false;  ///< gone, but its place in the list remains
    bool isRenamed = false; ///< the file has another name for it
    quint64 plotStyle = 0;  ///< handle of its placeholder
    quint64 handle = 0;
    ByteRange record;    ///< null where the file's layer table has none
    ByteRange nameBytes; ///< the name as the file writes it; null for a layer that was added
};

/// A place where the file speaks of a layer outside the layer's own record.
struct LayerMention
{
    int layer; ///< -1 for one that does not exist
    ByteRange bytes;
};

/// A viewport of paper space.
struct Viewport
{
    bool isOnSheet = false; ///< of the layout that the drawing shows, not of another one
    int number = 0;         ///< 1 for the sheet itself
    int status = 0;         ///< 0 when off, 1 for the active one, the others by their order
    std::vector<LayerMention> frozenLayers; ///< sorted by layer

    bool freezes(int layer) const;
};

/// A section with entities, as the file has it.
struct EntitySection
{
    ByteRange bytes;          ///< what it holds
    int firstNumber = 0;      ///< that of its first record: the groups of code 0 before it
    std::vector<int> records; ///< where each begins; the numbers go on from one to the next
};

struct EntityColor
{
    int index = kColorByLayer;
    int trueColor = -1; ///< 0xRRGGBB, or -1

    bool operator==(const EntityColor &other) const;
};

/// All that changes have made of a record in a section with entities; what is without a value is as
/// the file has it. To put back the one from before a change undoes it.
struct EntityProperties
{
    std::optional<EntityColor> color;
    std::optional<int> lineWeight;
    std::optional<int> linetype; ///< index into Drawing::linetypes, or one of the constants
    std::optional<int> layer;    ///< index into Drawing::layers
    bool isErased = false;
    bool hasLostAttributes = false; ///< an insert's, all of them

    bool operator==(const EntityProperties &other) const;
};

/// One of the file's symbol tables, where records can be added.
struct SymbolTable
{
    int end = -1; ///< its ENDTAB; -1 where the file has no such table
    quint64 handle = 0;
    ByteRange countValue;
    int records = 0; ///< in the file
};

/// What was there before the changes that make one step.
struct KeptValues
{
    std::map<int, LayerValue> layers;         ///< by their indices
    std::map<int, EntityProperties> entities; ///< by their numbers
    std::optional<int> currentLayer;
};

/// A drawing: what its file said, what was changed since, and the places in the file's bytes that
/// a change has to reach. The bytes stay as they were read.
struct Drawing
{
    DrawingFile file;
    QByteArray bytes;
    TextCodec text;
    int version = kR12;
    bool isInModelSpace = true;
    bool hasNamedPlotStyles = false;
    QHash<quint64, QString> plotStyles; ///< the named ones, by the handle of their placeholder

    std::deque<Layer> layers; ///< in the file's order; references stay valid when layers are added
    QHash<QString, int> layersByName;  ///< without the erased ones; keys made by symbolKey()
    QHash<QString, int> renamedLayers; ///< likewise, but by the names that the file has
    std::vector<std::wstring> linetypes;
    QHash<QString, int> linetypesByName; ///< keys made by symbolKey(); the first of a name counts
    int continuous = 0;                  ///< the linetype "Continuous"
    std::vector<Viewport> viewports;
    int currentLayer = 0;
    int storedCurrentLayer = 0;
    QString missingCurrentLayer; ///< the name in $CLAYER, where the file has no such layer
    int currentViewport = -1;    ///< in paper space; -1 when there is none

    quint64 nextHandle = 1;                    ///< above every handle of the file
    std::vector<ByteRange> currentLayerValues; ///< of $CLAYER, which may be there twice
    ByteRange nextHandleValue;                 ///< of $HANDSEED
    int firstGroup = 0;                        ///< where the file's groups begin
    int headerEnd = -1; ///< its ENDSEC; -1 without a header, as with the other ends
    int bodyBegin = 0;  ///< the first section that belongs behind the tables
    int tablesEnd = -1; ///< its ENDSEC
    SymbolTable layerTable;
    SymbolTable applicationTable;
    bool hasDescriptions = false;         ///< the table has the application kDescriptionApplication
    quint64 descriptionsHandle = 0;       ///< of its new record
    std::vector<LayerMention> duplicates; ///< records of layers that have one already
    std::vector<EntitySection> entities;  ///< in the file's order
    std::vector<ByteRange> objects;       ///< what the sections OBJECTS hold
    std::map<int, EntityProperties> changedEntities; ///< by their numbers; setEntity() changes it
    std::vector<std::vector<int>> recordsByLayer;    ///< kept by takeRecordsOn(); empty until then
    std::size_t indexedRecords = 0;                  ///< how many there are in all, wrong ones, too
    KeptValues kept;                                 ///< the setters below keep what they change

    /// The layer of that name, whatever its letter case; -1 when there is none.
    int findLayer(const QString &name) const;

    /// The layer that the file calls so, whatever it is called now; -1 when there is none.
    int findStoredLayer(const QString &name) const;

    /// The linetype of that name, whatever its letter case, or one of the constants.
    int findLinetype(const QString &name) const;

    /// The record with that number in a section with entities, up to the next one; null when there is
    /// none.
    ByteRange record(int number) const;

    /// Likewise, but null for a record that is none of an entity: a BLOCK, ENDBLK or SEQEND.
    ByteRange entityRecord(int number) const;

    /// What that record is: "LINE" or the like; empty when there is none.
    std::string_view recordType(int number) const;

    /// The groups of a record that name the layer on which it lies: one, but for odd files.
    std::vector<DxfGroup> layerGroups(ByteRange record) const;

    /// The layers that a record names as that on which it lies: the first one is it. "0" for one that
    /// names none, and nothing for one that is erased.
    std::vector<int> layersOf(int number) const;

    /// What was changed of a record.
    EntityProperties entity(int number) const;

    /// Changes a record: the one way to do so. Layer and all must be there.
    void setEntity(int number, const EntityProperties &properties);

    /// The records for which layersOf() has that layer, in the file's order; the caller must change
    /// each of them to lie elsewhere. The first call, and one now and then, is linear in the file.
    std::vector<int> takeRecordsOn(int layer);

    /// Adds a layer, whose name must be free.
    /// @return its index
    int addLayer(Layer layer);

    /// Likewise, as a change of the drawing.
    int addNewLayer(Layer layer);

    /// Of a layer that is open for write, what it was when it was opened.
    LayerValue layerValue(int index) const;

    /// Changes a layer, whose name must be free or its own: the one way to rename it, to erase it and
    /// to bring it back.
    void setLayerValue(int index, const LayerValue &value);

    /// Takes over what was set while the layer was open for write.
    void takeOverState(int index);

    void setCurrentLayer(int index);

    void eraseLayer(int index);

    /// Renames a layer, to a name that no other one has.
    void renameLayer(int index, const QString &name);

    /// The name by which the file's entities know the layer; null for one that was added.
    QString storedName(const Layer &layer) const;

    /// The layer's name now as the file is to write it.
    QByteArray nameBytes(const Layer &layer) const;

    /// What stands there in the file.
    std::string_view view(ByteRange range) const;

private:
    bool isIndexWorn() const;
    void indexRecords();
    void listLayer(int index);
    void unlistLayer(int index);
};

/// Whether that is one of the standard lineweights, those by layer, by block and by default included.
bool isLineWeight(int lineWeight);

/// The same text for all names that a symbol table does not tell apart.
QString symbolKey(const QString &name);

} // namespace Embedded
