// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DxfWriter.h"

#include "DxfEntityWriter.h"
#include "DxfObjects.h"

#include <algorithm>
#include <array>
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
    const QByteArray number = toInt(digits).value_or(0) <= 0
                                      ? QByteArray::number(kWhite)
                                      : QByteArray(digits.data(), static_cast<int>(digits.size()));
    return isOff ? '-' + number : number;
}

QByteArray handleText(quint64 handle)
{
    return QByteArray::number(handle, 16).toUpper();
}

} // namespace

DxfWriter::DxfWriter(Drawing &drawing)
    : m_drawing(drawing)
    , m_edits(drawing.bytes, drawing.firstGroup)
{
}

QByteArray DxfWriter::write()
{
    findNewLayers();
    editHeader();
    editLayers();
    removeMentions();
    removeExtensions();
    renameDuplicates();
    if (!m_newLayers.empty())
        addRecords();
    m_edits.sort();
    DxfEntityWriter entities(m_drawing);
    m_edits.merge(entities.propertyEdits());
    m_edits.merge(entities.nameEdits());
    noteLosses(entities);
    return m_edits.apply();
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
    const DxfStyle style = m_edits.styleAt(hasHeader ? m_drawing.headerEnd : m_drawing.firstGroup);
    QByteArray added;
    const Layer &current = m_drawing.layers[m_drawing.currentLayer];
    // A name that led nowhere must not become that of a layer that was added since.
    const bool isFound = !m_drawing.missingCurrentLayer.isEmpty()
                         && m_drawing.findLayer(m_drawing.missingCurrentLayer) >= 0;
    if (m_drawing.currentLayer != m_drawing.storedCurrentLayer || current.isRenamed || isFound) {
        const QByteArray name = m_drawing.nameBytes(current);
        if (m_drawing.currentLayerValue.isNull())
            added += style.group(9, "$CLAYER") + style.group(8, name);
        else
            m_edits.replace(m_drawing.currentLayerValue, name);
    }
    if (hasHandles() && !m_newLayers.empty()) {
        const QByteArray seed = handleText(m_drawing.nextHandle);
        if (m_drawing.nextHandleValue.isNull())
            added += style.group(9, "$HANDSEED") + style.group(5, seed);
        else if (toHandle(view(m_drawing.nextHandleValue)) < m_drawing.nextHandle)
            m_edits.replaceNumber(m_drawing.nextHandleValue, seed);
    }
    if (hasHeader)
        m_edits.insert(m_drawing.headerEnd, added);
    else if (!added.isEmpty())
        m_edits.insert(m_drawing.firstGroup, style.group(0, "SECTION") + style.group(2, "HEADER")
                                                     + added + style.group(0, "ENDSEC"));
}

void DxfWriter::editLayers()
{
    for (const Layer &layer : m_drawing.layers) {
        if (layer.record.isNull())
            continue;
        if (layer.isErased) {
            m_edits.remove(layer.record);
            ++m_removedRecords;
            continue;
        }
        if (layer.isRenamed)
            m_edits.replace(layer.nameBytes, m_drawing.nameBytes(layer));
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
            m_edits.replaceNumber(group.value, number);
            return;
        }
        const DxfGroup &last = *std::max_element(
                groups.begin(), groups.begin() + static_cast<std::ptrdiff_t>(placeOf(code)),
                [](const auto &left, const auto &right) {
                    return left.bytes.end < right.bytes.end;
                });
        m_edits.insert(last.bytes.end, m_edits.styleAt(last.bytes.begin).group(code, number));
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
            m_edits.remove(mention.bytes);
        return isErased;
    };
    for (const LayerMention &duplicate : m_drawing.duplicates)
        m_removedRecords += remove(duplicate) ? 1 : 0;
    for (const Viewport &viewport : m_drawing.viewports)
        std::for_each(viewport.frozenLayers.begin(), viewport.frozenLayers.end(), remove);
}

