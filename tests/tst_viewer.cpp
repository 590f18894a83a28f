#include "Support.h"

#include "viewer/Canvas.h"
#include "viewer/Curves.h"
#include "viewer/DrawingLoader.h"
#include "viewer/MainWindow.h"

#include <OvCustomControl/LayerComboBox.h>
#include <OvCustomControl/LayerItem.h>

#include <QtTest>
#include <QtWidgets>

namespace {

const QColor ground(0x21, 0x28, 0x30);
const QColor none = ground;

/// Groups of a DXF file, written as "code value|code value".
QByteArray groups(const QString &text)
{
    QByteArray result;
    const QStringList pairs = text.split(QLatin1Char('|'), Qt::SkipEmptyParts);
    for (const QString &pair : pairs)
        result += pair.section(QLatin1Char(' '), 0, 0).toUtf8() + '\n'
                  + pair.section(QLatin1Char(' '), 1).toUtf8() + '\n';
    return result;
}

/// A filled square of 10 × 10 at that corner.
QString square(int x, int y, const QString &style)
{
    return QStringLiteral("0 SOLID|%1|10 %2|20 %3|11 %4|21 %3|12 %2|22 %5|13 %4|23 %5|")
            .arg(style)
            .arg(x)
            .arg(y)
            .arg(x + 10)
            .arg(y + 10);
}

QString block(const QString &name, const QString &content, const QString &base = {})
{
    return QStringLiteral("0 BLOCK|8 0|2 %1|70 0|%2|%3|0 ENDBLK|8 0|")
            .arg(name, base.isEmpty() ? QStringLiteral("10 0|20 0") : base, content);
}

} // namespace

class TestViewer : public QObject
{
    Q_OBJECT

private slots:
    void bulgesMeetTheirEnds_data();
    void bulgesMeetTheirEnds();
    void splines();
    void textCodes_data();
    void textCodes();
    void styles_data();
    void styles();
    void inserts_data();
    void inserts();
    void whatCannotBeDrawn_data();
    void whatCannotBeDrawn();
    void layerClickShowsAndSaves();
    void errorKeepsTheDrawing();
    void dropOpens();
    void changesAreNotLost_data();
    void changesAreNotLost();

private:
    QString file(const QString &blocks, const QString &entities);
    QColor shownAt(const MainWindow &window, QPointF point);
    void answer(QMessageBox::StandardButton button);
    void clickLight(MainWindow &window, int row);

    QTemporaryDir m_folder;
};

/// Writes a drawing with the layers 0, Red, Blue, Off (green) and Frozen (green).
QString TestViewer::file(const QString &blocks, const QString &entities)
{
    QString layers;
    for (const char *layer :
         {"0|70 0|62 7", "Red|70 0|62 1", "Blue|70 0|62 5", "Off|70 0|62 -3", "Frozen|70 1|62 3"})
        layers += QStringLiteral("0 LAYER|2 %1|6 CONTINUOUS|").arg(QLatin1String(layer));
    const QString path = m_folder.filePath(QStringLiteral("drawing.dxf"));
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(groups(QStringLiteral("0 SECTION|2 HEADER|9 $ACADVER|1 AC1018|0 ENDSEC|"
                                     "0 SECTION|2 TABLES|0 TABLE|2 LAYER|70 5|%1|0 ENDTAB|0 ENDSEC|"
                                     "0 SECTION|2 BLOCKS|%2|0 ENDSEC|"
                                     "0 SECTION|2 ENTITIES|%3|0 ENDSEC|0 EOF")
                              .arg(layers, blocks, entities)));
    return path;
}

/// What the canvas shows of the drawing at this point.
QColor TestViewer::shownAt(const MainWindow &window, QPointF point)
{
    const auto *canvas = window.findChild<Canvas *>();
    return canvas->viewport()->grab().toImage().pixelColor(canvas->mapFromScene(point));
}

