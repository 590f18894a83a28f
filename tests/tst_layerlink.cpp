// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerChanges.h"
#include "PickerSupport.h"

#define main embedMain
#include "examples/embed/main.cpp"
#undef main

#include <QHeaderView>
#include <QRandomGenerator>
#include <QTableWidget>
#include <QToolButton>

#include <utility>

using namespace OvCc;

namespace {

/// A user in front of the window of examples/embed.
class Host : public QMainWindow
{
public:
    explicit Host(const QStringList &layers)
        : drawing(drawingWithLayers(layers))
    {
        showLayers(*this, *drawing);
        box = findChild<LayerComboBox *>();
        panel = findChild<LayerManager *>();
        table = panel->table();
        link = findChild<LayerLink *>();
        resize(900, 500);
        showOnScreen(*this);
        QApplication::setActiveWindow(this);
        link->flush();
    }

    QAbstractItemModel &rows() const { return *table->model(); }
    QString text(int row, int column) const { return rows().index(row, column).data().toString(); }

    QStringList names() const
    {
        QStringList names;
        for (int row = 0; row < rows().rowCount(); ++row)
            names += text(row, NameColumn);
        return names;
    }

    QStringList selected() const
    {
        QStringList names;
        const QModelIndexList indexes = table->selectionModel()->selectedRows(NameColumn);
        for (const QModelIndex &index : indexes)
            names += index.data().toString();
        names.sort();
        return names;
    }

    /// Of the current name; null if it is closed.
    QWidget *editor() const
    {
        return table->frozenView()->indexWidget(table->frozenView()->currentIndex());
    }

    void clickCell(const QString &name, int column, Qt::KeyboardModifiers modifiers = {})
    {
        QTableView *view =
                column == NameColumn ? table->frozenView() : static_cast<QTableView *>(table);
        const QModelIndex cell = rows().index(names().indexOf(name), column);
        view->scrollTo(cell);
        const QPoint place = view->visualRect(cell).center();
        mouse(QEvent::MouseButtonPress, view->viewport(), place, Qt::LeftButton, modifiers);
        mouse(QEvent::MouseButtonRelease, view->viewport(), place, Qt::LeftButton, modifiers);
    }

    int rowInBox(const QString &name) const
    {
        int row = 0;
        while (listOf(*box)->item(row)->text() != name)
            ++row;
        return row;
    }

    void openBox()
    {
        // The window system tells of the window that is active again, which closes pop-ups.
        QCoreApplication::processEvents();
        openPopupAtOnce(*box);
    }

    /// On a button in the drop-down.
    void clickInBox(const QString &name, int button)
    {
        openBox();
        click(inRow<QPushButton>(*box, rowInBox(name), button));
        box->hidePopup();
    }

    void choose(const QString &name)
    {
        openBox();
        click(inRow<QLabel>(*box, rowInBox(name)));
    }

    void command(const QString &text, const QString &typed = {})
    {
        const auto buttons = findChildren<QToolButton *>();
        for (const QToolButton *button : buttons) {
            if (button->text() == text)
                click(button);
        }
        if (!typed.isEmpty())
            QTest::keyClicks(editor(), typed);
        if (QWidget *completions = QApplication::activePopupWidget())
            completions->close();
    }

    void show(KcDbDatabase *other)
    {
        KcHost::setWorkingDatabase(other);
        link->drawingChanged();
        link->flush();
    }

    bool isInStep() const
    {
        QList<QStringList> shown;
        for (int row = 0; row < rows().rowCount(); ++row) {
            shown += QStringList();
            for (int column = 0; column < LayerColumnCount; ++column)
                shown.last() += text(row, column);
        }
        sortByName(shown);
        LayerItemData current;
        const bool isClosed = !OvLayerUtility().getCurrentLayer(current);
        const QString label = panel->findChild<QLabel *>()->text();
        const QString face = box->lineEdit()->findChildren<QLabel *>().last()->text();
        return shown == layerRows() && isAsDrawing(*box)
               && (isClosed || label == "Current layer: " + current.name)
               && (isClosed || face == current.name);
    }

    /// How often something shows a change after @p act; -1 if not all is in step with the drawing.
    int updates(const std::function<void()> &act) const
    {
        QSignalSpy updated(link, &LayerLink::updated);
        act();
        QCoreApplication::processEvents();
        return isInStep() ? updated.count() : -1;
    }

    OpenDrawing drawing;
    LayerComboBox *box;
    LayerManager *panel;
    LayerTableWidget *table;
    LayerLink *link;
};

} // namespace

class tst_LayerLink : public QObject
{
    Q_OBJECT

private slots:
    void refusals();
    void layerStates();
    void otherDrawing();
    void hostsThatDoOddThings();
    void widgetsComeAndGo();
    void randomWork();
};

