// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DxfRecord.h"
#include "Geometry.h"

#include <map>

namespace Tessa {

/// Reads leaders from the groups of their records: lines or curves with an arrow at their first
/// point, whose size comes from their dimension style.
class LeaderReader
{
public:
    /// Notes a dimension style.
    void addStyle(const DxfRecord &record);

    /// The parts of a leader, without a style; none if it has fewer than two points.
    /// @param normal of the plane in which its arrow lies
    std::vector<Entity> read(const DxfRecord &record, const SpacePoint &normal) const;

private:
    /// What a dimension style says of arrows.
    struct ArrowStyle
    {
        double size = 0.18;
        double scale = 1;

        void set(int code, const std::string &value);
    };

    ArrowStyle styleOf(const DxfRecord &record) const;

    std::map<QByteArray, ArrowStyle> m_styles; ///< by their names, in capital letters
};

} // namespace Tessa
