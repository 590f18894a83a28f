// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DxfMutator.h"

#include "../Changes.h"
#include "host/drawing/Database.h"
#include "host/drawing/DxfReader.h"
#include "host/drawing/DxfWriter.h"
#include "viewer/canvas/Drawing.h"
#include "viewer/canvas/GeometryReader.h"

#include <KcHost/KcHost.h>

#include <QSet>
#include <QUndoStack>

using namespace Embedded;
using Attack::Choices;

namespace {

constexpr int kVariable = 9; // the code of its name, of which there is none in an entity

QString text(const std::wstring &text)
{
    return QString::fromStdWString(text);
}

template <class Table, class Value>
bool isIn(const Table &table, const Value &value)
{
    return std::find(std::begin(table), std::end(table), value) != std::end(table);
}

/// A drawing as the host reads it and, if asked for, the viewer.
struct Reading
{
    Reading(const QByteArray &bytes, bool isViewed)
    {
        DxfReader reader(QStringLiteral("drawing"), bytes);
        std::optional<Drawing> read = reader.read();
        const QString error = reader.error();
        require(read ? error.isNull() : error.startsWith("drawing, line ") && error.endsWith('.'),
                "what is refused has place and reason");
        if (!read)
            return;
        viewed.database = KcDbObjectAccess::makeDatabase(std::move(*read));
        if (!isViewed)
            return;
        viewed.layers = Tessa::DrawingLayers(*viewed.database);
        viewed.geometry = Tessa::readGeometry(viewed, viewed.warnings);
        for (const Tessa::Block &block : viewed.geometry.blocks) {
            for (const Tessa::Entity &entity : block.entities)
                styles.insert(entity.record, entity.style);
        }
        styles.remove(-1);
    }

    KcDbDatabase &database() const { return *viewed.database; }
    Drawing &data() const { return KcDbObjectAccess::drawing(database()); }
    QString linetype(int index) const { return symbolKey(text(data().linetypes[index])); }
    QString layerOf(int record) const
    {
        return symbolKey(text(data().layers[data().layersOf(record).front()].name));
    }
    QByteArray written() const { return DxfWriter(data()).write(); }

    bool hasGroup(int record, std::initializer_list<int> codes) const
    {
        DxfTokens tokens(data().bytes, data().record(record));
        while (tokens.next() == DxfTokens::Step::Group) {
            if (isIn(codes, tokens.group().code))
                return true;
        }
        return false;
    }