/// All is as it was, the selection as well.
void tst_LayerLink::refusals()
{
    Host host({"Doors", "Walls"});
    KcHost::setCurrentLayer(*host.drawing, "Walls");
    host.link->flush();
    const auto isTakenBack = [&](const QString &name, const std::function<void()> &act) {
        host.clickCell(name, NameColumn);
        return host.updates(act) == 1 && host.names() == QStringList({"0", "Doors", "Walls"})
               && host.selected() == QStringList{name};
    };
    QVERIFY(isTakenBack("Walls", [&] { host.command("Delete"); }));
    QVERIFY(!host.statusBar()->currentMessage().isEmpty());
    QVERIFY(isTakenBack("Doors", [&] { host.command("Rename", "Walls\r"); }));

    KcDbLayerTableRecord *doors = getLayerByName("Doors");
    QVERIFY(isTakenBack("Doors", [&] { host.clickCell("Doors", UnlockedColumn); }));
    QVERIFY(isTakenBack("Doors", [&] { host.clickInBox("Doors", 2); }));
    doors->close();
    QVERIFY(isTakenBack("Doors", [&] { host.clickInBox("Walls", 1); })); // freezes the current one
    QCOMPARE(host.updates([&] { host.command("New", "a/b\r"); }), 1);

    // The click found the layer by the name that it has no more.
    const auto rename = [&] {
        host.clickInBox("Doors", 2);
        KcHost::renameLayer(*host.drawing, "Doors", "Gates");
        host.link->layerChanged("Doors");
    };
    QCOMPARE(host.updates(rename), 1);
}

/// What the host hears, in its order, and how far it gets where it goes away on the way.
void tst_LayerLink::layerStates()
{
    Host host({"Doors", "Stairs", "Walls"});
    const LayerState plain = LayerState::capture();
    LayerState state = plain;
    state.setCurrentLayer("Walls");
    state.insert("0", {true, false});
    state.insert("Doors", {false, true, false, true, Qt::red, "CONTINUOUS", 25});
    state.insert("Stairs", {true, true, true, true, Qt::red, "Continuous", 50});
    state.insert("Gone", {});
    QStringList heard;
    const auto hear = [&heard](const char *what) {
        return [&heard, what](const auto &...of) { ((heard << what) << ... << of); };
    };
    const auto fulfil = [&heard](const char *property) {
        return [&heard, property](const QStringList &names, const QVariant &value) {
            for (const QString &name : names)
                changeLayers({"layer", name, property, value.toString().remove('#')});
            heard << names;
        };
    };
    LayerLink &link = *host.link;
    connect(&link, &LayerLink::changesBegin, this, hear("begin"));
    connect(&link, &LayerLink::currentLayerRequested, this, hear("current"));
    connect(&link, &LayerLink::colorRequested, this, fulfil("true"));
    connect(&link, &LayerLink::linetypeRequested, this, hear("linetype"));
    connect(&link, &LayerLink::lineWeightRequested, this, fulfil("weight"));
    connect(&link, &LayerLink::changesEnd, this, [&](int changed, int refused) {
        heard << QString("end %1/%2").arg(changed).arg(refused);
    });
    connect(&link, &LayerLink::layersToggled, this, hear("toggled"));
    int calls = 0;
    KcHost::setLayerTableChangesHandler([&] { ++calls; });
    QCOMPARE(host.updates([&] { QCOMPARE(link.restore(state), QStringList("Gone")); }), 1);
    QCOMPARE(heard.join(' '), QString("begin Restore layer state current Walls Doors Stairs Doors "
                                      "Stairs end 4/1 toggled 0 Doors"));
    QCOMPARE(calls, 1);

    heard.clear();
    KcDbLayerTableRecord *doors = getLayerByName("Doors");
    LayerState back = plain;
    back.setCurrentLayer("Gone");
    QCOMPARE(link.restore(back), QStringList("Doors"));
    QCOMPARE(heard.join(' '), QString("begin Restore layer state Doors Stairs Doors Stairs "
                                      "end 2/1 toggled 0"));
    doors->close();

    LayerLink *other = nullptr;
    const auto die = [&other] { delete other; };
    connect(other = new LayerLink, &LayerLink::changesBegin, this, die);
    QCOMPARE(other->restore(plain), plain.names());
    connect(other = new LayerLink, &LayerLink::currentLayerRequested, this, die);
    QCOMPARE(other->restore(plain), plain.names());
    connect(other = new LayerLink, &LayerLink::changesEnd, this, die);
    QVERIFY(other->restore(plain).isEmpty());
    QVERIFY(LayerState::capture().layer("Doors").isOn);
}

