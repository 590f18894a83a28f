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
    void colorTexts();
    void digitStrings();
    void swatches();
    void magentaIsTransparent();
    void resourceImages();
    void withoutDrawing();
    void settersReachTheDrawing();
    void refusalsAreSilent();
    void unreadableRecordsArePassedOver();
    void layerStates();
    void brokenLayerStates_data();
    void brokenLayerStates();
};

void tst_LayerData::lineWeightLabels()
{
    const std::tuple<int, bool, QStringList> rows[] = {
            // whether it is an index; labels computed and fixed, in millimetres and in inches
            {0, false, {"0.00 mm", "0.000 \"", "0.00 mm", "0.00\""}},
            {13, false, {"0.13 mm", "0.005 \"", "0.13 mm", "0.05\""}},
            {25, false, {"0.25 mm", "0.010 \"", "0.25 mm", "0.10\""}},
            {200, false, {"2.00 mm", "0.079 \"", "2.00 mm", "0.79\""}},
            {211, false, {"2.11 mm", "0.083 \"", "2.11 mm", "0.83\""}},
            {-3, false, {"Default", "Default", "Default", "Default"}},
            {-2, false, {"Block", "Block", "By Block", "By Block"}},
            {-1, false, {"Layer", "Layer", "By Layer", "By Layer"}},
            {23, true, {"2.11 mm", "0.083 \""}},
            {256 + 7, true, {"0.25 mm", "0.010 \""}},
            {30, true, {"Block", "Block"}},
            {31, true, {"Default", "Default"}},
            {24, true, {"Layer", "Layer"}},
            {32, true, {"Layer", "Layer"}},
            {-1, true, {"Layer", "Layer"}}};
    for (const auto &[value, isIndex, expected] : rows) {
        QStringList labels;
        for (const int unit : {0, 1}) {
            KcHost::setVariable(QStringLiteral("LWUNITS"), unit);
            labels.prepend(StringByLineWeight(value, isIndex));
        }
        if (!isIndex) {
            labels.append(fixedLineWeightLabel(value, LineWeightUnit::Millimetres));
            labels.append(fixedLineWeightLabel(value, LineWeightUnit::Inches));
        }
        QCOMPARE(labels, expected);
    }
}

void tst_LayerData::colorTexts()
{
    const NamedColor color = colorOfText(QStringLiteral("ll*Color 33;1,20,255"));
    QCOMPARE(color.color, QColor(1, 20, 255));
    QCOMPARE(colorText(color), QStringLiteral("ll*Color 33;1,20,255"));
}

void tst_LayerData::digitStrings()
{
    QVERIFY(isDigitStr(QString()) && isDigitStr(QStringLiteral("0123456789")));
    for (const char *text : {"12a", "-1", " 1", "1.5", "\xd9\xa3"}) // the last one is Arabic for 3
        QVERIFY2(!isDigitStr(QString::fromUtf8(text)), text);
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

    const QPixmap text = creatTextStyleIcon(QStringLiteral("A"));
    QCOMPARE(text.size(), QSize(48, 16));
    QCOMPARE(extent(text, black) & QRect(0, 0, 48, 16), QRect(1, 1, 46, 15));
    QCOMPARE(text.toImage().pixel(0, 0), 0xffffffff);
}

void tst_LayerData::magentaIsTransparent()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("image.bmp"));
    QImage image(3, 1, QImage::Format_RGB32);
    image.setPixel(0, 0, qRgb(255, 0, 255));
    image.setPixel(1, 0, qRgb(255, 0, 254));
    image.setPixel(2, 0, qRgb(0, 128, 0));
    QVERIFY(image.save(path));
    const QPixmap loaded = loadImage(path);
    const QImage shown = loaded.toImage();
    QCOMPARE(qAlpha(shown.pixel(0, 0)), 0);
    QCOMPARE(shown.pixel(1, 0), qRgb(255, 0, 254));
    QCOMPARE(shown.pixel(2, 0), qRgb(0, 128, 0));
    QCOMPARE(loadImage(path).cacheKey(), loaded.cacheKey());

    const QString late = dir.filePath(QStringLiteral("late.bmp"));
    QVERIFY(loadImage(late).isNull() && image.save(late));
    QVERIFY(loadImage(late).isNull());
}

void tst_LayerData::resourceImages()
{
    for (const char *name :
         {"core_ccvon.bmp", "core_ccvoff.bmp", "core_ccthw.bmp", "core_ccfrz.bmp", "core_cculk.bmp",
          "core_cclk.bmp", "core_ccpldi.bmp", "core_ccnpl.bmp", "core_ccvfrz.bmp",
          "core_ccvthw.bmp", "IDB_LSTATE_CURRENT.png"}) {
        const QPixmap image = loadImage(QStringLiteral(":/") + QLatin1String(name));
        QVERIFY2(image.size() == QSize(16, 16) && !extent(image, 0).isEmpty(), name);
        const QImage shown = image.toImage();
        for (int pixel = 0; pixel < 256; ++pixel) {
            const QColor color = shown.pixelColor(pixel % 16, pixel / 16);
            const bool isMagenta = color.red() > 200 && color.green() < 60 && color.blue() > 200;
            QVERIFY2(color.alpha() == 0 || !isMagenta, name);
        }
    }
}

