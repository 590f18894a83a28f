// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DrawingFiles.h"
#include "Limit.h"
#include "Support.h"

#include "viewer/canvas/Curves.h"
#include "viewer/canvas/DrawingItem.h"
#include "viewer/canvas/DrawingLoader.h"
#include "viewer/canvas/GeometryReader.h"
#include "viewer/canvas/HatchLines.h"
#include "viewer/canvas/Outline.h"
#include "viewer/canvas/ShownEntities.h"

#include <QtTest>
#include <QtWidgets>

using namespace Tessa;

namespace {

/// A face of that many corners from "x y z" of each.
QString face(const QStringList &corners, const QString &style)
{
    QString groups = "0 3DFACE|" + style + '|';
    for (int i = 0; i < corners.size(); ++i) {
        const QStringList at = corners.at(i).split(' ');
        for (int axis = 0; axis < 3; ++axis)
            groups += QString("%1 %2|").arg(10 + i + 10 * axis).arg(at.at(axis));
    }
    return groups;
}

QString rounded(std::initializer_list<double> numbers)
{
    QStringList texts;
    for (const double number : numbers)
        texts += QString::number(qRound(number * 1e4) / 1e4);
    return texts.join(' ');
}

/// A drawing as an item of its own shows it.
struct Picture
{
    explicit Picture(const QString &path)
    {
        QString error;
        drawing = readDrawing(path, error);
        if (!drawing)
            qFatal("%s", qPrintable(error));
        item.setDrawing(drawing.get());
        item.setGround(ground);
    }

    /// Paints the item's coordinates from 0 on, y pointing down.
    QImage painted(QSize size, double zoom = 1, QPointF corner = {})
    {
        QImage image(size, QImage::Format_RGB32);
        image.fill(ground);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(zoom, zoom);
        painter.translate(-corner);
        QStyleOptionGraphicsItem option;
        option.exposedRect = painter.transform().inverted().mapRect(QRectF(image.rect()));
        item.paint(&painter, &option, nullptr);
        return image;
    }

    std::unique_ptr<Drawing> drawing;
    DrawingItem item;
};

} // namespace

/// What the canvas shows of a drawing.
class TestDrawings : public QObject
{
    Q_OBJECT

private slots:
    void textCodes();
    void pictures_data();
    void pictures();
    void linetypes_data();
    void linetypes();
    void recordNumbers();
    void readsOnce();
    void picking_data();
    void picking();
    void selection();
    void projections();
    void bounds_data();
    void bounds();
    void facesHide_data();
    void facesHide();
    void lineInFace();
    void allSides();
    void hatchLines();
    void areas_data();
    void areas();
    void leader();
    void endlessLines_data();
    void endlessLines();
    void copiesInSight();
    void onePiece_data();
    void onePiece();
    void boundedPictures_data();
    void boundedPictures();
    void absurdTexts();
    void whatCannotBeDrawn();
};

void TestDrawings::textCodes()
{
    const std::pair<const char *, QStringList> cases[] = {
            {"%%c20 45%%D %%p1 %%%", {"⌀20 45° ±1 %"}},
            {"%%ua%%u%%065%%x%", {"aA%%x%"}},
            {"{\\fArial|b1;Big} \\H2x;hall\\Pno\\~\\{2\\}", {"Big hall", "no\u00a0{2}"}},
            {"\\S1^2; or \\S3#4;", {"1/2 or 3/4"}},
            {"a\\Hb", {"a"}}};
    for (const auto &[raw, lines] : cases)
        QCOMPARE(paragraphs(raw), lines);
}

void TestDrawings::pictures_data()
{
    // The insert of a block with one square, or nothing; that square; its colour; its places.
    addTests({"by layer;;8 red;red;5,5",
              "own true colour;;8 Red|62 2|420 1193046;#123456;5,5",
              "in paper space;;8 Red|67 1;;",
              "invisible;;8 Red|60 1;;",
              "several layers;;102 {A|8 Blue|102 }|8 Red|8 Blue;red;5,5",
              "in another section;;60 1|0 ENDSEC|0 SECTION|2 X|0 SOLID|8 Red;;",
              "section named late;;60 1|0 ENDSEC|0 SECTION|5 1|2 ENTITIES|0 SOLID|8 Red;;",
              "behind the end;;60 1|0 ENDSEC|0 EOF|0 SECTION|2 ENTITIES|0 SOLID|8 Red;;",
              "variable;;8 Blue|10 0|20 0|11 9|21 0|12 0|22 9|13 9|23 9|9 $X;blue;5,5",
              "insert's layer, not its colour;8 Red|62 4;8 0;red;5,5",
              "by block;8 Red|62 4;8 0|62 0;cyan;5,5",
              "by block from layer;8 Red;8 Blue|62 0;red;5,5",
              "insert off;8 Off;8 Blue;blue;5,5",
              "insert off, layer 0;8 Off;8 0;;",
              "insert frozen;8 Frozen;8 Blue;;",
              "off in a block;8 Red;8 Off;;",
              "frozen in a block;8 Red;8 Frozen;;",
              "turned;8 Red|10 50|20 50|50 90;8 0;red;45,55",
              "scaled;8 Red|10 50|20 50|41 -1|42 -1;8 0;red;45,45",
              "mirrored;8 Red|10 -50|20 50|210 0|220 0|230 -1;8 0;red;45,55",
              "turned array;8 Red|10 50|20 50|50 90|70 3|71 2|44 20|45 30;8 0;red;"
              "45,55 45,75 45,95 15,55 15,75 15,95",
              "nested;2 Outer|8 Red|10 50|20 50;8 0;red;55,55 75,55"});
}