/// Presses that button of the message box that is about to open.
void TestViewer::answer(QMessageBox::StandardButton button)
{
    QTimer::singleShot(0, this, [this, button] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
            QTest::mouseClick(box->button(button), Qt::LeftButton);
        else
            answer(button);
    });
}

void TestViewer::clickLight(MainWindow &window, int row)
{
    auto *box = window.findChild<OvCc::LayerComboBox *>();
    auto *list = qobject_cast<QListWidget *>(box->view());
    QTest::mouseClick(box->lineEdit(), Qt::LeftButton);
    QVERIFY(QTest::qWaitFor([list] { return list->isVisible(); }));
    QTest::mouseClick(list->itemWidget(list->item(row))->findChild<QPushButton *>(),
                      Qt::LeftButton);
    QTest::keyClick(list, Qt::Key_Escape);
}

void TestViewer::bulgesMeetTheirEnds_data()
{
    QTest::addColumn<QPointF>("to");
    QTest::addColumn<double>("bulge");
    QTest::newRow("half circle to the left") << QPointF(10, 0) << 1.0;
    QTest::newRow("quarter to the right") << QPointF(3, -7) << -std::tan(M_PI / 8);
    QTest::newRow("most of a circle") << QPointF(-2, 5) << 4.0;
    QTest::newRow("all but straight") << QPointF(1000, 1) << 1e-6;
    QTest::newRow("straight") << QPointF(4, 4) << 0.0;
}

void TestViewer::bulgesMeetTheirEnds()
{
    QFETCH(QPointF, to);
    QFETCH(double, bulge);
    QPainterPath path(QPointF(1, 2));
    addBulge(path, to, bulge);
    QCOMPARE(path.currentPosition(), to);

    // Half way along, the arc is as far to the right of its chord as the bulge says.
    const QLineF chord(QPointF(1, 2), to);
    const QPointF right(chord.dy(), -chord.dx());
    const QPointF top = chord.center() + right * bulge / 2;
    QVERIFY(QLineF(path.pointAtPercent(0.5), top).length() < 1e-3 * chord.length());
}

void TestViewer::splines()
{
    const QVector<ControlPoint> corners{{{0, 0}}, {{10, 20}}, {{20, 0}}};
    const QPainterPath curve = spline(2, corners, {0, 0, 0, 1, 1, 1});
    QCOMPARE(QPointF(curve.elementAt(0)), QPointF(0, 0));
    QCOMPARE(curve.currentPosition(), QPointF(20, 0));
    QCOMPARE(QPointF(curve.elementAt(curve.elementCount() / 2)), QPointF(10, 10));

    // Three corners of a square with that weight make a quarter of a circle.
    const QVector<ControlPoint> square{{{1, 0}}, {{1, 1}, std::sqrt(0.5)}, {{0, 1}}};
    const QPainterPath quarter = spline(2, square, {0, 0, 0, 1, 1, 1});
    for (int i = 0; i < quarter.elementCount(); ++i)
        QCOMPARE(std::hypot(quarter.elementAt(i).x, quarter.elementAt(i).y), 1.0);

    QCOMPARE(spline(2, corners, {0, 1}).elementCount(), 3);
    QCOMPARE(smoothCurve({{0, 0}, {5, 5}, {9, 1}}).currentPosition(), QPointF(9, 1));
}

void TestViewer::textCodes_data()
{
    QTest::addColumn<QString>("raw");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("codes") << "%%c20 45%%D %%p1 %%%" << QStringList{"⌀20 45° ±1 %"};
    QTest::newRow("toggles and numbers") << "%%ua%%u%%065%%x%" << QStringList{"aA%%x%"};
    QTest::newRow("formatted") << "{\\fArial|b1;Big} \\H2x;hall\\Pno\\~\\{2\\}"
                               << QStringList{"Big hall", "no\u00a0{2}"};
    QTest::newRow("stacked") << "\\S1^2; or \\S3#4;" << QStringList{"1/2 or 3/4"};
    QTest::newRow("cut off") << "a\\Hb" << QStringList{"a"};
}

