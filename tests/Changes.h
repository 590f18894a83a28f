// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "LayerChanges.h"

/// The change by a property's name and value, such as "color" and "5" or "true" and "FF0000".
template <class Change>
Change propertyChange(const QString &property, const QString &value)
{
    Change change;
    if (property == "color")
        change.color = value.toInt();
    else if (property == "true")
        change.trueColor = value.toUInt(nullptr, 16);
    else if (property == "weight")
        change.lineWeight = value.toInt();
    else if (property == "type")
        change.linetype = value;
    else if constexpr (std::is_same_v<Change, KcHost::EntityChange>)
        change.layer = value;
    else
        change.description = value;
    return change;
}

/// Takes one step in the working drawing: those of changeLayers(), {"merge", "A", "B"},
/// {"layer", "A", "color", "5"} and {"set", "8", "color", "5"} for a layer and for the entity with
/// that number; {"clear", "A"} for a layer with all that lies on it.
inline Kcore::ErrorStatus change(const QStringList &step)
{
    KcDbDatabase &drawing = *kcdbHostApplicationServices()->workingDatabase();
    const QString &word = step[0];
    const QString &name = step[1];
    if (word == "merge")
        return KcHost::mergeLayer(drawing, name, step[2]);
    if (word == "clear")
        return KcHost::eraseLayerWithEntities(drawing, name);
    if (word == "set") {
        return KcHost::changeEntity(drawing, name.toInt(),
                                    propertyChange<KcHost::EntityChange>(step[2], step[3]));
    }
    if (word == "layer") {
        return KcHost::changeLayer(drawing, name,
                                   propertyChange<KcHost::LayerChange>(step[2], step[3]));
    }
    return changeLayers(step);
}
