#include "PickerSupport.h"

#include "viewer/Canvas.h"
#include "viewer/Curves.h"
#include "viewer/DrawingLoader.h"
#include "viewer/LayerBox.h"
#include "viewer/MainWindow.h"

#include <OvCustomControl/OvCustomControl.h>

#include <QtTest>
#include <QtWidgets>

using namespace OvCc;

namespace {

const QColor ground(0x21, 0x28, 0x30);
enum Column { Current, Name, On };

/// A filled square of 10 × 10 at that corner. Groups of a file are written as "code value|".
QString square(int x, int y, const QString &style)
{
    return QStringLiteral("0 SOLID|%1|10 %2|20 %3|11 %4|21 %3|12 %2|22 %5|13 %4|23 %5|")
            .arg(style, QString::number(x), QString::number(y), QString::number(x + 10),
                 QString::number(y + 10));
}

QString block(const QString &name, const QString &content, const QString &base = "10 0|20 0")
{
    return QStringLiteral("0 BLOCK|8 0|2 %1|70 0|%2|%3|0 ENDBLK|8 0|").arg(name, base, content);
}

/// Writes a drawing with the layers 0, Red, Blue, Off (green) and Frozen (green).
QString file(const QString &blocks, const QString &entities)
{
    static const QTemporaryDir folder;
    QString text = "0 SECTION|9 $ACADVER|1 AC1018|0 ENDSEC|0 SECTION|2 TABLES|0 TABLE|2 LAYER|"
                   "0 LAYER|2 0|62 7|0 LAYER|2 Red|62 1|0 LAYER|2 Blue|62 5|"
                   "0 LAYER|2 Off|62 -3|0 LAYER|2 Frozen|70 1|62 3|0 ENDTAB|0 ENDSEC|"
                   "0 SECTION|2 BLOCKS|%1|0 ENDSEC|0 SECTION|2 ENTITIES|%2|0 ENDSEC|0 EOF|";
    QFile file(folder.filePath("drawing.dxf"));
    file.open(QIODevice::WriteOnly);
    static const QRegularExpression separators("[| ]+");
    text = text.arg(blocks, entities).replace(separators, "\n");
    file.write(text.toUtf8());
    return file.fileName();
}

/// Adds tests, one per line: ";" stands between their fields, the first of which is the name.
void addTests(std::initializer_list<const char *> lines)
{
    QTest::addColumn<QStringList>("fields");
    for (const char *line : lines)
        QTest::newRow(QByteArray(line).split(';').first()) << QString(line).split(';');
}

/// Presses that button of the message box that is about to open.
void answer(QMessageBox::StandardButton button)
{
    QTimer::singleShot(0, qApp, [button] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        QTest::mouseClick(box->button(button), Qt::LeftButton);
    });
}