void TestDrawings::pictures()
{
    QFETCH(QStringList, fields);
    const QString &insert = fields.at(1);
    const QString part = block("Part", square(100, 100, fields.at(2)), "10 100|20 100");
    const QString outer = block("Outer", "0 INSERT|8 0|2 part|0 INSERT|8 0|2 Part|10 20|20 0|");
    const QString path = insert.isEmpty() ? file({}, square(0, 0, fields.at(2)))
                                          : file(outer + part, "0 INSERT|2 Part|" + insert + '|');
    const QImage image = Picture(path).painted({100, 100});
    const QStringList places = fields.at(4).split(' ');
    for (int x = 5; x < 100; x += 10) {
        for (int y = 5; y < 100; y += 10) {
            const bool isDrawn = places.contains(QString("%1,%2").arg(x).arg(y));
            QCOMPARE(image.pixelColor(x, y), isDrawn ? QColor(fields.at(3)) : ground);
        }
    }
}

void TestDrawings::linetypes_data()
{
    // The insert of a block with a line, or nothing; the line's style; the zoom; whether there is
    // ink at each fifth unit along it.
    addTests({"by layer;;8 Blue;1;######..#.######..#.######",
              "zoomed;;8 Blue;3;######..#.######..#.######",
              "own;;8 Red|6 Dash;1;######..#.######..#.######",
              "own scale;;8 Blue|48 0.5;1;#####..###..###..###..####",
              "not the layer's;;8 Blue|6 Continuous;1;##########################",
              "too fine;;8 Blue;0.04;##########################",
              "too short;;8 Blue|48 2;1;##########################",
              "very long;;8 Blue|10 -5e8;1;######..#.######..#.######",
              "very long line zoomed in;;8 Blue|10 -5e8;30;######..#.######..#.######",
              "countless dashes;;8 Blue|48 0.013|10 -9e11;30;##########################",
              "by block;8 Red|6 Dash;8 Blue|6 ByBlock;1;######..#.######..#.######",
              "insert's layer;8 Blue;8 0;1;######..#.######..#.######"});
}

void TestDrawings::linetypes()
{
    QFETCH(QStringList, fields);
    const QString line = "0 LINE|10 0|20 1.5|11 128|21 1.5|" + fields.at(2) + '|';
    const QString insert = "0 INSERT|2 Part|" + fields.at(1) + '|';
    const double zoom = fields.at(3).toDouble();
    Picture picture(fields.at(1).isEmpty() ? file({}, line) : file(block("Part", line), insert));
    const QImage image = picture.painted({int(130 * zoom) + 1, int(3 * zoom) + 1}, zoom);
    QString ink;
    for (int x = 0; x <= 125; x += 5)
        ink += image.pixelColor(int(x * zoom), int(1.5 * zoom)) == ground ? '.' : '#';
    QCOMPARE(ink, fields.at(4));
}

/// They are those of the host: what it erases with a layer is what was shown on that.
void TestDrawings::recordNumbers()
{
    const QString text = QString("0 TEXT|8 0|40 1|1 %1|").arg("", 1500, 'x'); // a line that is cut
    const QString sample = OVCC_SOURCE_DIR "/viewer/sample/";
    for (const QString &path :
         {sample + "floorplan.dxf", sample + "gardenhouse.dxf",
          file({}, text + square(0, 0, "8 Red") + text + square(20, 0, "8 Blue"))}) {
        const Picture picture(path);
        KcDbDatabase &database = *picture.drawing->database;
        QSet<int> erased;
        const QStringList layers = KcHost::layerUsage(database).keys();
        for (const QString &layer : layers) {
            const int index = picture.drawing->layers.indexOf(layer);
            if (KcHost::eraseLayerWithEntities(database, layer) == Kcore::eOk)
                erased += index;
            for (const Entity &entity : picture.drawing->geometry.modelSpace().entities)
                QCOMPARE(KcHost::isErased(database, entity.record),
                         erased.contains(entity.style.layer));
        }
        QVERIFY(erased.size() > 1);
    }
}

/// What is shown is what the database has read, whatever became of the file, and whole or not at all.
void TestDrawings::readsOnce()
{
    const QString path = file({}, square(0, 0, "8 Red") + square(20, 0, "8 Blue"));
    const Picture picture(path);
    file({}, square(0, 0, "8 0"));
    QStringList warnings;
    QCOMPARE(int(readGeometry(*picture.drawing, warnings).modelSpace().entities.size()), 2);

#ifndef __SANITIZE_ADDRESS__ // which has no room left to be short of
    // What is level becomes a path of Qt's, which does not survive it.
    file({}, QString("0 LINE|8 0|10 0|20 0|30 0|11 1|21 1|31 1|").repeated(1 << 18));
    QFile used("/proc/self/statm");
    QVERIFY(used.open(QIODevice::ReadOnly));
    const rlim_t room = used.readAll().split(' ').first().toULongLong() * 4096 + (40 << 20);
    QString error;
    const Limit memory(RLIMIT_AS, room);
    QVERIFY(!readDrawing(path, error));
    QCOMPARE(error, path + ": there is not enough memory to show it.");
#endif
}