void tst_LayerLink::otherDrawing()
{
    Host host({"Doors", "Walls"});
    const auto other = drawingWithLayers({"Stairs", "Walls"});
    OvLayerUtility().setLayerOff("Walls", false);
    host.table->sortByColumn(OnColumn, Qt::DescendingOrder);
    host.link->flush();
    host.clickCell("Walls", NameColumn);
    host.command("Rename", "Beams"); // and still being typed
    QVERIFY(host.editor());
    QSignalSpy renamed(host.link, &LayerLink::renameRequested);

    QCOMPARE(host.updates([&] { host.show(other.get()); }), 1);
    QVERIFY(renamed.isEmpty() && !host.editor());
    QCOMPARE(host.table->horizontalHeader()->sortIndicatorSection(), int(OnColumn));
    QCOMPARE(host.selected(), QStringList{"Walls"});

    host.clickCell("Stairs", NameColumn);
    KcHost::setWorkingDatabase(&*host.drawing);
    host.link->layersChanged(); // all that a forgetful host says
    host.link->flush();
    QVERIFY(host.isInStep());
    QCOMPARE(host.selected(), QStringList{"0"});
    QCOMPARE(host.names().constLast(), QString("Walls")); // which is off

    QCOMPARE(host.updates([&] { host.show(nullptr); }), 1);
    QVERIFY(host.box->lineEdit()->isHidden());
    QCOMPARE(host.updates([&] { host.show(&*host.drawing); }), 1);

    answerDialog([&] { host.clickCell("0", OnColumn); },
                 [&](QDialog &) { host.show(other.get()); });
    QVERIFY(host.isInStep());
    QVERIFY(host.text(host.names().indexOf("0"), OnColumn) == "true" && renamed.isEmpty());
}

