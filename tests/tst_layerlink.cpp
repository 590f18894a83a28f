// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Support.h"

#define main embedMain
#include "examples/embed/main.cpp"
#undef main

#include <QAction>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTimer>

#include <array>
#include <functional>
#include <utility>

using namespace OvCc;

namespace {

constexpr int currentButton = 3;

QAbstractButton *buttonOf(LayerItem *item, int index)
{
    return item->findChildren<QPushButton *>().at(index);
}

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
    int rowOf(const QString &name) const { return names().indexOf(name); }
    std::array<QTableView *, 2> views() const { return {table, table->frozenView()}; }
    QListWidget *list() const { return qobject_cast<QListWidget *>(box->view()); }

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
        QTableView *view = views()[column == NameColumn];
        const QModelIndex cell = rows().index(rowOf(name), column);
        view->scrollTo(cell);
        const QPoint place = view->visualRect(cell).center();
        mouse(QEvent::MouseButtonPress, view->viewport(), place, Qt::LeftButton, modifiers);
        mouse(QEvent::MouseButtonRelease, view->viewport(), place, Qt::LeftButton, modifiers);
    }

    void openBox()
    {
        click(box->lineEdit());
        QVERIFY(QTest::qWaitForWindowExposed(list()->window()));
    }

    LayerItem *item(const QString &name) const
    {
        const auto found = list()->findItems(name, Qt::MatchExactly | Qt::MatchCaseSensitive);
        return found.isEmpty() ? nullptr : box->layerItem(list()->row(found.first()));
    }

    void clickInBox(const QString &name, int button)
    {
        openBox();
        list()->scrollToItem(list()->item(list()->row(
                list()->findItems(name, Qt::MatchExactly | Qt::MatchCaseSensitive).first())));
        click(buttonOf(item(name), button));
        box->hidePopup();
    }

    void choose(const QString &name)
    {
        openBox();
        QListWidgetItem *row = list()->findItems(name, Qt::MatchExactly).first();
        list()->scrollToItem(row);
        const QRect place = list()->visualItemRect(row);
        click(list()->viewport(), {place.right() - 5, place.center().y()});
    }

    void command(const QString &text, const QString &typed = {})
    {
        QToolBar *bar = findChild<QToolBar *>();
        const QList<QAction *> actions = bar->actions();
        for (QAction *action : actions) {
            if (action->text() == text)
                click(bar->widgetForAction(action));
        }
        if (!typed.isEmpty())
            QTest::keyClicks(editor(), typed);
        // The window system tells of the window that is active again, which closes other pop-ups.
        if (QWidget *completions = QApplication::activePopupWidget()) {
            completions->close();
            QCoreApplication::processEvents();
        }
    }

    /// What is not as in the drawing; empty if all is.
    QString difference() const
    {
        QList<QStringList> shown;
        for (int row = 0; row < rows().rowCount(); ++row) {
            QStringList texts;
            for (int column = 0; column < LayerColumnCount; ++column)
                texts += text(row, column);
            shown += texts;
        }
        sortByName(shown);
        if (shown != layerRows())
            return QStringLiteral("table");
        const std::unique_ptr<QList<LayerItemData>> layers(OvLayerUtility().getAllLayer());
        if (list()->count() != layers->size())
            return QStringLiteral("rows of the box");
        for (int row = 0; row < layers->size(); ++row) {
            const LayerItemData &layer = layers->at(row);
            const LayerItemData seen = box->layerItem(row)->currentLayerData();
            if (list()->item(row)->text() != layer.name || seen.name != layer.name
                || seen.isOn != layer.isOn || seen.isFrozen != layer.isFrozen
                || seen.isLocked != layer.isLocked)
                return QStringLiteral("box at ") + layer.name;
        }
        LayerItemData current;
        OvLayerUtility().getCurrentLayer(current);
        if (!layers->isEmpty()
            && panel->findChild<QLabel *>()->text() != "Current layer: " + current.name)
            return QStringLiteral("label");
        if (!layers->isEmpty()
            && box->lineEdit()->findChildren<QLabel *>().last()->text() != current.name)
            return QStringLiteral("face");
        return {};
    }

    OpenDrawing drawing;
    LayerComboBox *box;
    LayerManager *panel;
    LayerTableWidget *table;
    LayerLink *link;
};