void TestDrawings::picking_data()
{
    // A point and a reach, or the corners of a window or of a crossing window; who is there.
    addTests({"filling;5,8,1;0",
              "topmost;5,5,1;5",
              "in reach;-3,5,4;5",
              "out of reach;-3,5,2;-1",
              "on a circle;57,57,1;1",
              "in a circle;50,50,1;-1",
              "insert;25,25,1;2",
              "beside the block in an insert;35,25,1;-1",
              "layer off;50,80,1;-1",
              "text;62,2,0.5;4",
              "text along a line;118,5,0.5;7",
              "turned line;75,86,1;6",
              "beside a turned line;85,75,1;-1",
              "all;window,-9,-9,200,200;0 1 2 4 5 6 7",
              "one;window,39,39,61,61;1",
              "half a circle;window,50,39,61,61;",
              "crossed circle;crossing,50,39,61,61;1",
              "in a circle, crossing;crossing,48,48,52,52;",
              "in a filling;crossing,2,7,3,8;0",
              "in bounds only;crossing,86,70,90,74;",
              "across a line;crossing,70,85,80,86;6",
              "insert, crossing;crossing,28,28,40,40;2",
              "insert as a whole;window,19,19,31,31;2"});
}

void TestDrawings::picking()
{
    QFETCH(QStringList, fields);
    Picture picture(file(block("Part", square(100, 100, "8 0") + square(130, 100, "8 Off")),
                         square(0, 0, "8 Red") + "0 CIRCLE|8 Blue|10 50|20 50|40 10|"
                                 + "0 INSERT|8 Red|2 Part|10 -80|20 -80|"
                                 + "0 LINE|8 Off|10 0|20 80|11 100|21 80|"
                                 + "0 TEXT|8 Red|10 60|20 0|40 10|1 Text|"
                                 + "0 LINE|8 Red|10 0|20 5|11 10|21 5|"
                                 + "0 LINE|8 Red|10 60|20 70|11 90|21 100|"
                                 + "0 TEXT|8 Red|72 3|10 120|20 0|11 120|21 20|40 5|1 Text|"));
    QStringList where = fields.at(1).split(',');
    if (where.size() == 3) {
        const QPointF point(where[0].toDouble(), where[1].toDouble());
        QCOMPARE(picture.item.entityAt(point, where[2].toDouble()), fields.at(2).toInt());
        return;
    }
    const bool isCrossing = where.takeFirst() == "crossing";
    const QRectF area(QPointF(where[0].toDouble(), where[1].toDouble()),
                      QPointF(where[2].toDouble(), where[3].toDouble()));
    QStringList found;
    const QVector<int> entities = picture.item.entitiesIn(area, isCrossing);
    for (const int entity : entities)
        found += QString::number(entity);
    QCOMPARE(found.join(' '), fields.at(2));
}

void TestDrawings::selection()
{
    Picture picture(file({}, "0 LINE|8 Red|10 0|20 10.5|11 50|21 10.5|"
                             "0 LINE|8 Red|10 0|20 30.5|11 50|21 30.5|"
                             "0 LINE|8 0|62 3|10 25.5|20 0|11 25.5|21 50|"));
    picture.item.setSelection({0});
    const QImage image = picture.painted({50, 50});
    QCOMPARE(image.pixelColor(10, 10), QColor(Qt::red));
    QCOMPARE(image.pixelColor(25, 10), QColor(Qt::red)); // on top of what crosses it
    QVERIFY(image.pixelColor(10, 12).blue() > 150);
    QCOMPARE(image.pixelColor(10, 32), ground);
    picture.item.setSelection({});
    QCOMPARE(picture.painted({50, 50}).pixelColor(10, 12), ground);
}

void TestDrawings::projections()
{
    // Where the point 1, 2, 4 shows from each side, and how near.
    QStringList places;
    for (int direction = 0; direction < 10; ++direction) {
        const Projection projection = projectionOf(ViewDirection(direction));
        const SpacePoint at = projection.toPicture.map(SpacePoint{1, 2, 4});
        places += rounded({at.x, at.y, at.z});
    }
    QCOMPARE(places.join(", "),
             QString("1 2 4, -1 2 -4, -2 4 -1, 2 4 1, 1 4 -2, -1 4 2, -0.7071 4.4907 0.5774, "
                     "2.1213 3.6742 1.7321, 0.7071 2.0412 4.0415, -2.1213 2.8577 2.8868"));
}

