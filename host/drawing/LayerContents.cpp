// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerContents.h"

#include <algorithm>

namespace Embedded {

namespace {

/// The number behind that of the last record that belongs to an entity: its vertices or attributes and
/// their end mark.
int endOfParts(const Drawing &drawing, int number)
{
    const std::string_view type = drawing.recordType(number++);
    if (type != "POLYLINE" && type != "INSERT")
        return number;
    const std::string_view part = type == "INSERT" ? "ATTRIB" : "VERTEX";
    while (drawing.recordType(number) == part)
        ++number;
    return number + (drawing.recordType(number) == "SEQEND" ? 1 : 0);
}

/// The polyline or insert to which a vertex, an attribute or an end mark belongs; -1 where it is none
/// of these, or is lost.
int ownerOf(const Drawing &drawing, int number)
{
    int owner = number;
    const auto isPart = [&](int record) {
        const std::string_view type = drawing.recordType(record);
        return type == "VERTEX" || type == "ATTRIB" || type == "SEQEND";
    };
    while (isPart(owner))
        --owner;
    return owner < number && number < endOfParts(drawing, owner) ? owner : -1;
}

/// Whether a viewport is the sheet itself, which has the number 1.
bool isSheet(const Drawing &drawing, int number)
{
    DxfTokens tokens(drawing.bytes, drawing.record(number));
    DxfEntityPlace place;
    bool isFirst = false;
    while (tokens.next() == DxfTokens::Step::Group) {
        place.advance(tokens);
        if (tokens.group().code == 69 && !place.record.isInExtension())
            isFirst = toInt(drawing.view(tokens.group().value)) == 1;
    }
    return isFirst;
}

/// Erases the records on one layer.
class Eraser
{
public:
    Eraser(Drawing &drawing, int layer)
        : m_drawing(drawing)
        , m_layer(layer)
    {
    }

    std::vector<int> erase()
    {
        const std::vector<int> records = m_drawing.takeRecordsOn(m_layer);
        for (const int number : records) {
            if (number >= m_done)
                eraseRecord(number);
        }
        std::sort(m_changed.begin(), m_changed.end());
        return std::move(m_changed);
    }

private:
    void eraseRecord(int number)
    {
        const std::string_view type = m_drawing.recordType(number);
        const int place = m_drawing.layersOf(number).front();
        const int owner = ownerOf(m_drawing, number);
        m_done = number + 1;
        if (place != m_layer) {
            move(number, place); // a record with two layers
        } else if (type == "BLOCK" || type == "ENDBLK"
                   || (type == "VIEWPORT" && isSheet(m_drawing, number))) {
            move(number, m_drawing.findLayer(QStringLiteral("0")));
        } else if (owner >= 0) {
            eraseParts(owner);
        } else {
            m_done = endOfParts(m_drawing, number);
            for (int record = number; record < m_done; ++record)
                setErased(record);
        }
    }

    /// Those of an entity that stays.
    void eraseParts(int owner)
    {
        m_done = endOfParts(m_drawing, owner);
        const int place = m_drawing.layersOf(owner).front();
        bool hasLost = false;
        bool hasAttributes = false;
        for (int record = owner + 1; record < m_done; ++record) {
            const std::vector<int> layers = m_drawing.layersOf(record);
            const bool isAttribute = m_drawing.recordType(record) == "ATTRIB";
            const bool isHere = std::find(layers.begin(), layers.end(), m_layer) != layers.end();
            if (isHere && !isAttribute)
                move(record, place);
            else if (isHere)
                setErased(record);
            hasLost |= isHere && isAttribute;
            hasAttributes |= isAttribute && !m_drawing.entity(record).isErased;
        }
        if (!hasLost || hasAttributes)
            return;
        if (m_drawing.recordType(m_done - 1) == "SEQEND")
            setErased(m_done - 1);
        EntityProperties properties = m_drawing.entity(owner);
        properties.hasLostAttributes = true;
        set(owner, properties);
    }

    void setErased(int number)
    {
        EntityProperties properties = m_drawing.entity(number);
        properties.isErased = true;
        set(number, properties);
    }

    void move(int number, int layer)
    {
        EntityProperties properties = m_drawing.entity(number);
        properties.layer = layer;
        set(number, properties);
    }

    void set(int number, const EntityProperties &properties)
    {
        if (m_drawing.entity(number) == properties)
            return;
        m_drawing.setEntity(number, properties);
        m_changed.push_back(number);
    }

    Drawing &m_drawing;
    const int m_layer;
    int m_done = 0; ///< the records before it are
    std::vector<int> m_changed;
};

} // namespace

std::vector<int> changeEntity(Drawing &drawing, int number, const EntityProperties &properties)
{
    const EntityProperties old = drawing.entity(number);
    if (properties == old)
        return {};
    drawing.setEntity(number, properties);
    std::vector<int> changed{number};
    if (properties.layer == old.layer)
        return changed;
    const int end = endOfParts(drawing, number);
    for (int record = number + 1; record < end; ++record) {
        EntityProperties part = drawing.entity(record);
        if (part.isErased || drawing.recordType(record) == "ATTRIB")
            continue;
        part.layer = properties.layer;
        drawing.setEntity(record, part);
        changed.push_back(record);
    }
    return changed;
}

std::vector<int> moveContents(Drawing &drawing, int layer, int to)
{
    const std::vector<int> records = drawing.takeRecordsOn(layer);
    for (const int number : records) {
        // Of two layers that a record names, the first one is its own.
        const int own = drawing.layersOf(number).front();
        EntityProperties properties = drawing.entity(number);
        properties.layer = own == layer ? to : own;
        drawing.setEntity(number, properties);
    }
    return records;
}

std::vector<int> eraseContents(Drawing &drawing, int layer)
{
    return Eraser(drawing, layer).erase();
}

} // namespace Embedded