using Answer = std::function<void(Host &)>;

/// What a host may do with each notification, besides what examples/embed does. The first two leave
/// the updates to the link.
const std::pair<const char *, Answer> answers[]{
        {"nothing", [](Host &) {}},
        {"tells", [](Host &host) { host.link->layersChanged(); }},
        {"updates",
         [](Host &host) {
             host.link->layersChanged();
             host.link->flush();
         }},
        {"refreshes", [](Host &host) { host.panel->refresh(); }},
};

} // namespace

class tst_LayerLink : public QObject
{
    Q_OBJECT

private slots:
    void clicksAndCommands_data();
    void clicksAndCommands();
    void wishes();
    void propertyWishes();
    void refusals();
    void layerStates();
    void otherDrawing();
    void hostsThatDoOddThings();
    void widgetsComeAndGo();
    void randomWork();
};

void tst_LayerLink::clicksAndCommands_data()
{
    QTest::addColumn<int>("answer");
    for (int answer = 0; answer < int(std::size(answers)); ++answer)
        QTest::newRow(answers[answer].first) << answer;
}

void tst_LayerLink::clicksAndCommands()
{
    QFETCH(int, answer);
    Host host({"Doors", "Stairs", "Walls"});
    const auto answering = [&] { answers[answer].second(host); };
    KcHost::setLayerTableChangesHandler(answering);
    connect(host.link, &LayerLink::changesBegin, this, answering);
    connect(host.link, &LayerLink::changesEnd, this, answering);
    connect(host.link, &LayerLink::layersToggled, this, answering);
    connect(host.panel, &LayerManager::layerManagerChanged, this, answering);
    QSignalSpy updated(host.link, &LayerLink::updated);
    const bool isLeftToLink = answer < 2;
    const auto isInStepAfter = [&](int updates, const std::function<void()> &act) {
        updated.clear();
        act();
        QCoreApplication::processEvents();
        return host.difference().isEmpty() && (!isLeftToLink || updated.count() == updates);
    };
    const QList<int> flags{OnColumn, ThawedColumn, UnlockedColumn};

    for (const char *layer : {"Stairs", "Doors"}) {
        const QString name = layer;
        for (const int column : flags) {
            host.table->sortByColumn(column, Qt::AscendingOrder); // so that the row moves
            QVERIFY(isInStepAfter(1, [&] { host.clickCell(name, column); }));
            QCOMPARE(host.selected(), QStringList{name});
        }
        for (const int column : {ColorColumn, NameColumn, LinetypeColumn, CurrentColumn})
            QVERIFY(isInStepAfter(0, [&] { host.clickCell(name, column); }));
        QCOMPARE(host.selected(), QStringList{name});
    }
    host.table->sortByColumn(OnColumn, Qt::DescendingOrder);
    host.clickCell("0", NameColumn);
    QVERIFY(isInStepAfter(1, [&] { host.clickCell("Walls", OnColumn, Qt::ControlModifier); }));
    QCOMPARE(host.selected(), QStringList({"0", "Walls"}));
    host.clickCell("Doors", NameColumn);
    host.table->sortByColumn(NameColumn, Qt::AscendingOrder);
    for (int button = 0; button < 3; ++button) {
        QVERIFY(isInStepAfter(1, [&] { host.clickInBox("Walls", button); }));
        QVERIFY(isInStepAfter(1, [&] { host.clickInBox("Walls", button); }));
    }
    QVERIFY(isInStepAfter(1, [&] { host.clickInBox("0", 2); }));
    QVERIFY(isInStepAfter(0, [&] { host.clickInBox("Walls", currentButton); }));
    QCOMPARE(host.selected(), QStringList{"Doors"});

    host.clickCell("Walls", NameColumn);
    QVERIFY(isInStepAfter(1, [&] { host.command("Set current"); }));
    QVERIFY(isInStepAfter(1, [&] { host.choose("Stairs"); }));
    QVERIFY(isInStepAfter(0, [&] { host.choose("Stairs"); }));
    QCOMPARE(host.text(host.rowOf("Stairs"), CurrentColumn), QString("true"));
    QCOMPARE(host.selected(), QStringList{"Walls"});
    QVERIFY(isInStepAfter(1, [&] { host.command("Rename", "Beams\r"); }));
    QCOMPARE(host.selected(), QStringList{"Beams"});
    QVERIFY(isInStepAfter(1, [&] { host.command("New", "Zinc\r"); }));
    QCOMPARE(host.names(), QStringList({"0", "Beams", "Doors", "Stairs", "Zinc"}));
    QVERIFY(isInStepAfter(1, [&] { host.command("Delete"); }));
    QCOMPARE(host.names(), QStringList({"0", "Beams", "Doors", "Stairs"}));

    host.clickCell("Beams", NameColumn);
    const auto outside = [&](const QString &name, const std::function<void()> &change) {
        return isInStepAfter(1, [&] {
            change();
            host.link->layerChanged(name);
        });
    };
    QVERIFY(outside("Beams", [&] { OvLayerUtility().setLayerLock("Beams", true); }));
    QVERIFY(outside("A", [&] { KcHost::addLayer(*host.drawing, "A"); }));
    QVERIFY(outside("Z", [&] { KcHost::renameLayer(*host.drawing, "A", "Z"); }));
    QVERIFY(outside("Z", [&] { KcHost::setCurrentLayer(*host.drawing, "Z"); }));
    QVERIFY(outside("Doors", [&] { KcHost::eraseLayer(*host.drawing, "Doors"); }));
    QCOMPARE(host.selected(), QStringList{"Beams"});
}