    Tessa::Drawing viewed;
    QHash<int, Tessa::EntityStyle> styles; ///< of what the viewer shows, by the records' numbers
};

/// The records with entities that are there.
std::vector<int> recordsOf(const Drawing &drawing)
{
    std::vector<int> records;
    for (const EntitySection &section : drawing.entities) {
        for (std::size_t i = 0; i < section.records.size(); ++i) {
            if (const int number = section.firstNumber + int(i); !drawing.entity(number).isErased)
                records.push_back(number);
        }
    }
    return records;
}

/// What changes have reached in a file.
struct Reached
{
    bool isAnyLayerRenamed = false; ///< or erased
    bool isAnyLayerErased = false;
    QSet<int> entities; ///< their numbers
};

/// The groups of the file that no change may reach, from beginning to end.
QByteArray unreached(const Drawing &drawing, const Reached &reached)
{
    constexpr std::string_view kParts[] = {"LAYER", "APPID", "$CLAYER", "$HANDSEED"};
    constexpr int kNames[] = {8, 1003, 331, 341};
    constexpr int kProperties[] = {8, 6, 62, 66, 370, 420, 430};
    QByteArray kept;
    std::string_view type;
    std::string_view section;
    std::string_view part; // a table, or a variable
    int record = -1;
    DxfTokens tokens(drawing.bytes, {drawing.firstGroup, int(drawing.bytes.size())});
    while (tokens.next() == DxfTokens::Step::Group) {
        const int code = tokens.group().code;
        const std::string_view value = trimmed(tokens.view(tokens.group().value));
        if (code == 0) {
            ++record;
            type = value;
            const bool isEdge = type == "SECTION" || type == "ENDSEC";
            section = isEdge ? std::string_view() : section;
            part = isEdge || type == "TABLE" ? std::string_view() : part;
        } else if (code == 2 && type == "SECTION" && section.empty()) {
            section = value;
            continue; // there may be more sections now
        } else if ((code == kVariable && section == "HEADER") || (code == 2 && type == "TABLE")) {
            part = value;
        }
        const bool isReached =
                drawing.record(record).isNull()
                        ? section.empty() || type == "TABLE" || type == "ENDTAB"
                                  || isIn(kParts, part)
                                  || (reached.isAnyLayerErased && section == "OBJECTS")
                        : drawing.entity(record).isErased
                                  || (reached.isAnyLayerRenamed && isIn(kNames, code))
                                  || (reached.entities.contains(record) && isIn(kProperties, code));
        if (code != kComment && !isReached)
            kept += QByteArray::fromStdString(std::string(tokens.view(tokens.group().bytes)));
    }
    return kept;
}

/// The viewer sees the same entity, but for what it was given since the first file was read.
void compareStyle(const Reading &was, int before, const Reading &is, int after)
{
    // dxflib takes what stands in groups of other applications, too, and nothing behind a variable.
    // What is gone may have been the vertices without which a polyline shows nothing.
    if (!was.styles.contains(before) || !is.styles.contains(after) || is.data().version < kR2004
        || is.hasGroup(after, {102, kVariable}))
        return;
    const KcHost::EntityChange change = KcHost::changesOf(was.database(), before);
    const Tessa::EntityStyle found = is.styles.value(after);
    Tessa::EntityStyle wanted = was.styles.value(before);
    if (change.color || change.trueColor)
        wanted.color = Tessa::entityColor(change.color.value_or(0),
                                          change.trueColor ? int(*change.trueColor) : -1);
    if (change.linetype)
        wanted.linetype = was.viewed.geometry.entityLinetypeOf(*change.linetype);
    wanted.lineWeight = change.lineWeight.value_or(wanted.lineWeight);
    wanted.layer = found.layer;
    require(wanted == found, "an entity has its properties in the file");
}

void compareLayer(const Reading &was, const Layer &layer, const Reading &is)
{
    const int index = is.data().findLayer(text(layer.name));
    require(index >= 0 && layer.records == is.data().layers[index].records,
            "a layer is in the file, and what lies on it");
    LayerState wanted = layer.state;
    LayerState found = is.data().layers[index].state;
    require(was.linetype(wanted.linetype) == is.linetype(found.linetype),
            "a layer has its linetype in the file");
    wanted.linetype = found.linetype;
    if (is.data().version < kR2004) { // some of it cannot be there
        wanted.trueColor = found.trueColor;
        wanted.isPlottable = found.isPlottable;
        wanted.lineWeight = found.lineWeight;
    }
    // Entities may spell the name of a layer without a record in several ways.
    const bool isSpelled = layer.isAdded || layer.isRenamed || !layer.record.isNull();
    require(wanted == found && (!isSpelled || layer.name == is.data().layers[index].name),
            "a layer has its name and properties in the file");
}

/// What the drawing has now is in its file, and nothing else has changed there.
void compare(const Reading &was, const Reading &is)
{
    Reached before;
    int count = 0;
    for (const Layer &layer : was.data().layers) {
        before.isAnyLayerErased |= layer.isErased;
        before.isAnyLayerRenamed |= layer.isErased || layer.isRenamed;
        if (!layer.isErased) {
            ++count;
            compareLayer(was, layer, is);
        }
    }
    require(count == is.data().layersByName.size(), "no other layers are in the file");
    require(was.data().layers[was.data().currentLayer].name
                    == is.data().layers[is.data().currentLayer].name,
            "the current layer is in the file");
    const std::vector<int> records = recordsOf(was.data());
    const std::vector<int> others = recordsOf(is.data());
    require(records.size() == others.size(), "the file has as many entities");
    Reached after = before;
    for (std::size_t i = 0; i < records.size(); ++i) {
        require(was.layerOf(records[i]) == is.layerOf(others[i]),
                "an entity has its layer in the file");
        compareStyle(was, records[i], is, others[i]);
        if (!(was.data().entity(records[i]) == EntityProperties())) {
            before.entities += records[i];
            after.entities += others[i];
        }
    }
    require(unreached(was.data(), before) == unreached(is.data(), after),
            "what nobody changed is as it was");
}

/// Steps in the words of change(); what begins with $ is chosen.
constexpr const char *kSteps[] = {"off $layer",
                                  "unoff $layer",
                                  "freeze $layer",
                                  "unfreeze $layer",
                                  "lock $layer",
                                  "unlock $layer",
                                  "plot $layer",
                                  "unplot $layer",
                                  "add $layer",
                                  "erase $layer",
                                  "clear $layer",
                                  "current $layer",
                                  "rename $layer $layer",
                                  "merge $layer $layer",
                                  "layer $layer color $color",
                                  "layer $layer true $true",
                                  "layer $layer weight $weight",
                                  "layer $layer type $type",
                                  "layer $layer description $text",
                                  "set $entity color $color",
                                  "set $entity true $true",
                                  "set $entity weight $weight",
                                  "set $entity type $type",
                                  "set $entity layer $layer"};
constexpr const char *kNames[] = {"0",       "Walls", "walls", "T\u00fcr", "\u65e5\u672c",
                                  "A B \\",  "Neu",   "\\U+",  "\\U+00E9", "\U0001f3e0",
                                  "\u03a9-1"};

QString chosen(const QString &what, const KcDbDatabase &database, Choices &choices)
{
    const Drawing &data = KcDbObjectAccess::drawing(database);
    if (what == "$color")
        return QString::number(choices.below(258));
    if (what == "$true")
        return QString::number(choices.below(0x1000000), 16);
    if (what == "$weight")
        return QString::number(choices.of(std::array{-3, -2, -1, 0, 25, 211}));
    if (what == "$type")
        return choices.of(KcHost::linetypes(database) + QStringList{"ByBlock", "BYLAYER"});
    if (what == "$text")
        return QString::fromUtf8(choices.of(kNames));
    if (what == "$entity") {
        const std::vector<int> records = recordsOf(data);
        return QString::number(records.empty() ? -1 : choices.of(records));
    }
    if (const int layer = choices.below(int(data.layers.size()) + 3);
        layer < int(data.layers.size()))
        return text(data.layers[layer].name);
    return QString::fromUtf8(choices.of(kNames));
}

template <class Change>
bool hasAll(const Change &now, const Change &asked)
{
    const auto has = [](const auto &now, const auto &asked) { return !asked || asked == now; };
    return has(now.color, asked.color) && has(now.trueColor, asked.trueColor)
           && has(now.lineWeight, asked.lineWeight)
           && (!asked.linetype || symbolKey(*asked.linetype) == symbolKey(*now.linetype));
}

/// Whether the drawing has what the step has asked for.
bool isDone(const KcDbDatabase &database, const QStringList &step)
{
    const Drawing &data = KcDbObjectAccess::drawing(database);
    const QString &word = step[0];
    const int index = data.findLayer(step[1]);
    if (word == "set") {
        const auto asked = propertyChange<KcHost::EntityChange>(step[2], step[3]);
        const auto now = KcHost::changesOf(database, step[1].toInt());
        return hasAll(now, asked)
               && (!asked.layer || symbolKey(*asked.layer) == symbolKey(now.layer.value_or("")));
    }
    const bool isToGo = word == "erase" || word == "clear" || word == "merge";
    if (isToGo || index < 0)
        return isToGo ? index < 0 : word == "rename" && data.findLayer(step[2]) >= 0;
    const LayerState &state = data.layers[index].state;
    if (word == "layer") {
        const auto asked = propertyChange<KcHost::LayerChange>(step[2], step[3]);
        KcHost::LayerChange now{{},
                                {},
                                state.lineWeight,
                                text(data.linetypes[state.linetype]),
                                text(state.description)};
        if (state.trueColor >= 0)
            now.trueColor = quint32(state.trueColor);
        else
            now.color = state.color;
        return hasAll(now, asked)
               && asked.description.value_or(*now.description) == now.description;
    }
    constexpr std::pair<const char *, bool LayerState::*> kFlags[] = {
            {"off", &LayerState::isOff},
            {"freeze", &LayerState::isFrozen},
            {"lock", &LayerState::isLocked},
            {"plot", &LayerState::isPlottable}};
    for (const auto &[name, flag] : kFlags) {
        if (word.endsWith(name))
            return state.*flag == !word.startsWith("un");
    }
    return word != "current" || data.currentLayer == index;
}

/// Takes some steps, which become one, and sees that each is done at once, or refused.
void takeSteps(KcDbDatabase &database, Choices &choices)
{
    const KeptValues &kept = KcDbObjectAccess::drawing(database).kept;
    const KcHost::UndoGroup group(database, {}, choices.below(4) - 1);
    for (int steps = choices.below(3); steps >= 0; --steps) {
        QStringList step = QString(choices.of(kSteps)).split(' ');
        for (QString &word : step)
            word = word.startsWith('$') ? chosen(word, database, choices) : word;
        const auto before = std::pair(kept.layers, kept.entities);
        const bool isTaken = change(step) == Kcore::eOk;
        require(!isTaken || isDone(database, step), "what was asked for is done");
        require(isTaken || before == std::pair(kept.layers, kept.entities),
                "what is refused changes nothing");
    }
}

} // namespace