/// A window on which a drawing was dropped, and what a user does in it.
struct Viewer : MainWindow
{
    explicit Viewer(const QString &path)
    {
        show();
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(path)});
        QDragEnterEvent enter({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QDropEvent drop({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(this, &enter);
        QApplication::sendEvent(this, &drop);
        QTRY_VERIFY(enter.isAccepted() && drawing());
    }

    QColor shownAt(QPointF point) const
    {
        return canvas->viewport()->grab().toImage().pixelColor(canvas->mapFromScene(point));
    }

    /// Presses the left button at one point of the drawing and releases it at another.
    void dragOnCanvas(QPointF from, QPointF to, Qt::KeyboardModifiers modifiers = {})
    {
        QWidget *viewport = canvas->viewport();
        const auto send = [&](QEvent::Type type, QPointF at) {
            mouse(type, viewport, canvas->mapFromScene(at), Qt::LeftButton, modifiers);
        };
        send(QEvent::MouseButtonPress, from);
        send(QEvent::MouseMove, to);
        send(QEvent::MouseButtonRelease, to);
    }

    LayerItem *item(int row) const { return list->findChildren<LayerItem *>().at(row); }

    void clickLight(int row)
    {
        QTest::mouseClick(box->lineEdit(), Qt::LeftButton);
        QTRY_VERIFY(list->isVisible());
        QTest::mouseClick(item(row)->findChild<QPushButton *>(), Qt::LeftButton);
        QTest::keyClick(list, Qt::Key_Escape);
    }

    QString text(int row, int column) const { return rows->index(row, column).data().toString(); }

    /// The names in the layer manager, sorted, the current one marked.
    QStringList layers() const
    {
        QStringList result;
        for (int row = 0; row < rows->rowCount(); ++row)
            result += (text(row, Current) == "true" ? "*" : "") + text(row, Name);
        result.sort();
        return result;
    }

    void clickCell(int row, int column, Qt::KeyboardModifiers modifiers = {})
    {
        QTableView *view = column == Name ? static_cast<QTableView *>(names) : table;
        const QRect cell = view->visualRect(view->model()->index(row, column));
        QTest::mouseClick(view->viewport(), Qt::LeftButton, modifiers, cell.center());
    }

    /// Clicks on a command of the layer manager, and types into the editor that opens, if any.
    void command(const QString &command, const QString &typed = {})
    {
        const QList<QToolButton *> buttons = findChildren<QToolButton *>();
        for (QToolButton *button : buttons) {
            if (button->text() == command)
                QTest::mouseClick(button, Qt::LeftButton);
        }
        if (typed.isEmpty())
            return;
        QTRY_VERIFY(names->isAncestorOf(QApplication::focusWidget()));
        QTest::keyClicks(QApplication::focusWidget(), typed);
    }

    /// Closes the message box, if there is one, and tells what it said.
    QString takeMessage()
    {
        const std::unique_ptr<QMessageBox> message(findChild<QMessageBox *>());
        return message ? message->text() : QString();
    }

    Canvas *canvas = findChild<Canvas *>();
    LayerBox *box = findChild<LayerBox *>();
    QListWidget *list = qobject_cast<QListWidget *>(box->view());
    LayerTableWidget *table = findChild<LayerTableWidget *>();
    FrozenTableWidget *names = findChild<FrozenTableWidget *>();
    QAbstractItemModel *rows = table->model();
};

} // namespace

class TestViewer : public QObject
{
    Q_OBJECT

private slots:
    void curves();
    void textCodes();
    void pictures_data();
    void pictures();
    void whatCannotBeDrawn();
    void widgetsKeepInStep();
    void commands_data();
    void commands();
    void manyLayers();
    void errorKeepsTheDrawing();
    void changesAreNotLost();
    void selection_data();
    void selection();
    void pickedProperties();
};

void TestViewer::curves()
{
    const std::pair<QPointF, double> bulges[] = {{{10, 0}, 1}, {{3, -7}, -0.4}, {{9, 1}, 1e-6}};
    for (const auto &[to, bulge] : bulges) {
        QPainterPath path(QPointF(1, 2));
        addBulge(path, to, bulge);
        QCOMPARE(path.currentPosition(), to);
        // Half way along, the arc is as far to the right of its chord as the bulge says.
        const QLineF chord(QPointF(1, 2), to);
        const QPointF top = chord.center() + QPointF(chord.dy(), -chord.dx()) * bulge / 2;
        QVERIFY(QLineF(path.pointAtPercent(0.5), top).length() < 1e-3 * chord.length());
    }

    // Three corners of a square with that weight make a quarter of a circle.
    const QVector<ControlPoint> corners{{{1, 0}}, {{1, 1}, std::sqrt(0.5)}, {{0, 1}}};
    const SpacePath quarter = spline(2, corners, {0, 0, 0, 1, 1, 1});
    for (const SpacePath::Element &element : quarter.elements)
        QCOMPARE(std::hypot(element.at.x, element.at.y), 1.0);
    QVERIFY(quarter.elements.back().at == (SpacePoint{0, 1, 0}));
    QCOMPARE(spline(2, corners, {0, 1}).elements.size(), std::size_t(3));
    QVERIFY(smoothCurve({{0, 0}, {5, 5}, {9, 1}}).elements.back().at == (SpacePoint{9, 1, 0}));
}

void TestViewer::textCodes()
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

void TestViewer::pictures_data()
{
    // The insert of a block with one square, or nothing; that square; its colour; its places.
    addTests({"by layer;;8 red;red;5,5", "own true colour;;8 Red|62 2|420 1193046;#123456;5,5",
              "in paper space;;8 Red|67 1;;", "invisible;;8 Red|60 1;;",
              "insert's layer, not its colour;8 Red|62 4;8 0;red;5,5",
              "by block;8 Red|62 4;8 0|62 0;cyan;5,5",
              "by block from layer;8 Red;8 Blue|62 0;red;5,5", "insert off;8 Off;8 Blue;blue;5,5",
              "insert off, layer 0;8 Off;8 0;;", "insert frozen;8 Frozen;8 Blue;;",
              "off in a block;8 Red;8 Off;;", "frozen in a block;8 Red;8 Frozen;;",
              "turned;8 Red|10 50|20 50|50 90;8 0;red;45,55",
              "scaled;8 Red|10 50|20 50|41 -1|42 -1;8 0;red;45,45",
              "mirrored;8 Red|10 -50|20 50|210 0|220 0|230 -1;8 0;red;45,55",
              "turned array;8 Red|10 50|20 50|50 90|70 3|71 2|44 20|45 30;8 0;red;"
              "45,55 45,75 45,95 15,55 15,75 15,95",
              "nested;2 Outer|8 Red|10 50|20 50;8 0;red;55,55 75,55"});
}

void TestViewer::pictures()
{
    QFETCH(QStringList, fields);
    const QString &insert = fields.at(1);
    const QString part = block("Part", square(100, 100, fields.at(2)), "10 100|20 100");
    const QString outer = block("Outer", "0 INSERT|8 0|2 part|0 INSERT|8 0|2 Part|10 20|20 0|");
    const QString path = insert.isEmpty() ? file({}, square(0, 0, fields.at(2)))
                                          : file(outer + part, "0 INSERT|2 Part|" + insert + '|');
    QString error;
    const auto drawing = readDrawing(path, error);
    QVERIFY2(drawing, qPrintable(error));

    DrawingItem item;
    item.setDrawing(drawing.get());
    QImage image(100, 100, QImage::Format_RGB32);
    image.fill(ground);
    QPainter painter(&image);
    QStyleOptionGraphicsItem option;
    option.exposedRect = image.rect();
    item.paint(&painter, &option, nullptr);
    const QStringList places = fields.at(4).split(' ');
    for (int x = 5; x < 100; x += 10) {
        for (int y = 5; y < 100; y += 10) {
            const bool isDrawn = places.contains(QString("%1,%2").arg(x).arg(y));
            QCOMPARE(image.pixelColor(x, y), isDrawn ? QColor(fields.at(3)) : ground);
        }
    }
}

void TestViewer::whatCannotBeDrawn()
{
    const QString shape = square(0, 0, "8 0");
    const auto insert = [](int part) { return QString("0 INSERT|8 0|2 B%1|").arg(part); };
    const auto chain = [&](int length, int copies) {
        QString blocks;
        for (int i = 0; i < length; ++i)
            blocks += block(QString("B%1").arg(i), shape + insert(i + 1).repeated(copies));
        return blocks;
    };
    const std::array<QString, 3> cases[] = {
            {chain(1, 1) + block("B1", insert(0)), "", "nested too deeply: 1"},
            {chain(5000, 1), "", "nested too deeply: 1"},
            {chain(40, 2), "", "drawn as a frame"},
            {block("B0", shape), "70 30000|71 30000|44 5|45 5|", "drawn as a frame"},
            {block("B0", "0 LWPOLYLINE|8 0|90 2147483647|10 0|20 0|"), "", "entity is too large"},
            {block("B0", "0 WIPEOUT|8 0|0 MLINE|8 0|0 MLINE|8 0|"), "", ": 2 MLINE, 1 WIPEOUT."},
            {block("B0", shape), "10 1e300|20 0|", "too far away: 1"}};
    for (const auto &[blocks, inserted, warning] : cases) {
        QString error;
        const auto drawing = readDrawing(file(blocks, insert(0) + inserted), error);
        const QString said = drawing ? drawing->warnings.join('\n') : error;
        QVERIFY2(said.contains(warning), qPrintable(said));
    }
}

void TestViewer::widgetsKeepInStep()
{
    Viewer viewer(file({}, square(0, 0, "8 Red") + square(20, 0, "8 Blue")));
    QSignalSpy reloads(viewer.table->model(), &QAbstractItemModel::modelReset);
    viewer.clickCell(4, On);
    QTRY_VERIFY(!viewer.item(1)->currentLayerData().isOn);
    QCOMPARE(viewer.shownAt({5, 5}), ground);
    QVERIFY(viewer.isWindowModified());

    viewer.clickCell(1, Name);
    viewer.clickLight(1);
    QTRY_COMPARE(viewer.text(4, On), QStringLiteral("true"));
    QCOMPARE(viewer.shownAt({5, 5}), QColor(Qt::red));
    QCOMPARE(viewer.table->currentIndex().row(), 1);
    QVERIFY(reloads.isEmpty());

    // The drawing refuses to freeze its current layer, which the box shows as frozen at first.
    viewer.item(0)->slotFreezeStatus();
    QTRY_VERIFY(!viewer.item(0)->currentLayerData().isFrozen);

    viewer.activateWindow();
    viewer.command("Rename", "Zinc\r");
    QTRY_COMPARE(viewer.table->currentIndex().row(), 4);
    QCOMPARE(viewer.shownAt({25, 5}), QColor(Qt::blue));
    viewer.clickCell(4, On);
    QCOMPARE(viewer.shownAt({25, 5}), ground);

    viewer.command("New", "X");
    viewer.command("New", "Y"); // while the editor is open; this one is when the window goes
    QCoreApplication::processEvents();
    QVERIFY(viewer.names->isAncestorOf(QApplication::focusWidget()));
}

void TestViewer::commands_data()
{
    // With "Red" the current layer: rows to select, command, what is typed, the layers in the file
    // and a part of the message.
    addTests(
            {"new;4;New;Zinc\r;*Red 0 Blue Frozen Off Zinc;",
             "new, not ended;4;New;Zinc;*Red 0 Blue Frozen Off Zinc;",
             "no name;4;New;a/b\r;*Red 0 Blue Frozen Off;Layer \"a/b\" cannot be added",
             "taken;4;New;0\r;*Red 0 Blue Frozen Off;another layer",
             "rename;4;Rename;Zinc\r;*Zinc 0 Blue Frozen Off;",
             "rename 0;0;Rename;Zinc\r;*Red 0 Blue Frozen Off;every drawing",
             "delete;3;Delete;;*Red 0 Blue Frozen;",
             "delete some;0,1,3,4;Delete;;*Red 0 Blue Frozen;Not deleted: \"0\" (every drawing has "
             "this layer), \"Blue\" (there are entities on it), \"Red\" (it is the current layer).",
             "current;1;Set current;;*Blue 0 Frozen Off Red;",
             "first row current;0;Set current;;*0 Blue Frozen Off Red;"});
}

void TestViewer::commands()
{
    QFETCH(QStringList, fields);
    const QString path = file({}, square(0, 0, "8 Red") + square(20, 0, "8 Blue"));
    Viewer viewer(path);
    viewer.clickCell(4, Name);
    viewer.command("Set current");
    QTRY_COMPARE(viewer.text(4, Current), QStringLiteral("true"));

    viewer.table->clearSelection();
    const QStringList rows = fields.at(1).split(',');
    for (const QString &row : rows)
        viewer.clickCell(row.toInt(), Name, Qt::ControlModifier);
    viewer.command(fields.at(2), fields.at(3));
    const QString message = viewer.takeMessage();
    QTest::keyClick(&viewer, Qt::Key_S, Qt::ControlModifier);
    QVERIFY(message.contains(fields.at(5)) && message.isEmpty() == fields.at(5).isEmpty());
    QTRY_COMPARE(viewer.layers().join(' '), fields.at(4));
    QVERIFY(!viewer.isWindowModified());
    QCOMPARE(Viewer(path).layers().join(' '), fields.at(4));
}

void TestViewer::manyLayers()
{
    QStringList layers;
    for (int i = 0; i < 5000; ++i)
        layers += QString("Layer %1").arg(i);
    const QString path = file({}, {});
    QVERIFY(KcHost::writeDrawing(*drawingWithLayers(layers), path));
    Viewer viewer(path);
    QVERIFY(viewer.list->count() == 0 && viewer.box->lineEdit()->isVisible());
    QCOMPARE(viewer.box->lineEdit()->findChildren<QLabel *>().last()->text(), QStringLiteral("0"));

    viewer.findChild<QDockWidget *>()->close();
    QTest::mouseClick(viewer.box->lineEdit(), Qt::LeftButton);
    QVERIFY(viewer.findChild<SearchLayerEdit *>()->hasFocus() && !viewer.list->isVisible());
}

void TestViewer::errorKeepsTheDrawing()
{
    Viewer viewer(file({}, square(0, 0, "8 Red")));
    viewer.clickLight(2);
    answer(QMessageBox::Discard);
    viewer.open(QDir::tempPath());
    QTRY_VERIFY(viewer.findChild<QMessageBox *>());
    QVERIFY(viewer.takeMessage().contains(QDir::tempPath()));
    QCOMPARE(viewer.shownAt({5, 5}), QColor(Qt::red));
    QVERIFY(viewer.isWindowModified());
}

void TestViewer::changesAreNotLost()
{
    for (const auto button : {QMessageBox::Save, QMessageBox::Discard, QMessageBox::Cancel}) {
        const QString path = file({}, square(0, 0, "8 Red"));
        Viewer viewer(path);
        viewer.clickLight(1);
        answer(button);
        QCOMPARE(viewer.close(), button != QMessageBox::Cancel);
        QCOMPARE(Viewer(path).text(4, On) == "true", button != QMessageBox::Save);
    }
}

void TestViewer::selection_data()
{
    // Squares at 0,0 and 20,0, one on a layer that is off at 40,0. From where to where the mouse is
    // dragged, the keys, and which are selected then when the first one was before.
    addTests({"click;25,5;25,5;;1", "click on nothing;15,5;15,5;;", "click on hidden;45,5;45,5;;",
              "add;25,5;25,5;Ctrl;0 1", "take out;5,5;5,5;Ctrl;", "inside;18,-2;32,12;;1",
              "not inside;22,-2;32,12;;", "crossing;32,12;22,-2;;1", "all;-1,-9;51,19;;0 1",
              "add by band;18,-2;32,12;Ctrl;0 1"});
}

void TestViewer::selection()
{
    QFETCH(QStringList, fields);
    Viewer viewer(
            file({}, square(0, 0, "8 Red") + square(20, 0, "8 Blue") + square(40, 0, "8 Off")));
    viewer.dragOnCanvas({5, 5}, {5, 5});
    QSignalSpy changes(viewer.canvas, &Canvas::selectionChanged);
    const auto point = [&](int field) {
        const QStringList numbers = fields.at(field).split(',');
        return QPointF(numbers.at(0).toInt(), numbers.at(1).toInt());
    };
    const bool isAdding = fields.at(3) == "Ctrl";
    viewer.dragOnCanvas(point(1), point(2), isAdding ? Qt::ControlModifier : Qt::NoModifier);
    QSet<int> expected;
    const QStringList numbers = fields.at(4).split(' ', Qt::SkipEmptyParts);
    for (const QString &number : numbers)
        expected += number.toInt();
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes.last().first().value<QSet<int>>(), expected);

    QTest::keyClick(viewer.canvas, Qt::Key_Escape);
    QCOMPARE(changes.count(), expected.isEmpty() ? 1 : 2);
    QVERIFY(changes.last().first().value<QSet<int>>().isEmpty());
}