/// What the host hears of the user's wishes, from whatever widget. That it fulfils them it need not say.
void tst_LayerLink::wishes()
{
    Host host({"Doors", "Walls"});
    KcHost::setLayerModifiedHandler({});
    host.link->add(host.box); // both are in already
    host.link->add(host.panel);
    host.link->add(host.table);
    QStringList heard;
    const auto hear = [&heard](const auto &...of) { (heard << ... << of); };
    connect(host.link, &LayerLink::layerChosen, this, hear);
    connect(host.link, &LayerLink::currentLayerRequested, this, hear);
    connect(host.link, &LayerLink::addRequested, this, hear);
    connect(host.link, &LayerLink::removeRequested, this, hear);
    connect(host.link, &LayerLink::renameRequested, this, hear);
    const auto isInStepAfter = [&](const QStringList &wishes, const std::function<void()> &act) {
        heard.clear();
        act();
        QCoreApplication::processEvents();
        return heard == wishes && host.difference().isEmpty();
    };
    QVERIFY(isInStepAfter({"Walls", "Walls"}, [&] { host.choose("Walls"); }));
    host.link->setChoiceMakesCurrent(false);
    QVERIFY(isInStepAfter({"Doors"}, [&] { host.choose("Doors"); }));
    host.clickCell("Doors", PlotColumn);
    QVERIFY(isInStepAfter({"Doors"}, [&] { host.command("Set current"); }));
    QVERIFY(isInStepAfter({"Zinc"}, [&] { host.command("New", "Zinc\r"); }));
    QVERIFY(isInStepAfter({"Zinc", "Beams"}, [&] { host.command("Rename", "Beams\r"); }));
    host.clickCell("Walls", NameColumn, Qt::ControlModifier);
    QVERIFY(isInStepAfter({"Beams", "Walls"}, [&] { host.command("Delete"); }));
}

