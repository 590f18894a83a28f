// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <KcHost/KcHost.h>
#include <OvCustomControl/OvCustomControl.h>

#include <QHash>
#include <QStringList>

/// Takes one step in the working drawing that every host of the tests can take, a word and what it is
/// about: {"off", "A"}, {"unlock", "A"}, {"add", "A"}, {"rename", "A", "B"}, or the like;
/// {"layer", "A", "true", "FF0000"} and {"layer", "A", "weight", "25"}.
inline Kcore::ErrorStatus changeLayers(const QStringList &step)
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
    if (word == "layer") {
        KcHost::LayerChange change;
        if (step[2] == "true")
            change.trueColor = step[3].toUInt(nullptr, 16);
        else
            change.lineWeight = step[3].toInt();
        return KcHost::changeLayer(drawing, name, change);
    }
    const QHash<QString, Kcore::ErrorStatus (KcDbLayerTableRecord::*)(bool)> setters{
            {"off", &KcDbLayerTableRecord::setIsOff},
            {"freeze", &KcDbLayerTableRecord::setIsFrozen},
            {"lock", &KcDbLayerTableRecord::setIsLocked},
            {"plot", &KcDbLayerTableRecord::setIsPlottable}};
    KcDbLayerTableRecord *record = getLayerByName(name);
    if (!record) { // the host has a word for that, unless it is the letter case
        const Kcore::ErrorStatus status = KcHost::changeLayer(drawing, name, {});
        return status == Kcore::eOk ? Kcore::ErrorStatus(Kcore::eOk + 1) : status;
    }
    const bool value = !word.startsWith("un");
    Kcore::ErrorStatus status = record->upgradeOpen(); // which somebody else may keep from
    if (status == Kcore::eOk)
        status = (record->*setters[word.mid(value ? 0 : 2)])(value);
    record->close();
    return status;
}