void TestViewer::textCodes()
{
    QFETCH(QString, raw);
    QFETCH(QStringList, lines);
    QCOMPARE(paragraphs(raw), lines);
}

void TestViewer::styles_data()
{
    QTest::addColumn<QString>("insert");
    QTest::addColumn<QString>("entity");
    QTest::addColumn<QColor>("shown");
    QTest::newRow("by layer") << ""
                              << "8 red" << QColor(Qt::red);
    QTest::newRow("own index") << ""
                               << "8 Red|62 2" << QColor(Qt::yellow);
    QTest::newRow("own true colour") << ""
                                     << "8 Red|62 2|420 1193046" << QColor(0x12, 0x34, 0x56);
    QTest::newRow("by no block") << ""
                                 << "8 Red|62 0" << QColor(Qt::white);
    QTest::newRow("layer off") << ""
                               << "8 Off" << none;
    QTest::newRow("layer frozen") << ""
                                  << "8 Frozen|62 2" << none;
    QTest::newRow("in paper space") << ""
                                    << "8 Red|67 1" << none;
    QTest::newRow("invisible") << ""
                               << "8 Red|60 1" << none;
    QTest::newRow("insert's layer") << "8 Red"
                                    << "8 0" << QColor(Qt::red);
    QTest::newRow("insert's layer, not its colour") << "8 Red|62 4"
                                                    << "8 0" << QColor(Qt::red);
    QTest::newRow("by block") << "8 Red|62 4"
                              << "8 0|62 0" << QColor(Qt::cyan);
    QTest::newRow("by block from layer") << "8 Red"
                                         << "8 Blue|62 0" << QColor(Qt::red);
    QTest::newRow("own layer in a block") << "8 Red"
                                          << "8 Blue" << QColor(Qt::blue);
    QTest::newRow("insert off") << "8 Off"
                                << "8 Blue" << QColor(Qt::blue);
    QTest::newRow("insert off, layer 0") << "8 Off"
                                         << "8 0" << none;
    QTest::newRow("insert frozen") << "8 Frozen"
                                   << "8 Blue" << none;
    QTest::newRow("off in a block") << "8 Red"
                                    << "8 Off" << none;
    QTest::newRow("frozen in a block") << "8 Red"
                                       << "8 Frozen" << none;
}

void TestViewer::styles()
{
    QFETCH(QString, insert);
    QFETCH(QString, entity);
    const QString style = QStringLiteral("8 Red");
    const QString frame = square(-20, -20, style) + square(20, 20, style);
    const QString content = square(0, 0, entity);
    const QString inserted = QStringLiteral("0 INSERT|%1|2 Part|10 0|20 0|").arg(insert);
    MainWindow window;
    window.show();
    QSignalSpy opened(&window, &MainWindow::opened);
    window.open(insert.isEmpty() ? file({}, frame + content)
                                 : file(block(QStringLiteral("Part"), content), frame + inserted));
    QTRY_COMPARE(opened.size(), 1);
    QTEST(shownAt(window, QPointF(5, 5)), "shown");
    QCOMPARE(shownAt(window, QPointF(-15, -15)), QColor(Qt::red));
    QCOMPARE(shownAt(window, QPointF(-5, -5)), none);
}

