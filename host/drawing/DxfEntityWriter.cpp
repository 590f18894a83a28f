// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DxfEntityWriter.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>

namespace Embedded {

namespace {

/// Linetype, colour, lineweight, true colour and its name.
constexpr int kPropertyCodes[] = {6, 62, 370, 420, 430};

/// Nothing for the number that goes without saying.
QByteArray numberText(int number, int unsaid)
{
    return number == unsaid ? QByteArray() : QByteArray::number(number);
}

} // namespace

/// The groups of an entity that tell how it is drawn.
struct DxfEntityWriter::Groups
{
    struct Property
    {
        DxfGroup group;
        bool isMisplaced; ///< among what the entity's class adds
    };

    int begin = 0;   ///< of the entity, whose style new groups take
    DxfGroup anchor; ///< behind which they go: as a rule that of the layer
    std::vector<Property> properties;

    int count(int code) const
    {
        return static_cast<int>(std::count_if(
                properties.begin(), properties.end(),
                [code](const Property &property) { return property.group.code == code; }));
    }

    /// The last one, or the last one in its place; null if there is none.
    const Property *last(int code, bool mayBeMisplaced) const
    {
        const auto found =
                std::find_if(properties.rbegin(), properties.rend(), [&](const Property &property) {
                    return property.group.code == code && (mayBeMisplaced || !property.isMisplaced);
                });
        return found == properties.rend() ? nullptr : &*found;
    }
};

DxfEntityWriter::DxfEntityWriter(const Drawing &drawing)
    : m_drawing(drawing)
    , m_edits(drawing.bytes, drawing.firstGroup)
{
}

/// The numbers of entities go by their place in the file.
DxfEdits DxfEntityWriter::propertyEdits()
{
    for (const auto &[number, properties] : m_drawing.changedEntities)
        editEntity(m_drawing.record(number), properties);
    m_edits.sort();
    return std::move(m_edits);
}

void DxfEntityWriter::editEntity(ByteRange record, const EntityProperties &wanted)
{
    if (wanted.isErased) {
        removeRecord(record);
        return;
    }
    if (wanted.hasLostAttributes)
        removeAttributeMark(record);
    const Groups groups = findGroups(record);
    QByteArray added;
    if (wanted.layer)
        added += setLayer(record, *wanted.layer);
    if (wanted.linetype)
        added += setLinetype(groups, *wanted.linetype);
    if (wanted.color)
        added += setColor(groups, *wanted.color);
    if (wanted.lineWeight)
        added += setLineWeight(groups, *wanted.lineWeight);
    if (!added.isEmpty())
        m_edits.insert(groups.anchor.bytes.end, added);
}

/// Comments behind it may be about what follows.
void DxfEntityWriter::removeRecord(ByteRange record)
{
    DxfTokens tokens(m_drawing.bytes, record);
    int end = record.begin;
    while (tokens.next() == DxfTokens::Step::Group) {
        if (tokens.group().code != kComment)
            end = tokens.group().bytes.end;
    }
    m_edits.remove({record.begin, end});
}

/// The group that says that attributes follow.
void DxfEntityWriter::removeAttributeMark(ByteRange record)
{
    DxfTokens tokens(m_drawing.bytes, record);
    DxfRecordPlace place;
    while (tokens.next() == DxfTokens::Step::Group) {
        place.advance(tokens.group(), trimmed(view(tokens.group().value)));
        if (tokens.group().code == 66 && !place.isInExtension())
            m_edits.remove(tokens.group().bytes);
    }
}

/// @return what is to be added
QByteArray DxfEntityWriter::setLayer(ByteRange record, int layer)
{
    const Layer &wanted = m_drawing.layers[layer];
    const QByteArray name = m_drawing.nameBytes(wanted);
    const std::vector<DxfGroup> groups = m_drawing.layerGroups(record);
    for (const DxfGroup &group : groups) {
        const QString stored = m_drawing.text.decode(view(group.value));
        if (m_drawing.findStoredLayer(stored) != layer || wanted.isRenamed)
            m_edits.replace(group.value, name);
    }
    return groups.empty() ? m_edits.styleAt(record.begin).group(8, name) : QByteArray();
}

DxfEntityWriter::Groups DxfEntityWriter::findGroups(ByteRange record) const
{
    Groups groups;
    groups.begin = record.begin;
    DxfTokens tokens(m_drawing.bytes, record);
    DxfEntityPlace place;
    bool isMarked = false;
    bool isInClass = false;
    while (tokens.next() == DxfTokens::Step::Group) {
        const DxfGroup &group = tokens.group();
        const bool hadLayer = place.hasLayer;
        const bool isLayer = place.advance(tokens) == DxfEntityPlace::Names::OwnLayer && !hadLayer;
        if (place.record.isInExtendedData || group.code == 101)
            break;
        if (place.record.isInAppGroup)
            continue;
        const bool isMark = group.code == 100 && trimmed(view(group.value)) == "AcDbEntity";
        isInClass |= group.code == 100 && !isMark && (isMarked || place.hasLayer);
        isMarked |= isMark;
        if (isInClass && !isPlainEntity(place.type))
            break;
        if (std::find(std::begin(kPropertyCodes), std::end(kPropertyCodes), group.code)
            != std::end(kPropertyCodes))
            groups.properties.push_back({group, isInClass});
        else if (!isInClass
                 && (isLayer || isMark || group.code == 0 || (group.code == 5 && !place.hasLayer)))
            groups.anchor = group;
    }
    return groups;
}

/// @return what is to be added
QByteArray DxfEntityWriter::setLinetype(const Groups &groups, int linetype)
{
    const Groups::Property *property = groups.last(6, true);
    const int stored = property ? m_drawing.findLinetype(
                               m_drawing.text.decode(trimmed(view(property->group.value))))
                                : kLinetypeByLayer;
    const bool isSame = stored == linetype && groups.count(6) < 2;
    return isSame ? QByteArray() : setGroup(groups, 6, linetypeText(linetype));
}

QByteArray DxfEntityWriter::setColor(const Groups &groups, const EntityColor &color)
{
    const bool isTrue = color.trueColor >= 0;
    const bool hasIndex = says(groups, 62, color.index, kColorByLayer);
    if (isTrue ? says(groups, 420, color.trueColor, -1) && groups.count(62) < 2
               : hasIndex && groups.count(420) == 0)
        return {};
    const bool isLost = isTrue && m_drawing.version < kR2004;
    m_lostTrueColors += isLost ? 1 : 0;
    QByteArray added;
    if (!hasIndex)
        added += setGroup(groups, 62, numberText(color.index, kColorByLayer));
    added += setGroup(groups, 420, numberText(isLost ? -1 : color.trueColor, -1));
    return added + setGroup(groups, 430, {});
}

/// A lineweight that the entity had stays one, by layer, too: without it some readers take the
/// thickness for one.
QByteArray DxfEntityWriter::setLineWeight(const Groups &groups, int lineWeight)
{
    if (says(groups, 370, lineWeight, kLineWeightByLayer))
        return {};
    if (lineWeight != kLineWeightByLayer && m_drawing.version < kR2000) {
        ++m_lostLineWeights;
        return {};
    }
    return setGroup(groups, 370, QByteArray::number(lineWeight));
}

/// Whether every reader finds that number, where no group stands for @p unsaid. Of several groups
/// some take the first and some the last.
bool DxfEntityWriter::says(const Groups &groups, int code, int number, int unsaid) const
{
    const Groups::Property *property = groups.last(code, true);
    return property ? groups.count(code) == 1 && toInt(view(property->group.value)) == number
                    : number == unsaid;
}

/// Removes the groups of that code but for one, and that, too, where there is no text.
/// @return the group that is to be added
QByteArray DxfEntityWriter::setGroup(const Groups &groups, int code, const QByteArray &text)
{
    const Groups::Property *kept = text.isEmpty() ? nullptr : groups.last(code, false);
    for (const Groups::Property &property : groups.properties) {
        if (property.group.code != code)
            continue;
        if (&property != kept)
            m_edits.remove(property.group.bytes);
        else if (code == 6)
            m_edits.replace(property.group.value, text);
        else
            m_edits.replaceNumber(property.group.value, text);
    }
    return kept || text.isEmpty() ? QByteArray() : m_edits.styleAt(groups.begin).group(code, text);
}

QByteArray DxfEntityWriter::linetypeText(int linetype) const
{
    if (linetype == kLinetypeByLayer)
        return {};
    if (linetype == kLinetypeByBlock)
        linetype = m_drawing.linetypesByName.value(QStringLiteral("byblock"), kLinetypeByBlock);
    return linetype < 0
                   ? QByteArrayLiteral("BYBLOCK")
                   : m_drawing.text.encode(QString::fromStdWString(m_drawing.linetypes[linetype]));
}

/// Entities on other layers now, or gone, get the new names of their old ones, too; but there the edits
/// of their properties come first.
DxfEdits DxfEntityWriter::nameEdits() const
{
    DxfEdits edits(m_drawing.bytes, m_drawing.firstGroup);
    const QHash<QString, QByteArray> names = newNames();
    if (names.isEmpty())
        return edits;
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
                edits.replace(value, entry->second);
        }
    }
    return edits;
}

/// The new names of layers, by the key of the one that the file has.
QHash<QString, QByteArray> DxfEntityWriter::newNames() const
{
    QHash<QString, QByteArray> names;
    const QHash<QString, int> &layers = m_drawing.renamedLayers;
    for (auto entry = layers.begin(); entry != layers.end(); ++entry)
        names.insert(entry.key(), m_drawing.nameBytes(m_drawing.layers[entry.value()]));
    return names;
}

std::string_view DxfEntityWriter::view(ByteRange range) const
{
    return m_drawing.view(range);
}

} // namespace Embedded
