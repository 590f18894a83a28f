#include "DxfWriter.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <utility>

namespace Embedded {

namespace {

/// The groups of a layer that may have to be changed or added, and those before them, in the order
/// in which they stand in a record.
constexpr std::array<int, 8> kLayerGroups = {2, 70, 62, 420, 430, 440, 6, 290};
using LayerGroups = std::array<DxfGroup, kLayerGroups.size()>;

std::size_t placeOf(int code)
{
    return static_cast<std::size_t>(std::find(kLayerGroups.begin(), kLayerGroups.end(), code)
                                    - kLayerGroups.begin());
}

LayerGroups findLayerGroups(const Drawing &drawing, ByteRange record)
{
    LayerGroups groups;
    DxfTokens tokens(drawing.bytes, record);
    DxfRecordPlace place;
    while (tokens.next() == DxfTokens::Step::Group) {
        const DxfGroup &group = tokens.group();
        place.advance(group, trimmed(tokens.view(group.value)));
        if (!place.isInExtension() && placeOf(group.code) < groups.size())
            groups[placeOf(group.code)] = group;
    }
    return groups;
}

int stateFlags(const LayerState &state)
{
    return (state.isFrozen ? kFrozenFlag : 0) | (state.isLocked ? kLockedFlag : 0);
}

/// What else the flags say.
int otherFlags(std::string_view text)
{
    const int flags = toInt(text).value_or(0);
    return flags < 0 || flags > kHighestFlags ? 0 : flags & ~(kFrozenFlag | kLockedFlag);
}

/// The number with another sign; one that can have none, or is no number, gives way to white.
QByteArray colorText(std::string_view old, bool isOff)
{
    std::string_view digits = trimmed(old);
    if (!digits.empty() && (digits[0] == '-' || digits[0] == '+'))
        digits.remove_prefix(1);
    const QByteArray number = toInt(digits).value_or(0) == 0
                                      ? QByteArray::number(kWhite)
                                      : QByteArray(digits.data(), static_cast<int>(digits.size()));
    return isOff ? '-' + number : number;
}

QByteArray handleText(quint64 handle)
{
    return QByteArray::number(handle, 16).toUpper();
}

/// Nothing for the number that goes without saying.
QByteArray numberText(int number, int unsaid)
{
    return number == unsaid ? QByteArray() : QByteArray::number(number);
}

} // namespace

/// The groups of an entity that tell how it is drawn.
struct DxfWriter::EntityGroups
{
    int begin = 0;   ///< of the entity, whose style new ones take
    DxfGroup anchor; ///< behind which new ones go: as a rule that of the layer
    std::vector<DxfGroup> own;