void TestViewer::inserts_data()
{
    QTest::addColumn<QString>("insert");
    QTest::addColumn<QVector<QPointF>>("squares"); // their centres, all there are
    const QString turned = QStringLiteral("2 part|10 50|20 50|50 90");
    QTest::newRow("base point") << "2 Part|10 50|20 50" << QVector<QPointF>{{55, 55}};
    QTest::newRow("turned") << turned << QVector<QPointF>{{45, 55}};
    QTest::newRow("scaled") << "2 Part|10 50|20 50|41 -1|42 -1" << QVector<QPointF>{{45, 45}};
    QTest::newRow("mirrored") << "2 Part|10 -50|20 50|210 0|220 0|230 -1"
                              << QVector<QPointF>{{45, 55}};
    QTest::newRow("turned array") << turned + "|70 3|71 2|44 20|45 30"
                                  << QVector<QPointF>{{45, 55}, {45, 75}, {45, 95},
                                                      {15, 55}, {15, 75}, {15, 95}};
    QTest::newRow("nested") << "2 Outer|10 50|20 50" << QVector<QPointF>{{55, 55}, {75, 55}};
}

void TestViewer::inserts()
{
    QFETCH(QString, insert);
    QFETCH(QVector<QPointF>, squares);
    const QString part = square(100, 100, QStringLiteral("8 0"));
    const QString copies = QStringLiteral("0 INSERT|8 0|2 Part|10 0|20 0|"
                                          "0 INSERT|8 0|2 Part|10 20|20 0|");
    const QString path = file(block(QStringLiteral("Outer"), copies)
                                      + block(QStringLiteral("Part"), part, "10 100|20 100"),
                              QStringLiteral("0 INSERT|8 Red|%1|").arg(insert));
    QString error;
    const std::unique_ptr<Drawing> drawing = readDrawing(path, error);
    QVERIFY2(drawing, qPrintable(error));

    DrawingItem item;
    item.setDrawing(drawing.get());
    QImage image(100, 100, QImage::Format_RGB32);
    image.fill(ground);
    QPainter painter(&image);
    QStyleOptionGraphicsItem option;
    option.exposedRect = image.rect();
    item.paint(&painter, &option, nullptr);
    for (int x = 5; x < 100; x += 10) {
        for (int y = 5; y < 100; y += 10)
            QCOMPARE(image.pixelColor(x, y),
                     squares.contains(QPointF(x, y)) ? QColor(Qt::red) : ground);
    }
}

void TestViewer::whatCannotBeDrawn_data()
{
    QTest::addColumn<QString>("blocks");
    QTest::addColumn<QString>("inserted");
    QTest::addColumn<QString>("warning");
    const QString insert = QStringLiteral("0 INSERT|8 0|2 %1|10 0|20 0|");
    const QString shape = square(0, 0, QStringLiteral("8 0"));
    QString chain;
    for (int i = 0; i < 5000; ++i)
        chain += block(QStringLiteral("B%1").arg(i),
                       shape + insert.arg(QStringLiteral("B%1").arg(i + 1)));
    QString doubling;
    for (int i = 0; i < 40; ++i)
        doubling += block(QStringLiteral("B%1").arg(i),
                          shape + insert.arg(QStringLiteral("B%1").arg(i + 1)).repeated(2));
    QTest::newRow("in itself") << block("B0", shape + insert.arg("B1"))
                                          + block("B1", shape + insert.arg("B0"))
                               << "2 B0"
                               << "nested too deeply: 1";
    QTest::newRow("nested deeply") << chain << "2 B0"
                                   << "nested too deeply: 1";
    QTest::newRow("doubled often") << doubling << "2 B0"
                                   << "drawn as a frame";
    QTest::newRow("huge array") << block("B0", shape) << "2 B0|70 30000|71 30000|44 5|45 5"
                                << "drawn as a frame";
    QTest::newRow("more points than memory")
            << block("B0", QStringLiteral("0 LWPOLYLINE|8 0|90 2147483647|10 0|20 0|")) << "2 B0"
            << "an entity is too large";
    QTest::newRow("unknown kinds")
            << block("B0", shape + "0 WIPEOUT|8 0|0 MLINE|8 0|0 MLINE|8 0|") << "2 B0"
            << "not drawn: 2 MLINE, 1 WIPEOUT.";
    QTest::newRow("far away") << block("B0", shape) << "2 B0|10 1e300|20 0"
                              << "too far away: 1";
}