/// All shows what the drawing says again, after one update, and what was selected is.
void tst_LayerLink::propertyWishes()
{
    Host host({"Doors", "Walls"});
    KcHost::setLayerModifiedHandler({});
    bool isLocked = false;
    LayerTableWidget early, late;
    host.link->add(&early);
    host.link->setLinetypes({"Dashed"});
    host.link->add(&late);
    for (LayerTableWidget *table : {&early, &late, host.table}) {
        const QStringList names("Walls");
        const QList<QPair<std::function<void()>, QVariant>> wishes{
                {[&] { emit table->colorRequested(names, Qt::red); }, QColor(Qt::red)},
                {[&] {
                     QTimer::singleShot(0, table, [] {
                         QWidget *dialog = QApplication::activeModalWidget();
                         dialog->findChild<QTableWidget *>()->selectRow(0);
                         QTest::keyClick(dialog, Qt::Key_Return);
                     });
                     table->selectRow(2);
                     table->editLinetype();
                 },
                 "Dashed"},
                {[&] { emit table->lineWeightRequested(names, 25); }, 25},
                {[&] { emit table->descriptionRequested(names, "new"); }, "new"},
                {[&] { emit table->mergeRequested(names, "0"); }, "0"}};
        for (const auto &[wish, value] : wishes) {
            Wishes heard(*host.link);
            isLocked = !isLocked;
            OvLayerUtility().setLayerLock("Walls", isLocked); // whatever the host does
            wish();
            QCOMPARE(heard.take(), (QList<QVariantList>{{names, value}}));
            host.link->flush();
            QCOMPARE(host.difference(), QString());
        }
    }
}

