// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "EntityFollower.h"

#include "Drawing.h"

#include <KcHost/KcHost.h>

#include <algorithm>

namespace Tessa {

namespace {

/// The style that the file has, with the changes over it.
EntityStyle changed(EntityStyle style, const KcHost::EntityChange &change, const Drawing &drawing)
{
    if (change.trueColor)
        style.color = entityColor(0, int(*change.trueColor & 0xffffff));
    else if (change.color)
        style.color = entityColor(*change.color, -1);
    if (change.lineWeight)
        style.lineWeight = *change.lineWeight;
    if (change.linetype)
        style.linetype = drawing.geometry.entityLinetypeOf(*change.linetype);
    if (change.layer)
        style.layer = drawing.layers.indexOf(*change.layer);
    return style;
}

} // namespace

EntityFollower::EntityFollower(Drawing &drawing)
    : m_drawing(drawing)
{
}

void EntityFollower::follow(int record)
{
    Entity *entity = find(record);
    if (!entity)
        return;
    const bool isErased = KcHost::isErased(*m_drawing.database, record);
    const std::vector<Entity> &shown = m_drawing.geometry.modelSpace().entities;
    if (entity->isErased != isErased && entity >= shown.data()
        && entity < shown.data() + shown.size())
        m_erased += isErased ? 1 : -1;
    entity->isErased = isErased;

    const EntityStyle stored = m_storedStyles.value(record, entity->style);
    entity->style = changed(stored, KcHost::changesOf(*m_drawing.database, record), m_drawing);
    if (entity->style == stored)
        m_storedStyles.remove(record);
    else
        m_storedStyles.insert(record, stored);
}

int EntityFollower::count() const
{
    return int(m_drawing.geometry.modelSpace().entities.size()) - m_erased;
}

/// The entities of the geometry stay where they are.
Entity *EntityFollower::find(int record)
{
    const auto isBefore = [](const Entity *entity, int number) { return entity->record < number; };
    if (m_byRecord.empty()) {
        for (Block &block : m_drawing.geometry.blocks) {
            for (Entity &entity : block.entities)
                m_byRecord.push_back(&entity);
        }
        std::sort(m_byRecord.begin(), m_byRecord.end(),
                  [&](const Entity *one, const Entity *other) {
                      return isBefore(one, other->record);
                  });
    }
    const auto found = std::lower_bound(m_byRecord.begin(), m_byRecord.end(), record, isBefore);
    return found == m_byRecord.end() || (*found)->record != record ? nullptr : *found;
}

} // namespace Tessa