void TestDrawings::bounds_data()
{
    // An entity, from where it is seen, and left, bottom, width and height there.
    addTests({"circle;0 CIRCLE|8 0|10 5|20 7|30 3|40 2|210 0|220 -1|230 0|;front;3 5 4 4",
              "ellipse;0 ELLIPSE|8 0|10 5|20 7|30 3|11 0|21 0|31 4|40 0.5|41 0|42 6.283185307|"
              "210 0|220 -1|230 0|;front;3 -1 4 8",
              "flat polyline;0 LWPOLYLINE|8 0|90 2|38 6|10 1|20 2|10 4|20 9|;front;1 6 3 0",
              "old polyline;0 POLYLINE|8 0|66 1|10 0|20 0|30 6|0 VERTEX|8 0|10 1|20 2|30 3|"
              "0 VERTEX|8 0|10 1|20 2|30 8|0 SEQEND|;front;1 6 0 0",
              "polyline in space;0 POLYLINE|8 0|66 1|70 8|0 VERTEX|8 0|10 1|20 2|30 3|0 VERTEX|8 0|"
              "10 1|20 2|30 8|0 SEQEND|;front;1 3 0 5",
              "bulge;0 LWPOLYLINE|8 0|90 2|10 1|20 2|42 1|10 9|20 2|;top;1 -2 8 4",
              "bulge to the right;0 LWPOLYLINE|8 0|90 2|10 1|20 2|42 -1|10 9|20 2|;top;1 2 8 4",
              "all but no bulge;0 LWPOLYLINE|8 0|90 2|10 1|20 2|42 1e-6|10 9|20 2|;top;1 2 8 0",
              "spline in space;0 SPLINE|8 0|71 1|72 4|73 2|40 0|40 0|40 1|40 1|10 1|20 2|30 3|10 1|"
              "20 2|30 8|;front;1 3 0 5",
              "weights;0 SPLINE|8 0|71 2|72 6|73 3|40 0|40 0|40 0|40 1|40 1|40 1|10 0|20 0|41 1|"
              "10 5|20 10|41 0.25|10 10|20 0|41 1|;top;0 0 10 2",
              "odd knots;0 SPLINE|8 0|71 2|72 2|73 3|40 0|40 1|10 0|20 0|10 5|20 10|10 10|20 0|;"
              "top;0 0 10 10",
              "points to go through;0 SPLINE|8 0|71 3|74 3|11 0|21 0|11 5|21 5|11 10|21 0|;top;"
              "0 0 10 5",
              "insert;0 INSERT|8 0|2 Part|10 1|20 2|30 5|43 3|;front;1 2 0 6",
              "upright insert;0 INSERT|8 0|2 Part|10 1|20 2|30 5|70 2|44 4|210 0|220 -1|230 0|;"
              "front;1 2 4 0"});
}

void TestDrawings::bounds()
{
    QFETCH(QStringList, fields);
    const QString line = "0 LINE|8 0|10 0|20 0|30 0|11 0|21 0|31 2|";
    Picture picture(file(block("Part", line, "10 0|20 0|30 1"), fields.at(1)));
    const auto view = fields.at(2) == "front" ? ViewDirection::Front : ViewDirection::Top;
    picture.item.setProjection(projectionOf(view));
    const QRectF found = picture.item.boundingRect();
    QCOMPARE(rounded({found.x(), found.y(), found.width(), found.height()}), fields.at(3));
    QCOMPARE(picture.item.entitiesIn(found.adjusted(-1, -1, 1, 1), false), QVector<int>{0});
}

void TestDrawings::facesHide_data()
{
    // What is red, 10 above a blue face and overlapping it, and the entity on top there.
    addTests({"faces;0 3DFACE|8 Red|10 20|20 0|30 10|11 60|21 0|31 10|12 60|22 40|32 10|13 20|"
              "23 40|33 10|;0",
              "polygon mesh;0 POLYLINE|8 Red|66 1|70 16|71 2|72 2|0 VERTEX|8 0|10 20|20 0|30 10|"
              "70 64|0 VERTEX|8 0|10 60|20 0|30 10|70 64|0 VERTEX|8 0|10 20|20 40|30 10|70 64|"
              "0 VERTEX|8 0|10 60|20 40|30 10|70 64|0 SEQEND|;0",
              "polyface mesh;0 POLYLINE|8 Red|66 1|70 64|71 4|72 2|0 VERTEX|8 0|10 20|20 0|30 10|"
              "70 192|0 VERTEX|8 0|10 60|20 0|30 10|70 192|0 VERTEX|8 0|10 60|20 40|30 10|70 192|"
              "0 VERTEX|8 0|10 20|20 40|30 10|70 192|0 VERTEX|8 0|70 128|71 1|72 2|73 -3|0 VERTEX|"
              "8 0|70 128|71 -1|72 3|73 4|0 SEQEND|;0",
              "raised insert;0 INSERT|8 Red|2 Part|30 10|;0",
              "lowered insert;0 INSERT|8 Red|2 Part|30 -10|;1"});
}

