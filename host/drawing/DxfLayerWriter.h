// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DxfEdits.h"

#include <QStringList>

#include <string_view>
#include <vector>

namespace Embedded {

/// Writes the records of layers: what differs in those that the file has, and new ones.
class DxfLayerWriter
{
public:
    /// @param drawing must outlive this
    /// @param edits   likewise; it gets the changes of records
    DxfLayerWriter(const Drawing &drawing, DxfEdits &edits);

    /// Changes a layer's record in the file.
    void edit(const Layer &layer);

    /// A new record, without what stands before the name: type, handle, owner and markers.
    /// @param references groups that new layers share
    QByteArray newRecord(const Layer &layer, const DxfStyle &style,
                         const QByteArray &references) const;

    /// The layer's name in a record; null where there is none.
    DxfGroup nameGroup(ByteRange record) const;

    /// What the file cannot hold of a layer, one reason per property.
    QStringList losses(const Layer &layer) const;

private:
    void editColor(const Layer &layer);
    void editDescription(const Layer &layer);
    void set(int code, const QByteArray &text);
    void removeAll(int code);
    std::string_view valueOf(int code) const;
    std::vector<DxfGroup> ownGroups(ByteRange record) const;
    QByteArray linetypeName(int linetype) const;
    QByteArray descriptionGroups(const QByteArray &text, const DxfStyle &style) const;
    std::string_view view(ByteRange range) const { return m_drawing.view(range); }

    const Drawing &m_drawing;
    DxfEdits &m_edits;
    std::vector<DxfGroup> m_groups; ///< of the record that is being changed
};

} // namespace Embedded
