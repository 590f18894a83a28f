// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DxfTableReader.h"

#include <cstdlib>
#include <unordered_map>
#include <utility>

namespace Embedded {

DxfTableReader::DxfTableReader(Drawing &drawing, DxfCursor &cursor)
    : m_drawing(drawing)
    , m_cursor(cursor)
{
}

void DxfTableReader::read()
{
    while (m_cursor.nextInSection()) {
        if (m_cursor.code() == 0)
            beginTableRecord();
        else if (m_recordType == "TABLE")
            readTableHead();
        else if (m_record.line > 0)
            readLayerGroup();
        else if (m_table == "LTYPE" && m_cursor.code() == 2)
            m_drawing.linetypes.push_back(m_cursor.text().toStdWString());
        else if (m_table == "APPID" && m_cursor.code() == 2)
            m_drawing.hasDescriptions |= m_cursor.value() == kDescriptionApplication;
    }
    finishLayer();
    closeTable();
    m_recordType = {};
    m_drawing.tablesEnd = m_cursor.group().bytes.begin;
}

void DxfTableReader::beginTableRecord()
{
    finishLayer();
    m_recordType = m_cursor.value();
    if (m_recordType == "TABLE" || m_recordType == "ENDTAB") {
        closeTable();
    } else if (m_table == "LAYER" && m_recordType == "LAYER") {
        ++m_drawing.layerTable.records;
        m_record.line = m_cursor.line();
        m_record.layer.record = m_cursor.group().bytes;
    } else if (m_table == "APPID" && m_recordType == "APPID") {
        ++m_drawing.applicationTable.records;
    }
}

void DxfTableReader::readTableHead()
{
    if (m_cursor.code() == 2)
        m_table = m_cursor.value();
    SymbolTable *const table = keptTable();
    if (table && m_cursor.code() == 5)
        table->handle = toHandle(m_cursor.value());
    else if (table && m_cursor.code() == 70)
        table->countValue = m_cursor.group().value;
}

/// Takes whatever follows the table's records for its end, where a file forgets to mark it.
void DxfTableReader::closeTable()
{
    if (SymbolTable *const table = keptTable())
        table->end = m_cursor.group().bytes.begin;
    m_table = {};
}

/// The table that is being read; null for one that gets no new records.
SymbolTable *DxfTableReader::keptTable()
{
    if (m_table == "LAYER")
        return &m_drawing.layerTable;
    return m_table == "APPID" ? &m_drawing.applicationTable : nullptr;
}

void DxfTableReader::readLayerGroup()
{
    m_record.layer.record.end = m_cursor.group().bytes.end;
    if (m_record.place.advance(m_cursor.group(), m_cursor.value()))
        return;
    if (m_record.place.application == kDescriptionApplication && m_cursor.code() == 1000) {
        if (++m_record.describingTexts == 2)
            m_record.layer.state.description = m_cursor.text().toStdWString();
    } else if (!m_record.place.isInExtension()) {
        readLayerProperty();
    }
}

void DxfTableReader::readLayerProperty()
{
    Layer &layer = m_record.layer;
    switch (m_cursor.code()) {
    case 2:
        layer.nameBytes = m_cursor.group().value;
        break;
    case 5:
        layer.handle = toHandle(m_cursor.value());
        break;
    case 6:
        m_record.linetype = {m_cursor.group(), m_cursor.line()};
        break;
    case 62:
        readColor();
        break;
    case 70: {
        const int flags = layerNumber("flags", 0, kHighestFlags, 0, "0");
        layer.state.isFrozen = flags & kFrozenFlag;
        layer.isFrozenInNewViewports = flags & kFrozenInNewViewportsFlag;
        layer.state.isLocked = flags & kLockedFlag;
        break;
    }
    case 290:
        layer.state.isPlottable = layerNumber("plot flag", 0, 1, 1, "1") != 0;
        break;
    case 370:
        readLineWeight();
        break;
    case 390:
        layer.plotStyle = toHandle(m_cursor.value());
        break;
    case 420:
        layer.state.trueColor = layerNumber("true colour", 0, 0xFFFFFF, -1, "its indexed colour");
        break;
    default:
        break;
    }
}

/// A negative colour is that of a layer that is off.
void DxfTableReader::readColor()
{
    const std::optional<int> number = toInt(m_cursor.value());
    Layer &layer = m_record.layer;
    layer.state.isOff = number && *number < 0;
    if (number && *number != 0 && *number >= -255 && *number <= 255) {
        layer.state.color = std::abs(*number);
    } else {
        layer.state.color = kWhite;
        noteOddity("colour", QStringLiteral("7"));
    }
}

void DxfTableReader::readLineWeight()
{
    const std::optional<int> number = toInt(m_cursor.value());
    Layer &layer = m_record.layer;
    if (number && isLineWeight(*number)) {
        layer.state.lineWeight = *number;
    } else {
        layer.state.lineWeight = kDefaultLineWeight;
        noteOddity("lineweight", QStringLiteral("the default"));
    }
}

int DxfTableReader::layerNumber(const char *property, int low, int high, int fallback,
                                const char *taken)
{
    const std::optional<int> number = toInt(m_cursor.value());
    if (number && *number >= low && *number <= high)
        return *number;
    noteOddity(property, QLatin1String(taken));
    return fallback;
}

void DxfTableReader::noteOddity(const char *property, const QString &taken)
{
    m_record.oddities.push_back(
            {m_cursor.line(),
             QStringLiteral("has the %1 %2, which is out of range; it is read as %3")
                     .arg(QLatin1String(property), quoted(m_cursor.text()), taken)});
}

void DxfTableReader::finishLayer()
{
    if (m_record.line == 0)
        return;
    LayerRecord record = std::exchange(m_record, {});
    Layer &layer = record.layer;
    const QString name = layer.nameBytes.isNull()
                                 ? QString()
                                 : m_drawing.text.decode(m_drawing.view(layer.nameBytes));
    if (name.trimmed().isEmpty()) {
        m_cursor.warn(record.line, QStringLiteral("a layer without a name is left out"));
        return;
    }
    const int namesake = m_drawing.findLayer(name);
    if (namesake >= 0 && !m_drawing.layers[namesake].record.isNull()) {
        m_drawing.duplicates.push_back({namesake, layer.record});
        m_cursor.warn(record.line,
                      QStringLiteral("the layer %1 is left out, since the name is taken")
                              .arg(quoted(name)));
        return;
    }
    for (const Oddity &oddity : record.oddities)
        m_cursor.warn(oddity.line,
                      QStringLiteral("the layer %1 %2").arg(quoted(name), oddity.text));
    layer.name = name.toStdWString();
    keepLayer(std::move(layer), record.linetype);
}

/// Where entities come before the tables, they have named the layer already.
void DxfTableReader::keepLayer(Layer &&layer, const Reference &linetype)
{
    int index = m_drawing.findLayer(QString::fromStdWString(layer.name));
    if (index < 0) {
        index = m_drawing.addLayer(std::move(layer));
    } else {
        layer.records = m_drawing.layers[index].records;
        m_drawing.layers[index] = std::move(layer);
    }
    m_linetypes.resize(m_drawing.layers.size());
    m_linetypes[index] = linetype;
}

void DxfTableReader::finish()
{
    noteLinetypes();
    resolveLinetypes();
    for (Layer &layer : m_drawing.layers)
        layer.announced = layer.stored = layer.state;
}

void DxfTableReader::noteLinetypes()
{
    std::vector<std::wstring> &linetypes = m_drawing.linetypes;
    linetypes.emplace_back(L"Continuous"); // for a file that lacks it: the first of a name counts
    QHash<QString, int> &byName = m_drawing.linetypesByName;
    for (int index = static_cast<int>(linetypes.size()) - 1; index >= 0; --index)
        byName.insert(symbolKey(QString::fromStdWString(linetypes[index])), index);
    m_drawing.continuous = byName.value(symbolKey(QStringLiteral("Continuous")));
}

void DxfTableReader::resolveLinetypes()
{
    std::unordered_map<std::string_view, int> byBytes;
    m_linetypes.resize(m_drawing.layers.size());
    for (std::size_t index = 0; index < m_drawing.layers.size(); ++index) {
        Layer &layer = m_drawing.layers[index];
        const Reference &reference = m_linetypes[index];
        layer.state.linetype = m_drawing.continuous;
        if (reference.line == 0)
            continue;
        const auto [entry, isNew] = byBytes.try_emplace(m_drawing.view(reference.group.value), -1);
        const QString name =
                isNew || entry->second < 0 ? m_cursor.text(reference.group) : QString();
        if (isNew)
            entry->second = m_drawing.linetypesByName.value(symbolKey(name), -1);
        if (entry->second >= 0) {
            layer.state.linetype = entry->second;
        } else {
            m_cursor.warn(reference.line,
                          QStringLiteral("the layer %1 has the linetype %2, which does not exist; "
                                         "\"Continuous\" is taken instead")
                                  .arg(quoted(QString::fromStdWString(layer.name)), quoted(name)));
        }
    }
}

} // namespace Embedded
