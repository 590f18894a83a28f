// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DrawingFiles.h"
#include "Limit.h"
#include "PickerSupport.h"

#include "layer/data/HostRecords.h"
#include "viewer/canvas/Canvas.h"
#include "viewer/canvas/CanvasPanes.h"
#include "viewer/window/DrawingFrame.h"
#include "viewer/window/MainWindow.h"
#include "viewer/window/ViewRibbon.h"

#include <OvCustomControl/OvCustomControl.h>

#include <QtTest>
#include <QtWidgets>

using namespace OvCc;
using namespace Tessa;

namespace {

/// Presses that button of the message box that is about to open.
void answer(QMessageBox::StandardButton button)
{
    QTimer::singleShot(0, qApp, [button] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        QTest::mouseClick(box->button(button), Qt::LeftButton);
    });
}

void clickButton(const QWidget &dialog, const QString &text)
{
    const QList<QAbstractButton *> buttons = dialog.findChildren<QAbstractButton *>();
    for (QAbstractButton *button : buttons) {
        if (button->text().remove('&') == text) {
            QTest::mouseClick(button, Qt::LeftButton);
            return;
        }
    }
    QFAIL(qPrintable(text));
}

void chooseFile(const QDialog &dialog, const QString &path)
{
    auto *name = dialog.findChild<QLineEdit *>("fileNameEdit");
    name->clear();
    QTest::keyClicks(name, path);
    QTest::keyClick(name, Qt::Key_Return);
}

/// A window on which a drawing was dropped, and what a user does in it.
struct Viewer : MainWindow
{
    explicit Viewer(const QString &path)
    {
        resize(1280, 800);
        show();
        drop(path);
    }

    void drop(const QString &path)
    {
        const Drawing *before = drawing();
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(path)});
        QDragEnterEvent enter({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QDropEvent drop({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(this, &enter);
        QApplication::sendEvent(this, &drop);
        QTRY_VERIFY(enter.isAccepted() && drawing() != before);
    }

    QColor shownAt(QPointF point) const
    {
        return canvas->viewport()->grab().toImage().pixelColor(canvas->fromPicture(point));
    }

    /// Presses the left button at one point of the drawing and releases it at another.
    void dragOnCanvas(QPointF from, QPointF to, Qt::KeyboardModifiers modifiers = {})
    {
        QWidget *viewport = canvas->viewport();
        const auto send = [&](QEvent::Type type, QPointF at) {
            mouse(type, viewport, canvas->fromPicture(at), Qt::LeftButton, modifiers);
        };
        send(QEvent::MouseButtonPress, from);
        send(QEvent::MouseMove, to);
        send(QEvent::MouseButtonRelease, to);
    }

    LayerItem *item(int row) const { return box->layerItem(row); }

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
            result += (text(row, CurrentColumn) == "true" ? "*" : "") + text(row, NameColumn);
        result.sort();
        return result;
    }

    void clickCell(int row, int column, Qt::KeyboardModifiers modifiers = {})
    {
        QTableView *view = column == NameColumn ? static_cast<QTableView *>(names) : table;
        view->scrollTo(view->model()->index(row, column));
        const QRect cell = view->visualRect(view->model()->index(row, column));
        QTest::mouseClick(view->viewport(), Qt::LeftButton, modifiers, cell.center());
    }

    /// Clicks on a command of the layer manager, and types into the editor that opens, if any.
    void command(const QString &command, const QString &typed = {})
    {
        clickButton(*this, command);
        if (typed.isEmpty())
            return;
        QTRY_VERIFY(names->isAncestorOf(QApplication::focusWidget()));
        QTest::keyClicks(QApplication::focusWidget(), typed);
    }

    /// Presses keys, as a user does who sees the window.
    void keys(const QKeySequence &sequence)
    {
        activateWindow();
        QTRY_COMPARE(QApplication::activeWindow(), this);
        QTest::keySequence(windowHandle(), sequence);
    }

    /// An entry of a menu of the window; null if it has none of that name.
    QAction *entry(const QString &name) const
    {
        const QList<QAction *> menus = menuBar()->actions();
        for (const QAction *menu : menus) {
            const QList<QAction *> entries = menu->menu()->actions();
            for (QAction *action : entries) {
                if (action->text().remove('&') == name)
                    return action;
            }
        }
        return nullptr;
    }

    void chooseLayer(int row) const
    {
        QTest::mouseClick(box->lineEdit(), Qt::LeftButton);
        QTRY_VERIFY(list->isVisible());
        list->setCurrentRow(row);
        QTest::keyClick(list, Qt::Key_Return);
    }

    QString statusText(const char *label) const
    {
        return statusBar()->findChild<QLabel *>(label)->text();
    }

    QString faceOf(const LayerComboBox *layerBox) const
    {
        return layerBox->lineEdit()->findChildren<QLabel *>().last()->text();
    }

    /// Closes the message box, if there is one, and tells what it said.
    QString takeMessage()
    {
        const std::unique_ptr<QMessageBox> message(findChild<QMessageBox *>());
        return message ? message->text() : QString();
    }

    /// Presses an item in the drop-down of a gallery.
    static void press(BaseGallery *gallery, int item)
    {
        click(gallery->findChildren<QAbstractButton *>(QString(), Qt::FindDirectChildrenOnly)
                      .constLast());
        const NsRc::RibbonGallery *items = gallery->popupGallery();
        QTRY_VERIFY(items->isVisible());
        const int height = gallery->galleryGroup()->getSize().height();
        click(items, {items->width() / 2, item * height + height / 2});
        QVERIFY(!items->isVisible());
    }

    static void choose(QMenu *menu, int entry)
    {
        menu->popup({});
        QTest::mouseClick(menu, Qt::LeftButton, {},
                          menu->actionGeometry(menu->actions().at(entry)).center());
    }

    Canvas *canvas = findChild<Canvas *>();
    ViewRibbon *ribbon = findChild<ViewRibbon *>();
    LayerComboBox *box = findChild<LayerComboBox *>("layers");
    QListWidget *list = qobject_cast<QListWidget *>(box->view());
    LayerManager *manager = findChild<LayerManager *>();
    LayerTableWidget *table = manager->table();
    FrozenTableWidget *names = table->frozenView();
    QAbstractItemModel *rows = table->model();
};

} // namespace

