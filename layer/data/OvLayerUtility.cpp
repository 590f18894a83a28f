// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "OvLayerUtility.h"

#include "layer/data/HostRecords.h"
#include "layer/data/LayerFlags.h"
#include "layer/data/LayerRowReading.h"
#include "layer/data/LayerSearch.h"

#include <OvCustomControl/LayerColumns.h>

#include <KcDb.h>
#include <KcEd.h>

#include <memory>

using namespace OvCc;

namespace {

KcDbDatabase *currentDb = nullptr;

} // namespace

OvLayerUtility::OvLayerUtility() = default;

OvLayerUtility::~OvLayerUtility() = default;

QList<LayerItemData> *OvLayerUtility::getAllLayer()
{
    auto layers = std::make_unique<QList<LayerItemData>>();
    walkLayers(getCurrentDb(), [&layers](const KcDbLayerTableRecord &layer) {
        layers->append(layerRecord(layer));
        return true;
    });
    return layers.release();
}

bool OvLayerUtility::getCurrentLayer(LayerItemData &out)
{
    KcDbLayerTableRecord *layer = nullptr;
    if (!getCurrentDb()
        || kcdbOpenObject(layer, currentDb->clayer(), KcDb::kForRead, false) != Kcore::eOk
        || !layer)
        return false;
    out = layerRecord(*layer);
    layer->close();
    return true;
}

void OvLayerUtility::setCurrenLayer(LayerItemData) {}

void OvLayerUtility::setLayerByData(LayerItemData) {}

void OvLayerUtility::setLayerOff(QString name, bool on)
{
    setLayerFlag(searchLayer(name), OnColumn, on);
}

void OvLayerUtility::setLayerLock(QString name, bool lock)
{
    setLayerFlag(searchLayer(name), UnlockedColumn, !lock);
}

void OvLayerUtility::setLayerFrozen(QString name, bool frozen)
{
    setLayerFlag(searchLayer(name), ThawedColumn, !frozen);
}

void OvLayerUtility::setLayerPlot(QString name, bool plot)
{
    setLayerFlag(searchLayer(name), PlotColumn, plot);
}

int OvLayerUtility::getAllLayerDate(QList<QStringList> &rows)
{
    const int present = rows.size();
    readLayerRows([&rows](const QStringList &row) { rows.append(row); });
    return rows.size() - present;
}

bool OvLayerUtility::isModelSpace()
{
    resbuf tileMode;
    return kcedGetVar(L"TILEMODE", &tileMode) == RTNORM && tileMode.resval.rint == 1;
}

KcDbDatabase *getCurrentDb()
{
    currentDb = nullptr;
    if (const KcDbHostApplicationServices *services = kcdbHostApplicationServices())
        currentDb = services->workingDatabase();
    return currentDb;
}

KcDbLayerTableRecord *getLayerByName(QString name)
{
    const std::optional<FoundLayer> found = searchLayer(name);
    return found ? found->record : nullptr;
}
