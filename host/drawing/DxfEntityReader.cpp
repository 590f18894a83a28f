// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DxfEntityReader.h"

#include <algorithm>
#include <limits>

namespace Embedded {

DxfEntityReader::DxfEntityReader(Drawing &drawing, DxfCursor &cursor)
    : m_drawing(drawing)
    , m_cursor(cursor)
{
}

void DxfEntityReader::read()
{
    using Names = DxfEntityPlace::Names;
    EntitySection section;
    section.bytes.begin = m_cursor.group().bytes.end;
    section.firstNumber = m_cursor.records();
    m_entity = {};
    while (m_cursor.nextInSection()) {
        const Names names = m_entity.advance(m_cursor.tokens());
        if (m_cursor.code() == 0) {
            finishRecord();
            section.records.push_back(m_cursor.group().bytes.begin);
            m_isInRecord = true;
            m_isInViewport = m_entity.isViewport();
            m_viewport = {};
        } else if (names == Names::OwnLayer) {
            noteLayer();
        } else if (m_isInViewport && names == Names::FrozenLayer) {
            m_viewport.frozenNames.push_back(m_cursor.group());
        } else if (m_isInViewport && !m_entity.record.isInExtension()) {
            readViewportGroup();
        }
    }
    finishRecord();
    section.bytes.end = m_cursor.group().bytes.begin;
    section.records.shrink_to_fit();
    m_drawing.entities.push_back(std::move(section));
}

/// Neighbours mostly lie on the same layer, so that one comparison does. Of a name that stands twice
/// in a record one counts.
void DxfEntityReader::noteLayer()
{
    const std::string_view bytes = m_drawing.view(m_cursor.group().value);
    if (bytes != m_lastName || m_lastLayer < 0) {
        m_lastName = bytes;
        m_lastLayer = layerNamed(bytes);
    }
    const auto end = m_recordLayers.cend();
    if (m_lastLayer < 0 || std::find(m_recordLayers.cbegin(), end, m_lastLayer) != end)
        return;
    m_recordLayers.push_back(m_lastLayer);
    ++m_drawing.layers[m_lastLayer].records;
}

/// @return -1 where there is no name
int DxfEntityReader::layerNamed(std::string_view bytes)
{
    const auto [entry, isNew] = m_layersByBytes.try_emplace(bytes, -1);
    const QString name = isNew ? m_cursor.text() : QString();
    if (name.trimmed().isEmpty())
        return entry->second;
    entry->second = m_drawing.findLayer(name);
    if (entry->second < 0) {
        Layer layer;
        layer.name = name.toStdWString();
        layer.nameBytes = m_cursor.group().value;
        entry->second = m_drawing.addLayer(std::move(layer));
    }
    return entry->second;
}

void DxfEntityReader::readViewportGroup()
{
    switch (m_cursor.code()) {
    case 67:
        m_viewport.viewport.isOnSheet =
                m_cursor.section() == "ENTITIES" && toInt(m_cursor.value()) == 1;
        break;
    case 68:
        m_viewport.viewport.status = toInt(m_cursor.value()).value_or(0);
        break;
    case 69:
        m_viewport.viewport.number = toInt(m_cursor.value()).value_or(0);
        break;
    case 331:
    case 341:
        m_viewport.frozenHandles.push_back(m_cursor.group());
        break;
    default:
        break;
    }
}

void DxfEntityReader::finishRecord()
{
    m_unnamed += m_isInRecord && m_recordLayers.empty() ? 1 : 0;
    m_recordLayers.clear();
    m_isInRecord = false;

    if (m_isInViewport)
        m_viewports.push_back(std::move(m_viewport));
    m_isInViewport = false;
}

void DxfEntityReader::finish()
{
    m_drawing.layers[m_drawing.findLayer(QStringLiteral("0"))].records += m_unnamed;
    resolveViewports();
    chooseViewport();
    std::sort(m_drawing.entities.begin(), m_drawing.entities.end(),
              [](const EntitySection &one, const EntitySection &other) {
                  return one.firstNumber < other.firstNumber;
              });
}

void DxfEntityReader::resolveViewports()
{
    QHash<quint64, int> byHandle;
    if (!m_viewports.empty()) {
        for (std::size_t index = 0; index < m_drawing.layers.size(); ++index)
            byHandle.insert(m_drawing.layers[index].handle, static_cast<int>(index));
        byHandle.remove(0);
    }
    for (ViewportRecord &record : m_viewports) {
        std::vector<LayerMention> &frozen = record.viewport.frozenLayers;
        for (const DxfGroup &group : record.frozenHandles)
            frozen.push_back(
                    {byHandle.value(toHandle(m_drawing.view(group.value)), -1), group.bytes});
        for (const DxfGroup &group : record.frozenNames)
            frozen.push_back({m_drawing.findLayer(m_cursor.text(group)), group.bytes});
        std::sort(frozen.begin(), frozen.end(),
                  [](const auto &left, const auto &right) { return left.layer < right.layer; });
        m_drawing.viewports.push_back(std::move(record.viewport));
    }
}

/// The user works in the active one of the viewports that are on, which comes first in their
/// order, and on the sheet itself where there is none.
void DxfEntityReader::chooseViewport()
{
    const std::vector<Viewport> &viewports = m_drawing.viewports;
    const auto rank = [](const Viewport &viewport) {
        if (!viewport.isOnSheet)
            return -1;
        if (viewport.number == 1)
            return std::numeric_limits<int>::max();
        return viewport.status > 0 ? viewport.status : -1;
    };
    int best = -1;
    for (std::size_t index = 0; index < viewports.size(); ++index) {
        const int own = rank(viewports[index]);
        if (own > 0 && (best < 0 || own < rank(viewports[best])))
            best = static_cast<int>(index);
    }
    m_drawing.currentViewport = best;
}

} // namespace Embedded