class TestViewer : public QObject
{
    Q_OBJECT

private slots:
    void widgetsKeepInStep();
    void commands_data();
    void commands();
    void nameInAnInactiveWindow();
    void manyLayers();
    void manyAtOnce_data();
    void manyAtOnce();
    void refusalOfMany();
    void undoneOnTheCanvas();
    void undoWhileTyping();
    void layersOfTheSelection();
    void shownForTheSelection();
    void layerStates();
    void brokenStates_data();
    void brokenStates();
    void remarks();
    void errorKeepsTheDrawing();
    void changesAreNotLost();
    void writersOfOneFile_data();
    void writersOfOneFile();
    void savedWhileAnotherLoads();
    void selecting_data();
    void selecting();
    void pickedProperties();
    void propertiesBesideTheRows();
    void views();
    void farFromTheOrigin();
    void arrangements();
    void frameOfTheDrawing();
    void floatingPickers();
};

void TestViewer::widgetsKeepInStep()
{
    Viewer viewer(file({}, square(0, 0, "8 Red") + square(20, 0, "8 Blue")));
    QSignalSpy reloads(viewer.table->model(), &QAbstractItemModel::modelReset);
    viewer.clickCell(4, OnColumn);
    QTRY_VERIFY(!viewer.item(1)->currentLayerData().isOn);
    QCOMPARE(viewer.shownAt({5, 5}), ground);
    QVERIFY(viewer.isWindowModified());

    viewer.clickCell(1, NameColumn);
    viewer.clickLight(1);
    QTRY_COMPARE(viewer.text(4, OnColumn), QStringLiteral("true"));
    QCOMPARE(viewer.shownAt({5, 5}), QColor(Qt::red));
    QCOMPARE(viewer.table->currentIndex().row(), 1);
    QVERIFY(reloads.isEmpty());

    viewer.activateWindow();
    viewer.command("Rename", "Zinc\r");
    QTRY_COMPARE(viewer.table->currentIndex().row(), 4);
    QCOMPARE(viewer.shownAt({25, 5}), QColor(Qt::blue));
    viewer.clickCell(4, OnColumn);
    QCOMPARE(viewer.shownAt({25, 5}), ground);

    viewer.command("New", "X");
    viewer.command("New", "Y"); // while the editor is open; this one is when the window goes
    QCoreApplication::processEvents();
    QVERIFY(viewer.names->isAncestorOf(QApplication::focusWidget()));
}

void TestViewer::commands_data()
{
    // With "Red" the current layer: rows to select, command, what is typed, the layers in the file,
    // a part of the message, what is searched for before the command, and what a question is answered.
    addTests(
            {"new;4;New;Zinc\r;*Red 0 Blue Frozen Off Zinc;",
             "new, not ended;4;New;Zinc;*Red 0 Blue Frozen Off Zinc;",
             "no name;4;New;a/b\r;*Red 0 Blue Frozen Off;Layer \"a/b\" cannot be added",
             "taken;4;New;0\r;*Red 0 Blue Frozen Off;another layer",
             "rename;4;Rename;Zinc\r;*Zinc 0 Blue Frozen Off;",
             "rename 0;0;Rename;Zinc\r;*Red 0 Blue Frozen Off;every drawing",
             "delete;3;Delete;;*Red 0 Blue Frozen;",
             "delete some;0,1,3,4;Delete;;*Red 0 Blue Frozen;Not deleted: \"0\" (every drawing has "
             "this layer), \"Blue\" (there are entities on it), \"Red\" (it is the current "
             "layer).;;"
             "Only empty layers",
             "delete all;1,2,3;Delete;;*Red 0;;;Delete them, too",
             "delete none;1,2,3;Delete;;*Red 0 Blue Frozen Off;;;Cancel",
             "delete of what is shown;2,3;Delete;;*Red 0 Blue Off;;fr",
             "current;1;Set current;;*Blue 0 Frozen Off Red;",
             "current of what is shown;1,3;Set current;;*Blue 0 Frozen Off Red;;b",
             "first row current;0;Set current;;*0 Blue Frozen Off Red;"});
}

void TestViewer::commands()
{
    QFETCH(QStringList, fields);
    const QString path = file({}, square(0, 0, "8 Red") + square(20, 0, "8 Blue"));
    Viewer viewer(path);
    viewer.clickCell(4, NameColumn);
    viewer.command("Set current");
    QTRY_COMPARE(viewer.text(4, CurrentColumn), QStringLiteral("true"));

    viewer.table->clearSelection();
    const QStringList rows = fields.at(1).split(',');
    for (const QString &row : rows)
        viewer.clickCell(row.toInt(), NameColumn, Qt::ControlModifier);
    viewer.manager->searchEdit()->setText(fields.value(6));
    const auto act = [&] { viewer.command(fields.at(2), fields.at(3)); };
    if (fields.size() < 8)
        act();
    else
        answerDialog(act, [&](QDialog &dialog) { clickButton(dialog, fields.at(7)); });
    const QString message = viewer.statusBar()->currentMessage();
    viewer.keys(QKeySequence::Save);
    QVERIFY(message.contains(fields.at(5)) && message.isEmpty() == fields.at(5).isEmpty());
    QTRY_COMPARE(viewer.layers().join(' '), fields.at(4));
    QVERIFY(!viewer.isWindowModified());
    QCOMPARE(Viewer(path).layers().join(' '), fields.at(4));
}

