// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Geometry.h"

#include <QHash>

#include <vector>

namespace Tessa {

struct Drawing;

/// Keeps what the canvas shows of a drawing's entities in step with the database: their properties and
/// layers, and whether they are erased.
///
/// N is the number of entities.
class EntityFollower
{
public:
    /// @param drawing must live as long as this, and its layers follow the database by themselves
    explicit EntityFollower(Drawing &drawing);

    /// Looks up an entity that the database has changed, by the number of its record; one that the
    /// canvas does not know is passed over. The first time O(N), and then O(log N).
    void follow(int record);

    /// How many entities the model space shows that are not erased.
    int count() const;

private:
    Entity *find(int record);

    Drawing &m_drawing;
    std::vector<Entity *> m_byRecord;       ///< sorted; empty as long as nothing was changed
    QHash<int, EntityStyle> m_storedStyles; ///< of changed entities, as the file has them
    int m_erased = 0;                       ///< of the model space
};

} // namespace Tessa
