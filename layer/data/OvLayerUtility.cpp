#include "OvLayerUtility.h"

#include "layer/data/HostRecords.h"
#include "layer/data/LayerFlags.h"
#include "layer/data/LayerRowReading.h"

#include <OvCustomControl/LayerColumns.h>

#include <KcDb.h>
#include <KcEd.h>

#include <memory>

using namespace OvCc;

namespace {

KcDbDatabase *currentDb = nullptr;

LayerItemData layerData(const KcDbLayerTableRecord &layer)
{
    LayerItemData data;
    data.isOn = !layer.isOff();
    data.isLocked = layer.isLocked();
    data.isFrozen = layer.isFrozen();
    data.color = rgbOf(layer.color());
    data.name = layerName(layer);
    return data;
}

} // namespace

OvLayerUtility::OvLayerUtility() = default;

OvLayerUtility::~OvLayerUtility() = default;

QList<LayerItemData> *OvLayerUtility::getAllLayer()
{
    auto layers = std::make_unique<QList<LayerItemData>>();
    walkLayers(getCurrentDb(), [&layers](const KcDbLayerTableRecord &layer) {
        layers->append(layerData(layer));
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
    out = layerData(*layer);
    layer->close();
    return true;
}

bool OvLayerUtility::getLayer(QString name, LayerItemData &out)
{
    KcDbLayerTableRecord *layer = getLayerByName(name);
    if (!layer)
        return false;
    out = layerData(*layer);
    layer->close();
    return true;
}

void OvLayerUtility::setCurrenLayer(LayerItemData) {}

void OvLayerUtility::setLayerByData(LayerItemData) {}

void OvLayerUtility::setLayerOff(QString name, bool on)
{
    setLayerFlag(name, OnColumn, on);
}

void OvLayerUtility::setLayerLock(QString name, bool lock)
{
    setLayerFlag(name, UnlockedColumn, !lock);
}

void OvLayerUtility::setLayerFrozen(QString name, bool frozen)
{
    setLayerFlag(name, ThawedColumn, !frozen);
}

void OvLayerUtility::setLayerPlot(QString name, bool plot)
{
    setLayerFlag(name, PlotColumn, plot);
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
    const std::wstring wanted = name.toStdWString();
    return walkLayers(getCurrentDb(), [&wanted](const KcDbLayerTableRecord &layer) {
        KTCHAR *text = nullptr;
        layer.getName(text);
        const bool isWanted = text && wanted == text;
        kcutDelString(text);
        return !isWanted;
    });
}