/// Its editor gets no focus there, and so loses none.
void TestViewer::nameInAnInactiveWindow()
{
    const QString path = file({}, square(0, 0, "8 Red"));
    Viewer viewer(path);
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    viewer.command("New");
    auto *editor = viewer.names->viewport()->findChild<QLineEdit *>();
    QVERIFY(editor && !editor->hasFocus());
    QTest::keyClicks(editor, "Zinc");
    viewer.command("Save");
    QVERIFY(Viewer(path).layers().contains("Zinc"));
}

void TestViewer::manyLayers()
{
    QStringList layers;
    for (int i = 1000; i < 3000; ++i)
        layers += QString("A-WALL-EXISTING-%1").arg(i);
    const QString path = file({}, {});
    const auto drawing = drawingWithLayers(layers);
    KcHost::setCurrentLayer(*drawing, layers.at(1500));
    QVERIFY(KcHost::writeDrawing(*drawing, path));
    Viewer viewer(path);
    QCOMPARE(viewer.box->lineEdit()->findChildren<QLabel *>().last()->text(), layers.at(1500));
    const QRect cell = viewer.names->visualRect(viewer.rows->index(1501, NameColumn));
    QVERIFY(viewer.names->viewport()->rect().contains(cell));
    QVERIFY(cell.width() > viewer.names->fontMetrics().horizontalAdvance(layers.at(1500)));
    viewer.table->setColumnWidth(NameColumn, 50);
    viewer.command("Refresh");
    QCOMPARE(viewer.names->columnWidth(NameColumn), 50);
    viewer.drop(path);
    QCOMPARE(viewer.names->columnWidth(NameColumn), cell.width());

    viewer.clickLight(1501);
    QTRY_COMPARE(viewer.text(1501, OnColumn), QStringLiteral("false"));
    QCOMPARE(viewer.list->currentRow(), 1501);
}

void TestViewer::manyAtOnce_data()
{
    // What is done with 199 layers and the current one, in which column, what of each changes in the
    // file, by its places there, to what for those, and for the 42 others. "gone" are layers that are not the current one.
    addTests({"plot;9;3;false;", "isolate;1;0;;false", "give back;1;0;;", "color;5;5;1;",
              "true color;5;6 5;66051 178;", "lineweight;7;8;211;", "merge;1;0;gone;",
              "delete;1;0;gone;"});
}