void TestDrawings::facesHide()
{
    QFETCH(QStringList, fields);
    const int front = fields.at(2).toInt();
    Picture picture(file(block("Part", face({"20 0 0", "60 0 0", "60 40 0", "20 40 0"}, "8 0")),
                         fields.at(1) + face({"0 0 0", "40 0 0", "40 40 0", "0 40 0"}, "8 Blue")
                                 + "0 LINE|8 0|10 0|20 20.5|30 5|11 60|21 20.5|31 5|"));
    const QImage wires = picture.painted({70, 50});
    QCOMPARE(wires.pixelColor(30, 10), ground);
    QCOMPARE(picture.item.entityAt({30, 10}, 1), -1);

    picture.item.setFaceStyle(FaceStyle::Flat);
    const QImage flat = picture.painted({70, 50});
    const auto isRed = [](const QColor &color) { return color.red() > 200 && color.blue() == 0; };
    const auto isBlue = [](const QColor &color) { return color.blue() > 200 && color.red() == 0; };
    QVERIFY(isBlue(flat.pixelColor(10, 10)) && isRed(flat.pixelColor(50, 10)));
    QVERIFY(front == 0 ? isRed(flat.pixelColor(30, 10)) : isBlue(flat.pixelColor(30, 10)));
    QCOMPARE(flat.pixelColor(10, 20), QColor(Qt::white));
    QCOMPARE(flat.pixelColor(30, 20) == QColor(Qt::white), front != 0);
    QCOMPARE(picture.item.entityAt({30, 10}, 1), front);
    QCOMPARE(picture.item.entityAt({10, 10}, 1), 1);

    picture.item.setFaceStyle(FaceStyle::Hidden);
    const QImage hidden = picture.painted({70, 50});
    QCOMPARE(hidden.pixelColor(30, 10), ground);
    QCOMPARE(hidden.pixelColor(10, 20), QColor(Qt::white));
    QCOMPARE(hidden.pixelColor(30, 20) == QColor(Qt::white), front != 0);

    // From below the order is the other one; x runs to the left.
    picture.item.setProjection(projectionOf(ViewDirection::Bottom));
    picture.item.setFaceStyle(FaceStyle::Flat);
    const QColor below = picture.painted({70, 50}, 1, {-60, 0}).pixelColor(30, 10);
    QVERIFY(front == 0 ? isBlue(below) : isRed(below));
    QCOMPARE(picture.item.entityAt({-30, 10}, 1), 1 - front);
}

void TestDrawings::lineInFace()
{
    Picture picture(file({}, "0 LINE|8 0|10 20.5|20 0|30 20.5|11 20.5|21 40|31 20.5|"
                                     + face({"0 0 0", "40 0 40", "40 40 40", "0 40 0"}, "8 Red")));
    picture.item.setFaceStyle(FaceStyle::Flat);
    const QImage image = picture.painted({50, 50});
    for (int y = 2; y < 38; ++y)
        QCOMPARE(image.pixelColor(20, y), QColor(Qt::white));
    QCOMPARE(picture.item.entityAt({22, 20}, 2), 0);
    QCOMPARE(picture.item.entityAt({30, 20}, 2), 1);
    picture.item.setProjection(projectionOf(ViewDirection::Bottom));
    QCOMPARE(picture.painted({50, 50}, 1, {-41, 0}).pixelColor(20, 20), QColor(Qt::white));
    Picture folded(file({}, face({"0 0 0", "40 0 0", "40 40 0", "36 10 0"}, "8 Red")));
    folded.item.setFaceStyle(FaceStyle::Flat);
    QCOMPARE(folded.item.entityAt({30, 15}, 1), 0);
    Picture small(file({}, "0 3DFACE|8 Red|70 15|10 20|20 20|11 20.5|21 20|12 20.5|22 20|"
                           "13 20|23 20|"));
    QCOMPARE(small.painted({40, 40}).pixelColor(20, 20), ground);
}

/// Seen from anywhere, also edge-on, a drawing fills its bounds and does not leave them.
void TestDrawings::allSides()
{
    Picture picture(OVCC_SOURCE_DIR "/viewer/sample/gardenhouse.dxf");
    picture.item.setSelection({0, 70, 80});
    QVERIFY(picture.drawing->warnings.isEmpty());
    for (int shown = 0; shown < 30; ++shown) {
        const FaceStyle styles[]{FaceStyle::Wireframe, FaceStyle::Hidden, FaceStyle::FlatEdges};
        picture.item.setFaceStyle(styles[shown % 3]);
        picture.item.setProjection(projectionOf(ViewDirection(shown / 3)));
        const QRectF bounds = picture.item.boundingRect();
        constexpr int margin = 8;
        const double zoom = 300 / qMax(bounds.width(), bounds.height());
        const QSize size = (bounds.size() * zoom).toSize();
        const QImage image = picture.painted(size + QSize(2 * margin, 2 * margin), zoom,
                                             bounds.topLeft() - QPointF(margin, margin) / zoom);
        const QImage mask = image.createMaskFromColor(ground.rgb(), Qt::MaskInColor);
        const QRect inked = QRegion(QBitmap::fromImage(mask)).boundingRect();
        const QRect expected(QPoint(margin, margin), size);
        QVERIFY(expected.adjusted(-6, -6, 6, 6).contains(inked));
        QVERIFY(inked.width() > 0.95 * size.width() && inked.height() > 0.95 * size.height());
    }
}