/// Undo and the viewer take part in some of the executions only, since they take their time.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const Attack::Effort effort{size};
    Attack::Input input(data, size);
    const QByteArray &drawing = input.drawing;
    Choices &choices = input.choices;
    // dxflib ends a text at a NUL.
    const bool isViewed = choices.below(8) == 1 && !drawing.contains('\0');
    const bool isUndone = choices.below(4) == 1;
    const Reading read(drawing, isViewed);
    if (!read.viewed.database)
        return 0;
    require(read.written() == drawing, "what was not changed stays as it is");
    for (auto entity = read.styles.begin(); entity != read.styles.end(); ++entity) {
        require(!read.data().entityRecord(entity.key()).isNull(), "the host knows what is shown");
        // dxflib ends a record at a variable.
        require(symbolKey(read.viewed.layers.nameOf(entity->layer)) == read.layerOf(entity.key())
                        || read.hasGroup(entity.key(), {kVariable}),
                "two readers agree on an entity's layer");
    }
    KcHost::setWorkingDatabase(&read.database());
    QUndoStack *stack = KcHost::undoStack(read.database());
    while (choices.remaining_bytes() > 0) {
        if (isUndone && choices.below(6) == 0)
            stack->setIndex(choices.below(stack->count() + 1));
        else
            takeSteps(read.database(), choices);
    }
    const QByteArray changed = read.written();
    const Reading again(changed, isViewed);
    require(again.viewed.database != nullptr, "what was written can be read");
    compare(read, again);
    if (!isUndone)
        return 0;
    const int index = stack->index();
    stack->setIndex(0);
    require(read.written() == drawing, "undone to the start, a drawing is as it was");
    stack->setIndex(index);
    require(read.written() == changed, "what was undone can be done again");
    return 0;
}