/// With mouse and keys, down to the file, and back to the bytes that it had.
void TestViewer::manyAtOnce()
{
    QFETCH(QStringList, fields);
    const QTemporaryDir folder;
    const QString path = folder.filePath("plan.dxf");
    ezdxf("plan.py", {path, "240"});
    const QByteArray original = fileContent(path);
    const QJsonObject before = ezdxf("layers.py", {"read", path});
    Viewer viewer(path);
    const QString action = fields.first();
    const int column = fields.at(1).toInt();
    const int current = 3;
    QCOMPARE(viewer.text(current, NameColumn), QStringLiteral("W001"));
    viewer.clickCell(current, NameColumn);
    viewer.clickCell(current + 199, column, Qt::ShiftModifier);
    const auto edit = [&](auto answer) {
        answerDialog(
                [&] {
                    QTest::keyClick(viewer.table, Qt::Key_Return);
                    QCoreApplication::processEvents();
                },
                answer);
    };
    const auto pickColor = [](const QColor &color) {
        return [color](QDialog &dialog) {
            static_cast<QColorDialog &>(dialog).setCurrentColor(color);
            QTest::keyClick(&dialog, Qt::Key_Return);
        };
    };
    if (action == "plot") {
        viewer.clickCell(current + 50, PlotColumn);
    } else if (action == "isolate" || action == "give back") {
        viewer.keys(Qt::CTRL | Qt::Key_I);
        if (action == "give back")
            viewer.keys(Qt::CTRL | Qt::SHIFT | Qt::Key_I);
    } else if (action == "color") {
        edit(pickColor(Qt::red));
    } else if (action == "true color") {
        edit(pickColor(QColor(1, 2, 3)));
    } else if (action == "lineweight") {
        edit([](QDialog &dialog) {
            QTest::keyClick(dialog.findChild<QListWidget *>(), Qt::Key_End);
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
    } else if (action == "merge") {
        answerDialog([&] { viewer.table->mergeSelection(); },
                     [](QDialog &dialog) {
                         dialog.findChild<QComboBox *>()->setCurrentText("W001");
                         QTest::keyClick(&dialog, Qt::Key_Return);
                     });
    } else {
        answerDialog([&] { viewer.command("Delete"); },
                     [](QDialog &dialog) { clickButton(dialog, "Delete them, too"); });
    }
    QVERIFY(viewer.isWindowModified());
    viewer.keys(QKeySequence::Save);

    const QStringList places = fields.at(2).split(' ');
    QJsonObject expected = before["layers"].toObject();
    const QStringList names = expected.keys();
    for (const QString &name : names) {
        const bool isChosen = name >= "W001" && name <= "W200";
        const QString value = fields.at(isChosen ? 3 : 4);
        if (value == "gone") {
            if (name != "W001")
                expected.remove(name);
            continue;
        }
        QJsonArray layer = expected[name].toArray();
        const QStringList values = value.split(' ', Qt::SkipEmptyParts);
        for (int i = 0; i < values.size(); ++i)
            layer[places.at(i).toInt()] =
                    value == "false" ? QJsonValue(false) : values.at(i).toInt();
        expected[name] = layer;
    }
    const QJsonObject after = ezdxf("layers.py", {"read", path});
    QCOMPARE(after["layers"].toObject(), expected);
    QCOMPARE(after["used"].toArray().size(), fields.at(3) == "gone" ? 42 : 241);

    for (int steps = action == "give back" ? 2 : 1; steps > 0; --steps)
        viewer.keys(QKeySequence::Undo);
    viewer.keys(QKeySequence::Save);
    QCOMPARE(fileContent(path), original);
    QVERIFY(!viewer.isWindowModified());
}

/// Of six layers two are open elsewhere.
void TestViewer::refusalOfMany()
{
    Viewer viewer(file({}, square(0, 0, "8 Red") + square(20, 0, "8 Blue")));
    std::vector<KcDbLayerTableRecord *> open;
    for (const char *name : {"Red", "Off"}) {
        open.push_back(walkLayers(viewer.drawing()->database.get(),
                                  [&](const auto &layer) { return layerName(layer) != name; }));
        QCOMPARE(open.back()->upgradeOpen(), Kcore::eOk);
    }
    viewer.clickCell(1, NameColumn);
    viewer.clickCell(4, NameColumn, Qt::ShiftModifier);
    viewer.clickCell(1, PlotColumn);
    QVERIFY(viewer.statusBar()->currentMessage().contains("the drawing refused 2 of them"));
    for (KcDbLayerTableRecord *layer : open)
        layer->close();
    viewer.keys(QKeySequence::Undo);
    QVERIFY(!viewer.isWindowModified());
    QTRY_COMPARE(viewer.text(1, PlotColumn), QStringLiteral("true"));
}

/// What was erased, merged or renamed, and comes back.
void TestViewer::undoneOnTheCanvas()
{
    const QString part = block("Part", square(40, 0, "8 Blue"));
    Viewer viewer(file(part, square(0, 0, "8 Red") + "0 INSERT|8 0|2 Part|10 0|20 0|"));
    const auto colors = [&] {
        return QList<QColor>{viewer.shownAt({5, 5}), viewer.shownAt({45, 5})};
    };
    const QList<QColor> original{Qt::red, Qt::blue};
    const auto counts = [&] { return viewer.statusBar()->findChildren<QLabel *>().last()->text(); };
    QCOMPARE(colors(), original);

    viewer.clickCell(1, NameColumn); // Blue
    viewer.clickCell(4, NameColumn, Qt::ControlModifier);
    answerDialog([&] { viewer.command("Delete"); },
                 [](QDialog &dialog) { clickButton(dialog, "Delete them, too"); });
    QCOMPARE(colors(), (QList<QColor>{ground, ground}));
    QTRY_COMPARE(counts(), QStringLiteral("Entities: 1, layers: 3"));
    viewer.dragOnCanvas({-1, -1}, {51, 11});
    QVERIFY(viewer.canvas->selection().isEmpty());
    viewer.keys(QKeySequence::Undo);
    QCOMPARE(colors(), original);
    QTRY_COMPARE(counts(), QStringLiteral("Entities: 2, layers: 5"));

    viewer.activateWindow();
    viewer.table->clearSelection();
    viewer.clickCell(1, NameColumn);
    viewer.command("Rename", "Zinc\r");
    QTRY_COMPARE(viewer.text(3, NameColumn), QStringLiteral("Red"));
    viewer.clickCell(3, NameColumn);
    answerDialog([&] { viewer.table->mergeSelection(); },
                 [](QDialog &dialog) {
                     dialog.findChild<QComboBox *>()->setCurrentText("Zinc");
                     QTest::keyClick(&dialog, Qt::Key_Return);
                 });
    QCOMPARE(colors(), (QList<QColor>{Qt::blue, Qt::blue}));
    for (const auto both : {QKeySequence::Undo, QKeySequence::Redo, QKeySequence::Undo}) {
        viewer.keys(both);
        viewer.keys(both);
        QCOMPARE(viewer.shownAt({5, 5}),
                 both == QKeySequence::Undo ? QColor(Qt::red) : QColor(Qt::blue));
    }
    QTRY_VERIFY(viewer.layers().contains("Blue"));
    QCOMPARE(colors(), original);
    viewer.clickLight(2);
    QCOMPARE(colors(), (QList<QColor>{Qt::red, ground}));
    viewer.keys(QKeySequence::Undo);
    QVERIFY(!viewer.isWindowModified());
}

/// The name is taken over, and that step is the one which is undone.
void TestViewer::undoWhileTyping()
{
    Viewer viewer(file({}, square(0, 0, "8 Red")));
    viewer.clickLight(1);
    viewer.activateWindow();
    viewer.command("New", "Zinc");
    viewer.entry("Undo Switch layer off")->trigger();
    QTRY_VERIFY(!viewer.layers().contains("Zinc"));
    QCOMPARE(viewer.shownAt({5, 5}), ground);
    viewer.keys(QKeySequence::Redo);
    QTRY_VERIFY(viewer.layers().contains("Zinc"));
}

void TestViewer::layersOfTheSelection()
{
    Viewer viewer(
            file({}, square(0, 0, "8 Red") + square(20, 0, "8 Blue") + square(40, 0, "8 Blue")));
    const auto boxes = viewer.findChildren<LayerComboBox *>();
    QCOMPARE(boxes.size(), 3);
    const auto check = [&](const QString &selected, const QString &face) {
        QCOMPARE(viewer.statusText("selection"), selected);
        for (const LayerComboBox *box : boxes)
            QCOMPARE(viewer.faceOf(box), face);
    };
    check({}, "0");
    QTest::keySequence(viewer.canvas, QKeySequence::SelectAll);
    check("3 selected on Blue, Red", "Varies");
    viewer.dragOnCanvas({5, 5}, {5, 5});
    check("1 selected on Red", "Red");
    viewer.chooseLayer(2);
    QTRY_COMPARE(viewer.statusText("selection"), QStringLiteral("1 selected on Blue"));
    check("1 selected on Blue", "Blue");
    viewer.keys(QKeySequence::Undo);
    QTRY_COMPARE(viewer.statusText("selection"), QStringLiteral("1 selected on Red"));
    QVERIFY(!viewer.isWindowModified() && viewer.layers().contains("*0"));
    // A layer that is off takes out of sight what comes there.
    viewer.chooseLayer(3);
    QTRY_VERIFY(viewer.canvas->selection().isEmpty());
    check({}, "0");
    viewer.chooseLayer(2);
    QTRY_VERIFY(viewer.layers().contains("*Blue"));
}

/// It leaves no step behind, and is in no file.
void TestViewer::shownForTheSelection()
{
    const QString path = file({}, square(0, 0, "8 Red") + square(20, 0, "8 Blue"));
    const QByteArray original = fileContent(path);
    Viewer viewer(path);
    for (const bool isSaved : {false, true}) {
        viewer.entry("Show only selected layers")->trigger();
        for (const int row : {4, 1, 4}) {
            viewer.clickCell(row, NameColumn);
            QTRY_COMPARE(viewer.shownAt({25, 5}), row == 1 ? QColor(Qt::blue) : ground);
        }
        if (isSaved)
            viewer.keys(QKeySequence::Save);
        else
            viewer.entry("Show only selected layers")->trigger();
        QCOMPARE(viewer.shownAt({25, 5}), QColor(Qt::blue));
        QVERIFY(!viewer.isWindowModified() && !viewer.entry("Undo")->isEnabled());
    }
    QCOMPARE(fileContent(path), original);
}

void TestViewer::layerStates()
{
    const QString path = file({}, square(0, 0, "8 Red"));
    const QString states = QString(path).replace(".dxf", ".states.json");
    const auto remove = qScopeGuard([&] { QFile::remove(states); });
    const auto type = [](QDialog &dialog) {
        QTest::keyClicks(dialog.findChild<QLineEdit *>(), "A & B");
        QTest::keyClick(&dialog, Qt::Key_Return);
    };
    {
        Viewer viewer(path);
        answerDialog([&] { viewer.entry("Save layer state...")->trigger(); }, type);
        QVERIFY(!viewer.isWindowModified());
        viewer.clickLight(1);
        answerDialog([&] { viewer.entry("Save layer state...")->trigger(); }, type,
                     [](QDialog &dialog) { clickButton(dialog, "No"); });
        answer(QMessageBox::Discard);
        viewer.close();
    }
    Viewer viewer(path);
    viewer.clickLight(1);
    viewer.clickCell(1, NameColumn);
    viewer.command("Delete");
    viewer.entry("A  B")->trigger();
    QCOMPARE(viewer.shownAt({5, 5}), QColor(Qt::red));
    QVERIFY(viewer.statusBar()->currentMessage().contains("gone or refuse: \"Blue\""));
    viewer.keys(QKeySequence::Undo);
    QCOMPARE(viewer.shownAt({5, 5}), ground);
    viewer.entry("Delete state")->menu()->actions().first()->trigger();
    QTRY_VERIFY(!viewer.entry("A  B"));
    QCOMPARE(fileContent(states).simplified(), QByteArray("{ }"));
}

void TestViewer::brokenStates_data()
{
    // What is in the file of states, what is told of it, and whether it is kept when one is saved.
    addTests({"no json;[;cannot be read;kept", "no object;[];cannot be read;kept",
              "no state;{\"A\":1};;"});
}

/// Nothing that the user has, or has had, is lost.
void TestViewer::brokenStates()
{
    QFETCH(QStringList, fields);
    const QTemporaryDir folder;
    const QString path = folder.filePath("plan.dxf");
    QVERIFY(QFile::copy(file({}, square(0, 0, "8 Red")), path));
    QFile states(folder.filePath("plan.states.json"));
    QVERIFY(states.open(QIODevice::WriteOnly));
    states.write(fields.at(1).toUtf8());
    states.close();

    Viewer viewer(path);
    const auto told = [&] { return viewer.statusBar()->currentMessage(); };
    QVERIFY(told().contains(fields.at(2)) && told().isEmpty() == fields.at(2).isEmpty());
    if (QAction *state = viewer.entry("A")) {
        state->trigger();
        QVERIFY(told().contains("\"A\" cannot be restored"));
    }
    QCOMPARE(fileContent(states.fileName()), fields.at(1).toUtf8());
    const auto save = [&](const QString &name) {
        answerDialog([&] { viewer.entry("Save layer state...")->trigger(); },
                     [&](QDialog &dialog) {
                         QTest::keyClicks(dialog.findChild<QLineEdit *>(), name);
                         QTest::keyClick(&dialog, Qt::Key_Return);
                     });
    };
    save("B");
    QVERIFY(fileContent(states.fileName()).contains("\"B\""));
    QCOMPARE(fileContent(states.fileName() + ".kept"),
             fields.at(3).isEmpty() ? QByteArray() : fields.at(1).toUtf8());

    // A full disk leaves them as they are.
    const QByteArray saved = fileContent(states.fileName());
    {
        const Limit size(RLIMIT_FSIZE, 1);
        save("D");
    }
    QVERIFY(told().contains("json cannot be written") && fileContent(states.fileName()) == saved);

    // Where the folder is gone the states stay in the menu, and go along to the next one.
    const QTemporaryDir other;
    QVERIFY(QDir(folder.path()).removeRecursively());
    save("C");
    QVERIFY(told().contains("cannot be written") && viewer.entry("C"));
    answerDialog([&] { viewer.entry("Save as...")->trigger(); },
                 [&](QDialog &dialog) { chooseFile(dialog, other.filePath("new.dxf")); });
    const QByteArray taken = fileContent(other.filePath("new.states.json"));
    QVERIFY(taken.contains("\"B\"") && taken.contains("\"C\"") && taken.contains("\"D\""));

    // What cannot be read is not touched.
    const QDir last(other.path());
    QVERIFY(QFile::remove(last.filePath("new.states.json")) && last.mkdir("new.states.json"));
    save("E");
    QVERIFY(told().contains("it is no file") && last.entryList({"*.kept"}).isEmpty());
}

void TestViewer::remarks()
{
    const QSize room = QGuiApplication::primaryScreen()->availableSize() - QSize(8, 30);
    QCOMPARE(MainWindow().size().boundedTo(room), MainWindow().size());

    const QString odd = "0 MLINE|8 0|0 INSERT|8 0|2 None|10 1e300|0 TEXT|8 0|1 %1|";
    Viewer viewer(file(block("None", "0 POINT|8 0|10 0|20 0|"), odd.arg("", 1500, 'x')));
    const QStringList remarks = viewer.drawing()->warnings;
    QCOMPARE(remarks.size(), 3);
    QCOMPARE(viewer.statusBar()->currentMessage(), remarks.first());
    auto *offer = viewer.statusBar()->findChild<QToolButton *>();
    QTest::mouseClick(offer, Qt::LeftButton);
    QVERIFY(viewer.statusBar()->currentMessage().isEmpty());
    auto *list = viewer.findChild<QDialog *>()->findChild<QListWidget *>();
    QTRY_VERIFY(list->isActiveWindow());
    QTest::keyClick(list, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), remarks.join('\n'));
    QTest::keyClick(list, Qt::Key_Escape);
    viewer.drop(file({}, "0 MLINE|8 0|"));
    QCOMPARE(viewer.statusBar()->currentMessage(), viewer.drawing()->warnings.first());
    viewer.drop(file({}, square(0, 0, "8 Red")));
    QVERIFY(viewer.statusBar()->currentMessage().isEmpty() && !offer->isVisible());
}

void TestViewer::errorKeepsTheDrawing()
{
    Viewer viewer(file({}, square(0, 0, "8 Red")));
    viewer.clickLight(2);
    answer(QMessageBox::Discard);
    const QList<QWidget *> changing{viewer.box, viewer.findChild<PropertyManager *>(),
                                    viewer.ribbon->layerBar()->layerComboBox(),
                                    viewer.findChild<DrawingFrame *>()->layers(), viewer.table};
    viewer.open(QDir::tempPath());
    for (const QWidget *widget : changing)
        QVERIFY(!widget->isEnabled());
    QTRY_VERIFY(viewer.findChild<QMessageBox *>());
    QVERIFY(viewer.takeMessage().contains(QDir::tempPath()));
    for (const QWidget *widget : changing)
        QVERIFY(widget->isEnabled());
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
        QCOMPARE(Viewer(path).text(4, OnColumn) == "true", button != QMessageBox::Save);
    }
}