void tst_LayerLink::hostsThatDoOddThings()
{
    const auto other = drawingWithLayers({"Doors", "Walls", "Zinc"});
    const std::function<void(Host &)> deeds[]{
            [](Host &host) { host.panel->slotUpLayerModel(); },
            [](Host &host) { host.panel->refresh(); },
            [](Host &host) { host.show(getCurrentDb()); },
            [&](Host &) { KcHost::setWorkingDatabase(other.get()); },
            [&](Host &host) { host.show(other.get()); },
            [](Host &host) { host.link->add(new LayerTableWidget(&host)); },
            [](Host &host) { host.panel->deleteLater(); },
            [](Host &host) { host.box->deleteLater(); },
            [](Host &host) {
                KcHost::setLayerModifiedHandler({});
                delete host.link;
            },
    };
    for (const auto &deed : deeds) {
        Host host({"Doors", "Walls"});
        const QPointer<LayerLink> link = host.link;
        const QPointer<LayerManager> panel = host.panel;
        const QPointer<LayerComboBox> box = host.box;
        int rounds = 0;
        const auto act = [&] {
            if (++rounds < 100 && link && panel && box)
                deed(host);
        };
        const auto inside = [&](auto... signal) { (connect(host.link, signal, this, act), ...); };
        inside(&LayerLink::currentLayerRequested, &LayerLink::addRequested,
               &LayerLink::removeRequested, &LayerLink::changesBegin, &LayerLink::layersToggled,
               &LayerLink::layerChosen, &LayerLink::changesEnd, &LayerLink::updated);
        KcHost::setLayerTableChangesHandler(act);
        const std::function<void()> works[]{
                [&] { host.clickCell("Doors", OnColumn); },
                [&] { host.clickInBox("Walls", 2); },
                [&] { host.choose("Walls"); },
                [&] { host.command("New", "A\r"); },
                [&] { host.command("Delete"); },
        };
        for (const auto &work : works) {
            if (panel && box)
                work();
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        QVERIFY(rounds > 0 && rounds < 50);
        if (link && panel && box)
            QVERIFY(host.isInStep());
    }
}

void tst_LayerLink::widgetsComeAndGo()
{
    LayerLink link;
    link.add(static_cast<LayerComboBox *>(nullptr));
    link.add(static_cast<LayerManager *>(nullptr));
    link.drawingChanged();
    link.flush();

    OpenDrawing drawing(drawingWithLayers({"Doors"}));
    LayerManager panel;
    auto table = std::make_unique<LayerTableWidget>();
    auto box = std::make_unique<LayerComboBox>();
    link.add(panel.table());
    link.add(&panel); // whose label is to follow, too
    link.add(table.get());
    link.add(box.get());
    QSignalSpy updated(&link, &LayerLink::updated);
    QTRY_COMPARE(updated.count(), 1);
    QCOMPARE(box->count(), 2);
    connect(panel.table(), &LayerTableWidget::updateCurretnLayer, this, [&](const QString &name) {
        KcHost::addLayer(*drawing, name + "2");
        link.layersChanged();
        QCoreApplication::processEvents(); // as a message box of the host has it
    });
    KcHost::setCurrentLayer(*drawing, "Doors");
    link.layerChanged("Doors");
    QTRY_COMPARE(updated.count(), 3);
    QCOMPARE(box->count(), 3);
    QVERIFY(panel.findChild<QLabel *>()->text().endsWith("Doors"));

    LayerTableWidget late;
    link.setLinetypes({"Dashed"});
    link.add(&late);
    link.flush();
    for (LayerTableWidget *each : {table.get(), &late}) {
        Wishes heard(link);
        each->selectRow(1);
        answerDialog([each] { each->editLinetype(); },
                     [](QDialog &dialog) {
                         dialog.findChild<QTableWidget *>()->selectRow(0);
                         dialog.accept();
                     });
        QCOMPARE(heard.take(), (QList<QVariantList>{{QStringList("Doors"), "Dashed"}}));
    }

    table.reset();
    connect(&link, &LayerLink::updated, this, [&] { box.reset(); });
    for (const bool isOff : {false, true}) {
        OvLayerUtility().setLayerOff("Doors", isOff);
        link.layersChanged();
        link.flush();
        QCOMPARE(panel.table()->model()->index(1, OnColumn).data().toBool(), isOff);
    }
}

void tst_LayerLink::randomWork()
{
    Host host({"Doors", "Stairs", "Walls"});
    addNumberedLayers(*host.drawing, 25);
    host.link->layersChanged();
    host.link->flush();
    const auto other = drawingWithLayers({"Doors", "Walls", "Zinc"});
    QRandomGenerator random(20261122);
    QTimer dialogs;
    connect(&dialogs, &QTimer::timeout, &dialogs, [&random] {
        if (QWidget *dialog = QApplication::activeModalWidget())
            QTest::keyClick(dialog, random.bounded(2) ? Qt::Key_Escape : Qt::Key_Return);
    });
    dialogs.start(0);
    int column = NameColumn;
    QWidget *names = host.table->frozenView();
    const auto anyName = [&] { return host.names().at(random.bounded(host.rows().rowCount())); };
    const auto anyRow = [&] {
        host.link->flush(); // it would be while the box opens
        return listOf(*host.box)->item(random.bounded(listOf(*host.box)->count()))->text();
    };
    const auto outside = [&](const char *word, const QString &name, const QString &to = {}) {
        changeLayers({word, name, to});
        host.link->layerChanged(name);
    };
    const auto fresh = [&] { return QString("m%1").arg(random.bounded(20)); };
    const std::function<void()> works[]{
            [&] { host.clickCell(anyName(), OnColumn + random.bounded(11)); },
            [&] { host.clickCell(anyName(), NameColumn, Qt::ControlModifier); },
            [&] { host.clickInBox(anyRow(), random.bounded(4)); },
            [&] { host.choose(anyRow()); },
            [&] { host.command("New", QString("l%1\r").arg(random.bounded(20))); },
            [&] { host.command("Rename", QString("l%1\r").arg(random.bounded(20))); },
            [&] { host.command("Delete"); },
            [&] { host.command("Set current"); },
            [&] { OvLayerUtility().setLayerOff(anyName(), random.bounded(2)); },
            [&] { outside("add", fresh()); },
            [&] { outside("erase", anyName()); },
            [&] { outside("rename", anyName(), fresh()); },
            [&] { outside("current", anyName()); },
            [&] {
                KcHost::setWorkingDatabase(getCurrentDb() == other.get() ? &*host.drawing
                                                                         : other.get());
                host.link->drawingChanged();
            },
            [&] {
                column = OnColumn + random.bounded(7);
                host.table->sortByColumn(column, Qt::SortOrder(random.bounded(2)));
            },
            [&] {
                host.panel->slotUpLayerModel();
                column = NameColumn;
            },
            [&] { QTest::keyClick(names, random.bounded(2) ? Qt::Key_Down : Qt::Key_Up); },
    };
    for (int step = 0; step < 400; ++step) {
        for (int count = random.bounded(3); count >= 0; --count)
            works[random.bounded(int(std::size(works)))]();
        // A layer may have been given a name that another one has.
        QStringList before = host.names();
        before = before.removeDuplicates() > 0 ? QStringList() : host.selected();
        host.link->flush();
        QVERIFY2(host.isInStep(), QByteArray::number(step));
        const QStringList selected = host.selected();
        for (const QString &name : std::as_const(before))
            QVERIFY(selected.contains(name) || !host.names().contains(name));
        QStringList sorted;
        for (int row = 0; row < host.rows().rowCount(); ++row)
            sorted += host.text(row, column);
        if (host.table->horizontalHeader()->sortIndicatorOrder() == Qt::DescendingOrder)
            std::reverse(sorted.begin(), sorted.end());
        QVERIFY(std::is_sorted(sorted.begin(), sorted.end()));
    }
}

QTEST_MAIN(tst_LayerLink)
#include "tst_layerlink.moc"
