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

void clickButton(const QWidget &window, const QString &text)
{
    const QList<QAbstractButton *> buttons = window.findChildren<QAbstractButton *>();
    for (QAbstractButton *button : buttons) {
        if (button->text().remove('&') == text)
            return QTest::mouseClick(button, Qt::LeftButton);
    }
    QFAIL(qPrintable(text));
}

/// Answers to a dialog: a button, or what is typed or chosen before the default one.
auto press(const QString &button)
{
    return [button](QDialog &dialog) { clickButton(dialog, button); };
}

auto type(const QString &text)
{
    return [text](QDialog &dialog) {
        auto *edit = dialog.findChild<QLineEdit *>();
        edit->clear();
        QTest::keyClicks(edit, text);
        QTest::keyClick(edit, Qt::Key_Return);
    };
}

auto choose(const QString &text)
{
    return [text](QDialog &dialog) {
        dialog.findChild<QComboBox *>()->setCurrentText(text);
        QTest::keyClick(&dialog, Qt::Key_Return);
    };
}

auto choose(const QColor &color)
{
    return [color](QDialog &dialog) {
        static_cast<QColorDialog &>(dialog).setCurrentColor(color);
        QTest::keyClick(&dialog, Qt::Key_Return);
    };
}

/// A drawing with a red square, and a blue one beside it.
QString twoSquares()
{
    return file({}, square(0, 0, "8 Red") + square(20, 0, "8 Blue"));
}

/// A window on which a drawing was dropped, and what a user does in it.
struct Viewer : MainWindow
{
    explicit Viewer(const QString &path = twoSquares())
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

    void openBox()
    {
        QTest::mouseClick(box->lineEdit(), Qt::LeftButton);
        QTRY_VERIFY(list->isVisible());
    }

    void clickLight(int row)
    {
        openBox();
        QTest::mouseClick(box->layerItem(row)->findChild<QPushButton *>(), Qt::LeftButton);
        QTest::keyClick(list, Qt::Key_Escape);
    }

