// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DrawingFiles.h"
#include "Support.h"

#include <QImage>
#include <QTemporaryDir>

#include <memory>

using namespace OvCc;

namespace {

QStringList rowOf(const QString &name)
{
    const QList<QStringList> rows = layerRows();
    for (const QStringList &row : rows) {
        if (row.at(NameColumn) == name)
            return row;
    }
    return {};
}

/// The box of the pixels of exactly this colour.
QRect extent(const QPixmap &pixmap, QRgb color)
{
    const QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
    QRect box;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) == color)
                box |= QRect(x, y, 1, 1);
        }
    }
    return box;
}

constexpr QRgb black = 0xff000000;

} // namespace

class tst_LayerData : public QObject
{
    Q_OBJECT

private slots:
    void lineWeightLabels();
    void texts();
    void swatches();
    void magentaIsTransparent();
    void resourceImages();
    void withoutDrawing();
    void recordsThatAreOpen();
    void layerStates();
    void brokenLayerStates_data();
    void brokenLayerStates();
};

void tst_LayerData::lineWeightLabels()
{
    // Computed and fixed ones, in millimetres and in inches; then those of indices.
    const std::pair<int, QStringList> labels[] = {
            {0, {"0.00 mm", "0.000 \"", "0.00 mm", "0.00\""}},
            {13, {"0.13 mm", "0.005 \"", "0.13 mm", "0.05\""}},
            {211, {"2.11 mm", "0.083 \"", "2.11 mm", "0.83\""}},
            {-3, {"Default", "Default", "Default", "Default"}},
            {-2, {"Block", "Block", "By Block", "By Block"}},
            {-1, {"Layer", "Layer", "By Layer", "By Layer"}}};
    for (const int unit : {1, 0}) {
        KcHost::setVariable("LWUNITS", 1 - unit);
        for (const auto &[weight, expected] : labels) {
            QCOMPARE(StringByLineWeight(weight, false), expected[unit]);
            QCOMPARE(fixedLineWeightLabel(weight, LineWeightUnit(unit)), expected[2 + unit]);
        }
    }
    for (const auto &[index, label] :
         std::initializer_list<std::pair<int, const char *>>{{23, "2.11 mm"},
                                                             {256 + 7, "0.25 mm"},
                                                             {30, "Block"},
                                                             {31, "Default"},
                                                             {24, "Layer"},
                                                             {32, "Layer"},
                                                             {-1, "Layer"}})
        QCOMPARE(StringByLineWeight(index, true), QString(label));
}

void tst_LayerData::texts()
{
    const NamedColor color = colorOfText("ll*Color 33;1,20,255");
    QCOMPARE(color.color, QColor(1, 20, 255));
    QCOMPARE(colorText(color), QString("ll*Color 33;1,20,255"));
    QVERIFY(isDigitStr("") && isDigitStr("0123456789"));
    for (const char *text : {"12a", "-1", " 1", "1.5", "\xd9\xa3"}) // the last one is Arabic for 3
        QVERIFY2(!isDigitStr(text), text);
}

void tst_LayerData::swatches()
{
    const QPixmap color = creatColorPix(QColor(10, 20, 30));
    QCOMPARE(color.size(), QSize(14, 14));
    QCOMPARE(extent(color, black), QRect(2, 2, 10, 10));
    QCOMPARE(extent(color, qRgb(10, 20, 30)), QRect(3, 3, 8, 8));
    QCOMPARE(extent(color, 0), QRect(0, 0, 14, 14));

    const QPixmap thin = drawLineWeight(1.0);
    QCOMPARE(thin.size(), QSize(48, 16));
    QCOMPARE(extent(thin, black).height(), 1);
    QCOMPARE(extent(drawLineWeight(4.0), black).height(), 4);
    QVERIFY(extent(thin, 0).contains(extent(thin, black)));
    const QImage dash = drawLineType(Qt::DashLine).toImage();
    QCOMPARE(dash, drawLineWeight(2.0).toImage());
    for (int x = 4; x <= 41; ++x)
        QCOMPARE(dash.pixel(x, 9), black);

    const QPixmap text = creatTextStyleIcon("A");
    QCOMPARE(text.size(), QSize(48, 16));
    QCOMPARE(extent(text, black) & QRect(0, 0, 48, 16), QRect(1, 1, 46, 15));
    QCOMPARE(text.toImage().pixel(0, 0), 0xffffffff);
}