/// The lines of hatches, all dashes apart, are those that another program finds.
void TestDrawings::hatchLines()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("hatches.dxf");
    const QJsonArray hatches = ezdxf("hatches.py", {path})["hatches"].toArray();
    const Picture picture(path);
    const std::vector<Entity> &entities = picture.drawing->geometry.modelSpace().entities;
    QCOMPARE(int(entities.size()), hatches.size());
    for (int i = 0; i < hatches.size(); ++i) {
        std::vector<QLineF> expected; // in both directions
        const QJsonArray lines = hatches.at(i).toArray();
        for (const auto &line : lines) {
            const QPointF start(line[0].toDouble(), line[1].toDouble());
            const QPointF end(line[2].toDouble(), line[3].toDouble());
            expected.insert(expected.end(), {{start, end}, {end, start}});
        }
        const QRectF area(-100, -100, 300, 300);
        const SeenHatch seen = seenHatch(*entities[i].as<Hatching>(), {}, area, 1e-3, 1e9);
        const std::vector<SpacePath::Element> &ends = seen.lines.elements;
        QCOMPARE(seen.tint, 0.0);
        QCOMPARE(ends.size(), expected.size());
        for (std::size_t end = 0; end < ends.size(); end += 2) {
            const QPointF from(ends[end].at.x, ends[end].at.y);
            const QPointF to(ends[end + 1].at.x, ends[end + 1].at.y);
            QVERIFY(std::any_of(expected.begin(), expected.end(), [&](const QLineF &line) {
                return QLineF(line.p1(), from).length() + QLineF(line.p2(), to).length() < 0.05;
            }));
        }
    }
}

void TestDrawings::areas_data()
{
    // The groups of a hatch before and behind its loops, the flags of three squares inside of each
    // other, and which of the rings are filled, from the outermost to the innermost.
    addTests({"solid;70 1;75 0;3 18 2;#.#", "no flags;70 1;75 1;2 2 2;#.#",
              "outermost;70 1;75 1;3 18 2;#..", "islands ignored;70 1;75 2;3 18 2;###",
              "pattern;70 0;75 0|78 1|53 0|43 0|44 5.5|45 0|46 10|79 0;3 18 2;#.#",
              "dense pattern;70 0;75 0|78 1|53 45|43 0|44 0|45 0|46 0.1|79 0;3 18 2;#.#",
              "no pattern;70 0;75 0;3 18 2;..."});
}

void TestDrawings::areas()
{
    QFETCH(QStringList, fields);
    QString loops;
    for (int i = 0; i < 3; ++i) {
        const int from = 10 * i;
        const int to = 60 - from;
        loops += QString("92 %1|72 0|73 1|93 4|10 %2|20 %2|10 %3|20 %2|10 %3|20 %3|10 %2|20 %3|")
                         .arg(fields.at(3).split(' ').at(i))
                         .arg(from)
                         .arg(to);
    }
    // A face elsewhere, so that the styles matter.
    Picture picture(file({}, "0 HATCH|8 Red|30 0|" + fields.at(1) + "|91 3|" + loops + fields.at(2)
                                     + "|98 1|10 35|20 35|"
                                     + face({"90 0 0", "95 0 0", "95 9 0", "90 9 0"}, "8 0")));
    QVERIFY(picture.drawing->warnings.isEmpty());
    for (const FaceStyle style : {FaceStyle::Wireframe, FaceStyle::Flat}) {
        picture.item.setFaceStyle(style);
        const QImage image = picture.painted({100, 60});
        QString rings;
        for (const int x : {5, 15, 25}) {
            rings += image.pixelColor(x, 25).red() > 150 ? '#' : '.';
            QCOMPARE(picture.item.entityAt({x + 0.5, 25.5}, 0.3) == 0, rings.endsWith('#'));
        }
        QCOMPARE(rings, fields.at(4));
    }
}

void TestDrawings::leader()
{
    const QString style = "0 ENDSEC|0 SECTION|2 TABLES|0 TABLE|2 DIMSTYLE|0 DIMSTYLE|2 Big|40 2|"
                          "41 9|0 ENDTAB|";
    const QString leader = "0 LEADER|8 %1|62 5|3 big|71 1|72 0|76 3|10 0|20 0|10 40|20 0|10 40|"
                           "20 30|1001 ACAD|1000 DSTYLE|1002 {|1070 41|1040 6|1002 }|";
    Picture picture(file(style, leader.arg("Red") + leader.arg("Off")));
    const QImage image = picture.painted({50, 40}, 1, {-1.5, -5.5});
    for (const QPoint place : {QPoint(12, 4), QPoint(12, 6), QPoint(30, 5), QPoint(41, 20)})
        QCOMPARE(image.pixelColor(place), QColor(Qt::blue));
    for (const QPoint place : {QPoint(14, 8), QPoint(20, 6)})
        QCOMPARE(image.pixelColor(place), ground);
    QCOMPARE(picture.item.entityAt({40, 20}, 1), 0);
    // One that its layer hides is none to select.
    ShownEntities shown(*picture.drawing, {});
    const std::vector<Entity> &entities = picture.drawing->geometry.modelSpace().entities;
    QVERIFY(shown.shows(entities.at(0)) && !shown.shows(entities.at(1)));
}

void TestDrawings::endlessLines_data()
{
    // Groups of the line, and where there is ink along it, from -45 to 45.
    addTests({"line;0 XLINE|8 Red|10 20|20 30.5|11 -7|21 0|;##########",
              "ray;0 RAY|8 Red|10 20|20 30.5|11 -7|21 0|;#######...",
              "dashed;0 XLINE|8 Blue|10 5|20 30.5|11 1|21 0|;###.####.#",
              "dashed ray;0 RAY|8 Blue|10 -50|20 30.5|11 1|21 0|;###..###..",
              "in an insert;0 INSERT|8 Red|2 Part|10 3|20 30.5|50 90|70 2|44 -40|;##########",
              "in the depth;0 XLINE|8 Red|10 9|20 9|30 9|11 0|21 0|31 1|;.........."});
}

