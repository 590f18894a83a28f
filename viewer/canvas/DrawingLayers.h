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

/// The looks of a drawing's layers, numbered in the order of its layer table. It keeps no record
/// open.
class DrawingLayers
{
public:
    /// No layers.
    DrawingLayers() = default;

    /// Reads all layers.
    explicit DrawingLayers(KcDbDatabase &drawing);

    /// Reads one layer again; O(1). A layer that was added later is passed over: nothing lies on it.
    void reload(const QString &name);

    /// A layer keeps its number under another name; O(1).
    void rename(const QString &name, const QString &newName);

    int count() const;

    /// The number of a layer, or count() for a name that the layer table lacks. Letter case does not
    /// tell names apart.
    int indexOf(const QString &name) const;

    /// The look of a layer; the one of count() is that of entities whose layer is unknown.
    const LayerLook &at(int index) const;

private:
    std::vector<LayerLook> m_looks{LayerLook()}; ///< the last one is that of unknown layers
    std::vector<KcDbObjectId> m_ids;
    QHash<QString, int> m_indexes;
};

} // namespace Tessa
