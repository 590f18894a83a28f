// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "FuzzSupport.h"

#include "../Changes.h"
#include "host/drawing/Database.h"
#include "host/drawing/DxfReader.h"
#include "host/drawing/DxfWriter.h"
#include "viewer/canvas/Drawing.h"
#include "viewer/canvas/EntityFollower.h"
#include "viewer/canvas/GeometryReader.h"

#include <QSet>
#include <QUndoStack>

#include <set>

using namespace Embedded;

namespace {

QString text(const std::wstring &text)
{
    return QString::fromStdWString(text);
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
        if (read)
            viewed.database = KcDbObjectAccess::makeDatabase(std::move(*read));
        if (read && isViewed) {
            viewed.layers = Tessa::DrawingLayers(database());
            viewed.geometry = Tessa::readGeometry(viewed, viewed.warnings);
        }
    }

    KcDbDatabase &database() const { return *viewed.database; }
    Drawing &data() const { return KcDbObjectAccess::drawing(database()); }
    QByteArray written() const { return DxfWriter(data()).write(); }
    QString layerOf(int record) const
    {
        return symbolKey(text(data().layers[data().layersOf(record).front()].name));
    }

    /// Whether words follow each other in a record, whatever the blanks.
    bool says(int record, const char *words) const
    {
        const std::string_view bytes = data().view(data().record(record));
        return QByteArray(bytes.data(), int(bytes.size())).simplified().contains(words);
    }

    /// How the viewer shows the entities, with what has changed since, by the records' numbers.
    QHash<int, Tessa::EntityStyle> styles()
    {
        QHash<int, Tessa::EntityStyle> styles;
        Tessa::EntityFollower follower(viewed);
        for (const Tessa::Block &block : viewed.geometry.blocks) {
            for (const Tessa::Entity &entity : block.entities) {
                follower.follow(entity.record);
                styles.insert(entity.record, entity.style);
            }
        }
        styles.remove(-1);
        return styles;
    }

