// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Drawing.h"

#include <algorithm>
#include <utility>

namespace Embedded {

ByteRange Drawing::record(int number) const
{
    const auto next = std::upper_bound(
            entities.begin(), entities.end(), number,
            [](int wanted, const EntitySection &section) { return wanted < section.firstNumber; });
    if (next == entities.begin())
        return {};
    const EntitySection &section = *(next - 1);
    const auto index = static_cast<std::size_t>(number - section.firstNumber);
    if (index >= section.records.size())
        return {};
    const bool isLast = index + 1 == section.records.size();
    return {section.records[index], isLast ? section.bytes.end : section.records[index + 1]};
}

ByteRange Drawing::entityRecord(int number) const
{
    const std::string_view type = recordType(number);
    return type == "BLOCK" || type == "ENDBLK" || type == "SEQEND" ? ByteRange() : record(number);
}

std::string_view Drawing::recordType(int number) const
{
    const ByteRange range = record(number);
    if (range.isNull())
        return {};
    DxfTokens tokens(bytes, range);
    tokens.next();
    return trimmed(tokens.view(tokens.group().value));
}

std::vector<DxfGroup> Drawing::layerGroups(ByteRange record) const
{
    std::vector<DxfGroup> groups;
    DxfTokens tokens(bytes, record);
    DxfEntityPlace place;
    while (tokens.next() == DxfTokens::Step::Group) {
        if (place.advance(tokens) == DxfEntityPlace::Names::OwnLayer)
            groups.push_back(tokens.group());
    }
    return groups;
}

std::vector<int> Drawing::layersOf(int number) const
{
    if (const auto changed = changedEntities.find(number); changed != changedEntities.end()) {
        if (changed->second.isErased)
            return {};
        if (changed->second.layer)
            return {*changed->second.layer};
    }
    std::vector<int> found;
    const std::vector<DxfGroup> groups = layerGroups(record(number));
    for (const DxfGroup &group : groups) {
        const int layer = findStoredLayer(text.decode(view(group.value)));
        if (layer >= 0 && std::find(found.begin(), found.end(), layer) == found.end())
            found.push_back(layer);
    }
    if (found.empty())
        found.push_back(findLayer(QStringLiteral("0")));
    return found;
}

EntityProperties Drawing::entity(int number) const
{
    const auto changed = changedEntities.find(number);
    return changed == changedEntities.end() ? EntityProperties() : changed->second;
}

void Drawing::setEntity(int number, const EntityProperties &properties)
{
    const EntityProperties old = entity(number);
    kept.entities.try_emplace(number, old);
    const bool isMoved = properties.layer != old.layer || properties.isErased != old.isErased;
    const std::vector<int> before = isMoved ? layersOf(number) : std::vector<int>();
    if (properties == EntityProperties())
        changedEntities.erase(number);
    else
        changedEntities[number] = properties;
    if (!isMoved)
        return;
    for (const int layer : before)
        --layers[layer].records;
    const std::vector<int> after = layersOf(number);
    for (const int layer : after) {
        ++layers[layer].records;
        if (!recordsByLayer.empty()) {
            recordsByLayer.resize(layers.size());
            recordsByLayer[layer].push_back(number);
            ++indexedRecords;
        }
    }
    if (isIndexWorn())
        recordsByLayer.clear();
}

/// A record that goes to another layer is added there and not looked for where it was, so that moving
/// takes no longer for the many that lie there. What is wrong is thus left out here, and when it has
/// become much, by moves or by undoing them, all begins anew.
std::vector<int> Drawing::takeRecordsOn(int layer)
{
    indexRecords();
    std::vector<int> records = std::exchange(recordsByLayer[layer], {});
    indexedRecords -= records.size();
    std::sort(records.begin(), records.end());
    records.erase(std::unique(records.begin(), records.end()), records.end());
    const auto isElsewhere = [&](int number) {
        const std::vector<int> places = layersOf(number);
        return std::find(places.begin(), places.end(), layer) == places.end();
    };
    records.erase(std::remove_if(records.begin(), records.end(), isElsewhere), records.end());
    return records;
}

bool Drawing::isIndexWorn() const
{
    std::size_t count = 0;
    for (const EntitySection &section : entities)
        count += section.records.size();
    return indexedRecords > 2 * count;
}

void Drawing::indexRecords()
{
    if (!recordsByLayer.empty()) {
        recordsByLayer.resize(layers.size());
        return;
    }
    recordsByLayer.assign(layers.size(), {});
    indexedRecords = 0;
    for (const EntitySection &section : entities) {
        for (std::size_t index = 0; index < section.records.size(); ++index) {
            const int number = section.firstNumber + static_cast<int>(index);
            for (const int layer : layersOf(number)) {
                recordsByLayer[layer].push_back(number);
                ++indexedRecords;
            }
        }
    }
}

} // namespace Embedded
