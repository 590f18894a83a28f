#pragma once

#include "Drawing.h"

#include <QStringList>

#include <string_view>
#include <vector>

namespace Embedded {

/// Makes the bytes of a drawing's file anew: those that were read, with the changes put in.
/// Linear; only the records of changed layers and entities are looked into, and all entities after
/// a renaming.
///
/// A new name reaches the layer's record, the entities that lie on it, the viewports that freeze it
/// by name, and the header. Other applications' data and the section OBJECTS, where states and
/// filters of layers are kept, go on with the old one.
class DxfWriter
{
public:
    /// @param drawing must outlive this; layers that are new to the file get their handles
    explicit DxfWriter(Drawing &drawing);

    /// Makes the bytes, once.
    QByteArray write();

    /// What the file cannot hold, one reason per layer and property, and one per property of
    /// entities.
    const QStringList &losses() const { return m_losses; }

private:
    /// Puts @p text in the place of bytes; edits do not overlap.
    struct Edit
    {
        ByteRange bytes;
        QByteArray text;

        bool operator<(const Edit &other) const;
    };

    /// How the file writes groups at some place.
    struct Style
    {
        int codeWidth = 0;
        QByteArray lineEnd;

        QByteArray group(int code, const QByteArray &value) const;
    };

    struct EntityGroups;

    void findNewLayers();
    bool needsRecord(int index) const;
    void editHeader();
    void editLayers();
    void editRecord(const Layer &layer);
    void removeMentions();
    void renameDuplicates();
    void addRecords();
    QByteArray newTable(const Style &style) const;
    QByteArray newRecords(const Style &style) const;
    QByteArray newRecord(const Layer &layer, const Style &style) const;
    QByteArray plotReferences(const Style &style) const;
    void noteLosses();
    void noteEntityLoss(int count, const QString &property);

    void insert(int at, const QByteArray &text);
    void replaceNumber(ByteRange value, const QByteArray &number);
    QHash<QString, QByteArray> newNames() const;
    void mergeEdits(void (DxfWriter::*add)());
    void editEntities();
    void editEntity(ByteRange record, const EntityProperties &wanted);
    EntityGroups findEntityGroups(ByteRange record) const;
    QByteArray setLinetype(const EntityGroups &groups, int linetype);
    QByteArray setColor(const EntityGroups &groups, const EntityColor &color);
    QByteArray setLineWeight(const EntityGroups &groups, int lineWeight);
    std::optional<int> storedNumber(const EntityGroups &groups, int code, int fallback) const;
    QByteArray setGroup(const EntityGroups &groups, int code, const QByteArray &text);
    QByteArray linetypeText(int linetype) const;
    void renameInEntities();
    QByteArray apply();

    QByteArray bytes(ByteRange range) const;
    std::string_view view(ByteRange range) const;
    QByteArray nameBytes(const Layer &layer) const;
    Style styleAt(int position) const;
    bool hasHandles() const { return m_drawing.version >= kR13; }

    Drawing &m_drawing;
    std::vector<int> m_newLayers; ///< those that the file's layer table lacks
    int m_removedRecords = 0;
    std::vector<Edit> m_edits;
    QStringList m_losses;
    int m_lostTrueColors = 0;
    int m_lostLineWeights = 0;
};

} // namespace Embedded