void tst_LayerData::magentaIsTransparent()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath("image.bmp");
    QImage image(3, 1, QImage::Format_RGB32);
    const QRgb colors[]{qRgb(255, 0, 255), qRgb(255, 0, 254), qRgb(0, 128, 0)};
    for (int x = 0; x < 3; ++x)
        image.setPixel(x, 0, colors[x]);
    const QString late = dir.filePath("late.bmp");
    QVERIFY(loadImage(late).isNull() && image.save(path) && image.save(late));
    QVERIFY(loadImage(late).isNull());
    const QPixmap loaded = loadImage(path);
    const QImage shown = loaded.toImage();
    QCOMPARE(qAlpha(shown.pixel(0, 0)), 0);
    QCOMPARE(shown.pixel(1, 0), colors[1]);
    QCOMPARE(shown.pixel(2, 0), colors[2]);
    QCOMPARE(loadImage(path).cacheKey(), loaded.cacheKey());
}

void tst_LayerData::resourceImages()
{
    for (const char *name :
         {"core_ccvon.bmp", "core_ccvoff.bmp", "core_ccthw.bmp", "core_ccfrz.bmp", "core_cculk.bmp",
          "core_cclk.bmp", "core_ccpldi.bmp", "core_ccnpl.bmp", "core_ccvfrz.bmp",
          "core_ccvthw.bmp", "IDB_LSTATE_CURRENT.png"}) {
        const QPixmap image = loadImage(QString(":/") + name);
        QVERIFY2(image.size() == QSize(16, 16) && !extent(image, 0).isEmpty(), name);
    }
}

void tst_LayerData::withoutDrawing()
{
    OvLayerUtility layers;
    QVERIFY(!getCurrentDb() && !getLayerByName("0"));
    QVERIFY(std::unique_ptr<QList<LayerItemData>>(layers.getAllLayer())->isEmpty());
    layers.setLayerOff("0", false);
    LayerItemData untouched;
    untouched.name = "mine";
    QVERIFY(!layers.getCurrentLayer(untouched) && untouched.name == "mine");
    QList<QStringList> rows{{"present"}};
    QVERIFY(layers.getAllLayerDate(rows) == 0 && rows.size() == 1);

    const OpenDrawing drawing(KcHost::newDrawing());
    QVERIFY(layers.getAllLayerDate(rows) == 1 && rows.size() == 2);
    QCOMPARE(rows.at(1).join('|'), "true|0|true|true|true|ll*white;255,255,255|Continuous|Default|"
                                   "Color-7|true|false|false|");
    QVERIFY(layers.getCurrentLayer(untouched) && untouched.color == Qt::white);
    untouched.isOn = false;
    layers.setLayerByData(untouched);
    layers.setCurrenLayer(untouched);
    layers.setLayerFrozen("0", true);
    QCOMPARE(layerRows(), QList<QStringList>{rows.at(1)});
}

void tst_LayerData::recordsThatAreOpen()
{
    const OpenDrawing drawing(drawingWithLayers({"Doors", "Walls"}));
    OvLayerUtility layers;
    QVERIFY(!getLayerByName("walls"));
    KcDbLayerTableRecord *record = getLayerByName("Walls");
    layers.setLayerLock("Walls", true);
    QCOMPARE(rowOf("Walls").at(UnlockedColumn), QString("true"));
    QCOMPARE(KcHost::openObjectCount(), 1);
    record->close();

    record = getLayerByName("Doors");
    QCOMPARE(record->upgradeOpen(), Kcore::eOk);
    QCOMPARE(layerRows().size(), 2);
    QCOMPARE(rowOf("Walls").at(OnColumn), QString("true"));
    record->close();
    QCOMPARE(KcHost::eraseLayer(*drawing, "Doors"), Kcore::eOk);
    QVERIFY(!getLayerByName("Doors") && layerRows().size() == 2);

    record = getLayerByName("0");
    record->upgradeOpen();
    LayerItemData data;
    QVERIFY(!layers.getCurrentLayer(data));
    record->close();
}