    void chooseLayer(int row)
    {
        openBox();
        list->setCurrentRow(row);
        QTest::keyClick(list, Qt::Key_Return);
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

    static QString faceOf(const LayerComboBox *layerBox)
    {
        return layerBox->lineEdit()->findChildren<QLabel *>().last()->text();
    }

    QString told() const { return statusBar()->currentMessage(); }

    /// Has the selected layers erased with what lies on them.
    void deleteAll()
    {
        answerDialog([this] { command("Delete"); }, press("Delete them, too"));
    }

    void mergeInto(const QString &layer)
    {
        answerDialog([this] { table->mergeSelection(); }, choose(layer));
    }

    template <class... Acts>
    void saveState(const QString &name, Acts... acts)
    {
        answerDialog([this] { entry("Save layer state...")->trigger(); }, type(name), acts...);
    }

    /// Presses an item in the drop-down of a gallery.
    static void pressItem(BaseGallery *gallery, int item)
    {
        click(gallery->findChildren<QAbstractButton *>(QString(), Qt::FindDirectChildrenOnly)
                      .constLast());
        const NsRc::RibbonGallery *items = gallery->popupGallery();
        QTRY_VERIFY(items->isVisible());
        const int height = gallery->galleryGroup()->getSize().height();
        click(items, {items->width() / 2, item * height + height / 2});
        QVERIFY(!items->isVisible());
    }

    Canvas *canvas = findChild<Canvas *>();
    ViewRibbon *ribbon = findChild<ViewRibbon *>();
    LayerComboBox *box = findChild<LayerComboBox *>("layers");
    QListWidget *list = qobject_cast<QListWidget *>(box->view());
    LayerTableWidget *table = findChild<LayerTableWidget *>();
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
    void views();
    void farFromTheOrigin();
    void arrangements();
    void frameOfTheDrawing();
    void floatingPickers();
};

void TestViewer::widgetsKeepInStep()
{
    Viewer viewer;
    QSignalSpy reloads(viewer.rows, &QAbstractItemModel::modelReset);
    viewer.clickCell(4, OnColumn);
    QTRY_VERIFY(!viewer.box->layerItem(1)->currentLayerData().isOn);
    QCOMPARE(viewer.shownAt({5, 5}), ground);
    QVERIFY(viewer.isWindowModified());

    viewer.clickCell(0, NameColumn);
    viewer.clickLight(1);
    QTRY_COMPARE(viewer.text(4, OnColumn), QStringLiteral("true"));
    viewer.keys(Qt::CTRL | Qt::Key_I);
    QCOMPARE(viewer.shownAt({5, 5}), ground);
    viewer.keys(Qt::CTRL | Qt::SHIFT | Qt::Key_I);
    QCOMPARE(viewer.shownAt({5, 5}), QColor(Qt::red));
    QCOMPARE(viewer.table->currentIndex().row(), 0);
    QVERIFY(reloads.isEmpty());

    viewer.command("New", "X");
    viewer.command("New", "Y"); // while the editor is open; this one is when the window goes
    QCoreApplication::processEvents();
    QVERIFY(viewer.names->isAncestorOf(QApplication::focusWidget()));
}

void TestViewer::commands_data()
{
    // With "Red" the current layer: rows to select, command, what is typed, the layers in the file,
    // a part of the message, and what a question is answered.
    addTests({"new;4;New;Zinc\r;*Red 0 Blue Frozen Off Zinc;",
              "new, not ended;4;New;Zinc;*Red 0 Blue Frozen Off Zinc;",
              "no name;4;New;a/b\r;*Red 0 Blue Frozen Off;Layer \"a/b\" cannot be added",
              "taken;4;New;0\r;*Red 0 Blue Frozen Off;another layer",
              "rename;4;Rename;Zinc\r;*Zinc 0 Blue Frozen Off;",
              "rename 0;0;Rename;Zinc\r;*Red 0 Blue Frozen Off;every drawing",
              "delete;3;Delete;;*Red 0 Blue Frozen;",
              "delete some;0,1,3,4;Delete;;*Red 0 Blue Frozen;Not deleted: \"0\" (every drawing "
              "has this layer), \"Blue\" (there are entities on it), \"Red\" (it is the current "
              "layer).;Only empty layers",
              "delete all;1,2,3;Delete;;*Red 0;;Delete them, too",
              "delete none;1,2,3;Delete;;*Red 0 Blue Frozen Off;;Cancel",
              "current;1;Set current;;*Blue 0 Frozen Off Red;"});
}

void TestViewer::commands()
{
    QFETCH(QStringList, fields);
    Viewer viewer;
    viewer.clickCell(4, NameColumn);
    viewer.command("Set current");
    QTRY_COMPARE(viewer.text(4, CurrentColumn), QStringLiteral("true"));

    viewer.table->clearSelection();
    const QStringList rows = fields.at(1).split(',');
    for (const QString &row : rows)
        viewer.clickCell(row.toInt(), NameColumn, Qt::ControlModifier);
    const auto act = [&] { viewer.command(fields.at(2), fields.at(3)); };
    if (fields.size() < 7)
        act();
    else
        answerDialog(act, press(fields.at(6)));
    const QString message = viewer.told();
    viewer.keys(QKeySequence::Save);
    QVERIFY(message.contains(fields.at(5)) && message.isEmpty() == fields.at(5).isEmpty());
    QTRY_COMPARE(viewer.layers().join(' '), fields.at(4));
    QVERIFY(!viewer.isWindowModified());
    QCOMPARE(Viewer(viewer.drawing()->fileName).layers().join(' '), fields.at(4));
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
    QCOMPARE(viewer.faceOf(viewer.box), layers.at(1500));
    const QRect cell = viewer.names->visualRect(viewer.rows->index(1501, NameColumn));
    QVERIFY(viewer.names->viewport()->rect().contains(cell));
    QVERIFY(cell.width() > viewer.names->fontMetrics().horizontalAdvance(layers.at(1500)));
    viewer.table->setColumnWidth(NameColumn, 50);
    viewer.command("Refresh");
    QCOMPARE(viewer.names->columnWidth(NameColumn), 50);
    viewer.drop(path);
    QCOMPARE(viewer.names->columnWidth(NameColumn), cell.width());

    viewer.openBox();
    QCOMPARE(viewer.list->currentRow(), 1501);
}

void TestViewer::manyAtOnce_data()
{
    // What is done with 199 layers and the current one, in which column, and what then is another one
    // of each in the file, by its place there.
    addTests({"plot;9;3 false", "color;5;5 1", "true color;5;5 178 6 66051", "lineweight;7;8 211",
              "merge;1;gone", "delete;1;gone"});
}

/// With mouse and keys, down to the file, and back to the bytes that it had.
void TestViewer::manyAtOnce()
{
    QFETCH(QStringList, fields);
    const QTemporaryDir folder;
    const QString path = folder.filePath("plan.dxf");
    ezdxf("plan.py", {path, "240"});
    const QByteArray original = fileContent(path);
    const QJsonObject before = ezdxf("layers.py", {"read", path})["layers"].toObject();
    Viewer viewer(path);
    const QString action = fields.first();
    const int current = 3;
    QCOMPARE(viewer.text(current, NameColumn), QStringLiteral("W001"));
    viewer.clickCell(current, NameColumn);
    viewer.clickCell(current + 199, fields.at(1).toInt(), Qt::ShiftModifier);
    const auto edit = [&] {
        QTest::keyClick(viewer.table, Qt::Key_Return);
        QCoreApplication::processEvents();
    };
    if (action == "plot")
        viewer.clickCell(current + 50, PlotColumn);
    else if (action == "merge")
        viewer.mergeInto("W001");
    else if (action == "delete")
        viewer.deleteAll();
    else if (action == "lineweight")
        answerDialog(edit, [](QDialog &dialog) {
            QTest::keyClick(dialog.findChild<QListWidget *>(), Qt::Key_End);
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
    else
        answerDialog(edit, choose(action == "color" ? QColor(Qt::red) : QColor(1, 2, 3)));
    QVERIFY(viewer.isWindowModified());
    viewer.keys(QKeySequence::Save);

    const QJsonObject file = ezdxf("layers.py", {"read", path});
    const QJsonObject after = file["layers"].toObject();
    QMap<QString, QStringList> changed; // the layers of which each is another one
    for (auto layer = before.begin(); layer != before.end(); ++layer) {
        const QJsonArray was = layer->toArray();
        const QJsonArray is = after[layer.key()].toArray();
        QStringList changes;
        for (int i = 0; i < is.size(); ++i) {
            if (is.at(i) != was.at(i))
                changes += QString("%1 %2").arg(i).arg(is.at(i).toVariant().toString());
        }
        changed[is.isEmpty() ? "gone" : changes.join(' ')] += layer.key();
    }
    const bool isGone = fields.at(2) == "gone";
    QCOMPARE(changed.value(fields.at(2)),
             before.keys().mid(isGone ? current + 1 : current, isGone ? 199 : 200));
    QCOMPARE(changed.value({}).size(), isGone ? 43 : 42);
    QCOMPARE(file["used"].toArray().size(), isGone ? 42 : 241);

    viewer.keys(QKeySequence::Undo);
    viewer.keys(QKeySequence::Save);
    QCOMPARE(fileContent(path), original);
    QVERIFY(!viewer.isWindowModified());
}

/// Of six layers two are open elsewhere.
void TestViewer::refusalOfMany()
{
    Viewer viewer;
    KcDbLayerTableRecord *const open[]{getLayerByName("Red"), getLayerByName("Off")};
    viewer.clickCell(1, NameColumn);
    viewer.clickCell(4, NameColumn, Qt::ShiftModifier);
    viewer.clickCell(1, PlotColumn);
    QVERIFY(viewer.told().contains("the drawing refused 2 of them"));
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
    viewer.deleteAll();
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
    viewer.mergeInto("Zinc");
    QCOMPARE(colors(), (QList<QColor>{Qt::blue, Qt::blue}));
    for (const auto both : {QKeySequence::Undo, QKeySequence::Redo, QKeySequence::Undo}) {
        viewer.keys(both);
        viewer.keys(both);
        QCOMPARE(viewer.shownAt({5, 5}).red(), both == QKeySequence::Undo ? 255 : 0);
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
    Viewer viewer;
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
    const QString blue = square(20, 0, "8 Blue") + square(40, 0, "8 Blue");
    Viewer viewer(file({}, square(0, 0, "8 Red") + blue));
    // What the status bar says of it, and what the layer boxes show.
    const auto shown = [&] {
        QStringList texts{viewer.statusBar()->findChild<QLabel *>("selection")->text()};
        const auto boxes = viewer.findChildren<LayerComboBox *>();
        for (const LayerComboBox *box : boxes)
            texts += viewer.faceOf(box);
        return texts.join('|');
    };
    QCOMPARE(shown(), QString("|0|0|0"));
    QTest::keySequence(viewer.canvas, QKeySequence::SelectAll);
    QCOMPARE(shown(), QString("3 selected on Blue, Red|Varies|Varies|Varies"));
    viewer.dragOnCanvas({5, 5}, {5, 5});
    QCOMPARE(shown(), QString("1 selected on Red|Red|Red|Red"));
    viewer.chooseLayer(2);
    QTRY_COMPARE(shown(), QString("1 selected on Blue|Blue|Blue|Blue"));
    viewer.keys(QKeySequence::Undo);
    QTRY_COMPARE(shown(), QString("1 selected on Red|Red|Red|Red"));
    QVERIFY(!viewer.isWindowModified() && viewer.layers().contains("*0"));
    // A layer that is off takes out of sight what comes there.
    viewer.chooseLayer(3);
    QTRY_COMPARE(shown(), QString("|0|0|0"));
    viewer.chooseLayer(2);
    QTRY_VERIFY(viewer.layers().contains("*Blue"));
}

/// It leaves no step behind, and is in no file.
void TestViewer::shownForTheSelection()
{
    Viewer viewer;
    const QByteArray original = fileContent(viewer.drawing()->fileName);
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
    QCOMPARE(fileContent(viewer.drawing()->fileName), original);
}

void TestViewer::layerStates()
{
    const QString path = twoSquares();
    const QString states = QString(path).replace(".dxf", ".states.json");
    const auto remove = qScopeGuard([&] { QFile::remove(states); });
    {
        Viewer viewer(path);
        viewer.saveState("A & B");
        QVERIFY(!viewer.isWindowModified());
        viewer.clickLight(1);
        viewer.saveState("A & B", press("No"));
        answerDialog([&] { viewer.close(); }, press("Discard"));
    }
    Viewer viewer(path);
    viewer.clickLight(1);
    viewer.clickCell(3, NameColumn);
    viewer.command("Delete");
    viewer.entry("A  B")->trigger();
    QCOMPARE(viewer.shownAt({5, 5}), QColor(Qt::red));
    QVERIFY(viewer.told().contains("gone or refuse: \"Off\""));
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
    const QString states = folder.filePath("plan.states.json");
    const QByteArray content = fields.at(1).toUtf8();
    QFile file(states);
    QVERIFY(QFile::copy(twoSquares(), path) && file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();

    Viewer viewer(path);
    QVERIFY(viewer.told().contains(fields.at(2))
            && viewer.told().isEmpty() == fields.at(2).isEmpty());
    if (QAction *state = viewer.entry("A")) {
        state->trigger();
        QVERIFY(viewer.told().contains("\"A\" cannot be restored"));
    }
    QCOMPARE(fileContent(states), content);
    viewer.saveState("B");
    const QByteArray saved = fileContent(states);
    QVERIFY(saved.contains("\"B\""));
    QCOMPARE(fileContent(states + ".kept"), fields.at(3).isEmpty() ? QByteArray() : content);

    // A full disk leaves them as they are.
    {
        const Limit size(RLIMIT_FSIZE, 1);
        viewer.saveState("D");
    }
    QVERIFY(viewer.told().contains("json cannot be written") && fileContent(states) == saved);

    // Where the folder is gone the states stay in the menu, and go along to the next one.
    const QTemporaryDir other;
    QVERIFY(QDir(folder.path()).removeRecursively());
    viewer.saveState("C");
    QVERIFY(viewer.told().contains("cannot be written") && viewer.entry("C"));
    answerDialog([&] { viewer.entry("Save as...")->trigger(); }, type(other.filePath("new.dxf")));
    const QByteArray taken = fileContent(other.filePath("new.states.json"));
    QVERIFY(taken.contains("\"B\"") && taken.contains("\"C\"") && taken.contains("\"D\""));

    // What cannot be read is not touched.
    const QDir last(other.path());
    QVERIFY(QFile::remove(last.filePath("new.states.json")) && last.mkdir("new.states.json"));
    viewer.saveState("E");
    QVERIFY(viewer.told().contains("it is no file") && last.entryList({"*.kept"}).isEmpty());
}

void TestViewer::remarks()
{
    const QSize room = QGuiApplication::primaryScreen()->availableSize() - QSize(8, 30);
    QCOMPARE(MainWindow().size().boundedTo(room), MainWindow().size());

    const QString odd = "0 MLINE|8 0|0 INSERT|8 0|2 None|10 1e300|0 TEXT|8 0|1 %1|";
    Viewer viewer(file(block("None", "0 POINT|8 0|10 0|20 0|"), odd.arg("", 1500, 'x')));
    const QStringList remarks = viewer.drawing()->warnings;
    QCOMPARE(remarks.size(), 3);
    QCOMPARE(viewer.told(), remarks.first());
    auto *offer = viewer.statusBar()->findChild<QToolButton *>();
    QTest::mouseClick(offer, Qt::LeftButton);
    QVERIFY(viewer.told().isEmpty());
    auto *list = viewer.findChild<QDialog *>()->findChild<QListWidget *>();
    QTRY_VERIFY(list->isActiveWindow());
    QTest::keyClick(list, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), remarks.join('\n'));
    QTest::keyClick(list, Qt::Key_Escape);
    viewer.drop(file({}, "0 MLINE|8 0|"));
    QCOMPARE(viewer.told(), viewer.drawing()->warnings.first());
    viewer.drop(twoSquares());
    QVERIFY(viewer.told().isEmpty() && !offer->isVisible());
}

void TestViewer::errorKeepsTheDrawing()
{
    Viewer viewer;
    viewer.clickLight(2);
    const QList<QWidget *> changing{viewer.box, viewer.findChild<PropertyManager *>(),
                                    viewer.ribbon->layerBar()->layerComboBox(),
                                    viewer.findChild<DrawingFrame *>()->layers(), viewer.table};
    answerDialog([&] { viewer.open(QDir::tempPath()); }, press("Discard"));
    for (const QWidget *widget : changing)
        QVERIFY(!widget->isEnabled());
    QTRY_VERIFY(viewer.findChild<QMessageBox *>());
    const std::unique_ptr<QMessageBox> message(viewer.findChild<QMessageBox *>());
    QVERIFY(message->text().contains(QDir::tempPath()));
    for (const QWidget *widget : changing)
        QVERIFY(widget->isEnabled());
    QCOMPARE(viewer.shownAt({5, 5}), QColor(Qt::red));
    QVERIFY(viewer.isWindowModified());
}

void TestViewer::changesAreNotLost()
{
    const QStringList buttons{"Save", "Discard", "Cancel"};
    for (const QString &button : buttons) {
        Viewer viewer;
        viewer.clickLight(1);
        bool isClosed = false;
        answerDialog([&] { isClosed = viewer.close(); }, press(button));
        QCOMPARE(isClosed, button != "Cancel");
        QCOMPARE(Viewer(viewer.drawing()->fileName).text(4, OnColumn) == "true", button != "Save");
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
        const bool isOn = viewer.text(4, OnColumn) == "true";
        return isOn && viewer.layers().contains("*Red") ? "other" : isOn ? "none" : "here";
    };
    Viewer viewer(path);
    viewer.clickLight(1);
    const auto save = [&] { QTest::keySequence(&viewer, QKeySequence::Save); };
    const auto other = KcHost::readDrawing(path);
    KcHost::setCurrentLayer(*other, "Red");
    QVERIFY(fields.at(1).isEmpty() ? QFile::remove(path) : KcHost::writeDrawing(*other, path));
    if (fields.at(1).isEmpty())
        save();
    else if (fields.at(4).isEmpty())
        answerDialog(save, press(fields.at(1)));
    else
        answerDialog(save, press(fields.at(1)), type(copy));
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
    Viewer viewer;
    const auto isReading = [] {
        const QFileInfoList threads = QDir("/proc/self/task").entryInfoList(QDir::Dirs);
        return std::any_of(threads.begin(), threads.end(), [](const QFileInfo &thread) {
            QFile name(thread.filePath() + "/comm");
            return name.open(QIODevice::ReadOnly) && name.readAll() == "DrawingLoader\n";
        });
    };
    viewer.open(path);
    answerDialog([&] { viewer.entry("Save as...")->trigger(); },
                 [&](QDialog &dialog) {
                     QTRY_VERIFY(!isReading());
                     QCoreApplication::processEvents();
                     type(copy)(dialog);
                 });
    QTRY_COMPARE(viewer.drawing()->fileName, path);
    QCOMPARE(Viewer(copy).shownAt({5, 5}), QColor(Qt::red));
}

void TestViewer::selecting_data()
{
    // Squares at 0,0 and 20,0, one on a layer that is off at 40,0. From where to where the mouse is
    // dragged, the keys, and which are selected then when the first one was before.
    addTests({"click;25,5,25,5;;1", "click on nothing;15,5,15,5;;", "click on hidden;45,5,45,5;;",
              "add;25,5,25,5;Ctrl;0 1", "take out;5,5,5,5;Ctrl;", "inside;18,-2,32,12;;1",
              "not inside;22,-2,32,12;;", "crossing;32,12,22,-2;;1", "all;-1,-9,51,19;;0 1",
              "add by band;18,-2,32,12;Ctrl;0 1"});
}

void TestViewer::selecting()
{
    QFETCH(QStringList, fields);
    Viewer viewer(
            file({}, square(0, 0, "8 Red") + square(20, 0, "8 Blue") + square(40, 0, "8 Off")));
    viewer.dragOnCanvas({5, 5}, {5, 5});
    QSignalSpy changes(viewer.canvas, &Canvas::selectionChanged);
    const QStringList places = fields.at(1).split(',');
    const bool isAdding = fields.at(2) == "Ctrl";
    viewer.dragOnCanvas({places.at(0).toDouble(), places.at(1).toDouble()},
                        {places.at(2).toDouble(), places.at(3).toDouble()},
                        isAdding ? Qt::ControlModifier : Qt::NoModifier);
    const auto selected = [&] {
        QStringList numbers;
        for (const int entity : viewer.canvas->selection())
            numbers += QString::number(entity);
        numbers.sort();
        return numbers.join(' ');
    };
    QCOMPARE(selected(), fields.at(3));

    // What its layer hides is selected no more, and cannot be changed unseen.
    viewer.clickLight(2);
    const QString left = fields.at(3).left(fields.at(3).indexOf("1")).trimmed();
    QTRY_COMPARE(selected(), left);
    QTest::keyClick(viewer.canvas, Qt::Key_Escape);
    QCOMPARE(changes.count(), left.isEmpty() ? 1 : 2);
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
    clickRow(*panel->colorPicker(), GreenRow);
    QVERIFY(viewer.told().contains("selected") && !viewer.isWindowModified());
    QCOMPARE(textOf(*panel->colorPicker()), QStringLiteral("By Layer"));

    viewer.dragOnCanvas({50, 0}, {50, 0});
    answerDialog([&] { pressButton(*panel->colorPicker()); }, choose(QColor(1, 200, 3)));
    clickRow(*panel->lineWeightPicker(), LineWidthComboBox::rowOf(70));
    QCOMPARE(textOf(*panel->lineWeightPicker()), QStringLiteral("0.70 mm"));
    QTest::keyClick(viewer.canvas, Qt::Key_Escape);
    QCOMPARE(viewer.shownAt({50, 0}), QColor(1, 200, 3));
    QCOMPARE(textOf(*panel->lineWeightPicker()), QStringLiteral("By Layer"));

    viewer.dragOnCanvas({110, 50}, {90, 10});
    viewer.dragOnCanvas({50, 80}, {50, 80}, Qt::ControlModifier);
    QCOMPARE(textOf(*panel->colorPicker()), QStringLiteral("Varies"));
    clickRow(*panel->colorPicker(), ColorByBlockRow);
    answerDialog([&] { pressButton(*panel->lineTypePicker()); }, choose(QString("DASHED")));
    QCOMPARE(textOf(*panel->lineTypePicker()), QStringLiteral("DASHED"));

    viewer.dragOnCanvas({50, 100}, {50, 100});
    clickRow(*panel->colorPicker(), RedRow);
    QVERIFY(viewer.told().contains("locked"));

    viewer.keys(QKeySequence::Save);
    const QJsonArray entities = ezdxf("properties.py", {"read", path})["entities"].toArray();
    const QByteArray expected = R"([[92,116739,70,"ByLayer"],[0,-1,-1,"DASHED"],)"
                                R"([0,-1,-1,"DASHED"],[256,-1,-1,"ByLayer"]])";
    QCOMPARE(QJsonDocument(entities).toJson(QJsonDocument::Compact), expected);
}

void TestViewer::views()
{
    Viewer viewer;
    const auto *panes = viewer.findChild<CanvasPanes *>();
    BaseGallery *gallery = viewer.ribbon->views();
    const auto buttons = viewer.findChildren<ViewButton *>();
    QCOMPARE(buttons.size(), 2);
    const auto check = [&](int view, const QString &name) {
        QCOMPARE(int(panes->current()->view()), view);
        for (const ViewButton *button : buttons) {
            QCOMPARE(button->text(), name);
            QVERIFY(button->menu()->actions().at(view)->isChecked());
        }
        const NsRc::RibbonGalleryGroup *group = gallery->galleryGroup();
        QCOMPARE(group->indexOf(gallery->checkedItem()), view);
        QCOMPARE(group->indexOf(gallery->popupGallery()->checkedItem()), view);
    };
    viewer.pressItem(gallery, SouthwestView);
    check(SouthwestView, "Southwest");
    for (const ViewButton *button : buttons) {
        button->menu()->actions().at(FrontView)->trigger();
        check(FrontView, "Front");
        button->menu()->actions().at(NorthwestView)->trigger();
        check(NorthwestView, "Northwest");
        button->menu()->actions().at(SoutheastView)->trigger();
        check(SoutheastView, "Northwest");
    }

    // Each canvas has a view of its own, and the commands are for the one that was pressed last.
    viewer.pressItem(viewer.ribbon->arrangements(), TwoVerticalViewports);
    click(panes->shown().constLast()->viewport());
    check(TopView, "Top");
    viewer.pressItem(gallery, BackView);
    check(BackView, "Back");
    click(panes->shown().constFirst()->viewport());
    check(SoutheastView, "Northwest");
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
    Viewer viewer;
    const auto *panes = viewer.findChild<CanvasPanes *>();
    const QWidget *names = viewer.ribbon->arrangements()->popupGallery();
    QVERIFY(names->width() >= names->sizeHint().width());
    const QVector<int> counts{1, 2, 2, 3, 3, 3, 3, 3, 3, 4, 4, 4};
    for (int index = 0; index < counts.size(); ++index) {
        Canvas *current = panes->shown().constLast();
        click(current->viewport());
        viewer.pressItem(viewer.ribbon->arrangements(), index);
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
    click(shown.last()->viewport(), shown.last()->fromPicture({5, 5}));
    QVERIFY(shown.first()->viewport()->grab().toImage() != before);
}

void TestViewer::frameOfTheDrawing()
{
    Viewer viewer;
    auto *frame = viewer.findChild<DrawingFrame *>();
    auto *strip = viewer.findChild<MinMaxButton *>();
    const auto *panes = viewer.findChild<CanvasPanes *>();
    const auto enter = [&] {
        QEnterEvent event({}, {}, {});
        QApplication::sendEvent(strip->parentWidget(), &event);
    };
    const auto pressButton = [&](int button) {
        enter();
        click(strip, {20 * button + 10, 10});
    };
    const auto isFloating = [&] { return panes->isVisible() && panes->width() < frame->width(); };
    QVERIFY(!strip->isVisible());
    enter();
    QVERIFY(strip->isVisible() && frame->layers()->isVisible());

    QCOMPARE(panes->size(), frame->size());
    pressButton(1);
    QVERIFY(isFloating());
    pressButton(0);
    QVERIFY(!panes->isVisible() && strip->isVisible() && !frame->layers()->isVisible());
    pressButton(1);
    QVERIFY(isFloating());
    pressButton(1);
    QCOMPARE(panes->size(), frame->size());

    viewer.clickLight(1);
    for (const char *answer : {"Cancel", "Discard"}) {
        QVERIFY(viewer.drawing());
        answerDialog([&] { pressButton(2); }, press(answer));
    }
    QVERIFY(!viewer.drawing() && !strip->isVisible());
    QCOMPARE(viewer.shownAt({5, 5}), ground);
}

void TestViewer::floatingPickers()
{
    Viewer viewer(file({}, square(0, 0, "8 Red|62 2|420 1193046|370 7|6 Dash")));
    StackWidget *pickers = viewer.ribbon->pickers();
    LayerControl *bar = viewer.ribbon->layerBar();
    const QWidget *fold = bar->layout()->itemAt(2)->widget();
    const auto place = [&] { return bar->mapToGlobal(QPoint(0, pickers->height() - 8)); };
    click(fold);
    QVERIFY(pickers->isVisible());
    QCOMPARE(pickers->pos(), place());
    viewer.move(viewer.pos() + QPoint(40, 30));
    QTRY_COMPARE(pickers->pos(), place());

    // They show what no row has, too; and a pick there changes what is selected.
    const auto shown = [&](const PropertyManager *panel) {
        return QStringList{textOf(*panel->colorPicker()), textOf(*panel->lineWeightPicker()),
                           textOf(*panel->lineTypePicker())};
    };
    viewer.dragOnCanvas({5, 5}, {5, 5});
    QCOMPARE(shown(pickers->propertyManager()), QStringList({"18,52,86", "0.07 mm", "Dash"}));
    clickRow(*pickers->propertyManager()->colorPicker(), GreenRow);
    const auto panels = viewer.findChildren<PropertyManager *>();
    for (const PropertyManager *panel : panels)
        QCOMPARE(shown(panel), QStringList({"Green", "0.07 mm", "Dash"}));
    click(fold);
    QVERIFY(!pickers->propertyManager()->isVisible());
}

QTEST_MAIN(TestViewer)
#include "tst_viewer.moc"