/// With the mouse alone, through the real dialogs, down to the file.
void TestViewer::pickedProperties()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("properties.dxf");
    ezdxf("properties.py", {"write", path});
    Viewer viewer(path);
    auto *panel = viewer.findChild<PropertyManager *>();
    QStatusBar *status = viewer.statusBar();
    clickRow(*panel->colorPicker(), 4);
    QVERIFY(status->currentMessage().contains("selected") && !viewer.isWindowModified());
    QCOMPARE(textOf(*panel->colorPicker()), QStringLiteral("By Layer"));

    viewer.dragOnCanvas({50, 0}, {50, 0});
    QColor picked;
    const auto ask = [](BaseComboBox *picker) {
        openPopup(*picker);
        click(buttonOf(*picker));
    };
    answerDialog([&] { ask(panel->colorPicker()); },
                 [&](QDialog &dialog) {
                     const auto wells = dialog.findChildren<QWidget *>();
                     for (QWidget *well : wells) {
                         if (QByteArray(well->metaObject()->className()).endsWith("QWellArray")
                             && !picked.isValid()) {
                             QTest::mouseClick(well, Qt::LeftButton, {}, well->rect().center());
                             picked = static_cast<QColorDialog &>(dialog).currentColor();
                         }
                     }
                     QTest::mouseClick(
                             dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok),
                             Qt::LeftButton);
                 });
    QVERIFY(picked.isValid() && picked != QColor(Qt::white));
    answerDialog([&] { ask(panel->lineWeightPicker()); },
                 [](QDialog &dialog) {
                     QTest::mouseClick(dialog.findChild<QRadioButton *>("inRadioBnt"),
                                       Qt::LeftButton, {}, {9, 8});
                     QTest::mouseClick(dialog.findChild<QPushButton *>("okBnt"), Qt::LeftButton);
                 });
    clickRow(*panel->lineWeightPicker(), 17);
    QCOMPARE(textOf(*panel->lineWeightPicker()), QStringLiteral("0.28\""));
    QTest::keyClick(viewer.canvas, Qt::Key_Escape);
    QCOMPARE(viewer.shownAt({50, 0}), picked);
    QCOMPARE(textOf(*panel->lineWeightPicker()), QStringLiteral("By Layer"));

    viewer.dragOnCanvas({110, 50}, {90, 10});
    viewer.dragOnCanvas({50, 80}, {50, 80}, Qt::ControlModifier);
    QCOMPARE(textOf(*panel->colorPicker()), QStringLiteral("Varies"));
    clickRow(*panel->colorPicker(), 1);
    answerDialog([&] { ask(panel->lineTypePicker()); },
                 [](QDialog &dialog) {
                     dialog.findChild<QComboBox *>()->setCurrentText("DASHED");
                     QTest::mouseClick(
                             dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok),
                             Qt::LeftButton);
                 });
    QCOMPARE(textOf(*panel->lineTypePicker()), QStringLiteral("DASHED"));

    viewer.dragOnCanvas({50, 100}, {50, 100});
    clickRow(*panel->colorPicker(), 2);
    QVERIFY(status->currentMessage().contains("locked"));

    QTest::keyClick(&viewer, Qt::Key_S, Qt::ControlModifier);
    const QJsonArray expected{QJsonArray{0, int(picked.rgb() & 0xffffff), 70, "ByLayer"},
                              QJsonArray{0, -1, -1, "DASHED"}, QJsonArray{0, -1, -1, "DASHED"},
                              QJsonArray{256, -1, -1, "ByLayer"}};
    QJsonArray entities = ezdxf("properties.py", {"read", path})["entities"].toArray();
    // The index beside a true colour is for programs that know no better.
    QJsonArray first = entities.at(0).toArray();
    first[0] = 0;
    entities[0] = first;
    QCOMPARE(entities, expected);
}

QTEST_MAIN(TestViewer)
#include "tst_viewer.moc"