void TestDrawings::endlessLines()
{
    QFETCH(QStringList, fields);
    const QString part = block("Part", "0 XLINE|8 0|10 0|20 0|11 0|21 1|0 POINT|8 0|10 -30|20 0|");
    Picture picture(file(part, square(0, 0, "8 Red") + fields.at(1)));
    const QRectF bounds = picture.item.bounds();
    QVERIFY(QRectF(-1, -1, 12, 12).contains(bounds) || fields.first() == "in an insert");
    // The dashes stay where they are, whatever the part of the picture.
    for (const int left : {50, 57}) {
        const QImage image = picture.painted({110, 20}, 1, {double(-left), 25});
        QString ink;
        for (int x = -45; x <= 45; x += 10)
            ink += image.pixelColor(x + left, 5) == ground ? '.' : '#';
        QCOMPARE(ink, fields.at(2));
    }
    const QRectF all(-1000, -1000, 2000, 2000);
    QCOMPARE(picture.item.entitiesIn(all, false), QVector<int>{0});
    QCOMPARE(picture.item.entitiesIn(all, true), (QVector<int>{0, 1}));
    QCOMPARE(picture.item.entityAt({-45, 30.5}, 1), fields.at(2).startsWith('#') ? 1 : -1);
}

/// Of an array those copies are found that a look at each of them finds.
void TestDrawings::copiesInSight()
{
    QRandomGenerator random(7);
    const auto number = [&random](int least, int most) { return random.bounded(least, most + 1); };
    const auto grown = [](QRectF area, double by) { return area.adjusted(-by, -by, by, by); };
    Block block;
    block.bounds = {{-1, -2, 0}, {3, 1, 2}};
    for (int i = 0; i < 2000; ++i) {
        const auto turn = SpaceTransform::fromPlane(QTransform().rotate(number(0, 7) * 45));
        const auto placement = turn * SpaceTransform::fromTranslate({number(-9, 9) * 1., 0, 0});
        const SpacePoint right = turn.map(SpacePoint{number(-4, 4) * 1., 0, 0});
        const SpacePoint up = turn.map(SpacePoint{0, number(-4, 4) * 1., 0});
        const BlockInsert insert{0, placement, number(1, 9), number(1, 9), right, up};
        const BlockView view(projectionOf(ViewDirection(number(0, 9))).toPicture);
        const QRectF area(number(-30, 30), number(-30, 30), number(0, 20), number(0, 20));
        QSet<QPair<int, int>> found;
        const InsertCopies copies(insert, block, view, area, 0);
        copies.forEach([&](int column, int row, const QRectF &) {
            found.insert({column, row});
            return true;
        });
        for (int copy = 0; copy < insert.columns * insert.rows; ++copy) {
            const QPair<int, int> at(copy / insert.rows, copy % insert.rows);
            const BlockView shown(insert.placementOf(at.first, at.second) * view.toPicture);
            const QRectF bounds = shown.boundsOf(block.bounds);
            // What only just touches the area may be found or not.
            QVERIFY(found.contains(at) ? overlap(bounds, grown(area, 1e-6))
                                       : !overlap(bounds, grown(area, -1e-6)));
            found.remove(at);
        }
        QVERIFY(found.isEmpty());
    }
}

void TestDrawings::onePiece_data()
{
    // The style of the second entity of a block, and the colour of the block's insert as one piece.
    addTests({"first shown;8 Blue;blue", "by block;8 Red|62 0;cyan", "insert's layer;8 0;red",
              "frozen;8 Frozen;", "off;8 Off;"});
}

void TestDrawings::onePiece()
{
    QFETCH(QStringList, fields);
    const QString part = block("Part", square(0, 0, "8 Frozen") + square(9, 0, fields.at(1)));
    Picture picture(file(block("Outer", "0 INSERT|8 0|62 4|2 Part|") + part,
                         "0 INSERT|8 Red|2 Outer|70 9|44 20|"));
    ShownEntities shown(*picture.drawing, {});
    shown.setDetail({0, 0, 200, 200}, 50);
    // Each piece stands for three copies.
    QStringList pieces;
    shown.visitAll({0, 0, 200, 200}, [&pieces](const Entity &entity, const QRectF &bounds,
                                               const BlockView &, const Look &look) {
        if (entity.as<BlockInsert>() && bounds.width() == 59)
            pieces += look.color.name();
        return true;
    });
    const QString color = QColor(fields.at(2)).name();
    QCOMPARE(pieces, fields.at(2).isEmpty() ? QStringList() : QStringList({color, color, color}));
}

void TestDrawings::boundedPictures_data()
{
    // The groups of an insert of a block with a line in it, or of one with that block in it twice, and
    // so on; the size of a part of the picture, and how many visits it takes; 0 for as many as allowed.
    addTests({"array;B0|70 2200|71 2200|44 7|45 7;1e5;0",
              "array, a few copies in sight;B0|70 2200|71 2200|44 7|45 7;15;9",
              "a row out of sight;B0|70 32767|44 7|20 90;15;0",
              "turned array;B0|70 3000|71 3000|44 1|45 1|50 30;900;0",
              "very large array;B0|70 32767|71 32767|44 7|45 7;1e6;0",
              "long lines;B8|70 999|71 999|44 0.1|45 0.1|41 100;100;0", "copies in copies;B30;9;0",
              "arrays in arrays;B3|70 99|71 99|44 9|45 9;1000;0",
              "endless lines;E|70 3000|71 3000|44 9|45 9;100;0",
              "endless lines at one place;E|70 3000|71 3000;100;0"});
}

