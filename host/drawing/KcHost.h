// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <KcDb.h>
#include <KcEd.h>
#include <OvHost.h>

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

class QUndoStack;

/// The embedded host: a drawing database in memory with DXF files under it, for programs that have
/// no CAD application around them. Everything here belongs to the GUI thread, but for newDrawing()
/// and readDrawing(), which may run in any threads at once that hand their drawings over.
///
/// N is the number of layers, F the size of the file.
///
/// @ingroup host
namespace KcHost {

/// A drawing with the layer "0", which is current.
KCSDK_EXPORT std::unique_ptr<KcDbDatabase> newDrawing();

/// Reads an ASCII DXF file of the versions R12 to R2018 and of at most 2 GB; linear in F. Pipes,
/// devices and folders are refused at once.
///
/// The current viewport of a drawing in paper space is the active one among the viewports of the
/// current sheet that are switched on; the sheet itself only where it has no other.
///
/// @param[out] error    one sentence when there is no drawing: the file, the line where there is
///                      one to name, and the reason
/// @param[out] warnings one sentence per oddity that was survived
/// @return the drawing, or null
KCSDK_EXPORT std::unique_ptr<KcDbDatabase>
readDrawing(const QString &fileName, QString *error = nullptr, QStringList *warnings = nullptr);

/// Writes the drawing to @p fileName: whole, or not at all. What was not changed since the drawing
/// was read stays byte for byte, line ends included. A file that is there keeps its mode, and its
/// owner where the system allows; a symbolic link goes on leading to it, a second hard link has what
/// was there before. Killed meanwhile, the process may leave a file ".ovcc-" and a number beside it.
/// Linear in F.
///
/// @param[out] error    one sentence with file and reason on failure; the file is then as it was
/// @param[out] warnings one sentence per property that the file's version cannot hold
/// @return whether the file was written
KCSDK_EXPORT bool writeDrawing(KcDbDatabase &drawing, const QString &fileName,
                               QString *error = nullptr, QStringList *warnings = nullptr);

/// Whether the file that the drawing was read from, or written to since, is another one now: gone, or
/// with another content, whoever changed it. Its size, times and place on the disk tell as a rule;
/// where they do not, it is read: at worst linear in F. False for a drawing that has no file yet.
KCSDK_EXPORT bool isFileChanged(const KcDbDatabase &drawing);

/// What the drawing's file said when it was read, for another reader of it; the file itself may be
/// another one meanwhile. The bytes are shared, not copied.
KCSDK_EXPORT QByteArray fileContent(const KcDbDatabase &drawing);

/// Makes @p drawing the one that KcDbHostApplicationServices::workingDatabase() returns, and sets
/// the variable "TILEMODE" from it; null closes. The caller keeps ownership; a working drawing that
/// is destroyed closes itself.
KCSDK_EXPORT void setWorkingDatabase(KcDbDatabase *drawing);

/// Sets a system variable: "TILEMODE" (1 model space, 0 paper space), "LWUNITS" (1 millimetres,
/// 0 inches). The variables are process-wide and there without a drawing, too; both begin as 1.
/// A name that is new makes a new variable.
KCSDK_EXPORT void setVariable(const QString &name, int value);

/// Sets what ovSetLayerTableChanges() calls; none by default.
KCSDK_EXPORT void setLayerTableChangesHandler(std::function<void()> handler);

/// Sets what is called with the layer's name whenever a change of a layer reaches its drawing,
/// whoever made it; none by default. The record is closed by then.
KCSDK_EXPORT void setLayerModifiedHandler(std::function<void(const QString &name)> handler);

/// Sets what is called with the number of each entity that a change has reached, whoever made it:
/// its properties are other ones, or it is erased. None by default. A change of many entities is
/// whole by then. For the numbers see changeEntity().
KCSDK_EXPORT void setEntityModifiedHandler(std::function<void(int entity)> handler);

/// Database objects open at this moment, over all drawings: 0 whenever no call is under way, but
/// for a viewport that stays open by design of the caller.
KCSDK_EXPORT int openObjectCount();

/// Adds a layer with the defaults: on, thawed, unlocked, plotted, white, "Continuous".
/// @return eOk, eInvalidInput for a name that is empty, longer than 255 characters or holds one of
///         `<>/\":;?*|=` or a control character, eDuplicateKey, or eWasOpenForRead or
///         eWasOpenForWrite when the layer table is open
KCSDK_EXPORT Kcore::ErrorStatus addLayer(KcDbDatabase &drawing, const QString &name);

/// Erases a layer; names are told apart without regard to letter case. O(1).
/// @return eOk, eKeyNotFound, eCannotBeErasedByCaller for "0", eLayerIsCurrent, eLayerInUse when
///         entities lie on it, or eWasOpenForRead or eWasOpenForWrite when it is open
KCSDK_EXPORT Kcore::ErrorStatus eraseLayer(KcDbDatabase &drawing, const QString &name);

/// Renames a layer; whatever lies on it goes with it. O(1), and linear in F when it is written.
/// The file gets the new name in the layer's record, which is added for a layer that only entities
/// name, in its entities, in the viewports that freeze it and as the current layer. The old one
/// stays where something else keeps it: in the section OBJECTS and in data of other applications.
/// @return eOk, eKeyNotFound, eCannotBeErasedByCaller for "0", eInvalidInput for a name that
///         addLayer() would not take, eDuplicateKey for the name of another layer, or
///         eWasOpenForRead or eWasOpenForWrite when the layer is open
KCSDK_EXPORT Kcore::ErrorStatus renameLayer(KcDbDatabase &drawing, const QString &name,
                                            const QString &newName);

/// A change of a layer's properties: those without a value stay as they are.
///
/// @ingroup host
struct LayerChange
{
    std::optional<int> color;         ///< 1 to 255; ends a true colour
    std::optional<quint32> trueColor; ///< 0xRRGGBB, whatever the highest byte; not beside color
    std::optional<int> lineWeight;   ///< hundredths of a millimetre, one of the standard values, or
                                     ///< -3 the default
    std::optional<QString> linetype; ///< a name of linetypes(), in any letter case
    std::optional<QString> description; ///< up to 255 characters, no control characters
};

/// Changes a layer, be it locked or not; names are told apart without regard to letter case. O(1),
/// and linear in F when it is written.
///
/// The file gets no more than the groups that differ, in the layer's record, which is added for a
/// layer that only entities name. A description stands there as data of the application
/// "AcAecLayerStandard", which is registered where it was not. With a true colour goes the index of
/// the nearest of the standard colours. writeDrawing() warns where the file's version lacks true
/// colours (before R2004) or lineweights (before R2000).
///
/// @return eOk, eInvalidInput for a value out of range, eKeyNotFound for an unknown layer or
///         linetype, or eWasOpenForRead or eWasOpenForWrite when the layer is open; nothing is
///         changed then
KCSDK_EXPORT Kcore::ErrorStatus changeLayer(KcDbDatabase &drawing, const QString &name,
                                            const LayerChange &change);

/// Moves all that lies on a layer to another one, in blocks, too, and erases the layer then, be they
/// locked or not: this is a change of layers. Linear in what moves, and now and then in F. Viewports
/// that freeze the layer let it go; where something else keeps its name, as with renameLayer(), that
/// stays.
///
/// @return eOk, eKeyNotFound for an unknown layer, eInvalidInput for a layer into itself,
///         eCannotBeErasedByCaller for "0", eLayerIsCurrent, or eWasOpenForRead or eWasOpenForWrite
///         when the layer that goes is open; nothing is changed then
KCSDK_EXPORT Kcore::ErrorStatus mergeLayer(KcDbDatabase &drawing, const QString &name,
                                           const QString &into);

/// Erases a layer with all that lies on it, in blocks, too, be it locked or not. Linear in what
/// goes, and now and then in F.
///
/// An insert goes with its attributes and a polyline with its vertices, whatever their layers. Of
/// those that stay, an attribute on the layer goes alone, and a vertex goes over to the layer of its
/// polyline. The beginning and the end of a block and the viewport that is the sheet itself go over
/// to "0", since nothing is left without them. What only refers to an entity that is gone stays in
/// the file, as a group or a drawing order with its handle does, or a block that nothing inserts now.
///
/// @return eOk, eKeyNotFound, eCannotBeErasedByCaller for "0", eLayerIsCurrent, or eWasOpenForRead
///         or eWasOpenForWrite when it is open; nothing is changed then
KCSDK_EXPORT Kcore::ErrorStatus eraseLayerWithEntities(KcDbDatabase &drawing, const QString &name);

/// How much lies on each layer: the entities of the sections ENTITIES and BLOCKS, with vertices,
/// attributes and the marks at which blocks, polylines and attributes begin or end as ones. What
/// names two layers counts for both. A layer that is not there has nothing on it, so that
/// eraseLayer() does not find it in use. Names are as the drawing spells them. O(N).
KCSDK_EXPORT QHash<QString, int> layerUsage(const KcDbDatabase &drawing);

/// Makes a layer the current one; names are told apart without regard to letter case. O(1).
/// @return eOk, or eKeyNotFound
KCSDK_EXPORT Kcore::ErrorStatus setCurrentLayer(KcDbDatabase &drawing, const QString &name);

/// A change of an entity's properties: those without a value stay as they are.
///
/// @ingroup host
struct EntityChange
{
    std::optional<int> color;         ///< 0 by block, 1 to 255, 256 by layer; ends a true colour
    std::optional<quint32> trueColor; ///< 0xRRGGBB, whatever the highest byte; not beside color
    std::optional<int> lineWeight;   ///< hundredths of a millimetre, one of the standard values, or
                                     ///< -1 by layer, -2 by block, -3 the default
    std::optional<QString> linetype; ///< "ByLayer", "ByBlock" or a name of linetypes(), in any
                                     ///< letter case
    std::optional<QString> layer;    ///< a name of a layer, in any letter case; it may be locked
};

/// Changes an entity in the section ENTITIES or in a block. A polyline's vertices and the attributes
/// of an insert are entities of their own and stay as they are; but the vertices go with their
/// polyline to another layer. O(log) of the number of changed entities, linear in such vertices,
/// and linear in the changed entities when they are written.
///
/// The file gets no more than the groups that differ from what it says, in the entity itself; a
/// colour or linetype by layer, the default, has none. A property that stood there twice, or behind
/// the marker of the entity's class, has one group in its place then. With a true colour goes the
/// index of the nearest of the standard colours. writeDrawing() warns where the file's version lacks
/// true colours (before R2004) or lineweights (before R2000).
///
/// @param entity its number: how many groups of code 0 the drawing's file, as it was read, has
///               before its own, from the first "SECTION" on; saving does not change it
/// @return eOk, eInvalidInput for a value out of range, eKeyNotFound for an unknown linetype or
///         layer or a number that is none of an entity, as that of a BLOCK, ENDBLK or SEQEND,
///         eWasErased, or eOnLockedLayer; nothing is changed then
KCSDK_EXPORT Kcore::ErrorStatus changeEntity(KcDbDatabase &drawing, int entity,
                                             const EntityChange &change);

/// What the entity was given since its file was read: nothing for one that is as it was, is erased
/// or does not exist. The names of layer and linetype are those of now. O(log) of the number of
/// changed entities.
KCSDK_EXPORT EntityChange changesOf(const KcDbDatabase &drawing, int entity);

/// Whether the entity was in the file when it was read, but is not in the drawing any more. O(log)
/// of the number of changed entities.
KCSDK_EXPORT bool isErased(const KcDbDatabase &drawing, int entity);

/// The standard colour, 1 to 255, that looks exactly like 0xRRGGBB, whatever the highest byte: of
/// several the lowest; 0 where there is none.
KCSDK_EXPORT int colorIndex(quint32 rgb);

/// The drawing's own stack of undo, which lives as long as the drawing does. Every change through the
/// SDK or through the functions here becomes a step, whoever made it and from when the drawing was read
/// on: one call is a step, and one record that was open for write, unless a group makes one of many.
/// What changes nothing makes none. A step keeps what was there before: about 50 bytes for an entity
/// and 150 for a layer, and 300 besides.
///
/// Undo and redo take no longer than the change did. They call the handlers for layers and entities
/// once for each that is different then: for a layer that has another name now with both, and for both
/// layers where another one is current. The stack has finished by then, so that a handler may do
/// anything. Undone to the start, the drawing writes the bytes that were read. A layer that was added
/// is erased by undo; after redo its ids lead to it again, and it has the handle that it had in the file.
///
/// While a group is open, or while somebody has a layer open that would change, a step is neither undone
/// nor redone: drawing and stack stop there, which index() tells, and a warning is printed.
///
/// writeDrawing() marks the stack as clean. What an open group has changed so far is a step of its own
/// then. Where a layer is open for write that has changed, or a macro is open, nothing is clean until
/// the next time.
///
/// Commands of the host's own may be pushed as well, and macros begun, but their redo() must not change
/// the drawing. A slot of the stack, unlike a handler, must not destroy the drawing.
KCSDK_EXPORT QUndoStack *undoStack(KcDbDatabase &drawing);

/// Makes one step of undo of all that changes in the drawing while it lives; a group in a group is part
/// of that one. A group in which nothing changes leaves no trace. The drawing may go before it does.
///
/// @ingroup host
class KCSDK_EXPORT UndoGroup
{
public:
    /// @param text    of the step, as the user is to read it
    /// @param mergeId 0 or above: groups with this number that follow each other become one step, as
    ///                long as the drawing is not written in between; where they come to nothing in
    ///                the end, the step vanishes. Of the host's own commands none has this number.
    explicit UndoGroup(KcDbDatabase &drawing, const QString &text, int mergeId = -1);
    ~UndoGroup();
    UndoGroup(const UndoGroup &) = delete;
    UndoGroup &operator=(const UndoGroup &) = delete;

private:
    struct Data;
    const std::unique_ptr<Data> m_data;
};

/// The names of the drawing's linetypes, as its table spells and orders them, with "Continuous" at
/// the end where the table lacks it; without "ByLayer" and "ByBlock".
KCSDK_EXPORT QStringList linetypes(const KcDbDatabase &drawing);

/// The text of raw bytes of the drawing's file, such as another reader of that file returns:
/// decoded by the file's version and code page, `\U+XXXX` escapes included.
KCSDK_EXPORT QString decodeText(const KcDbDatabase &drawing, const QByteArray &bytes);

} // namespace KcHost
