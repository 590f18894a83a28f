// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DxfWriter.h"

#include "DxfEntityWriter.h"
#include "DxfObjects.h"

#include <algorithm>
#include <utility>

namespace Embedded {

namespace {

QByteArray handleText(quint64 handle)
{
    return QByteArray::number(handle, 16).toUpper();
}

} // namespace

DxfWriter::DxfWriter(Drawing &drawing)
    : m_drawing(drawing)
    , m_edits(drawing.bytes, drawing.firstGroup)
    , m_layers(drawing, m_edits)
{
}

QByteArray DxfWriter::write()
{
    findNewLayers();
    findNewApplication();
    editHeader();
    editLayers();
    removeMentions();
    removeExtensions();
    renameDuplicates();
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
    if (hasHandles() && !m_newLayers.empty() && m_drawing.layerTable.handle == 0)
        m_drawing.layerTable.handle = m_drawing.nextHandle++;
}

/// Many programs refuse a file in which an application has data, but no record.
void DxfWriter::findNewApplication()
{
    const auto isDescribed = [](const Layer &layer) {
        return !layer.isErased && !layer.state.description.empty()
               && layer.state.description != layer.stored.description;
    };
    m_addsApplication =
            !m_drawing.hasDescriptions
            && std::any_of(m_drawing.layers.begin(), m_drawing.layers.end(), isDescribed);
    if (!hasHandles() || !m_addsApplication)
        return;
    if (m_drawing.descriptionsHandle == 0)
        m_drawing.descriptionsHandle = m_drawing.nextHandle++;
    if (m_drawing.applicationTable.handle == 0)
        m_drawing.applicationTable.handle = m_drawing.nextHandle++;
}

/// Layers that only entities name are written when somebody does something to them. To rename one
/// counts, so that those who look for it in the table alone find it. One that nothing names any more
/// would be gone without.
bool DxfWriter::needsRecord(int index) const
{
    const Layer &layer = m_drawing.layers[index];
    const bool hasBecomeCurrent =
            index == m_drawing.currentLayer && index != m_drawing.storedCurrentLayer;
    const bool isUnnamed = layer.records == 0 && !layer.nameBytes.isNull() && layer.name != L"0";
    return layer.record.isNull() && !layer.isErased
           && (layer.isAdded || layer.isRenamed || hasBecomeCurrent || isUnnamed
               || layer.state != layer.stored);
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
        if (m_drawing.currentLayerValues.empty())
            added += style.group(9, "$CLAYER") + style.group(8, name);
        for (const ByteRange &value : m_drawing.currentLayerValues)
            m_edits.replace(value, name);
    }
    if (hasHandles() && (!m_newLayers.empty() || m_addsApplication)) {
        const QByteArray seed = handleText(handleSeed());
        if (m_drawing.nextHandleValue.isNull())
            added += style.group(9, "$HANDSEED") + style.group(5, seed);
        else if (toHandle(view(m_drawing.nextHandleValue)) < handleSeed())
            m_edits.replaceNumber(m_drawing.nextHandleValue, seed);
    }
    if (hasHeader)
        m_edits.insert(m_drawing.headerEnd, added);
    else if (!added.isEmpty())
        m_edits.insert(m_drawing.firstGroup, style.group(0, "SECTION") + style.group(2, "HEADER")
                                                     + added + style.group(0, "ENDSEC"));
}

/// Above every handle that is written. The drawing may have given higher ones, to layers that are gone:
/// they do not count, so that what was undone leaves no trace.
quint64 DxfWriter::handleSeed() const
{
    quint64 last = 0;
    for (const int index : m_newLayers)
        last = qMax(last, m_drawing.layers[index].handle);
    if (!m_newLayers.empty())
        last = qMax(last, m_drawing.layerTable.handle);
    if (m_addsApplication)
        last = qMax(last, qMax(m_drawing.applicationTable.handle, m_drawing.descriptionsHandle));
    return last + 1;
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
            m_layers.edit(layer);
    }
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
        m_edits.replace(m_layers.nameGroup(duplicate.bytes).value, m_drawing.nameBytes(layer));
    }
}