void TestDrawings::boundedPictures()
{
    QFETCH(QStringList, fields);
    const auto insert = [](const QString &block) { return "0 INSERT|8 0|2 " + block + '|'; };
    QString blocks = block("B0", "0 LINE|8 0|10 0|20 0|11 5|21 5|")
                     + block("E", "0 XLINE|8 0|10 0|20 0|11 5|21 5|0 POINT|8 0|10 0|20 0|");
    for (int i = 1; i <= 30; ++i) {
        const QString inner = QString("B%1").arg(i - 1);
        blocks += block(QString("B%1").arg(i), insert(inner) + insert(inner + "|10 0.001"));
    }
    Picture picture(file(blocks, insert(fields.at(1))));
    const double size = fields.at(2).toDouble();
    const QRectF area(0, 0, size, size);
    ShownEntities shown(*picture.drawing, {});
    shown.setDetail(area, size / 1000);
    int visits = 0;
    shown.visitAll(area, [&](const Entity &, const QRectF &, const BlockView &, const Look &) {
        return ++visits < 1000000;
    });
    QVERIFY(visits <= 520000);
    if (fields.at(3) != "0")
        QCOMPARE(visits, fields.at(3).toInt());
    picture.painted({100, 100}, 100 / size);
    picture.item.entityAt({2, 2}, size / 100);
    picture.item.entitiesIn(area, true);
    picture.item.entitiesIn(area, false);
    picture.item.entitiesIn({}, false);
}

void TestDrawings::absurdTexts()
{
    const TextSetter setter;
    const QStringList lines{"One", "Two three"};
    const double none = std::numeric_limits<double>::quiet_NaN();
    const double infinite = std::numeric_limits<double>::infinity();
    const QRectF first = setter.broken(lines, 0, 0.25, 1).bounds;
    const QRectF last = setter.broken(lines, 0, 4, 9).bounds;
    QCOMPARE(setter.broken(lines, infinite, -5, std::numeric_limits<int>::min()).bounds, first);
    QCOMPARE(setter.broken(lines, -1, none, 0).bounds, first);
    QCOMPARE(setter.broken(lines, none, 1e300, 99).bounds, last);
}

void TestDrawings::whatCannotBeDrawn()
{
    const QString shape = square(0, 0, "8 0");
    // What is in a block, and what is told of it.
    const std::pair<const char *, const char *> cases[] = {
            {"0 INSERT|8 0|2 Odd|", "nested too deeply: 1"},
            {"0 INSERT|8 0|2 Part|10 1e300|", "too far away: 1"},
            {"0 HATCH|8 0|2 X|70 1|91 0|75 0|", "1 HATCH without an area"},
            {"0 RAY|8 0|10 1|20 1|11 0|21 0|", "1 RAY without a direction"},
            {"0 CIRCLE|8 0|40 5|210 1.7e308|220 1.7e308|", "too far away: 1"},
            {"0 LWPOLYLINE|8 0|90 2147483647|10 0|20 0|", "entity is too large"},
            {"0 SPLINE|8 0|71 1|72 5|73 3|40 0|40 0|40 1|40 2|40 2|10 1|20 1|41 1|10 0|20 0|"
             "41 1e-320|10 2|20 2|41 1|",
             "too far away: 1"},
            {"0 SPLINE|8 0|72 -2147483648|40 1|", "entity is too large"},
            {"0 WIPEOUT|8 0|0 MLINE|8 0|0 MLINE|8 0|", ": 2 MLINE, 1 WIPEOUT."},
            {"0 POLYLINE|8 0|66 1|70 16|71 2|72 2|0 VERTEX|8 0|10 1|20 1|0 SEQEND|",
             "1 POLYLINE mesh"},
            // Letters of which the font makes nothing.
            {"0 TEXT|8 0|10 5|20 5|40 5e4|41 1e-19|1 Fit|0 TEXT|8 0|10 5|20 5|40 1e-9|41 1e14|"
             "1 Fit|",
             ""}};
    for (const auto &[content, warning] : cases) {
        Picture picture(file(block("Odd", content) + block("Part", shape), "0 INSERT|8 0|2 Odd|"));
        picture.painted({50, 50});
        const QString told = picture.drawing->warnings.join('\n');
        QVERIFY2(told.contains(warning), qPrintable(warning + told));
    }
    QString chain;
    for (int i = 0; i < 5000; ++i)
        chain += block(QString("B%1").arg(i), shape + QString("0 INSERT|8 0|2 B%1|").arg(i + 1));
    const Picture deep(file(chain, "0 INSERT|8 0|2 B0|"));
    QVERIFY(deep.drawing->warnings.first().contains("nested too deeply: 1"));
}

QTEST_MAIN(TestDrawings)
#include "tst_drawings.moc"
