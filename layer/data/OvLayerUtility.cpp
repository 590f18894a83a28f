#include "OvLayerUtility.h"

#include "layer/data/HostRecords.h"
#include "layer/data/LayerFlags.h"

#include <OvCustomControl/ColorText.h>
#include <OvCustomControl/LayerColumns.h>
#include <OvCustomControl/LineWeights.h>

#include <KcDb.h>
#include <KcEd.h>

#include <QSet>

#include <memory>

using namespace OvCc;

namespace {

KcDbDatabase *currentDb = nullptr;

QString flagText(bool flag)
{
    return flag ? QStringLiteral("true") : QStringLiteral("false");
}

QColor rgb(const KcCmColor &color)
{
    return QColor(color.red(), color.green(), color.blue());
}

QString textOf(const KcCmColor &color)
{
    return colorText({hostText(color.colorNameForDisplay()), rgb(color)});
}

bool isFrozenInCurrentViewport(KcDbObjectId layer)
{
    KcDbViewport *viewport = nullptr;
    const KcDbObjectId id = kcdbGetCurVportId(currentDb);
    if (kcdbOpenObject(viewport, id, KcDb::kForRead, false) != Kcore::eOk || !viewport)
        return false;
    const bool isFrozen = viewport->isLayerFrozenInViewport(layer);
    viewport->close();
    return isFrozen;
}

LayerItemData layerData(const KcDbLayerTableRecord &layer)
{
    LayerItemData data;
    data.isOn = !layer.isOff();
    data.isLocked = layer.isLocked();
    data.isFrozen = layer.isFrozen();
    data.color = rgb(layer.color());
    data.name = layerName(layer);
    return data;
}

/// Few drawings have more than a handful of linetypes or colours but many layers, so rows share the
/// strings that repeat.
class SharedStrings
{
public:
    QString shared(const QString &text) { return *m_strings.insert(text); }

private:
    QSet<QString> m_strings;
};

QStringList layerRow(const KcDbLayerTableRecord &layer, SharedStrings &strings)
{
    const QString texts[] = {
            flagText(layer.objectId() == currentDb->clayer()),
            layerName(layer),
            flagText(!layer.isOff()),
            flagText(!layer.isFrozen()),
            flagText(!layer.isLocked()),
            strings.shared(textOf(layer.color())),
            strings.shared(symbolName(layer.linetypeObjectId())),
            strings.shared(StringByLineWeight(layer.lineWeight(), false)),
            strings.shared(hostText(layer.plotStyleName())),
            flagText(layer.isPlottable()),
            flagText(layer.VPDFLT()),
            flagText(isFrozenInCurrentViewport(layer.objectId())),
            hostText(layer.description()),
    };
    static_assert(std::size(texts) == LayerColumnCount);
    return {std::begin(texts), std::end(texts)};
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
    SharedStrings strings;
    walkLayers(getCurrentDb(), [&](const KcDbLayerTableRecord &layer) {
        rows.append(layerRow(layer, strings));
        return true;
    });
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
