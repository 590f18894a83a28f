// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <KcHost/KcHost.h>
#include <OvCustomControl/OvCustomControl.h>

#include <QHash>
#include <QStringList>

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

/// Takes one step in the working drawing, a word and what it is about: {"off", "A"}, {"unlock", "A"},
/// {"add", "A"}, {"rename", "A", "B"}, or the like; {"layer", "A", "color", "5"} and
/// {"set", "8", "color", "5"} for a layer and for the entity with that number; {"clear", "A"} for a
/// layer with all that lies on it.
inline Kcore::ErrorStatus change(const QStringList &step)
{
    KcDbDatabase &drawing = *kcdbHostApplicationServices()->workingDatabase();
    const QString &word = step[0];
    const QString &name = step[1];
    if (word == "add")
        return KcHost::addLayer(drawing, name);
    if (word == "erase")
        return KcHost::eraseLayer(drawing, name);
    if (word == "current")
        return KcHost::setCurrentLayer(drawing, name);
    if (word == "rename")
        return KcHost::renameLayer(drawing, name, step[2]);
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
    const QHash<QString, Kcore::ErrorStatus (KcDbLayerTableRecord::*)(bool)> setters{
            {"off", &KcDbLayerTableRecord::setIsOff},
            {"freeze", &KcDbLayerTableRecord::setIsFrozen},
            {"lock", &KcDbLayerTableRecord::setIsLocked},
            {"plot", &KcDbLayerTableRecord::setIsPlottable}};
    KcDbLayerTableRecord *record = getLayerByName(name);
    if (!record)
        return Kcore::eKeyNotFound;
    const bool value = !word.startsWith("un");
    Kcore::ErrorStatus status = record->upgradeOpen(); // which somebody else may keep from
    if (status == Kcore::eOk)
        status = (record->*setters[word.mid(value ? 0 : 2)])(value);
    record->close();
    return status;
}