    Tessa::Drawing viewed;
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

/// Properties in the words of the steps that make them so.
QStringList wordsOf(int color, int trueColor, int weight, const QString &type)
{
    return {QString(trueColor < 0 ? "color %1" : "nearest %1").arg(color),
            QString("true %1").arg(trueColor, 0, 16), QString("weight %1").arg(weight),
            "type " + symbolKey(type)};
}

/// A layer, likewise; of a file before R2004 what it can hold.
QStringList wordsOf(const Drawing &drawing, LayerState state, bool isOld = false)
{
    if (isOld) {
        state.isPlottable = true;
        state.trueColor = -1;
        state.lineWeight = kDefaultLineWeight;
    }
    return wordsOf(state.color, state.trueColor, state.lineWeight,
                   text(drawing.linetypes[state.linetype]))
           + QStringList{state.isOff ? "off" : "unoff", state.isFrozen ? "freeze" : "unfreeze",
                         state.isLocked ? "lock" : "unlock", state.isPlottable ? "plot" : "unplot",
                         "description " + text(state.description)};
}

/// What an entity was given, likewise.
QStringList wordsOf(const KcHost::EntityChange &change)
{
    return wordsOf(change.color.value_or(-1), int(change.trueColor.value_or(-1)),
                   change.lineWeight.value_or(-9), change.linetype.value_or(""))
           << "layer " + change.layer.value_or("");
}

/// All layers, sorted, and the current one.
QStringList layersOf(const Drawing &drawing, bool isOld)
{
    QStringList layers;
    for (const Layer &layer : drawing.layers) {
        if (!layer.isErased)
            layers += symbolKey(text(layer.name)) + QString("|%1|").arg(layer.records)
                      + wordsOf(drawing, layer.state, isOld).join('|');
    }
    layers.sort();
    return layers << symbolKey(text(drawing.layers[drawing.currentLayer].name));
}

/// The groups of the file that no change may reach, from beginning to end.
/// @param now      the drawing whose changes these are
/// @param entities the numbers of those that were changed
QByteArray unreached(const Drawing &drawing, const Drawing &now, const QSet<int> &entities)
{
    const bool isAnyErased = now.layersByName.size() < int(now.layers.size());
    const bool isAnyRenamed = isAnyErased || !now.renamedLayers.isEmpty();
    static const std::set<std::string_view> tables{"TABLE", "ENDTAB", "LAYER", "APPID"};
    static const std::set<std::string_view> sections{"SECTION", "ENDSEC"};
    static const std::set<std::string_view> variables{"$CLAYER", "$HANDSEED"};
    static const std::set<int> names{8, 1003, 331, 341};
    static const std::set<int> properties{8, 6, 62, 66, 370, 420, 430};
    QByteArray kept;
    std::string_view place; // a record, or a variable
    int record = -1;
    DxfTokens tokens(drawing.bytes, {drawing.firstGroup, int(drawing.bytes.size())});
    while (tokens.next() == DxfTokens::Step::Group) {
        const auto [code, bytes, value] = tokens.group();
        const std::string_view name = trimmed(tokens.view(value));
        record += code == 0 ? 1 : 0;
        if (code == 0 || (code == 9 && !tables.count(place)))
            place = name;
        const auto holds = [at = bytes.begin](ByteRange part) {
            return part.begin <= at && at < part.end;
        };
        const bool isReached =
                drawing.record(record).isNull()
                        ? tables.count(place) || sections.count(place) || variables.count(place)
                                  || (isAnyErased
                                      && std::any_of(drawing.objects.begin(), drawing.objects.end(),
                                                     holds))
                        : drawing.entity(record).isErased || (isAnyRenamed && names.count(code))
                                  || (entities.contains(record) && properties.count(code));
        if (code != kComment && !isReached)
            kept.append(drawing.bytes.constData() + bytes.begin, bytes.end - bytes.begin);
    }
    return kept.trimmed(); // a last line without an end is given one
}

/// What the drawing has now is in its file, and nothing else has changed there.
void compare(Reading &was, Reading &is)
{
    const Drawing &now = was.data(), &file = is.data();
    const bool isOld = file.version < kR2004;
    require(layersOf(now, isOld) == layersOf(file, isOld), "the layers are in the file");
    for (const Layer &layer : file.layers) { // without a record it may be spelled in several ways
        const Layer &wanted = now.layers[now.findLayer(text(layer.name))];
        require(layer.record.isNull() || layer.name == wanted.name, "a layer has its name");
    }
    const std::vector<int> records = recordsOf(now), others = recordsOf(file);
    require(records.size() == others.size(), "the file has as many entities");
    const QHash<int, Tessa::EntityStyle> styles = was.styles(), otherStyles = is.styles();
    QSet<int> changed, otherChanged;
    for (std::size_t i = 0; i < records.size(); ++i) {
        require(was.layerOf(records[i]) == is.layerOf(others[i]), "an entity has its layer");
        Tessa::EntityStyle style = otherStyles.value(others[i]);
        style.layer = styles.value(records[i]).layer;
        // dxflib takes what stands in groups of other applications, too, and nothing behind a variable.
        // What is no longer shown may be a polyline whose vertices were erased.
        require(isOld || !styles.contains(records[i]) || !otherStyles.contains(others[i])
                        || style == styles.value(records[i]) || is.says(others[i], " 102 {")
                        || is.says(others[i], " 9 "),
                "an entity has its properties in the file");
        if (!(now.entity(records[i]) == EntityProperties())) {
            changed += records[i];
            otherChanged += others[i];
        }
    }
    require(unreached(now, now, changed) == unreached(file, now, otherChanged),
            "what nobody changed is as it was");
}

/// Steps in the words of change(); what begins with $ is chosen.
constexpr char kSteps[] =
        "off $layer|unoff $layer|freeze $layer|unfreeze $layer|lock $layer|unlock $layer|"
        "plot $layer|unplot $layer|add $layer|erase $layer|clear $layer|current $layer|"
        "rename $layer $layer|merge $layer $layer|layer $layer color $color|"
        "layer $layer true $true|layer $layer weight $weight|layer $layer type $type|"
        "layer $layer description $name|set $entity color $color|set $entity true $true|"
        "set $entity weight $weight|set $entity type $type|set $entity layer $layer";

QString chosen(const QString &what, const KcDbDatabase &database, Choices &choices)
{
    static const QString names = u8"0|walls|T\u00fcr|\u65e5\u672c|A B \\|\\U+00E9|\U0001f3e0";
    static const QHash<QString, QString> words{{"$color", "0|1|7|8|100|255|256|257"},
                                               {"$true", "0|1|ff0000|123456|ffffff"},
                                               {"$weight", "-3|-2|-1|0|25|211"},
                                               {"$type", "ByBlock|BYLAYER"},
                                               {"$entity", "-1"}};
    const Drawing &data = KcDbObjectAccess::drawing(database);
    QStringList all = words.value(what, names).split('|');
    if (what == "$type")
        all += KcHost::linetypes(database);
    for (const int record : what == "$entity" ? recordsOf(data) : std::vector<int>())
        all += QString::number(record);
    for (std::size_t layer = 0; what == "$layer" && layer < data.layers.size(); ++layer)
        all.prepend(text(data.layers[layer].name));
    return choices.of(all);
}

/// Whether the drawing has what the step has asked for.
bool isDone(const KcDbDatabase &database, const QStringList &step)
{
    const Drawing &data = KcDbObjectAccess::drawing(database);
    const QString &word = step[0];
    const QString asked = step.size() < 3 ? word : QStringList(step.mid(2)).join(' ');
    if (word == "set")
        return wordsOf(KcHost::changesOf(database, step[1].toInt()))
                .contains(asked, Qt::CaseInsensitive);
    const int layer = data.findLayer(word == "rename" ? asked : step[1]);
    const bool isThere = layer >= 0, isToGo = QStringList{"erase", "clear", "merge"}.contains(word);
    if (!isThere || isToGo)
        return isThere != isToGo;
    return word == "add" || word == "rename" || (word == "current" && data.currentLayer == layer)
           || wordsOf(data, data.layers[layer].state).contains(asked, Qt::CaseInsensitive);
}

/// Takes some steps, which become one, and sees that each is done at once, or refused.
void takeSteps(KcDbDatabase &database, Choices &choices)
{
    static const QStringList all = QString(kSteps).split('|');
    const KeptValues &kept = KcDbObjectAccess::drawing(database).kept;
    const KcHost::UndoGroup group(database, {}, choices.below(4) - 1);
    for (int steps = choices.below(3); steps >= 0; --steps) {
        QStringList step = choices.of(all).split(' ');
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

/// Undo and the viewer take part in some of the executions only, since they take their time. dxflib ends
/// a text at a NUL, so it is asked of no drawing with one.
void tryInput(Choices &choices, const QByteArray &drawing)
{
    const bool isViewed = choices.below(8) == 1 && !drawing.contains('\0');
    const bool isUndone = choices.below(4) == 1;
    Reading read(drawing, isViewed);
    if (!read.viewed.database)
        return;
    require(read.written() == drawing, "what was not changed stays as it is");
    const QHash<int, Tessa::EntityStyle> styles = read.styles();
    for (auto entity = styles.begin(); entity != styles.end(); ++entity) {
        require(!read.data().entityRecord(entity.key()).isNull(), "the host knows what is shown");
        // dxflib ends a record at a variable.
        require(symbolKey(read.viewed.layers.nameOf(entity->layer)) == read.layerOf(entity.key())
                        || read.says(entity.key(), " 9 "),
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
    Reading again(changed, isViewed);
    require(again.viewed.database != nullptr, "what was written can be read");
    compare(read, again);
    if (!isUndone)
        return;
    const int index = stack->index();
    stack->setIndex(0);
    require(read.written() == drawing, "undone to the start, a drawing is as it was");
    stack->setIndex(index);
    require(read.written() == changed, "what was undone can be done again");
}