void TestViewer::writersOfOneFile_data()
{
    // What is pressed when another program has written the file, and whose changes are then in the
    // file, in the window, and in the copy: those made here, or the other ones.
    addTests({"overwrite;Overwrite;here;here;", "save as;Save as...;other;here;here",
              "reload;Reload;other;other;", "cancel;Cancel;other;here;", "gone;;here;here;"});
}

void TestViewer::writersOfOneFile()
{
    QFETCH(QStringList, fields);
    const QString path = file({}, {});
    const QString copy = path + ".copy";
    const auto changes = [](const Viewer &viewer) {
        const bool isOff = viewer.text(4, OnColumn) == "false";
        const bool isCurrent = viewer.layers().contains("*Red");
        return isOff == isCurrent ? "both or none" : isOff ? "here" : "other";
    };
    Viewer viewer(path);
    viewer.clickLight(1);
    const auto save = [&] { QTest::keySequence(&viewer, QKeySequence::Save); };
    const auto press = [&](QDialog &dialog) { clickButton(dialog, fields.at(1)); };
    const auto other = KcHost::readDrawing(path);
    KcHost::setCurrentLayer(*other, "Red");
    QVERIFY(fields.at(1).isEmpty() ? QFile::remove(path) : KcHost::writeDrawing(*other, path));
    if (fields.at(1).isEmpty())
        save();
    else if (fields.at(4).isEmpty())
        answerDialog(save, press);
    else
        answerDialog(save, press, [&](QDialog &dialog) { chooseFile(dialog, copy); });
    QTRY_VERIFY(viewer.table->isEnabled());
    QCOMPARE(changes(viewer), fields.at(3));
    QCOMPARE(viewer.isWindowModified(), fields.at(1) == "Cancel");
    QCOMPARE(changes(Viewer(path)), fields.at(2));
    QVERIFY(QFile::exists(copy) ? changes(Viewer(copy)) == fields.at(4) : fields.at(4).isEmpty());
    QFile::remove(copy);
}

