// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DxfEdits.h"
#include "DxfLayerWriter.h"

#include <QStringList>

#include <functional>
#include <string_view>
#include <vector>

namespace Embedded {

class DxfEntityWriter;

/// Makes the bytes of a drawing's file anew: those that were read, with the changes put in.
/// Linear; only the records of changed layers and entities are looked into, and all entities after
/// a renaming. How the records of layers and of entities change is told by DxfLayerWriter and
/// DxfEntityWriter.
///
/// A new name reaches the layer's record, the entities that lie on it, the viewports that freeze it
/// by name, and the header. Other applications' data and the section OBJECTS, where states and
/// filters of layers are kept, go on with the old one.
class DxfWriter
{
public:
    /// @param drawing must outlive this; layers that are new to the file get their handles
    explicit DxfWriter(Drawing &drawing);

    /// Makes the bytes, once; null where they would be more than a QByteArray holds.
    QByteArray write();

    /// What the file cannot hold, one reason per layer and property, and one per property of
    /// entities.
    const QStringList &losses() const { return m_losses; }

private:
    using Records = std::function<QByteArray(const DxfStyle &)>;

    void findNewLayers();
    void findNewApplication();
    quint64 handleSeed() const;
    bool needsRecord(int index) const;
    void editHeader();
    void editLayers();
    void removeMentions();
    void removeExtensions();
    void renameDuplicates();
    void addRecords();
    QByteArray addTo(const SymbolTable &table, const QByteArray &name, int more,
                     const DxfStyle &newTables, const Records &records);
    QByteArray newTable(const SymbolTable &table, const QByteArray &name, int count,
                        const DxfStyle &style) const;
    QByteArray newLayers(const DxfStyle &style) const;
    QByteArray newApplication(const DxfStyle &style) const;
    QByteArray recordHead(const QByteArray &type, const QByteArray &marker, quint64 handle,
                          const SymbolTable &table, const DxfStyle &style) const;
    QByteArray plotReferences(const DxfStyle &style) const;
    void noteLosses(const DxfEntityWriter &entities);
    void noteEntityLoss(int count, const QString &property);

    QByteArray bytes(ByteRange range) const;
    std::string_view view(ByteRange range) const { return m_drawing.view(range); }
    bool hasHandles() const { return m_drawing.version >= kR13; }

    Drawing &m_drawing;
    std::vector<int> m_newLayers; ///< those that the file's layer table lacks
    int m_removedRecords = 0;
    bool m_addsApplication = false; ///< that of the layers' descriptions
    DxfEdits m_edits;
    DxfLayerWriter m_layers;
    QStringList m_losses;
};

} // namespace Embedded
