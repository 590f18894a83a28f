// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <KcDb.h>

#include <QColor>
#include <QHash>
#include <QString>

#include <vector>

namespace Tessa {

/// What the canvas needs to know of a layer.
struct LayerLook
{
    bool isOn = true;
    bool isFrozen = false;
    QColor color = Qt::white;
    int lineWeight = KcDb::kLnWtByLwDefault;
    QString linetype = QStringLiteral("Continuous");
};

/// The looks of a drawing's layers, by numbers, which begin as places in its layer table. A layer keeps
/// its number under another name, and when it is erased and comes back; one that is added has the next.
/// No record is kept open.
class DrawingLayers
{
public:
    /// The number of a layer that the layer table lacks.
    static constexpr int unknown = -1;

    /// No layers.
    DrawingLayers() = default;

    /// Reads all layers of @p drawing, which must live as long as this.
    explicit DrawingLayers(KcDbDatabase &drawing);

    /// Reads a layer again that has changed. O(1); where a layer of that name came, or went, or has
    /// another one now, the next look takes O(N).
    void reload(const QString &name);

    /// How many numbers there are.
    int count() const;

    /// The number of a layer, or unknown. Letter case does not tell names apart.
    int indexOf(const QString &name) const;

    /// The name of the layer with that number; empty for an unknown one.
    QString nameOf(int index) const;

    /// The look of a layer, also of an unknown one.
    const LayerLook &at(int index) const;

private:
    struct Layer
    {
        KcDbObjectId id;
        QString name;
        LayerLook look;
    };

    bool read(int index, const QString &name) const;
    void settle() const;

    KcDbDatabase *m_drawing = nullptr;
    LayerLook m_unknownLook;
    // Brought in step when somebody looks.
    mutable std::vector<Layer> m_layers;
    mutable QHash<QString, int> m_indexes;
    mutable bool m_isStale = false; ///< there may be other layers or names in the table
};

} // namespace Tessa
