// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DxfEdits.h"

#include <map>
#include <string_view>

namespace Embedded {

/// Puts the changes of a drawing's entities into its file: their properties, and the new names of
/// the layers that they lie on; those that are erased go. Linear in the changed entities, and in all
/// of them after a renaming.
///
/// A property has one group in the end, in what all entities have in common; where the file wrote
/// more of them, or wrote it among what the entity's class adds, those go. What is by layer has none,
/// as a rule.
class DxfEntityWriter
{
public:
    /// @param drawing must outlive this
    explicit DxfEntityWriter(const Drawing &drawing);

    /// The edits, in the file's order.
    DxfEdits propertyEdits();
    DxfEdits nameEdits() const;

    /// How many properties the file's version could not hold.
    int lostTrueColors() const { return m_lostTrueColors; }
    int lostLineWeights() const { return m_lostLineWeights; }

private:
    struct Groups;

    void editEntity(ByteRange record, const EntityProperties &wanted);
    void removeRecord(ByteRange record);
    void removeAttributeMark(ByteRange record);
    QByteArray setLayer(ByteRange record, int layer);
    Groups findGroups(ByteRange record) const;
    QByteArray setLinetype(const Groups &groups, int linetype);
    QByteArray setColor(const Groups &groups, const EntityColor &color);
    QByteArray setLineWeight(const Groups &groups, int lineWeight);
    bool says(const Groups &groups, int code, int number, int unsaid) const;
    QByteArray setGroup(const Groups &groups, int code, const QByteArray &text);
    QByteArray linetypeText(int linetype) const;
    QHash<QString, QByteArray> newNames() const;
    std::string_view view(ByteRange range) const;

    const Drawing &m_drawing;
    DxfEdits m_edits;
    int m_lostTrueColors = 0;
    int m_lostLineWeights = 0;
};

} // namespace Embedded