/// The one that is on the screen is saved, and stays there while its name is asked for.
void TestViewer::savedWhileAnotherLoads()
{
    const QString path = file({}, {}) + ".next";
    QVERIFY(QFile::copy(file({}, {}), path));
    const QString copy = path + ".copy";
    Viewer viewer(file({}, square(0, 0, "8 Red")));
    const auto isReading = [] {
        const QFileInfoList threads = QDir("/proc/self/task").entryInfoList(QDir::Dirs);
        return std::any_of(threads.begin(), threads.end(), [](const QFileInfo &thread) {
            QFile name(thread.filePath() + "/comm");
            return name.open(QIODevice::ReadOnly) && name.readAll() == "DrawingLoader\n";
        });
    };
    viewer.open(path);
    answerDialog([&] { viewer.choose(viewer.menuBar()->findChild<QMenu *>(), 2); },
                 [&](QDialog &dialog) {
                     QTRY_VERIFY(!isReading());
                     QCoreApplication::processEvents();
                     chooseFile(dialog, copy);
                 });
    QTRY_COMPARE(viewer.drawing()->fileName, path);
    QCOMPARE(Viewer(copy).shownAt({5, 5}), QColor(Qt::red));
}

void TestViewer::selecting_data()
{
    // Squares at 0,0 and 20,0, one on a layer that is off at 40,0. From where to where the mouse is
    // dragged, the keys, and which are selected then when the first one was before.
    addTests({"click;25,5;25,5;;1", "click on nothing;15,5;15,5;;", "click on hidden;45,5;45,5;;",
              "add;25,5;25,5;Ctrl;0 1", "take out;5,5;5,5;Ctrl;", "inside;18,-2;32,12;;1",
              "not inside;22,-2;32,12;;", "crossing;32,12;22,-2;;1", "all;-1,-9;51,19;;0 1",
              "add by band;18,-2;32,12;Ctrl;0 1"});
}