void tst_LayerLink::refusals()
{
    Host host({"Doors", "Walls"});
    KcHost::setCurrentLayer(*host.drawing, "Walls");
    host.link->flush();
    QSignalSpy updated(host.link, &LayerLink::updated);
    const auto isTakenBack = [&](const QString &name, const std::function<void()> &act) {
        host.clickCell(name, NameColumn);
        updated.clear();
        host.statusBar()->clearMessage();
        act();
        QCoreApplication::processEvents();
        return host.difference().isEmpty() && host.names() == QStringList({"0", "Doors", "Walls"})
               && host.selected() == QStringList{name} && updated.count() == 1;
    };
    const auto command = [&](const QString &text, const QString &typed = {}) {
        return [&host, text, typed] { host.command(text, typed); };
    };
    QVERIFY(isTakenBack("Walls", command("Delete")));
    QVERIFY(!host.statusBar()->currentMessage().isEmpty());
    QVERIFY(isTakenBack("0", command("Delete")));
    QVERIFY(isTakenBack("Walls", command("Rename", "0\r")));
    QVERIFY(isTakenBack("Doors", command("Rename", "Walls\r")));
    QVERIFY(isTakenBack("0", command("Rename", "Zinc\r")));

    KcDbLayerTableRecord *doors = getLayerByName("Doors");
    QVERIFY(isTakenBack("Doors", [&] { host.clickCell("Doors", UnlockedColumn); }));
    QVERIFY(isTakenBack("Doors", [&] { host.clickInBox("Doors", 2); }));
    doors->close();
    QVERIFY(isTakenBack("Doors", [&] { host.clickInBox("Walls", 1); })); // freezes the current one

    host.command("New", "a/b\r");
    QCoreApplication::processEvents();
    QCOMPARE(host.difference(), QString());
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
    const auto change = [&](const QStringList &names, const auto &set) {
        heard << names;
        for (const QString &name : names) {
            KcHost::LayerChange change;
            set(change);
            KcHost::changeLayer(*host.drawing, name, change);
        }
    };
    LayerLink &link = *host.link;
    connect(&link, &LayerLink::changesBegin, this, hear("begin"));
    connect(&link, &LayerLink::currentLayerRequested, this, hear("current"));
    connect(&link, &LayerLink::colorRequested, this, [&](const QStringList &names, QColor color) {
        change(names, [&](auto &each) { each.trueColor = color.rgb() & 0xffffff; });
    });
    connect(&link, &LayerLink::linetypeRequested, this, hear("linetype"));
    connect(&link, &LayerLink::lineWeightRequested, this,
            [&](const QStringList &names, int weight) {
                change(names, [&](auto &each) { each.lineWeight = weight; });
            });
    connect(&link, &LayerLink::changesEnd, this, [&](int changed, int refused) {
        heard << QString("end %1/%2").arg(changed).arg(refused);
    });
    connect(&link, &LayerLink::layersToggled, this, hear("toggled"));
    int calls = 0;
    KcHost::setLayerTableChangesHandler([&] { ++calls; });
    QSignalSpy updated(&link, &LayerLink::updated);
    QCOMPARE(link.restore(state), QStringList("Gone"));
    QCOMPARE(heard.join(' '), QString("begin Restore layer state current Walls Doors Stairs Doors "
                                      "Stairs end 4/1 toggled 0 Doors"));
    QCoreApplication::processEvents();
    QVERIFY(host.difference().isEmpty() && updated.count() == 1 && calls == 1);

    heard.clear();
    KcDbLayerTableRecord *doors = getLayerByName("Doors");
    LayerState back = plain;
    back.setCurrentLayer("Gone");
    QCOMPARE(link.restore(back), QStringList("Doors"));
    QCOMPARE(heard.join(' '), QString("begin Restore layer state Doors Stairs Doors Stairs "
                                      "end 2/1 toggled 0"));
    doors->close();

    for (const bool isBegun : {false, true}) {
        auto *other = new LayerLink;
        const auto die = [other] { delete other; };
        if (isBegun)
            connect(other, &LayerLink::currentLayerRequested, this, die);
        else
            connect(other, &LayerLink::changesBegin, this, die);
        QCOMPARE(other->restore(plain), plain.names());
    }
    auto *other = new LayerLink;
    connect(other, &LayerLink::changesEnd, this, [other] { delete other; });
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

    KcHost::setWorkingDatabase(other.get());
    host.link->drawingChanged();
    host.link->flush();
    QCOMPARE(host.difference(), QString());
    QVERIFY(renamed.isEmpty() && !host.editor());
    QCOMPARE(host.table->horizontalHeader()->sortIndicatorSection(), int(OnColumn));
    QCOMPARE(host.selected(), QStringList{"Walls"});

    host.clickCell("Stairs", NameColumn);
    KcHost::setWorkingDatabase(&*host.drawing);
    host.link->layersChanged(); // all that a forgetful host says
    host.link->flush();
    QCOMPARE(host.difference(), QString());
    QCOMPARE(host.selected(), QStringList{"0"});
    QCOMPARE(host.names().constLast(), QString("Walls")); // which is off

    KcHost::setWorkingDatabase(nullptr);
    host.link->drawingChanged();
    host.link->flush();
    QCOMPARE(host.rows().rowCount() + host.list()->count(), 0);
    QVERIFY(host.box->lineEdit()->isHidden());
    KcHost::setWorkingDatabase(&*host.drawing);
    host.link->drawingChanged();
    QTRY_COMPARE(host.difference(), QString());

    QTimer::singleShot(0, this, [&] {
        KcHost::setWorkingDatabase(other.get());
        host.link->drawingChanged();
        host.link->flush();
        if (QWidget *question = QApplication::activeModalWidget())
            QTest::keyClick(question, Qt::Key_Return);
    });
    host.clickCell("0", OnColumn);
    QCOMPARE(host.difference(), QString());
    QVERIFY(host.text(host.rowOf("0"), OnColumn) == "true" && renamed.isEmpty());
}