/// What the layers that are gone had to themselves among the objects.
void DxfWriter::removeExtensions()
{
    std::optional<DxfObjects> objects;
    for (const Layer &layer : m_drawing.layers) {
        if (!layer.isErased || layer.record.isNull()
            || view(layer.record).find("{ACAD_XDICTIONARY") == std::string_view::npos)
            continue;
        if (!objects)
            objects.emplace(m_drawing.bytes, m_drawing.objects);
        for (const ByteRange object : objects->takeExtension(layer.record))
            m_edits.remove(object);
    }
}

/// Else a layer of the old name would come back with the second record.
void DxfWriter::renameDuplicates()
{
    for (const LayerMention &duplicate : m_drawing.duplicates) {
        const Layer &layer = m_drawing.layers[duplicate.layer];
        if (!layer.isRenamed || layer.isErased)
            continue;
        const DxfGroup name = findLayerGroups(m_drawing, duplicate.bytes)[placeOf(2)];
        m_edits.replace(name.value, m_drawing.nameBytes(layer));
    }
}

void DxfWriter::addRecords()
{
    if (m_drawing.layerTableEnd >= 0) {
        m_edits.insert(m_drawing.layerTableEnd,
                       newRecords(m_edits.styleAt(m_drawing.layerTableEnd)));
        const int count =
                m_drawing.layerRecords - m_removedRecords + static_cast<int>(m_newLayers.size());
        if (!m_drawing.layerCountValue.isNull()
            && toInt(view(m_drawing.layerCountValue)).value_or(0) < count)
            m_edits.replaceNumber(m_drawing.layerCountValue, QByteArray::number(count));
    } else if (m_drawing.tablesEnd >= 0) {
        m_edits.insert(m_drawing.tablesEnd, newTable(m_edits.styleAt(m_drawing.tablesEnd)));
    } else {
        const DxfStyle style = m_edits.styleAt(m_drawing.bodyBegin);
        m_edits.insert(m_drawing.bodyBegin, style.group(0, "SECTION") + style.group(2, "TABLES")
                                                    + newTable(style) + style.group(0, "ENDSEC"));
    }
}

QByteArray DxfWriter::newTable(const DxfStyle &style) const
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

QByteArray DxfWriter::newRecords(const DxfStyle &style) const
{
    QByteArray records;
    const QByteArray references = plotReferences(style);
    for (const int index : m_newLayers) {
        records += newRecord(m_drawing.layers[index], style);
        records += references;
    }
    return records;
}

QByteArray DxfWriter::newRecord(const Layer &layer, const DxfStyle &style) const
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
    const QString linetype = QString::fromStdWString(m_drawing.linetypes[layer.state.linetype]);
    record += style.group(2, m_drawing.nameBytes(layer))
              + style.group(70, QByteArray::number(stateFlags(layer.state)))
              + style.group(62, QByteArray::number(layer.state.isOff ? -layer.state.color
                                                                     : layer.state.color))
              + style.group(6, m_drawing.text.encode(linetype));
    if (m_drawing.version >= kR2000) {
        if (!layer.state.isPlottable)
            record += style.group(290, "0");
        record += style.group(370, QByteArray::number(layer.state.lineWeight));
    }
    return record;
}

/// The plot style and the material of layer "0", which new layers share.
QByteArray DxfWriter::plotReferences(const DxfStyle &style) const
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

void DxfWriter::noteLosses(const DxfEntityWriter &entities)
{
    noteEntityLoss(entities.lostTrueColors(), QStringLiteral("true colour"));
    noteEntityLoss(entities.lostLineWeights(), QStringLiteral("lineweight"));
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

/// The bytes themselves, not a copy.
QByteArray DxfWriter::bytes(ByteRange range) const
{
    return QByteArray::fromRawData(m_drawing.bytes.constData() + range.begin,
                                   range.end - range.begin);
}

} // namespace Embedded