void tst_LayerData::withoutDrawing()
{
    OvLayerUtility layers;
    QVERIFY(!getCurrentDb());
    QVERIFY(std::unique_ptr<QList<LayerItemData>>(layers.getAllLayer())->isEmpty());
    QVERIFY(!getLayerByName(QStringLiteral("0")));
    layers.setLayerOff(QStringLiteral("0"), false);

    LayerItemData untouched;
    untouched.name = QStringLiteral("mine");
    QVERIFY(!layers.getCurrentLayer(untouched));
    QCOMPARE(untouched.name, QStringLiteral("mine"));

    QList<QStringList> rows{{QStringLiteral("present")}};
    QVERIFY(layers.getAllLayerDate(rows) == 0 && rows.size() == 1);

    const OpenDrawing drawing(KcHost::newDrawing());
    QVERIFY(layers.getAllLayerDate(rows) == 1 && rows.size() == 2);
    QCOMPARE(rows.at(1),
             (QStringList{"true", "0", "true", "true", "true", "ll*white;255,255,255", "Continuous",
                          "Default", "Color-7", "true", "false", "false", ""}));
}

void tst_LayerData::settersReachTheDrawing()
{
    const QString name = QStringLiteral("Walls");
    const OpenDrawing drawing(drawingWithLayers({name}));
    OvLayerUtility layers;
    const QStringList before = rowOf(name);

    const std::tuple<void (OvLayerUtility::*)(QString, bool), int, bool> setters[] = {
            {&OvLayerUtility::setLayerOff, OnColumn, false},
            {&OvLayerUtility::setLayerFrozen, ThawedColumn, true},
            {&OvLayerUtility::setLayerLock, UnlockedColumn, true},
            {&OvLayerUtility::setLayerPlot, PlotColumn, false}};
    for (const auto &[set, column, unusual] : setters) {
        QStringList expected = before;
        expected[column] = QStringLiteral("false");
        (layers.*set)(name, unusual);
        QCOMPARE(rowOf(name), expected);
        (layers.*set)(name, !unusual);
        QCOMPARE(rowOf(name), before);
    }

    LayerItemData data;
    QVERIFY(layers.getCurrentLayer(data));
    QCOMPARE(data.color, QColor(Qt::white));
    data.isOn = false;
    const QList<QStringList> rows = layerRows();
    layers.setLayerByData(data);
    data.name = name;
    layers.setCurrenLayer(data);
    QCOMPARE(layerRows(), rows);
}

void tst_LayerData::refusalsAreSilent()
{
    const OpenDrawing drawing(drawingWithLayers({QStringLiteral("Walls")}));
    OvLayerUtility layers;
    layers.setLayerFrozen(QStringLiteral("0"), true);
    QCOMPARE(rowOf(QStringLiteral("0")).at(ThawedColumn), QStringLiteral("true"));

    QVERIFY(!getLayerByName(QStringLiteral("walls")));
    QCOMPARE(KcHost::openObjectCount(), 0);
    KcDbLayerTableRecord *reader = getLayerByName(QStringLiteral("Walls"));
    layers.setLayerLock(QStringLiteral("Walls"), true);
    QCOMPARE(rowOf(QStringLiteral("Walls")).at(UnlockedColumn), QStringLiteral("true"));
    QCOMPARE(KcHost::openObjectCount(), 1);
    QCOMPARE(reader->close(), Kcore::eOk);
}

void tst_LayerData::unreadableRecordsArePassedOver()
{
    const OpenDrawing drawing(
            drawingWithLayers({QStringLiteral("Doors"), QStringLiteral("Walls")}));
    KcDbLayerTableRecord *writer = getLayerByName(QStringLiteral("Doors"));
    QCOMPARE(writer->upgradeOpen(), Kcore::eOk);
    QCOMPARE(layerRows().size(), 2);
    QCOMPARE(rowOf(QStringLiteral("Walls")).at(OnColumn), QStringLiteral("true"));
    writer->close();

    QCOMPARE(KcHost::eraseLayer(*drawing, QStringLiteral("Doors")), Kcore::eOk);
    QVERIFY(!getLayerByName(QStringLiteral("Doors")));
    QCOMPARE(layerRows().size(), 2);

    LayerItemData data;
    KcDbLayerTableRecord *current = getLayerByName(QStringLiteral("0"));
    current->upgradeOpen();
    QVERIFY(!OvLayerUtility().getCurrentLayer(data));
    current->close();
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
    QCOMPARE(state.currentLayer(), QString("Blue"));
    QCOMPARE(state.names().join(' '), QString("0 Blue Frozen Off Red"));
    QVERIFY(state.layer("Blue")
            == (LayerState::Layer{true, true, false, true, Qt::blue, "Continuous", 25}));

    const QByteArray json = state.toJson();
    QString error = "?";
    QVERIFY(LayerState::fromJson(json, &error) == state && error.isEmpty());
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
    QVERIFY(layerRows() != rows);
    QVERIFY(state.restore().isEmpty() && layerRows() == rows && LayerState::capture() == state);

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
              "version;1,;2,;\"version\" is 2", "no version;version;Version;\"version\" is missing",
              "current;\"0\";0;\"current\" is not a text",
              "layers;[;7,\"x\":[;\"layers\" is not a list",
              "layer;[;[7,;\"layers[0]\" is not an object",
              "twice;B;A;\"layers[1].name\" is there twice",
              "flag;true;1;\"layers[0].on\" is not true or false",
              "missing;thawed;Thawed;\"layers[0].thawed\" is missing",
              "color;#ff0000;red;\"layers[0].color\" is not a color",
              "short color;#ff0000;#f00;\"layers[0].color\" is not a color",
              "lineweight;-3;1e300;\"layers[0].lineweight\" is not a whole number",
              "fraction;-3;0.5;\"layers[0].lineweight\" is not a whole number",
              "no number;-3;null;\"layers[0].lineweight\" is not a whole number"});
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