void TestViewer::selecting()
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

    // What its layer hides is selected no more, and cannot be changed unseen.
    viewer.clickLight(2);
    expected.remove(1);
    QTRY_COMPARE(viewer.canvas->selection(), expected);

    QTest::keyClick(viewer.canvas, Qt::Key_Escape);
    QCOMPARE(changes.count(), expected.isEmpty() ? 1 : 2);
    QVERIFY(viewer.canvas->selection().isEmpty());
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
    clickRow(*panel->colorPicker(), GreenRow);
    QVERIFY(status->currentMessage().contains("selected") && !viewer.isWindowModified());
    QCOMPARE(textOf(*panel->colorPicker()), QStringLiteral("By Layer"));

    viewer.dragOnCanvas({50, 0}, {50, 0});
    QColor picked;
    answerDialog([&] { pressButton(*panel->colorPicker()); },
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
    answerDialog([&] { pressButton(*panel->lineWeightPicker()); },
                 [](QDialog &dialog) {
                     QTest::mouseClick(dialog.findChild<QRadioButton *>("inRadioBnt"),
                                       Qt::LeftButton, {}, {9, 8});
                     QTest::mouseClick(dialog.findChild<QPushButton *>("okBnt"), Qt::LeftButton);
                 });
    clickRow(*panel->lineWeightPicker(), LineWidthComboBox::rowOf(70));
    QCOMPARE(textOf(*panel->lineWeightPicker()), QStringLiteral("0.28\""));
    QTest::keyClick(viewer.canvas, Qt::Key_Escape);
    QCOMPARE(viewer.shownAt({50, 0}), picked);
    QCOMPARE(textOf(*panel->lineWeightPicker()), QStringLiteral("By Layer"));

    viewer.dragOnCanvas({110, 50}, {90, 10});
    viewer.dragOnCanvas({50, 80}, {50, 80}, Qt::ControlModifier);
    QCOMPARE(textOf(*panel->colorPicker()), QStringLiteral("Varies"));
    clickRow(*panel->colorPicker(), ColorByBlockRow);
    answerDialog([&] { pressButton(*panel->lineTypePicker()); },
                 [](QDialog &dialog) {
                     dialog.findChild<QComboBox *>()->setCurrentText("DASHED");
                     QTest::mouseClick(
                             dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok),
                             Qt::LeftButton);
                 });
    QCOMPARE(textOf(*panel->lineTypePicker()), QStringLiteral("DASHED"));

    viewer.dragOnCanvas({50, 100}, {50, 100});
    clickRow(*panel->colorPicker(), RedRow);
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

void TestViewer::propertiesBesideTheRows()
{
    Viewer viewer(file({}, square(0, 0, "8 Red|62 2|420 1193046|370 7|6 Dash")));
    viewer.dragOnCanvas({5, 5}, {5, 5});
    const auto *panel = viewer.findChild<PropertyManager *>();
    QCOMPARE(textOf(*panel->colorPicker()), QStringLiteral("18,52,86"));
    QCOMPARE(textOf(*panel->lineWeightPicker()), QStringLiteral("0.07 mm"));
    QCOMPARE(textOf(*panel->lineTypePicker()), QStringLiteral("Dash"));
}

void TestViewer::views()
{
    Viewer viewer(file({}, square(0, 0, "8 Red")));
    const auto *panes = viewer.findChild<CanvasPanes *>();
    BaseGallery *gallery = viewer.ribbon->views();
    const auto buttons = viewer.findChildren<ViewButton *>();
    QCOMPARE(buttons.size(), 2);
    const auto check = [&](ViewDirection view, const QString &name, int item) {
        QCOMPARE(panes->current()->view(), view);
        for (const ViewButton *button : buttons) {
            QCOMPARE(button->text(), name);
            QVERIFY(button->menu()->actions().at(item)->isChecked());
        }
        const NsRc::RibbonGalleryGroup *group = gallery->galleryGroup();
        QCOMPARE(group->indexOf(gallery->checkedItem()), item);
        QCOMPARE(group->indexOf(gallery->popupGallery()->checkedItem()), item);
    };
    viewer.press(gallery, SouthwestView);
    check(ViewDirection::Southwest, "Southwest", SouthwestView);
    for (const ViewButton *button : buttons) {
        viewer.choose(button->menu(), FrontView);
        check(ViewDirection::Front, "Front", FrontView);
        viewer.choose(button->menu(), NorthwestView);
        check(ViewDirection::Northwest, "Northwest", NorthwestView);
        viewer.choose(button->menu(), SoutheastView);
        check(ViewDirection::Southeast, "Northwest", SoutheastView);
    }
    viewer.press(gallery, NorthwestView);
    check(ViewDirection::Northwest, "Northwest", NorthwestView);
    viewer.press(gallery, SoutheastView);
    check(ViewDirection::Southeast, "Northwest", SoutheastView);

    // Each canvas has a view of its own, and the commands are for the one that was pressed last.
    viewer.press(viewer.ribbon->arrangements(), TwoVerticalViewports);
    click(panes->shown().constLast()->viewport());
    check(ViewDirection::Top, "Top", TopView);
    viewer.press(gallery, BackView);
    check(ViewDirection::Back, "Back", BackView);
    click(panes->shown().constFirst()->viewport());
    check(ViewDirection::Southeast, "Northwest", SoutheastView);
}