    const DxfGroup *last(int code) const
    {
        const auto found = std::find_if(own.rbegin(), own.rend(),
                                        [&](const DxfGroup &group) { return group.code == code; });
        return found == own.rend() ? nullptr : &*found;
    }
};

DxfWriter::DxfWriter(Drawing &drawing)
    : m_drawing(drawing)
{
}

QByteArray DxfWriter::write()
{
    findNewLayers();
    editHeader();
    editLayers();
    removeMentions();
    renameDuplicates();
    if (!m_newLayers.empty())
        addRecords();
    std::stable_sort(m_edits.begin(), m_edits.end());
    mergeEdits(&DxfWriter::editEntities);
    mergeEdits(&DxfWriter::renameInEntities);
    noteLosses();
    return apply();
}

/// A handle once given stays, so that a drawing that is written again comes out the same.
void DxfWriter::findNewLayers()
{
    for (int index = 0; index < static_cast<int>(m_drawing.layers.size()); ++index) {
        if (!needsRecord(index))
            continue;
        m_newLayers.push_back(index);
        Layer &layer = m_drawing.layers[index];
        if (hasHandles() && layer.handle == 0)
            layer.handle = m_drawing.nextHandle++;
    }
    if (hasHandles() && !m_newLayers.empty() && m_drawing.layerTableHandle == 0)
        m_drawing.layerTableHandle = m_drawing.nextHandle++;
}

/// Layers that only entities name are written when somebody does something to them. To rename one
/// counts, so that those who look for it in the table alone find it.
bool DxfWriter::needsRecord(int index) const
{
    const Layer &layer = m_drawing.layers[index];
    const bool hasBecomeCurrent =
            index == m_drawing.currentLayer && index != m_drawing.storedCurrentLayer;
    return layer.record.isNull() && !layer.isErased
           && (layer.isAdded || layer.isRenamed || hasBecomeCurrent || layer.state != layer.stored);
}

void DxfWriter::editHeader()
{
    const bool hasHeader = m_drawing.headerEnd >= 0;
    const Style style = styleAt(hasHeader ? m_drawing.headerEnd : m_drawing.firstGroup);
    QByteArray added;
    const Layer &current = m_drawing.layers[m_drawing.currentLayer];
    if (m_drawing.currentLayer != m_drawing.storedCurrentLayer || current.isRenamed) {
        const QByteArray name = nameBytes(current);
        if (m_drawing.currentLayerValue.isNull())
            added += style.group(9, "$CLAYER") + style.group(8, name);
        else
            m_edits.push_back({m_drawing.currentLayerValue, name});
    }
    if (hasHandles() && !m_newLayers.empty()) {
        const QByteArray seed = handleText(m_drawing.nextHandle);
        if (m_drawing.nextHandleValue.isNull())
            added += style.group(9, "$HANDSEED") + style.group(5, seed);
        else if (toHandle(view(m_drawing.nextHandleValue)) < m_drawing.nextHandle)
            replaceNumber(m_drawing.nextHandleValue, seed);
    }
    if (hasHeader)
        insert(m_drawing.headerEnd, added);
    else if (!added.isEmpty())
        insert(m_drawing.firstGroup, style.group(0, "SECTION") + style.group(2, "HEADER") + added
                                             + style.group(0, "ENDSEC"));
}

void DxfWriter::editLayers()
{
    for (const Layer &layer : m_drawing.layers) {
        if (layer.record.isNull())
            continue;
        if (layer.isErased) {
            m_edits.push_back({layer.record, {}});
            ++m_removedRecords;
            continue;
        }
        if (layer.isRenamed)
            m_edits.push_back({layer.nameBytes, nameBytes(layer)});
        if (layer.state != layer.stored)
            editRecord(layer);
    }
}

void DxfWriter::editRecord(const Layer &layer)
{
    const LayerGroups groups = findLayerGroups(m_drawing, layer.record);
    const auto valueOf = [&](int code) {
        const DxfGroup &group = groups[placeOf(code)];
        return group.value.isNull() ? std::string_view() : view(group.value);
    };
    const auto set = [&](int code, const QByteArray &number) {
        if (const DxfGroup &group = groups[placeOf(code)]; !group.value.isNull()) {
            replaceNumber(group.value, number);
            return;
        }
        const DxfGroup &last = *std::max_element(
                groups.begin(), groups.begin() + static_cast<std::ptrdiff_t>(placeOf(code)),
                [](const auto &left, const auto &right) {
                    return left.bytes.end < right.bytes.end;
                });
        insert(last.bytes.end, styleAt(last.bytes.begin).group(code, number));
    };
    if (stateFlags(layer.state) != stateFlags(layer.stored)) {
        const int others = otherFlags(valueOf(70));
        set(70, QByteArray::number(others | stateFlags(layer.state)));
    }
    if (layer.state.isOff != layer.stored.isOff)
        set(62, colorText(valueOf(62), layer.state.isOff));
    if (layer.state.isPlottable != layer.stored.isPlottable && m_drawing.version >= kR2000)
        set(290, layer.state.isPlottable ? "1" : "0");
}

/// A viewport lets go of the layers that are gone, and no second record brings them back.
void DxfWriter::removeMentions()
{
    const auto remove = [this](const LayerMention &mention) {
        const bool isErased = mention.layer >= 0 && m_drawing.layers[mention.layer].isErased;
        if (isErased)
            m_edits.push_back({mention.bytes, {}});
        return isErased;
    };
    for (const LayerMention &duplicate : m_drawing.duplicates)
        m_removedRecords += remove(duplicate) ? 1 : 0;
    for (const Viewport &viewport : m_drawing.viewports)
        std::for_each(viewport.frozenLayers.begin(), viewport.frozenLayers.end(), remove);
}

/// Else a layer of the old name would come back with the second record.
void DxfWriter::renameDuplicates()
{
    for (const LayerMention &duplicate : m_drawing.duplicates) {
        const Layer &layer = m_drawing.layers[duplicate.layer];
        if (!layer.isRenamed || layer.isErased)
            continue;
        const DxfGroup name = findLayerGroups(m_drawing, duplicate.bytes)[placeOf(2)];
        m_edits.push_back({name.value, nameBytes(layer)});
    }
}

void DxfWriter::addRecords()
{
    if (m_drawing.layerTableEnd >= 0) {
        insert(m_drawing.layerTableEnd, newRecords(styleAt(m_drawing.layerTableEnd)));
        const int count =
                m_drawing.layerRecords - m_removedRecords + static_cast<int>(m_newLayers.size());
        if (!m_drawing.layerCountValue.isNull()
            && toInt(view(m_drawing.layerCountValue)).value_or(0) < count)
            replaceNumber(m_drawing.layerCountValue, QByteArray::number(count));
    } else if (m_drawing.tablesEnd >= 0) {
        insert(m_drawing.tablesEnd, newTable(styleAt(m_drawing.tablesEnd)));
    } else {
        const Style style = styleAt(m_drawing.bodyBegin);
        insert(m_drawing.bodyBegin, style.group(0, "SECTION") + style.group(2, "TABLES")
                                            + newTable(style) + style.group(0, "ENDSEC"));
    }
}

QByteArray DxfWriter::newTable(const Style &style) const
{
    QByteArray table = style.group(0, "TABLE") + style.group(2, "LAYER");
    if (hasHandles())
        table += style.group(5, handleText(m_drawing.layerTableHandle));
    if (m_drawing.version >= kR2000)
        table += style.group(330, "0");
    if (hasHandles())
        table += style.group(100, "AcDbSymbolTable");
    const int count = static_cast<int>(m_newLayers.size());
    return table + style.group(70, QByteArray::number(count)) + newRecords(style)
           + style.group(0, "ENDTAB");
}

QByteArray DxfWriter::newRecords(const Style &style) const
{
    QByteArray records;
    const QByteArray references = plotReferences(style);
    for (const int index : m_newLayers) {
        records += newRecord(m_drawing.layers[index], style);
        records += references;
    }
    return records;
}

QByteArray DxfWriter::newRecord(const Layer &layer, const Style &style) const
{
    QByteArray record = style.group(0, "LAYER");
    if (hasHandles())
        record += style.group(5, handleText(layer.handle));
    if (m_drawing.version >= kR2000)
        record += style.group(330, handleText(m_drawing.layerTableHandle));
    if (hasHandles()) {
        record += style.group(100, "AcDbSymbolTableRecord")
                  + style.group(100, "AcDbLayerTableRecord");
    }
    const QString linetype = QString::fromStdWString(m_drawing.linetypes[layer.linetype]);
    record += style.group(2, nameBytes(layer))
              + style.group(70, QByteArray::number(stateFlags(layer.state)))
              + style.group(62, QByteArray::number(layer.state.isOff ? -layer.color : layer.color))
              + style.group(6, m_drawing.text.encode(linetype));
    if (m_drawing.version >= kR2000) {
        if (!layer.state.isPlottable)
            record += style.group(290, "0");
        record += style.group(370, QByteArray::number(layer.lineWeight));
    }
    return record;
}

/// The plot style and the material of layer "0", which new layers share.
QByteArray DxfWriter::plotReferences(const Style &style) const
{
    const int zero = m_drawing.findLayer(QStringLiteral("0"));
    const ByteRange record = m_drawing.layers[zero].record;
    QByteArray references;
    if (record.isNull() || m_drawing.version < kR2000)
        return references;
    DxfTokens tokens(m_drawing.bytes, record);
    DxfRecordPlace place;
    while (tokens.next() == DxfTokens::Step::Group) {
        const DxfGroup &group = tokens.group();
        place.advance(group, trimmed(tokens.view(group.value)));
        if (!place.isInExtension() && (group.code == 390 || group.code == 347 || group.code == 348))
            references += style.group(group.code, bytes(group.value).trimmed());
    }
    return references;
}

void DxfWriter::noteLosses()
{
    noteEntityLoss(m_lostTrueColors, QStringLiteral("true colour"));
    noteEntityLoss(m_lostLineWeights, QStringLiteral("lineweight"));
    if (m_drawing.version >= kR2000)
        return;
    for (const Layer &layer : m_drawing.layers) {
        if (!layer.isErased && layer.state.isPlottable != layer.stored.isPlottable) {
            m_losses += QStringLiteral("the file's version cannot hold the plot flag of the "
                                       "layer \"%1\"")
                                .arg(QString::fromStdWString(layer.name));
        }
    }
}

void DxfWriter::noteEntityLoss(int count, const QString &property)
{
    if (count == 0)
        return;
    const QString owners =
            count == 1 ? QStringLiteral("one entity") : QStringLiteral("%1 entities").arg(count);
    m_losses += QStringLiteral("the file's version cannot hold the %1 of %2").arg(property, owners);
}

/// Text at the end of a file whose last line is open begins a line of its own.
void DxfWriter::insert(int at, const QByteArray &text)
{
    const bool isLineOpen = at == m_drawing.bytes.size() && !m_drawing.bytes.endsWith('\n');
    m_edits.push_back({{at, at}, isLineOpen ? styleAt(at).lineEnd + text : text});
}

/// A number that stands to the right keeps its last digit's place.
void DxfWriter::replaceNumber(ByteRange value, const QByteArray &number)
{
    const QByteArray old = bytes(value);
    const int digits = old.trimmed().size();
    const int leading = digits == 0 ? 0 : old.indexOf(old.trimmed());
    const QByteArray text = leading == 0 ? number : number.rightJustified(leading + digits);
    m_edits.push_back({value, text + old.mid(leading + digits)});
}

bool DxfWriter::Edit::operator<(const Edit &other) const
{
    return std::make_pair(bytes.begin, bytes.end)
           < std::make_pair(other.bytes.begin, other.bytes.end);
}

/// The new names of layers, by the key of the one that the file has.
QHash<QString, QByteArray> DxfWriter::newNames() const
{
    QHash<QString, QByteArray> names;
    const QHash<QString, int> &layers = m_drawing.renamedLayers;
    for (auto entry = layers.begin(); entry != layers.end(); ++entry)
        names.insert(entry.key(), nameBytes(m_drawing.layers[entry.value()]));
    return names;
}

/// Lets @p add put edits in the file's order behind those that are there; to merge them in is then
/// enough, and keeps this linear.
void DxfWriter::mergeEdits(void (DxfWriter::*add)())
{
    const auto others = static_cast<std::ptrdiff_t>(m_edits.size());
    (this->*add)();
    std::inplace_merge(m_edits.begin(), m_edits.begin() + others, m_edits.end());
}

void DxfWriter::editEntities()
{
    for (const auto &[number, properties] : m_drawing.changedEntities) {
        const auto others = static_cast<std::ptrdiff_t>(m_edits.size());
        editEntity(m_drawing.entityRecord(number), properties);
        std::stable_sort(m_edits.begin() + others, m_edits.end());
    }
}

void DxfWriter::editEntity(ByteRange record, const EntityProperties &wanted)
{
    const EntityGroups groups = findEntityGroups(record);
    QByteArray added;
    if (wanted.linetype)
        added += setLinetype(groups, *wanted.linetype);
    if (wanted.color)
        added += setColor(groups, *wanted.color);
    if (wanted.lineWeight)
        added += setLineWeight(groups, *wanted.lineWeight);
    if (!added.isEmpty())
        insert(groups.anchor.bytes.end, added);
}

/// Looks at what the entity's class adds only where nothing marks off what all entities have.
DxfWriter::EntityGroups DxfWriter::findEntityGroups(ByteRange record) const
{
    constexpr std::array<int, 5> codes = {6, 62, 370, 420, 430};
    EntityGroups groups;
    groups.begin = record.begin;
    DxfTokens tokens(m_drawing.bytes, record);
    DxfEntityPlace place;
    bool isMarked = false;
    while (tokens.next() == DxfTokens::Step::Group) {
        const DxfGroup &group = tokens.group();
        const bool isLayer = place.advance(tokens) == DxfEntityPlace::Names::OwnLayer;
        if (place.record.isInExtendedData || group.code == 101)
            break;
        const bool isMark = group.code == 100 && trimmed(view(group.value)) == "AcDbEntity";
        if (place.record.isInAppGroup)
            continue;
        if (group.code == 100 && !isMark && (isMarked || place.hasLayer))
            break;
        isMarked |= isMark;
        if (isLayer || isMark || group.code == 0 || (group.code == 5 && !place.hasLayer))
            groups.anchor = group;
        else if (std::find(codes.begin(), codes.end(), group.code) != codes.end())
            groups.own.push_back(group);
    }
    return groups;
}

/// @return what is to be added
QByteArray DxfWriter::setLinetype(const EntityGroups &groups, int linetype)
{
    const DxfGroup *group = groups.last(6);
    const int stored =
            group ? m_drawing.findLinetype(m_drawing.text.decode(trimmed(view(group->value))))
                  : kLinetypeByLayer;
    return stored == linetype ? QByteArray() : setGroup(groups, 6, linetypeText(linetype));
}

QByteArray DxfWriter::setColor(const EntityGroups &groups, const EntityColor &color)
{
    const std::optional<int> index = storedNumber(groups, 62, kColorByLayer);
    const bool isSame = color.trueColor >= 0 ? storedNumber(groups, 420, -1) == color.trueColor
                                             : !groups.last(420) && index == color.index;
    if (isSame)
        return {};
    const bool isLost = color.trueColor >= 0 && m_drawing.version < kR2004;
    m_lostTrueColors += isLost ? 1 : 0;
    QByteArray added;
    if (index != color.index)
        added += setGroup(groups, 62, numberText(color.index, kColorByLayer));
    added += setGroup(groups, 420, numberText(isLost ? -1 : color.trueColor, -1));
    return added + setGroup(groups, 430, {});
}

QByteArray DxfWriter::setLineWeight(const EntityGroups &groups, int lineWeight)
{
    if (storedNumber(groups, 370, kLineWeightByLayer) == lineWeight)
        return {};
    if (lineWeight != kLineWeightByLayer && m_drawing.version < kR2000) {
        ++m_lostLineWeights;
        return {};
    }
    return setGroup(groups, 370, numberText(lineWeight, kLineWeightByLayer));
}

/// What the entity says, or means by saying nothing; nothing when it is no number.
std::optional<int> DxfWriter::storedNumber(const EntityGroups &groups, int code, int fallback) const
{
    const DxfGroup *group = groups.last(code);
    return group ? toInt(view(group->value)) : fallback;
}

/// Removes the group where there is no text. The last of a code counts, and becomes the only one.
/// @return the group that is to be added
QByteArray DxfWriter::setGroup(const EntityGroups &groups, int code, const QByteArray &text)
{
    const DxfGroup *last = groups.last(code);
    if (!last)
        return text.isEmpty() ? text : styleAt(groups.begin).group(code, text);
    for (const DxfGroup &group : groups.own) {
        if (group.code != code)
            continue;
        if (&group != last || text.isEmpty())
            m_edits.push_back({group.bytes, {}});
        else if (code == 6)
            m_edits.push_back({group.value, text});
        else
            replaceNumber(group.value, text);
    }
    return {};
}

QByteArray DxfWriter::linetypeText(int linetype) const
{
    if (linetype == kLinetypeByLayer)
        return {};
    if (linetype == kLinetypeByBlock)
        linetype = m_drawing.linetypesByName.value(QStringLiteral("byblock"), kLinetypeByBlock);
    return linetype < 0
                   ? QByteArrayLiteral("BYBLOCK")
                   : m_drawing.text.encode(QString::fromStdWString(m_drawing.linetypes[linetype]));
}

void DxfWriter::renameInEntities()
{
    const QHash<QString, QByteArray> names = newNames();
    if (names.isEmpty())
        return;
    std::unordered_map<std::string_view, QByteArray> namesByBytes;
    for (const EntitySection &section : m_drawing.entities) {
        DxfTokens tokens(m_drawing.bytes, section.bytes);
        DxfEntityPlace place;
        while (tokens.next() == DxfTokens::Step::Group) {
            if (place.advance(tokens) == DxfEntityPlace::Names::Nothing)
                continue;
            const ByteRange value = tokens.group().value;
            const auto [entry, isFirst] = namesByBytes.try_emplace(view(value));
            if (isFirst)
                entry->second = names.value(symbolKey(m_drawing.text.decode(view(value))));
            if (!entry->second.isNull())
                m_edits.push_back({value, entry->second});
        }
    }
}

QByteArray DxfWriter::apply()
{
    QByteArray result;
    result.reserve(m_drawing.bytes.size());
    int done = 0;
    for (const Edit &edit : m_edits) {
        result += bytes({done, edit.bytes.begin});
        result += edit.text;
        done = edit.bytes.end;
    }
    return result + bytes({done, m_drawing.bytes.size()});
}

QByteArray DxfWriter::nameBytes(const Layer &layer) const
{
    const bool isNew = layer.nameBytes.isNull() || layer.isRenamed;
    return isNew ? m_drawing.text.encode(QString::fromStdWString(layer.name))
                 : bytes(layer.nameBytes);
}

/// The bytes themselves, not a copy.
QByteArray DxfWriter::bytes(ByteRange range) const
{
    return QByteArray::fromRawData(m_drawing.bytes.constData() + range.begin,
                                   range.end - range.begin);
}

std::string_view DxfWriter::view(ByteRange range) const
{
    return {m_drawing.bytes.constData() + range.begin,
            static_cast<std::size_t>(range.end - range.begin)};
}

/// The style of the group at @p position, or of the file's first one at the file's end.
DxfWriter::Style DxfWriter::styleAt(int position) const
{
    const QByteArray &file = m_drawing.bytes;
    const int begin = position < file.size() ? position : m_drawing.firstGroup;
    const int feed = file.indexOf('\n', begin);
    const bool hasReturn = feed > begin && file.at(feed - 1) == '\r';
    return {feed - begin - (hasReturn ? 1 : 0), hasReturn ? "\r\n" : "\n"};
}

QByteArray DxfWriter::Style::group(int code, const QByteArray &value) const
{
    return QByteArray::number(code).rightJustified(codeWidth) + lineEnd + value + lineEnd;
}

} // namespace Embedded