void tst_LayerLink::hostsThatDoOddThings()
{
    const auto other = drawingWithLayers({"Doors", "Walls", "Zinc"});
    const Answer deeds[]{
            [](Host &host) { host.panel->slotUpLayerModel(); },
            [](Host &host) {
                host.link->drawingChanged();
                host.link->flush();
            },
            [&](Host &) { KcHost::setWorkingDatabase(other.get()); },
            [&](Host &host) {
                KcHost::setWorkingDatabase(other.get());
                host.link->drawingChanged();
            },
            [](Host &host) { host.link->add(new LayerTableWidget(&host)); },
            [](Host &host) { host.panel->deleteLater(); },
            [](Host &host) { host.box->deleteLater(); },
            [](Host &host) {
                KcHost::setLayerModifiedHandler({});
                delete host.link;
            },
    };
    for (const Answer &deed : deeds) {
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
               &LayerLink::layerChosen, &LayerLink::updated);
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
            QCOMPARE(host.difference(), QString());
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
    bool isOther = false;
    bool isSwitched = false;
    QRandomGenerator random(20261122);
    QTimer answers;
    connect(&answers, &QTimer::timeout, &answers, [&random] {
        if (QWidget *dialog = QApplication::activeModalWidget())
            QTest::keyClick(dialog, random.bounded(2) ? Qt::Key_Escape : Qt::Key_Return);
    });
    answers.start(0);
    int column = NameColumn;
    static const QRegularExpression found[]{QRegularExpression(""), QRegularExpression("^[lL]"),
                                            QRegularExpression("1$")};
    int search = 0;
    const auto anyName = [&] {
        const QStringList names = host.names().filter(found[search]);
        return names.value(random.bounded(qMax(1, names.size())), "0");
    };
    const auto anyRow = [&] {
        host.link->flush(); // it would be while the box opens
        return host.list()->item(random.bounded(host.list()->count()))->text();
    };
    const auto outside = [&](const QString &name, const auto &change) {
        change(isOther ? *other : *host.drawing, name);
        host.link->layerChanged(name);
    };
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
            [&] { outside(QString("m%1").arg(random.bounded(20)), KcHost::addLayer); },
            [&] { outside(anyName(), KcHost::eraseLayer); },
            [&] { outside(anyName(), KcHost::setCurrentLayer); },
            [&] {
                isOther = !isOther;
                isSwitched = true;
                KcHost::setWorkingDatabase(isOther ? other.get() : &*host.drawing);
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
            [&] {
                QTest::keyClick(host.table->frozenView(),
                                random.bounded(2) ? Qt::Key_Down : Qt::Key_Up);
            },
            [&] {
                search = random.bounded(3);
                host.panel->searchEdit()->setText(QStringList{"", "L*", "*1"}.at(search));
            },
    };
    for (int step = 0; step < 400; ++step) {
        for (int count = random.bounded(3); count >= 0; --count)
            works[random.bounded(int(std::size(works)))]();
        // A layer may have been given a name that another one has.
        QStringList before = host.names();
        before = before.removeDuplicates() > 0 ? QStringList() : host.selected();
        const QScrollBar &bar = *host.table->verticalScrollBar();
        const int position = bar.value();
        const QString label = host.panel->findChild<QLabel *>()->text();
        QSignalSpy current(host.panel, &LayerManager::updateCurretnLayer);
        host.link->flush();
        QCOMPARE(current.count(), int(host.panel->findChild<QLabel *>()->text() != label));
        const QString trouble = host.difference();
        QVERIFY2(trouble.isEmpty(), qPrintable(QString("step %1: %2").arg(step).arg(trouble)));
        const QStringList names = host.names();
        const QStringList selected = host.selected();
        for (const QString &name : std::as_const(before))
            QVERIFY(selected.contains(name) || !names.contains(name));
        if (!std::exchange(isSwitched, false)) // which may bring the current layer into sight
            QCOMPARE(bar.value(), qMin(position, bar.maximum()));
        QStringList sorted;
        for (int row = 0; row < names.size(); ++row) {
            sorted += host.text(row, column);
            for (const QTableView *view : host.views())
                QCOMPARE(view->isRowHidden(row), !names.at(row).contains(found[search]));
        }
        if (host.table->horizontalHeader()->sortIndicatorOrder() == Qt::DescendingOrder)
            std::reverse(sorted.begin(), sorted.end());
        QVERIFY(std::is_sorted(sorted.begin(), sorted.end()));
    }
}

QTEST_MAIN(tst_LayerLink)
#include "tst_layerlink.moc"