void tst_LayerData::layerStates()
{
    QVERIFY(LayerState::capture() == LayerState());
    const OpenDrawing drawing(drawingWithLayers({"Blue", "Frozen", "Off", "Red"}));
    KcHost::LayerChange blue;
    blue.trueColor = 0x0000ff;
    blue.lineWeight = 25;
    KcHost::changeLayer(*drawing, "Blue", blue);
    OvLayerUtility().setLayerLock("Blue", true);
    OvLayerUtility().setLayerFrozen("Frozen", true);
    OvLayerUtility().setLayerOff("Off", false);
    OvLayerUtility().setLayerPlot("Red", false);
    KcHost::setCurrentLayer(*drawing, "Blue");
    const LayerState state = LayerState::capture();
    QCOMPARE(state.currentLayer() + ": " + state.names().join(' '), "Blue: 0 Blue Frozen Off Red");
    QVERIFY(state.layer("Blue")
            == (LayerState::Layer{true, true, false, true, Qt::blue, "Continuous", 25}));
    QVERIFY(!state.layer("Frozen").isThawed && !state.layer("Off").isOn
            && !state.layer("Red").isPlotted);
    QString error = "?";
    QVERIFY(LayerState::fromJson(state.toJson(), &error) == state && error.isEmpty());
    LayerState odd = state;
    odd.insert(QString::fromLatin1("\"\\\n\0", 4) + QChar(0xd800),
               {false, false, false, false, QColor(1, 10, 254), {}, 17});
    odd.remove("0");
    QVERIFY(odd != state && LayerState::fromJson(odd.toJson()) == odd);

    const QList<QStringList> rows = layerRows();
    const QStringList names = state.names();
    for (const QString &name : names) {
        OvLayerUtility().setLayerOff(name, name == "Off");
        OvLayerUtility().setLayerFrozen(name, name != "Frozen");
        OvLayerUtility().setLayerLock(name, name != "Blue");
        OvLayerUtility().setLayerPlot(name, name == "Red");
    }
    QVERIFY(layerRows() != rows && state.restore().isEmpty() && layerRows() == rows
            && LayerState::capture() == state);

    // Of another drawing it applies what there is.
    const OpenDrawing other(drawingWithLayers({"Off", "Red", "Walls"}));
    KcHost::setCurrentLayer(*other, "Off");
    KcDbLayerTableRecord *red = getLayerByName("Red");
    LayerState frozen = state;
    frozen.insert("Off", {false, false});
    QCOMPARE(frozen.restore().join(' '), QString("Blue Frozen Off Red"));
    red->close();
    QVERIFY(rowOf("Off").at(OnColumn) == "false" && rowOf("Off").at(ThawedColumn) == "true"
            && rowOf("Walls").at(OnColumn) == "true" && rowOf("Red").at(PlotColumn) == "true");
    QCOMPARE(frozen.restore().join(' '), QString("Blue Frozen Off"));
    QCOMPARE(rowOf("Red").at(PlotColumn), QString("false"));
}

/// What is put in the place of what, and what of it is named.
void tst_LayerData::brokenLayerStates_data()
{
    addTests({"garbage;{;{{;at byte 2", "list;*;[];is not an object", "nothing;*;;at byte 0",
              "version;1,;2,;\"version\" is 2", "current;\"0\";0;\"current\" is not a text",
              "layers;[;7,\"x\":[;\"layers\" is not a list",
              "layer;[;[7,;\"layers[0]\" is not an object",
              "twice;B;A;\"layers[1].name\" is there twice",
              "flag;true;1;\"layers[0].on\" is not true or false",
              "missing;thawed;Thawed;\"layers[0].thawed\" is missing",
              "color;#ff0000;red;\"layers[0].color\" is not a color",
              "short color;#ff0000;#f00;\"layers[0].color\" is not a color",
              "range;-3;1e300;\"layers[0].lineweight\" is not a whole number",
              "fraction;-3;0.5;\"layers[0].lineweight\" is not a whole number"});
}

void tst_LayerData::brokenLayerStates()
{
    QFETCH(QStringList, fields);
    const QString layer =
            R"({"name":"%1","on":true,"thawed":true,"unlocked":true,"plot":true,"color":"#ff0000",)"
            R"("linetype":"Dash","lineweight":-3,"unknown":[]})";
    const QString json = R"({"version":1,"current":"0","unknown":{},"layers":[%1,%2]})";
    const QString sound = json.arg(layer.arg("A"), layer.arg("B"));
    QString error;
    QCOMPARE(LayerState::fromJson(sound.toUtf8(), &error).names(), QStringList({"A", "B"}));
    QCOMPARE(error, QString());

    QString broken = fields.at(2);
    if (fields.at(1) != "*")
        broken = QString(sound).replace(sound.indexOf(fields.at(1)), fields.at(1).size(), broken);
    QVERIFY(LayerState::fromJson(broken.toUtf8(), &error) == LayerState());
    QVERIFY2(error.startsWith("This is no layer state") && error.contains(fields.at(3)),
             qPrintable(error));
}

QTEST_MAIN(tst_LayerData)
#include "tst_layerdata.moc"