void TestViewer::farFromTheOrigin()
{
    const QString endless = "0 XLINE|8 Red|10 9|20 50000005|11 1|21 0|";
    Viewer viewer(file({}, endless + square(500000, 50000000, "8 Red")));
    QVERIFY(viewer.shownAt({499998, 50000005}) != ground);
    QWidget *viewport = viewer.canvas->viewport();
    const QPoint center = viewport->rect().center();
    const QPointF middle = viewer.canvas->toPicture(center);
    QVERIFY(QLineF(middle, {500005, 50000005}).length() < 1);
    wheel(viewport, {1200, 1200, 1200, 1200});
    QVERIFY(QLineF(viewer.canvas->toPicture(center), middle).length() < 0.01);
    QCOMPARE(viewport->grab().toImage().pixelColor(center), QColor(Qt::red));

    QSignalSpy moves(viewer.canvas, &Canvas::pointerMoved);
    mouse(QEvent::MouseButtonPress, viewport, center);
    mouse(QEvent::MouseMove, viewport, center + QPoint(1, 0));
    mouse(QEvent::MouseButtonRelease, viewport, center);
    QCOMPARE(moves.size(), 1);
    QVERIFY(QLineF(moves.first().first().toPointF(), middle).length() < 0.01);
    QCOMPARE(viewer.canvas->selection(), QSet<int>{1});
}

void TestViewer::arrangements()
{
    Viewer viewer(file({}, square(0, 0, "8 Red")));
    const auto *panes = viewer.findChild<CanvasPanes *>();
    const QWidget *names = viewer.ribbon->arrangements()->popupGallery();
    QVERIFY(names->width() >= names->sizeHint().width());
    const QVector<int> counts{1, 2, 2, 3, 3, 3, 3, 3, 3, 4, 4, 4};
    for (int index = 0; index < counts.size(); ++index) {
        Canvas *current = panes->shown().constLast();
        click(current->viewport());
        viewer.press(viewer.ribbon->arrangements(), index);
        const QVector<Canvas *> shown = panes->shown();
        QCOMPARE(shown.size(), counts.at(index));
        QCOMPARE(panes->current(), current);
        QRegion covered;
        for (const Canvas *canvas : shown) {
            QVERIFY(canvas->isVisible() && !covered.intersects(canvas->geometry()));
            covered += canvas->geometry();
        }
        // Lines around the canvases stay free.
        QVERIFY(panes->rect().contains(covered.boundingRect()));
        QVERIFY((panes->size() - covered.boundingRect().size()).width() <= 4);
        QCOMPARE(shown.first(), current);
    }
    // What is selected on one is selected on all.
    const QVector<Canvas *> shown = panes->shown();
    QTest::keyClick(shown.last(), Qt::Key_Escape);
    const QImage before = shown.first()->viewport()->grab().toImage();
    mouse(QEvent::MouseButtonPress, shown.last()->viewport(), shown.last()->fromPicture({5, 5}));
    mouse(QEvent::MouseButtonRelease, shown.last()->viewport(), shown.last()->fromPicture({5, 5}));
    QVERIFY(shown.first()->viewport()->grab().toImage() != before);
}

void TestViewer::frameOfTheDrawing()
{
    Viewer viewer(file({}, square(0, 0, "8 Red")));
    auto *frame = viewer.findChild<DrawingFrame *>();
    auto *strip = viewer.findChild<MinMaxButton *>();
    const auto *panes = viewer.findChild<CanvasPanes *>();
    const auto enter = [&] {
        QEnterEvent event({}, {}, {});
        QApplication::sendEvent(strip->parentWidget(), &event);
    };
    const auto press = [&](int button) {
        enter();
        click(strip, {20 * button + 10, 10});
    };
    QVERIFY(!strip->isVisible());
    enter();
    QVERIFY(strip->isVisible() && frame->layers()->isVisible());

    QCOMPARE(panes->size(), frame->size());
    press(1);
    QVERIFY(panes->isVisible() && panes->width() < frame->width());
    press(0);
    QVERIFY(!panes->isVisible() && strip->isVisible() && !frame->layers()->isVisible());
    press(1);
    QVERIFY(panes->isVisible() && panes->width() < frame->width());
    press(1);
    QCOMPARE(panes->size(), frame->size());

    viewer.clickLight(1);
    answer(QMessageBox::Cancel);
    press(2);
    QVERIFY(viewer.drawing());
    answer(QMessageBox::Discard);
    press(2);
    QVERIFY(!viewer.drawing() && !strip->isVisible());
    QCOMPARE(viewer.shownAt({5, 5}), ground);
}

void TestViewer::floatingPickers()
{
    Viewer viewer(file({}, square(0, 0, "8 Red")));
    StackWidget *pickers = viewer.ribbon->pickers();
    LayerControl *bar = viewer.ribbon->layerBar();
    const QWidget *fold = bar->layout()->itemAt(2)->widget();
    const auto place = [&] { return bar->mapToGlobal(QPoint(0, pickers->height() - 8)); };
    click(fold);
    QVERIFY(pickers->isVisible());
    QCOMPARE(pickers->pos(), place());
    viewer.move(viewer.pos() + QPoint(40, 30));
    QTRY_COMPARE(pickers->pos(), place());

    // A pick there changes what is selected, and the pickers of the tool bar show it.
    viewer.dragOnCanvas({5, 5}, {5, 5});
    clickRow(*pickers->propertyManager()->colorPicker(), GreenRow);
    const auto panels = viewer.findChildren<PropertyManager *>();
    for (const PropertyManager *panel : panels)
        QCOMPARE(textOf(*panel->colorPicker()), QStringLiteral("Green"));
    click(fold);
    QVERIFY(!pickers->propertyManager()->isVisible());
}

QTEST_MAIN(TestViewer)
#include "tst_viewer.moc"