void TestViewer::whatCannotBeDrawn()
{
    QFETCH(QString, blocks);
    QFETCH(QString, inserted);
    QFETCH(QString, warning);
    QString error;
    const std::unique_ptr<Drawing> drawing =
            readDrawing(file(blocks, QStringLiteral("0 INSERT|8 0|%1|").arg(inserted)), error);
    QVERIFY2(drawing, qPrintable(error));
    const QString warnings = drawing->warnings.join(QLatin1Char('\n'));
    QVERIFY2(warnings.contains(warning), qPrintable(warnings));
}

void TestViewer::layerClickShowsAndSaves()
{
    const QString path = file({}, square(0, 0, "8 Red") + square(20, 0, "8 Blue"));
    MainWindow window;
    window.show();
    window.open(path);
    QTRY_VERIFY(window.drawing());
    QCOMPARE(window.windowTitle(), QStringLiteral("drawing.dxf[*] – Tessa"));

    clickLight(window, 1);
    QCOMPARE(shownAt(window, QPointF(5, 5)), none);
    QCOMPARE(shownAt(window, QPointF(25, 5)), QColor(Qt::blue));
    QVERIFY(window.isWindowModified());

    QTest::keyClick(&window, Qt::Key_S, Qt::ControlModifier);
    QVERIFY(!window.isWindowModified());
    QString error;
    QVERIFY(!readDrawing(path, error)->layers.at(1).isOn);
}

void TestViewer::errorKeepsTheDrawing()
{
    MainWindow window;
    window.show();
    window.open(file({}, square(0, 0, "8 Red")));
    QTRY_VERIFY(window.drawing());
    const Drawing *before = window.drawing();
    clickLight(window, 2);

    QSignalSpy opened(&window, &MainWindow::opened);
    answer(QMessageBox::Discard);
    window.open(m_folder.path());
    QTRY_COMPARE(opened.size(), 1);
    auto *box = window.findChild<QMessageBox *>();
    QVERIFY(box && box->isVisible());
    QCOMPARE(box->text(), opened.first().first().toString());
    QVERIFY(!box->text().isEmpty());
    box->close();
    QCOMPARE(window.drawing(), before);
    QCOMPARE(shownAt(window, QPointF(5, 5)), QColor(Qt::red));
    QVERIFY(window.isWindowModified());
}

void TestViewer::dropOpens()
{
    MainWindow window;
    window.show();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(file({}, square(0, 0, "8 Blue")))});
    QWidget *canvas = window.findChild<Canvas *>()->viewport();
    QDragEnterEvent enter(QPoint(9, 9), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QVERIFY(QApplication::sendEvent(&window, &enter) && enter.isAccepted());
    QVERIFY(!canvas->acceptDrops());
    QDropEvent drop(QPoint(9, 9), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &drop);
    QTRY_VERIFY(window.drawing());
    QCOMPARE(shownAt(window, QPointF(5, 5)), QColor(Qt::blue));
}

void TestViewer::changesAreNotLost_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<bool>("isClosed");
    QTest::addColumn<bool>("isSaved");
    QTest::newRow("save") << int(QMessageBox::Save) << true << true;
    QTest::newRow("discard") << int(QMessageBox::Discard) << true << false;
    QTest::newRow("cancel") << int(QMessageBox::Cancel) << false << false;
}

void TestViewer::changesAreNotLost()
{
    QFETCH(int, button);
    const QString path = file({}, square(0, 0, "8 Red"));
    MainWindow window;
    window.show();
    window.open(path);
    QTRY_VERIFY(window.drawing());
    clickLight(window, 1);
    answer(QMessageBox::StandardButton(button));
    QTEST(window.close(), "isClosed");
    QString error;
    QTEST(!readDrawing(path, error)->layers.at(1).isOn, "isSaved");
}

QTEST_MAIN(TestViewer)
#include "tst_viewer.moc"