/// Where the file has no such table, or no tables at all, it gets them.
void DxfWriter::addRecords()
{
    const int place = m_drawing.tablesEnd >= 0 ? m_drawing.tablesEnd : m_drawing.bodyBegin;
    const DxfStyle style = m_edits.styleAt(place);
    QByteArray tables;
    if (!m_newLayers.empty()) {
        const SymbolTable &table = m_drawing.layerTable;
        const auto records = [this](const DxfStyle &style) { return newLayers(style); };
        tables += addTo(table, "LAYER", int(m_newLayers.size()) - m_removedRecords, style, records);
    }
    if (m_addsApplication) {
        const SymbolTable &table = m_drawing.applicationTable;
        const auto records = [this](const DxfStyle &style) { return newApplication(style); };
        tables += addTo(table, "APPID", 1, style, records);
    }
    if (tables.isEmpty())
        return;
    if (m_drawing.tablesEnd < 0) {
        tables = style.group(0, "SECTION") + style.group(2, "TABLES") + tables
                 + style.group(0, "ENDSEC");
    }
    m_edits.insert(place, tables);
}

/// Adds records to a table of the file.
/// @param newTables what new tables are written like
/// @return the table, where it is a new one
QByteArray DxfWriter::addTo(const SymbolTable &table, const QByteArray &name, int more,
                            const DxfStyle &newTables, const Records &records)
{
    if (table.end < 0)
        return newTable(table, name, more, newTables) + records(newTables)
               + newTables.group(0, "ENDTAB");
    m_edits.insert(table.end, records(m_edits.styleAt(table.end)));
    const int count = table.records + more;
    if (!table.countValue.isNull() && toInt(view(table.countValue)).value_or(0) < count)
        m_edits.replaceNumber(table.countValue, QByteArray::number(count));
    return {};
}

/// The head of a table.
QByteArray DxfWriter::newTable(const SymbolTable &table, const QByteArray &name, int count,
                               const DxfStyle &style) const
{
    QByteArray head = style.group(0, "TABLE") + style.group(2, name);
    if (hasHandles())
        head += style.group(5, handleText(table.handle));
    if (m_drawing.version >= kR2000)
        head += style.group(330, "0");
    if (hasHandles())
        head += style.group(100, "AcDbSymbolTable");
    return head + style.group(70, QByteArray::number(count));
}

QByteArray DxfWriter::newLayers(const DxfStyle &style) const
{
    QByteArray records;
    const QByteArray references = plotReferences(style);
    for (const int index : m_newLayers) {
        const Layer &layer = m_drawing.layers[index];
        records += recordHead("LAYER", "AcDbLayerTableRecord", layer.handle, m_drawing.layerTable,
                              style)
                   + m_layers.newRecord(layer, style, references);
    }
    return records;
}

QByteArray DxfWriter::newApplication(const DxfStyle &style) const
{
    return recordHead("APPID", "AcDbRegAppTableRecord", m_drawing.descriptionsHandle,
                      m_drawing.applicationTable, style)
           + style.group(2, kDescriptionApplication) + style.group(70, "0");
}

QByteArray DxfWriter::recordHead(const QByteArray &type, const QByteArray &marker, quint64 handle,
                                 const SymbolTable &table, const DxfStyle &style) const
{
    QByteArray head = style.group(0, type);
    if (hasHandles())
        head += style.group(5, handleText(handle));
    if (m_drawing.version >= kR2000)
        head += style.group(330, handleText(table.handle));
    if (hasHandles())
        head += style.group(100, "AcDbSymbolTableRecord") + style.group(100, marker);
    return head;
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
    for (const Layer &layer : m_drawing.layers) {
        if (!layer.isErased)
            m_losses += m_layers.losses(layer);
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
