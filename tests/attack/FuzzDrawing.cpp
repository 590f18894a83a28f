// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DxfGrammar.h"

#include "host/drawing/Database.h"
#include "host/drawing/DxfReader.h"
#include "host/drawing/DxfWriter.h"
#include "viewer/canvas/Drawing.h"
#include "viewer/canvas/GeometryReader.h"

#include <KcHost/KcHost.h>

#include <QSet>
#include <QUndoStack>

using namespace Embedded;
using Attack::require;

namespace {

/// A drawing as host and viewer read it.
struct Reading
{
    explicit Reading(const QByteArray &bytes)
    {
        DxfReader reader(QStringLiteral("drawing"), bytes);
        std::optional<Drawing> read = reader.read();
        const QString error = reader.error();
        require(read ? error.isNull() : error.startsWith("drawing, line ") && error.endsWith('.'),
                "what is refused has place and reason");
        if (!read)
            return;
        viewed.database = KcDbObjectAccess::makeDatabase(std::move(*read));
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
    static QString text(const std::wstring &text) { return QString::fromStdWString(text); }
    QString layerOf(int record) const
    {
        return symbolKey(text(data().layers[data().layersOf(record).front()].name));
    }

    QByteArray written() const { return DxfWriter(data()).write(); }

    /// The groups of a part of the file that are to be kept.
    template <class Keep>
    QByteArray groups(ByteRange part, Keep keep) const
    {
        QByteArray kept;
        DxfTokens tokens(data().bytes, part);
        while (tokens.next() == DxfTokens::Step::Group) {
            const std::string_view value = trimmed(tokens.view(tokens.group().value));
            if (tokens.group().code != kComment
                && keep(tokens.group().code, QByteArray(value.data(), int(value.size()))))
                kept += QByteArray::fromStdString(std::string(tokens.view(tokens.group().bytes)));
        }
        return kept;
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

/// All but layers, applications, entities, two variables, and what goes with layers that are erased.
QByteArray untouched(const Reading &reading, bool hasErased)
{
    QByteArray type, section, table, variable;
    const Drawing &data = reading.data();
    return reading.groups(
            {data.firstGroup, int(data.bytes.size())}, [&](int code, QByteArray value) {
                if (code == 0) {
                    const bool isEdge = value == "SECTION" || value == "ENDSEC";
                    section = isEdge ? QByteArray() : section;
                    table = isEdge || value == "TABLE" ? QByteArray() : table;
                    variable.clear();
                    type = value;
                } else if (code == 2 && type == "SECTION" && section.isEmpty()) {
                    section = value;
                    return false;
                } else if (code == 2 && type == "TABLE") {
                    table = value;
                } else if (code == 9) {
                    variable = value;
                }
                return !section.isEmpty() && section != "ENTITIES" && section != "BLOCKS"
                       && !(hasErased && section == "OBJECTS") && type != "TABLE"
                       && type != "ENDTAB" && table != "LAYER" && table != "APPID"
                       && variable != "$CLAYER" && variable != "$HANDSEED";
            });
}

void compareEntity(const Reading &was, int before, const Reading &is, int after, QSet<int> touched)
{
    const KcHost::EntityChange change = KcHost::changesOf(was.database(), before);
    if (!(was.data().entity(before) == EntityProperties()))
        touched += QSet<int>{8, 6, 62, 66, 370, 420, 430};
    const auto keep = [&touched](int code, const QByteArray &) { return !touched.contains(code); };
    require(was.groups(was.data().record(before), keep) == is.groups(is.data().record(after), keep),
            "the other groups of an entity are as they were");
    require(was.layerOf(before) == is.layerOf(after), "an entity has its layer in the file");
    // dxflib takes what stands in groups of other applications, too.
    const auto isOthers = [](int code, const QByteArray &) { return code == 102; };
    const auto style = is.styles.find(after);
    if (style == is.styles.end() || is.data().version < kR2004
        || !is.groups(is.data().record(after), isOthers).isEmpty())
        return;
    const int trueColor = change.trueColor ? int(*change.trueColor & 0xFFFFFF) : -1;
    require(!(change.color || change.trueColor)
                    || style->color == Tessa::entityColor(change.color.value_or(0), trueColor),
            "an entity has its colour in the file");
    require(style->lineWeight == change.lineWeight.value_or(style->lineWeight),
            "an entity has its lineweight in the file");
    require(!change.linetype
                    || style->linetype == is.viewed.geometry.entityLinetypeOf(*change.linetype),
            "an entity has its linetype in the file");
}

/// What the drawing has now is in its file, and nothing else has changed there.
void compare(const Reading &was, const Reading &is)
{
    QSet<int> touched{kComment};
    int count = 0;
    for (const Layer &layer : was.data().layers) {
        if (layer.isRenamed || layer.isErased)
            touched += QSet<int>{8, 1003, 331, 341};
        if (layer.isErased)
            continue;
        ++count;
        const int index = is.data().findLayer(Reading::text(layer.name));
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
    require(count == is.data().layersByName.size(), "no other layers are in the file");
    require(was.data().layers[was.data().currentLayer].name
                    == is.data().layers[is.data().currentLayer].name,
            "the current layer is in the file");
    require(untouched(was, touched.size() > 1) == untouched(is, touched.size() > 1),
            "what nobody changed is as it was");
    const std::vector<int> records = recordsOf(was.data());
    const std::vector<int> others = recordsOf(is.data());
    require(records.size() == others.size(), "the file has as many entities");
    for (std::size_t i = 0; i < records.size(); ++i)
        compareEntity(was, records[i], is, others[i], touched);
}

QString anyLayer(const Drawing &data, Attack::Choices &choices)
{
    const int index = choices.below(int(data.layers.size()) + 3);
    return index < int(data.layers.size())
                   ? Reading::text(data.layers[index].name)
                   : QString::fromUtf8(choices.of(Attack::kNames)).trimmed();
}

template <class Change>
Change anyChange(const KcDbDatabase &database, Attack::Choices &choices)
{
    Change change;
    const int which = choices.below(16);
    if (which & 1)
        change.color = choices.below(2) ? choices.below(256) : 256;
    else if (which & 2)
        change.trueColor = quint32(choices.below(256)) * 0x10203;
    if (which & 4)
        change.lineWeight = choices.of({-3, -2, -1, 0, 25, 211});
    if (which & 8)
        change.linetype =
                choices.of(KcHost::linetypes(database) + QStringList{"ByBlock", "BYLAYER"});
    return change;
}

void setFlag(KcDbDatabase &database, Attack::Choices &choices)
{
    const int index = choices.below(int(KcDbObjectAccess::drawing(database).layers.size()));
    KcDbLayerTableRecord *layer = nullptr;
    if (KcDbObjectAccess::open(layer, &KcDbObjectAccess::layerRecord(database, index),
                               KcDb::kForWrite)
        != Kcore::eOk)
        return;
    const bool value = choices.below(2);
    const auto setter =
            choices.of({&KcDbLayerTableRecord::setIsOff, &KcDbLayerTableRecord::setIsFrozen,
                        &KcDbLayerTableRecord::setIsLocked, &KcDbLayerTableRecord::setIsPlottable});
    (layer->*setter)(value);
    layer->close();
}

void change(KcDbDatabase &database, Attack::Choices &choices)
{
    Drawing &data = KcDbObjectAccess::drawing(database);
    const KcHost::UndoGroup group(database, {}, choices.below(4) - 1);
    for (int steps = choices.below(3); steps >= 0; --steps) {
        const QString layer = anyLayer(data, choices);
        switch (choices.below(10)) {
        case 0:
            KcHost::addLayer(database, layer);
            break;
        case 1:
            KcHost::eraseLayer(database, layer);
            break;
        case 2:
            KcHost::renameLayer(database, layer, anyLayer(data, choices));
            break;
        case 3:
            KcHost::mergeLayer(database, layer, anyLayer(data, choices));
            break;
        case 4:
            KcHost::eraseLayerWithEntities(database, layer);
            break;
        case 5:
            KcHost::setCurrentLayer(database, layer);
            break;
        case 6: {
            auto change = anyChange<KcHost::LayerChange>(database, choices);
            if (choices.below(3) == 0)
                change.description = QString::fromUtf8(choices.of(Attack::kTexts));
            KcHost::changeLayer(database, layer, change);
            break;
        }
        case 7:
            setFlag(database, choices);
            break;
        default: {
            auto change = anyChange<KcHost::EntityChange>(database, choices);
            if (choices.below(3) == 0)
                change.layer = layer;
            const std::vector<int> records = recordsOf(data);
            if (!records.empty())
                KcHost::changeEntity(database, choices.of(records), change);
        }
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    const Attack::Input input = Attack::Input::from(bytes, size);
    const Attack::Effort effort(size);
    const Reading read(input.drawing);
    if (!read.viewed.database)
        return 0;
    require(read.written() == input.drawing, "what was not changed stays as it is");
    for (auto entity = read.styles.begin(); entity != read.styles.end(); ++entity) {
        require(!read.data().entityRecord(entity.key()).isNull(), "the host knows what is shown");
        // dxflib ends a record at a variable, of which there is none in an entity, and a name at a NUL.
        const auto isVariable = [](int code, const QByteArray &) { return code == 9; };
        require(symbolKey(read.viewed.layers.nameOf(entity->layer)) == read.layerOf(entity.key())
                        || !read.groups(read.data().record(entity.key()), isVariable).isEmpty()
                        || input.drawing.contains('\0'),
                "two readers agree on an entity's layer");
    }
    Attack::Choices choices(0, input.script);
    QUndoStack *stack = KcHost::undoStack(read.database());
    while (!choices.isAtEnd()) {
        if (choices.below(6) == 0)
            stack->setIndex(choices.below(stack->count() + 1));
        else
            change(read.database(), choices);
    }
    const QByteArray changed = read.written();
    const int index = stack->index();
    const Reading again(changed);
    require(again.viewed.database != nullptr, "what was written can be read");
    compare(read, again);
    stack->setIndex(0);
    require(read.written() == input.drawing, "undone to the start, a drawing is as it was");
    stack->setIndex(index);
    require(read.written() == changed, "what was undone can be done again");
    return 0;
}
