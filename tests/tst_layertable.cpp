// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerChanges.h"
#include "Support.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QColorDialog>
#include <QComboBox>
#include <QCompleter>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QSettings>
#include <QStandardItemModel>
#include <QStringListModel>
#include <QTimer>
#include <QToolButton>

#include <optional>
#include <utility>

using namespace OvCc;

namespace {

using Calls = QList<QVariantList>;
using Rows = QList<QStringList>;
using Texts = QPair<QString, QString>;
using Work = std::function<void()>;

const QString marker = QStringLiteral(":/IDB_LSTATE_CURRENT.png");

void clickHeader(const QTableView &view, int column)
{
    const QHeaderView *header = view.horizontalHeader();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                      {header->sectionViewportPosition(column) + 5, header->height() / 2});
}

/// Where the widgets that it watches are painted.
class Paints : public QObject
{
public:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            places.append({watched, static_cast<QPaintEvent *>(event)->region().boundingRect()});
        return false;
    }

    QList<QPair<QObject *, QRect>> places;
};

} // namespace

class tst_LayerTable : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QSettings(QStringLiteral("Brevik"), QStringLiteral("TessaViewer")).clear();
        m_drawing = std::make_unique<OpenDrawing>(drawingWithLayers({"Walls", "Doors", "wall-1"}));
        openPanel();
        m_hostCalls = 0;
        m_told.clear();
        KcHost::setLayerTableChangesHandler([this] { ++m_hostCalls; });
    }
    void cleanup()
    {
        m_panel.reset();
        m_drawing.reset();
    }

    void model();
    void frozenViewIsInPlace();
    void hiddenNames();
    void clicksOnCells();
    void currentLayerIsGuarded();
    void clicksOnSelection();
    void isolation();
    void visibilityFollowsSelection();
    void pictures();
    void naturalOrder();
    void search();
    void selectionCommands();
    void proposedNames();
    void editedNames();
    void hostActsFromInside();
    void removal();
    void setCurrent();
    void refreshTouchesWhatDiffers();
    void refreshWaitsForEditors();
    void propertyDialogs_data();
    void propertyDialogs();
    void merging();
    void questionsAreDropped();
    void rowMenu();
    void rowMenuByHand();
    void rowsAsText();
    void columnLayoutIsKept();
    void layoutState();
    void searchField();
    void filterMenu();
    void filtersFollowTheDrawing();

private:
    void openPanel()
    {
        m_panel.reset(); // before the next one is made: it leaves its settings
        m_panel = std::make_unique<LayerManager>(&m_window);
        m_table = m_panel->table();
        m_frozen = m_table->frozenView();
        m_model = qobject_cast<QStandardItemModel *>(m_table->model());
        m_search = m_panel->searchEdit();
        const auto hear = [this](auto signal, const QString &as) {
            connect(m_panel.get(), signal, this, [this, as](const auto &...what) {
                QStringList words(as);
                const QVariantList all{QVariant(what)...};
                for (const QVariant &each : all) {
                    const bool isList = each.userType() == QMetaType::QStringList;
                    words += isList ? each.toStringList() : QStringList(each.toString());
                }
                m_told += words.join(' ');
            });
        };
        hear(&LayerManager::layerAdded, "add");
        hear(&LayerManager::layersRemoved, "remove");
        hear(&LayerManager::layerRenamed, "rename");
        hear(&LayerManager::currentLayerRequested, "current");
        hear(&LayerManager::colorRequested, "color");
        hear(&LayerManager::linetypeRequested, "linetype");
        hear(&LayerManager::lineWeightRequested, "lineweight");
        hear(&LayerManager::descriptionRequested, "description");
        hear(&LayerManager::mergeRequested, "merge");
        connect(m_panel.get(), &LayerManager::changesBegin, this,
                [this](const QString &text) { m_told += text; });
        connect(m_panel.get(), &LayerManager::changesEnd, this, [this](int changed, int refused) {
            m_told.last() += QString(" %1/%2").arg(changed).arg(refused);
        });
        connect(m_panel.get(), &LayerManager::layersToggled, this,
                [this](const QStringList &names) { m_told.last() += ' ' + names.join(','); });
        m_panel->resize(900, 400);
        m_panel->show();
        m_window.resize(m_panel->size());
        showOnScreen(m_window);
        QApplication::setActiveWindow(&m_window);
    }

    QString text(int row, int column) const { return m_model->item(row, column)->text(); }
    int rowOf(const QString &name) const { return names().indexOf(name); }

    /// Takes one step after the other: what others do to the drawing, see changeLayers(), a command of the panel
    /// or its table, or what the user does, such as "click Walls On", "search w*" and "select Doors Walls",
    /// chooses by its key in the menu of a row, or types in the editor that is open. Of a press comes no
    /// click, as the table may be gone then.
    void work(const QString &steps)
    {
        const QStringList all = steps.split(", ", Qt::SkipEmptyParts);
        for (const QString &step : all) {
            const QStringList words = step.split(' ');
            const QByteArray command = words[0].toLatin1();
            const int column = headerList.indexOf(words.value(2));
            if (command == "click")
                click(words[1], column);
            else if (command == "press")
                QTest::mousePress(viewOf(column)->viewport(), Qt::LeftButton, {},
                                  placeOf(words[1], column));
            else if (command == "select")
                select(words.mid(1));
            else if (command == "menu")
                choose(menuOf(words[1], NameColumn), words[2]);
            else if (command == "search")
                m_search->setText(words.value(1));
            else if (command == "type")
                QTest::keyClicks(editor(), words[1]);
            else if (command == "key")
                QTest::keySequence(editor(), QKeySequence(words[1]));
            else if (m_panel->metaObject()->indexOfSlot(command + "()") >= 0)
                QMetaObject::invokeMethod(m_panel.get(), command);
            else if (m_table->metaObject()->indexOfSlot(command + "()") >= 0)
                QMetaObject::invokeMethod(m_table, command);
            else
                QCOMPARE(changeLayers(words), Kcore::eOk);
        }
    }

    /// What the panel has told since this was asked last, with bars between.
    QString told() { return std::exchange(m_told, {}).join('|'); }

    QString after(const QString &steps)
    {
        m_told.clear();
        work(steps);
        return told();
    }

    /// Replaces all rows.
    void fill(const QString &names)
    {
        m_model->removeRows(0, m_model->rowCount());
        const QStringList all = names.split('|', Qt::SkipEmptyParts);
        for (const QString &name : all) {
            QVERIFY(m_table->insertRowData(m_model->rowCount()));
            m_model->item(m_model->rowCount() - 1, NameColumn)->setText(name);
        }
    }

    QTableView *viewOf(int column) const
    {
        return column <= NameColumn ? m_frozen : static_cast<QTableView *>(m_table);
    }

    QPoint placeOf(const QString &name, int column)
    {
        const QModelIndex cell = m_model->index(rowOf(name), column);
        viewOf(column)->scrollTo(cell);
        return viewOf(column)->visualRect(cell).center();
    }

    void click(const QString &name, int column, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseClick(viewOf(column)->viewport(), Qt::LeftButton, modifiers,
                          placeOf(name, column));
    }

    void doubleClick(const QString &name, int column)
    {
        click(name, column);
        QTest::mouseDClick(viewOf(column)->viewport(), Qt::LeftButton, {}, placeOf(name, column));
    }

    /// @return whether a dialog came up, which is answered then
    static bool isAsked(const Work &act, const std::function<void(QDialog &)> &answer)
    {
        QTimer timer; // single shots come before what is posted later
        timer.callOnTimeout([&] {
            const QPointer dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            timer.stop();
            answer(*dialog);
            if (dialog && dialog->isVisible())
                dialog->reject(); // where the answer was none
        });
        timer.start(0);
        act();
        QCoreApplication::processEvents();
        return !timer.isActive();
    }

    /// Presses the button in the warning that comes up meanwhile. Returns the warning.
    QString answer(
            const char *button, const QString &steps, const Work &meanwhile = [] {})
    {
        m_told.clear();
        QString warning;
        const auto press = [&](QDialog &dialog) {
            warning = dialog.findChild<QLabel *>(QStringLiteral("textLabel"))->text();
            meanwhile();
            QTest::mouseClick(dialog.findChild<QPushButton *>(button), Qt::LeftButton);
        };
        isAsked([&] { work(steps); }, press);
        return warning;
    }

    /// The last of them is in the current row.
    void select(const QStringList &names)
    {
        m_table->clearSelection();
        for (const QString &name : names)
            m_table->selectionModel()->setCurrentIndex(m_model->index(rowOf(name), NameColumn),
                                                       QItemSelectionModel::Select
                                                               | QItemSelectionModel::Rows);
    }

    Rows rows() const
    {
        Rows rows;
        for (int row = 0; row < m_model->rowCount(); ++row) {
            rows.append(QStringList());
            for (int column = 0; column < m_model->columnCount(); ++column)
                rows.last().append(text(row, column));
        }
        return rows;
    }

    QStringList names() const
    {
        QStringList names;
        for (int row = 0; row < m_model->rowCount(); ++row)
            names.append(text(row, NameColumn));
        return names;
    }

    /// With a bar between them.
    QString shownNames() const
    {
        QStringList names;
        for (int row = 0; row < m_model->rowCount(); ++row) {
            const int views = !m_table->isRowHidden(row) + !m_frozen->isRowHidden(row);
            if (views > 0)
                names.append(text(row, NameColumn) + (views == 2 ? "" : " in one view only"));
        }
        return names.join('|');
    }

    /// As a right click on the cell, if it has one; null if none comes up.
    QMenu *menuOf(const QString &name, int column, Qt::KeyboardModifiers modifiers = {})
    {
        QWidget *viewport = viewOf(column)->viewport();
        const QPoint place = placeOf(name, column);
        QTest::mousePress(viewport, Qt::RightButton, modifiers, place);
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, viewport->mapToGlobal(place));
        QApplication::sendEvent(viewport, &event);
        return shownMenu();
    }

    static QMenu *shownMenu()
    {
        QCoreApplication::processEvents();
        return qobject_cast<QMenu *>(QApplication::activePopupWidget());
    }

    static void choose(QMenu *menu, const QString &mnemonic)
    {
        const QPointer<QMenu> used(menu);
        QTest::keySequence(menu, QKeySequence(mnemonic));
        QTRY_VERIFY(!used);
    }

    /// Clicks what has that text in the menu that is open as long as @p open runs.
    static void chooseText(const QString &text, const Work &open)
    {
        const QObject context;
        QTimer::singleShot(0, &context, [&text] {
            QMenu *menu = shownMenu();
            QVERIFY(menu);
            const QList<QAction *> entries = menu->actions();
            for (QAction *entry : entries) {
                if (entry->text() == text)
                    QTest::mouseClick(menu, Qt::LeftButton, {},
                                      menu->actionGeometry(entry).center());
            }
            menu->close();
        });
        open();
    }

    QStringList selected() const { return m_table->selectedLayers(); }

    /// The editor of the current cell, if it is open.
    QLineEdit *editor() const
    {
        return qobject_cast<QLineEdit *>(m_frozen->indexWidget(m_frozen->currentIndex()));
    }

    QWidget m_window;
    std::unique_ptr<OpenDrawing> m_drawing;
    std::unique_ptr<LayerManager> m_panel;
    LayerTableWidget *m_table = nullptr;
    FrozenTableWidget *m_frozen = nullptr;
    QStandardItemModel *m_model = nullptr;
    SearchLayerEdit *m_search = nullptr;
    int m_hostCalls = 0;
    QStringList m_told; ///< of a gesture its text, how many changed, were refused, and the names
};

void tst_LayerTable::model()
{
    LayerModel model;
    QSignalSpy counts(&model, &LayerModel::updateCount);
    QSignalSpy changes(&model, &LayerModel::dataChanged);
    model.setHorizontalHeader({"one", "two", "three"});
    model.refrushModel();
    Rows rows{{"a", "b", "c"}, {"d"}};
    model.setModalDatas(&rows);
    model.refrushModel();
    QCOMPARE(counts, (Calls{{0}, {2}}));
    QCOMPARE(model.index(0, 2).data().toString(), QStringLiteral("c"));
    QVERIFY(!model.index(1, 2).data().isValid());

    QVERIFY(!model.setData(model.index(0, 1), "x", Qt::EditRole));
    QVERIFY(!model.setData(model.index(1, 2), "x", Qt::DisplayRole));
    QVERIFY(model.setData(model.index(0, 1), 5, Qt::DisplayRole));
    QCOMPARE(rows.at(0).at(1), QStringLiteral("5"));
    const QModelIndex gone = model.index(1, 0);
    rows.removeLast();
    QVERIFY(!gone.data().isValid() && !model.setData(gone, "x", Qt::DisplayRole));
    QCOMPARE(changes.count(), 1);
}

void tst_LayerTable::frozenViewIsInPlace()
{
    const QPoint offset =
            m_table->viewport()->mapFrom(m_table, m_frozen->viewport()->mapTo(m_table, QPoint()));
    const QModelIndex last = m_model->index(3, NameColumn);
    QCOMPARE(m_frozen->visualRect(last).translated(offset), m_table->visualRect(last));

    // Walking left, the cell stops right of the frozen columns instead of under them.
    m_panel->resize(300, 200);
    m_table->setFocus();
    for (const bool isNameHidden : {false, true}) {
        m_table->setColumnHidden(NameColumn, isNameHidden);
        m_table->setCurrentIndex(m_model->index(0, DescriptionColumn));
        while (m_table->currentIndex().column() > OnColumn) {
            QTest::keyClick(m_table, Qt::Key_Left);
            QVERIFY(m_table->visualRect(m_table->currentIndex()).left() >= m_frozen->width());
        }
    }
    m_frozen->setCurrentIndex(m_model->index(0, NameColumn));
    QTest::keyClick(m_table, Qt::Key_Down);
    QCOMPARE(m_table->currentIndex(), m_model->index(1, NameColumn));
}

void tst_LayerTable::hiddenNames()
{
    const auto isInPlace = [this](int nameWidth) {
        return m_frozen->columnWidth(NameColumn) == nameWidth
               && m_frozen->width() == m_frozen->columnWidth(CurrentColumn) + nameWidth
               && m_table->columnViewportPosition(OnColumn) == m_frozen->width();
    };
    const auto dragBorder = [this](int distance) {
        const QWidget *header = m_table->horizontalHeader()->viewport();
        const QPoint from(m_frozen->width() + 1, 9);
        mouse(QEvent::MouseButtonPress, header, from);
        for (const auto type : {QEvent::MouseMove, QEvent::MouseButtonRelease})
            mouse(type, header, from + QPoint(distance, 0));
    };
    const auto toggle = [this] { m_table->findChild<LayerAction *>("Name")->trigger(); };
    openPanel(); // now the action is enabled
    for (const auto &[distance, width] :
         {std::pair(0, 60), {40, 100}, {-110, 30}, {0, 30}, {5, 35}, {0, 35}}) {
        if (distance == 0)
            toggle();
        dragBorder(distance);
        QVERIFY(isInPlace(width));
    }

    openPanel();
    QVERIFY(m_table->isColumnHidden(NameColumn) && isInPlace(60));
    m_frozen->setColumnWidth(NameColumn, 90);
    QVERIFY(isInPlace(90));
    m_table->setColumnHidden(CurrentColumn, true);
    QTRY_VERIFY(isInPlace(90));

    for (const int length : {0, 255, 255, 0}) {
        toggle();
        fill("Living room|" + QString(length, 'x'));
        const QAbstractItemView *view = m_frozen;
        const int beside =
                m_table->columnViewportPosition(ColorColumn) - m_frozen->columnWidth(NameColumn);
        const int wanted =
                qMin(view->sizeHintForColumn(NameColumn), m_table->viewport()->width() - beside);
        QTest::mouseDClick(m_table->horizontalHeader()->viewport(), Qt::LeftButton, {},
                           {m_frozen->width() + 1, 9});
        QVERIFY(isInPlace(wanted));
    }
}

void tst_LayerTable::clicksOnCells()
{
    connect(m_table, &LayerTableWidget::layersToggled, this,
            [this] { QCOMPARE(rows(), layerRows()); });
    const Rows before = rows();
    for (const Texts &expected :
         {Texts{"On", "Switch layer off 1/0 Walls|Switch layer on 1/0 Walls"},
          Texts{"Freeze", "Freeze layer 1/0 Walls|Thaw layer 1/0 Walls"},
          Texts{"Lock", "Lock layer 1/0 Walls|Unlock layer 1/0 Walls"},
          Texts{"Plot", "Do not plot layer 1/0 Walls|Plot layer 1/0 Walls"}}) {
        QCOMPARE(after(QString("click Walls %1, click Walls %1").arg(expected.first)),
                 expected.second);
        QCOMPARE(m_table->currentIndex().column(), headerList.indexOf(expected.first));
    }
    doubleClick("Walls", DescriptionColumn);
    QVERIFY(rows() == before && !m_table->findChild<QLineEdit *>());
    QCOMPARE(after("off Doors, click Doors On"), QString("Switch layer off 0/0"));
}

/// It is asked of once, whatever is selected with it.
void tst_LayerTable::currentLayerIsGuarded()
{
    const QString question = QStringLiteral("The current layer is turned off.");
    const QString refusal = QStringLiteral("The current layer can't be frozen!");
    m_table->setToggleSelection(true);
    for (const auto &[isAlone, column, button, warning, expected] :
         {std::tuple(false, OnColumn, "noBtn", question, "Switch 2 layers off 2/0 Doors,Walls"),
          std::tuple(false, OnColumn, "okBtn", question, "Switch 3 layers off 3/0 Doors,Walls,0"),
          std::tuple(false, ThawedColumn, "noBtn", refusal, "Freeze 3 layers 2/1 Doors,Walls"),
          std::tuple(true, OnColumn, "noBtn", question, ""),
          std::tuple(true, ThawedColumn, "noBtn", refusal, "Freeze layer 0/1"),
          std::tuple(true, OnColumn, "okBtn", question, "Switch layer off 1/0 0")}) {
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget *window : windows) { // a host may delete what lasts
            if (qobject_cast<LayerWarningDialog *>(window))
                delete window;
        }
        m_table->setAllFlags(OnColumn, true);
        m_table->setAllFlags(ThawedColumn, true);
        select(isAlone ? QStringList("0") : QStringList{"0", "Doors", "Walls"});
        const QString press = "press 0 " + headerList[column];
        QCOMPARE(answer(button, press), warning);
        QCOMPARE(told(), QString(expected));
        QCOMPARE(rows(), layerRows());
    }
    QCOMPARE(after("press 0 On"), QString("Switch layer on 1/0 0"));

    // A question about another drawing is none about this one.
    const auto other = drawingWithLayers({"Doors", "Walls"});
    work("selectAll");
    answer("noBtn", "press 0 On", [&] { KcHost::setWorkingDatabase(other.get()); });
    QVERIFY(m_told.isEmpty());
    KcHost::setWorkingDatabase(&**m_drawing);
}

/// Of a thousand layers every other one refuses.
void tst_LayerTable::clicksOnSelection()
{
    addNumberedLayers(**m_drawing, 1000);
    m_table->InitLayerModel();
    m_table->setToggleSelection(true);
    std::vector<KcDbLayerTableRecord *> open;
    for (int row = rowOf("Layer000"); row < rowOf("Walls"); row += 2) {
        open.push_back(getLayerByName(text(row, NameColumn)));
        if (row % 4 == 0)
            open.back()->upgradeOpen();
    }
    QSignalSpy changes(m_table, &LayerTableWidget::updateLayerCombo);
    QSignalSpy cells(m_model, &QAbstractItemModel::dataChanged);
    m_table->sortByColumn(UnlockedColumn, Qt::AscendingOrder);
    const QStringList order = names();
    click("Layer000", NameColumn);
    click("Layer999", NameColumn, Qt::ShiftModifier);
    const QItemSelection selection = m_table->selectionModel()->selection();
    const auto current = m_table->currentIndex();
    changes.clear();
    m_hostCalls = 0;
    const auto isKept = [&] {
        return m_table->selectionModel()->selection() == selection
               && m_table->currentIndex() == current && rows() == layerRows()
               && changes.count() == m_hostCalls;
    };
    const QPoint place = placeOf("Layer500", UnlockedColumn);
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseMove, QEvent::MouseButtonRelease,
                            QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease})
        mouse(type, m_table->viewport(), place + QPoint(0, type == QEvent::MouseMove ? 22 : 0));
    for (KcDbLayerTableRecord *layer : open)
        layer->close();
    QCOMPARE(names(), order);
    m_table->sortByColumn(NameColumn, Qt::AscendingOrder);
    QVERIFY(isKept() && m_hostCalls == 1 && cells.count() == 1);
    QVERIFY(told().startsWith("Lock 1000 layers 500/500 Layer001,Layer003"));

    work("search layer00*");
    QCOMPARE(selected().size(), 10);
    QCOMPARE(m_table->setSelectedFlag(PlotColumn, false), 10);
    QCOMPARE(m_table->setSelectedFlag(NameColumn, false), 0);
    QCOMPARE(m_table->setAllFlags(PlotColumn, false), 994);
    work("search");
    QVERIFY(isKept() && m_hostCalls == 3);

    m_told.clear();
    click("Walls", OnColumn, Qt::ControlModifier); // selects only, whatever the cell
    QVERIFY(selected().contains("Walls") && m_told.isEmpty());
    QCOMPARE(after("click Doors On"), QString("Switch layer off 1/0 Doors"));
    QVERIFY(selected() == QStringList("Doors") && rows() == layerRows());
    QCOMPARE(after("selectAll, click Doors Color"), QString()); // no flag
    QCOMPARE(selected(), QStringList("Doors"));
}

void tst_LayerTable::isolation()
{
    work("off Walls, off Doors, freeze Doors, refresh");
    const Rows before = rows();
    QSignalSpy canGiveBack(m_table, &LayerTableWidget::giveBackChanged);
    work("clearSelection, isolateSelection, selectAll, search d*");
    const auto again = [this] { m_table->isolateSelection(); };
    QVERIFY(!answer("noBtn", "isolateSelection", again).isEmpty());
    QCOMPARE(told(), QString("Isolate layer 2/0 Doors,wall-1"));
    QVERIFY(!answer("noBtn", "isolateSelection").isEmpty());
    QVERIFY(!answer("okBtn", "search, select Walls wall-1, isolateSelection").isEmpty());
    QCOMPARE(told(), QString("Isolate 2 layers 4/0 Doors,Walls,wall-1,0"));
    QCOMPARE(after("isolateSelection"), QString());
    QVERIFY(rows() == layerRows() && m_hostCalls == 2);

    // By somebody Doors has its light on again, and New is none of these layers.
    QCOMPARE(after("unoff Doors, lock Doors, add New, refresh, giveBack, giveBack"),
             QString("Give back isolated layers 3/0 0,Walls,Doors"));
    work("erase New, unlock Doors");
    QVERIFY(layerRows() == before && m_hostCalls == 3);

    // A layer that is gone refuses nothing.
    work("unoff Walls, refresh, select 0, isolateSelection, erase Walls, refresh");
    QCOMPARE(after("giveBack"), QString("Give back isolated layers 1/0 wall-1"));
    work("select 0, isolateSelection, select wall-1, renameLayer, type Yard, rename wall-1 Yard, "
         "key Return, refresh");
    QCOMPARE(after("giveBack"), QString("Give back isolated layers 1/0 Yard"));
    work("select 0, isolateSelection");
    QVERIFY(m_table->canGiveBack());
    const OpenDrawing other(drawingWithLayers({"Doors", "Walls"}));
    m_panel->showOtherDrawing();
    QVERIFY(!m_table->canGiveBack());
    work("select 0, isolateSelection");
    m_panel->showOtherDrawing(); // at the same address, for all that can be known
    QVERIFY(!m_table->canGiveBack());
    QCOMPARE(canGiveBack.count(), 10);
}

void tst_LayerTable::visibilityFollowsSelection()
{
    work("off Walls, freeze Doors, refresh");
    const Rows before = rows();
    QSignalSpy changes(m_panel.get(), &LayerManager::visibilityFollowsSelectionChanged);
    const auto follows = [this] { QVERIFY(m_panel->visibilityFollowsSelection()); };
    connect(m_panel.get(), &LayerManager::changesBegin, this, follows);
    connect(m_panel.get(), &LayerManager::changesEnd, this, follows);
    const auto on = [&](const QString &steps) {
        m_told.clear();
        m_hostCalls = 0;
        work(steps);
        QCoreApplication::processEvents();
        QStringList names;
        const Rows layers = layerRows();
        for (const QStringList &layer : layers) {
            if (layer[OnColumn] == "true")
                names += layer[NameColumn];
        }
        const bool isAsTold = m_told.size() == 1 && m_told[0].startsWith("Show selected layers ")
                              && m_hostCalls == 1 && rows() == layers;
        return isAsTold ? names.join(' ') : m_told.join('|');
    };
    m_panel->setVisibilityFollowsSelection(true); // "0" is selected
    QCOMPARE(told(), QString("Show selected layers 2/0 Doors,wall-1"));
    QCOMPARE(on("select 0 wall-1, select Walls, select Doors Walls"), QString("Doors Walls"));
    work("unoff wall-1");                                      // which it was anyway
    QCOMPARE(on("off Doors, select Doors"), QString("Doors")); // somebody's own wish
    QCOMPARE(on("clearSelection"), QString("0 wall-1"));
    QCOMPARE(on("selectAll"), QString("0 Doors Walls wall-1"));
    work("unoff Doors"); // changed only to be changed back
    m_panel->setVisibilityFollowsSelection(false);
    QCOMPARE(m_told.constLast(), QString("Show selected layers 2/0 Walls,Doors"));
    QCOMPARE(on("select Walls"), QString());
    QCOMPARE(rows(), layerRows());
    QCOMPARE(changes, (Calls{{true}, {false}}));

    // Asked for out of its own gesture; and with the panel; for another drawing it is not meant.
    work("unoff Doors");
    m_panel->setVisibilityFollowsSelection(true);
    connect(m_panel.get(), &LayerManager::changesEnd, m_table,
            [this] { m_panel->setVisibilityFollowsSelection(false); });
    select({"wall-1"});
    QTRY_VERIFY(!m_panel->visibilityFollowsSelection());
    QCOMPARE(layerRows(), before);
    openPanel();
    m_panel->setVisibilityFollowsSelection(true);
    m_panel.reset();
    QCOMPARE(layerRows(), before);

    openPanel();
    m_panel->setVisibilityFollowsSelection(true);
    const OpenDrawing other(drawingWithLayers({"Doors", "Walls"}));
    m_panel->showOtherDrawing();
    QVERIFY(!m_panel->visibilityFollowsSelection());
    m_panel->setVisibilityFollowsSelection(true);
    m_panel->showOtherDrawing(); // at the same address
    QVERIFY(!m_panel->visibilityFollowsSelection());
    QCOMPARE(rows(), layerRows());
}

void tst_LayerTable::pictures()
{
    LayerDelegate delegate;
    QStandardItemModel model(1, LayerColumnCount);
    QStyleOptionViewItem option;
    option.rect = QRect(0, 0, 60, 22);
    QImage empty(option.rect.size(), QImage::Format_ARGB32_Premultiplied);
    empty.fill(Qt::white);
    const auto painted = [&](int column, const QString &text) {
        model.setData(model.index(0, column), text);
        QImage image = empty;
        QPainter painter(&image);
        delegate.paint(&painter, option, model.index(0, column));
        return image;
    };
    const auto composed = [&](const QRect &place, const QPixmap &picture) {
        QImage image = empty;
        QPainter(&image).drawPixmap(place, picture);
        return image;
    };

    const QRect middle(22, 3, 16, 16);
    for (const auto &[column, whenTrue, whenFalse] :
         {std::tuple(OnColumn, "von", "voff"), std::tuple(ThawedColumn, "thw", "frz"),
          std::tuple(UnlockedColumn, "ulk", "lk"), std::tuple(PlotColumn, "pldi", "npl"),
          std::tuple(ViewportFreezeColumn, "vfrz", "vthw"),
          std::tuple(NewViewportFreezeColumn, "vfrz", "vthw")}) {
        QCOMPARE(painted(column, "true"), composed(middle, statusImage(whenTrue)));
        QCOMPARE(painted(column, "false"), composed(middle, statusImage(whenFalse)));
    }
    QCOMPARE(painted(CurrentColumn, marker), composed(middle, loadImage(marker)));
    QCOMPARE(painted(CurrentColumn, ""), empty);
    const QRect swatch(2, 4, 14, 14);
    QCOMPARE(painted(ColorColumn, "ll*;1,2,3"), composed(swatch, creatColorPix(QColor(1, 2, 3))));
    QCOMPARE(painted(ColorColumn, "no star"), composed(swatch, creatColorPix(Qt::black)));
    QVERIFY(painted(ColorColumn, "ll*red") != painted(ColorColumn, "ll*"));
    QCOMPARE(painted(LineWeightColumn, ""), composed({2, 3, 20, 16}, drawLineWeight(0)));
    for (const auto &[label, width] :
         {std::pair("Default", 1), std::pair("0.25 mm", 1), std::pair("0.30 mm", 2),
          std::pair("0.50 mm", 3), std::pair("2.11 mm", 15), std::pair("?", 0)})
        QCOMPARE(delegate.lineWeightIndexMap(QLatin1String(label)), width);

    const QColor highlight = option.palette.color(QPalette::Highlight);
    option.state = QStyle::State_Selected;
    QCOMPARE(painted(CurrentColumn, "").pixelColor(30, 11), highlight);
    option.state |= QStyle::State_HasFocus;
    QCOMPARE(painted(OnColumn, "true").pixelColor(1, 1), QColor(Qt::white));
    for (const int pale : {CurrentColumn, PlotStyleColumn})
        QCOMPARE(painted(pale, "").pixelColor(1, 1), highlight);

    QList<QImage> icons;
    for (int icon = LayerManager::NewLayerIcon; icon <= LayerManager::RefreshIcon; ++icon) {
        const QImage image = m_panel->drawIcon(LayerManager::LayerIcons(icon), {16, 16}).toImage();
        QVERIFY(!icons.contains(image));
        icons.append(image);
    }
}

void tst_LayerTable::naturalOrder()
{
    const QStringList expected =
            QString("0|9|12|Doors|Layer|Layer01|Layer1|Layer001a|Layer2|Layer2 9|Layer2 10|Layer10|"
                    "Layer99999999999999999999|Layer100000000000000000000|LayerA|Walls|layer3|"
                    "wall-1")
                    .split('|');
    for (const QString &name : expected)
        KcHost::addLayer(**m_drawing, name);
    const auto isSorted = [this](int column, Qt::SortOrder order) {
        for (const QTableView *view : {viewOf(NameColumn), viewOf(OnColumn)}) {
            const QHeaderView *header = view->horizontalHeader();
            if (header->sortIndicatorSection() != column || header->sortIndicatorOrder() != order)
                return false;
        }
        return true;
    };
    work("off Walls, slotUpLayerModel");
    const QStringList plain = names();
    QCOMPARE(plain.indexOf("Layer10") + 1, plain.indexOf("Layer100000000000000000000"));
    clickHeader(*m_table, OnColumn);
    QVERIFY(text(0, NameColumn) == "Walls" && isSorted(OnColumn, Qt::AscendingOrder));
    clickHeader(*m_frozen, NameColumn);
    m_table->setNaturalOrder(true);
    QVERIFY(names() == expected && isSorted(NameColumn, Qt::AscendingOrder));
    clickHeader(*m_frozen, NameColumn);
    QCOMPARE(names(), QStringList(expected.rbegin(), expected.rend()));
    QVERIFY(isSorted(NameColumn, Qt::DescendingOrder));
    work("rename LayerA Layer11, refresh");
    QCOMPARE(rowOf("Layer11"), rowOf("Layer10") - 1);
    m_model->item(rowOf("Layer11"), NameColumn)->setText("Layer100");
    QVERIFY(m_table->refreshLayers({"Layer11"}));
    QCOMPARE(rowOf("Layer11"), rowOf("Layer10") - 1);
    work("rename Layer11 LayerA, slotUpLayerModel");
    QVERIFY(names() == expected && isSorted(NameColumn, Qt::AscendingOrder));
    m_table->setNaturalOrder(false);
    QCOMPARE(names(), plain);
}

void tst_LayerTable::search()
{
    const QString all = "0|Outer wall|Walls|a*b*c|wall-1";
    fill(all);
    for (const Texts &expected :
         {Texts{"", all}, Texts{"*", all}, Texts{"Wall", "Walls|wall-1"},
          Texts{"*wall", "Outer wall"}, Texts{"o*", "Outer wall"}, Texts{"w*1", "wall-1"},
          Texts{"a*b*c", "a*b*c"}, Texts{"**c", "a*b*c"}, Texts{"a*b*", "a*b*c"}, Texts{"x", ""}}) {
        m_table->slotSearchLayer("zzz");
        m_table->slotSearchLayer(expected.first);
        QCOMPARE(qMakePair(expected.first, shownNames()), expected);
    }

    // Names are data, also where the drawing has no such layer.
    for (const QString &odd : {QString(255, 'x'), QString("a*;\"b\"'"), QString("two\nlines"),
                               QString("\xd7\x90\xd7\x91"), QString("%1 <b>&amp;</b>")}) {
        fill(all + '|' + odd);
        m_table->slotSearchLayer(odd);
        QCOMPARE(shownNames(), odd);
        click(odd, UnlockedColumn);
        QVERIFY(!m_table->grab().isNull());
    }
}

void tst_LayerTable::selectionCommands()
{
    fill("0|Doors|Hall|Walls|wall-1|wall-2");
    QSignalSpy changes(m_table->selectionModel(), &QItemSelectionModel::selectionChanged);
    const auto check = [&](const char *slot, const QString &wanted, const QString &current) {
        changes.clear();
        QMetaObject::invokeMethod(m_table, slot);
        QStringList names; // also of rows that are not shown
        const QModelIndexList rows = m_table->selectionModel()->selectedRows(NameColumn);
        for (const QModelIndex &row : rows)
            names.append(row.data().toString());
        names.sort();
        QCOMPARE(names.join('|'), wanted);
        QCOMPARE(m_table->currentIndex().data().toString(), current);
        QCOMPARE(changes.count(), 1);
        const QModelIndexList cells = changes.at(0).at(0).value<QItemSelection>().indexes()
                                      + changes.at(0).at(1).value<QItemSelection>().indexes();
        QCOMPARE(QSet<QModelIndex>(cells.begin(), cells.end()).size(), cells.size()); // each once
    };
    m_frozen->setCurrentIndex(m_model->index(1, NameColumn));
    m_table->setFocus();
    check("selectAllShown", "0|Doors|Hall|Walls|wall-1|wall-2", "Doors");
    m_table->slotSearchLayer("w*");
    check("selectAllShown", "Walls|wall-1|wall-2", "Walls");
    m_table->setUsage({{"0", 4}, {"Walls", 0}, {"wall-1", 1}});
    check("selectUnused", "Walls|wall-2", "Walls");
    check("invertSelection", "wall-1", "wall-1");
    m_table->slotSearchLayer({});
    check("invertSelection", "0|Doors|Hall|Walls|wall-2", "wall-2");
    check("selectUnused", "Doors|Hall|Walls|wall-2", "wall-2");
    check("invertSelection", "0|wall-1", "wall-1");

    m_model->removeRows(0, m_model->rowCount());
    m_model->insertRows(0, 4000);
    QHash<QString, int> usage;
    for (int row = 0; row < m_model->rowCount(); row += 2) {
        m_model->item(row, NameColumn)->setText(QString::number(row));
        usage.insert(QString::number(row), 1);
    }
    m_table->setUsage(usage);
    m_table->selectUnused();
    m_table->invertSelection();
    QCOMPARE(m_table->selectionModel()->selection().size(), 2000);
}

void tst_LayerTable::proposedNames()
{
    for (const Texts &expected :
         {Texts{"0", "Layer1"}, Texts{"", "Layer0"}, Texts{"0|Walls", "Layer1"},
          Texts{"0|Layer1|Layer2|Layer4", "Layer3"}, Texts{"0|Layer2|Layer3", "Layer1"},
          Texts{"0|LAYER2|layer1", "Layer3"}, Texts{"0|Layer1|layer02", "Layer2"},
          Texts{"Layer1|x", "Layer1"}, Texts{"0|Layer|Layer1a|Layer99999999999", "Layer1"}}) {
        fill(expected.first);
        m_table->addLayer();
        QCOMPARE(qMakePair(expected.first, names().constLast()), expected);
    }
}

/// In a window that is not active the editor has no focus to lose: nobody but its view closes it.
void tst_LayerTable::editedNames()
{
    QWidget other;
    bool isReloading = false;
    const auto reload = [&](const QString &name) {
        if (isReloading && KcHost::addLayer(**m_drawing, name) == Kcore::eOk)
            m_panel->slotUpLayerModel();
    };
    connect(m_panel.get(), &LayerManager::layerAdded, &other, reload);
    // None of the names begins like another one: an open list of completions would take the key.
    for (const bool isActive : {true, false, false}) {
        work("addLayer, type Attic");
        const auto *offered = qobject_cast<QStringListModel *>(editor()->completer()->model());
        QCOMPARE(offered->stringList(), names().mid(1));
        QVERIFY(editor()->hasFocus() == isActive
                && rows().constLast().at(CurrentColumn) == "false");
        work("addLayer, type Hall, key Return, addLayer, type X, key Esc, addLayer, type Garage, "
             "select 0, renameLayer, type Jetty, key Tab, select Jetty, renameLayer, type X, "
             "key Esc, select Jetty, renameLayer, type Quay");
        m_search->setFocus();
        m_table->selectRow(1);
        work("addLayer, type X");
        delete editor();
        work("addLayer, type Shed, remove, addLayer, type X, slotUpLayerModel");
        QCOMPARE(
                told(),
                QString("add Attic|add Hall|add Layer1|add Garage|rename 0 Jetty|rename Jetty Quay|"
                        "add Layer2|add Shed|remove Shed"));
        isReloading = !isActive;
        showOnScreen(other);
        QApplication::setActiveWindow(&other);
    }

    for (const int column : {ViewportFreezeColumn, NameColumn}) {
        m_frozen->openPersistentEditor(m_model->index(0, column));
        m_frozen->setCurrentIndex(m_model->index(0, column));
        work("type Y, key Return, type Z, key Return");
        m_frozen->closePersistentEditor(m_model->index(0, column));
    }
    QCOMPARE(told(), QString("rename 0 Y|rename Y YZ"));
    QCOMPARE(after("addLayer, type Vault, renameLayer"), QString("add Vault")); // settled first
}

/// It reloads or deletes inside a notification, while the user is asked, and while a name is edited.
void tst_LayerTable::hostActsFromInside()
{
    using Table = LayerTableWidget;
    QWidget other;
    int count = 0;
    Work act;
    const auto inside = [&](const QString &steps, auto... signal) {
        return QVector<Work>{[&, steps, signal] {
            connect(m_table, signal, this, act);
            work(steps);
        }...};
    };
    QVector<Work> cases{
            [&] { KcHost::setLayerTableChangesHandler(act), work("press Walls On"); },
            [&] { KcHost::setLayerModifiedHandler([=](auto) { act(); }), work("press Walls On"); },
            [&] {
                connect(m_table, &Table::changesBegin, this, act);
                answer("okBtn", "press 0 On");
            },
            [&] { answer("okBtn", "selectAll, press 0 On", act); },
            [&] { answer("noBtn", "selectAll, press 0 On", act); },
            [&] { QCOMPARE((answer("noBtn", "press 0 On", act), m_hostCalls), 0); },
            [&] { QCOMPARE((answer("okBtn", "press 0 On", act), m_hostCalls), 1); },
            [&] {
                inside("renameLayer, type x", &Table::layerRenamed).constFirst()();
                act();
                QCOMPARE(count, 1);
            },
            [&] {
                inside("newLayer", &Table::layerAdded).constFirst()();
                QApplication::setActiveWindow(&other);
            }};
    cases += inside("press Walls On", &Table::updateLayerCombo, &Table::changesBegin,
                    &Table::changesEnd, &Table::layersToggled)
             + inside("selectAll, press Walls Lock", &Table::updateLayerCombo, &Table::changesBegin,
                      &Table::changesEnd, &Table::layersToggled)
             + inside("makeCurrent", &Table::currentLayerRequested)
             + inside("slotDeleteLayer", &Table::layersRemoved)
             + inside("slotUpLayerModel", &Table::updateCurretnLayer)
             + inside("select Walls, makeCurrent", &Table::updateCurretnLayer)
             + inside("newLayer, key Return", &Table::layerAdded)
             + inside("newLayer, newLayer", &Table::layerAdded)
             + inside("newLayer, deleteLayers", &Table::layerAdded)
             + inside("renameLayer, type x, key Tab", &Table::layerRenamed);
    const auto refresh = [&] {
        changeLayers({"erase", "Doors"});
        changeLayers({"add", QString("Attic %1").arg(count)});
        m_panel->refresh();
    };
    const Work acts[]{refresh, [&] { m_panel->slotUpLayerModel(); }, [&] { delete m_table; },
                      [&] { m_panel.reset(); }};
    for (const Work &one : acts) {
        act = [&] { ++count, one(); };
        for (const Work &each : std::as_const(cases)) {
            KcHost::setLayerModifiedHandler(nullptr);
            changeLayers({"unoff", "0"});
            openPanel();
            m_table->setToggleSelection(true);
            KcHost::setLayerTableChangesHandler([this] { ++m_hostCalls; });
            count = m_hostCalls = 0;
            const QPointer<QObject> table = m_table;
            each();
            QVERIFY(count > 0 && !table == (&one > acts + 1));
            if (m_panel)
                work("slotNewLayer, slotDeleteLayer, slotCurrentLayer, slotUpLayerModel");
            QVERIFY(!table || rows() == layerRows());
        }
    }
}

void tst_LayerTable::removal()
{
    addNumberedLayers(**m_drawing, 20);
    m_table->InitLayerModel();
    const QAbstractItemModelTester tester(m_model);
    clickHeader(*m_frozen, NameColumn);
    QStringList left = names();
    const QPersistentModelIndex kept = m_model->index(15, OnColumn);
    select({left.at(3), left.at(4), left.at(9), left.at(23)});
    const QStringList gone{"remove", left.takeAt(3), left.takeAt(3), left.takeAt(7)};
    // The search hides the last of them.
    QCOMPARE(after("search l*, slotDeleteLayer, slotDeleteLayer"), gone.join(' '));
    QCOMPARE(names(), left);
    QCOMPARE(kept.row(), 12);
}

void tst_LayerTable::setCurrent()
{
    const QAbstractItemModelTester tester(m_model);
    QSignalSpy current(m_panel.get(), &LayerManager::updateCurretnLayer);
    m_panel->makeCurrent();
    for (const char *name : {"wall-1", "wall-1", "Doors"}) {
        work(QString("select %1, slotCurrentLayer").arg(name));
        for (int row = 0; row < 4; ++row)
            QCOMPARE(text(row, CurrentColumn) == marker, text(row, NameColumn) == name);
    }
    QCOMPARE(text(0, CurrentColumn), QString());
    work("selectAll, search zzz, makeCurrent, search *s, makeCurrent, newLayer, type Attic, "
         "makeCurrent, search, slotUpLayerModel");
    QCOMPARE(current, (Calls{{"wall-1"}, {"Doors"}, {"Walls"}, {"Attic"}, {"0"}}));
    QCOMPARE(told(), QString("current 0|current wall-1|current wall-1|current Doors|"
                             "current Walls|add Attic|current Attic"));
    work("current Walls, erase Doors, slotUpLayerModel");
    QCOMPARE(rows(), layerRows());
    QCOMPARE(selected(), QStringList("Walls"));
    QCOMPARE(m_table->currentIndex().row(), rowOf("Walls"));
    KcHost::setWorkingDatabase(nullptr);
    m_panel->slotUpLayerModel();
    QCOMPARE(m_model->rowCount(), 0);
    QCOMPARE(current.count(), 6);

    // A name leaves the panel its width and the search field a part of it.
    const QSize narrowest = m_panel->minimumSizeHint();
    const auto *label = m_panel->findChild<QLabel *>();
    m_panel->resize(300, 400);
    for (const QString &name : {QString("Walls"), QString(255, 'x')}) {
        emit m_table->updateCurretnLayer(name);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        QCOMPARE(m_panel->minimumSizeHint(), narrowest);
        QCOMPARE(label->text(), "Current layer: " + name);
        QCOMPARE(label->width(), qMin(label->sizeHint().width(), 300 - 4 - 20 - 80));
    }
}

void tst_LayerTable::refreshTouchesWhatDiffers()
{
    work("current Walls");
    addNumberedLayers(**m_drawing, 300);
    openPanel();
    QSignalSpy current(m_table, &LayerTableWidget::updateCurretnLayer);
    clickHeader(*m_frozen, NameColumn);
    work("search l");
    m_frozen->setCurrentIndex(m_model->index(5, NameColumn));
    m_frozen->verticalScrollBar()->setValue(2000);
    m_panel->refresh();
    QCOMPARE(m_panel->findChild<QLabel *>()->text(), QString("Current layer: Walls"));
    Paints paints;
    const QList<QWidget *> parts = m_panel->findChildren<QWidget *>();
    for (QWidget *each : parts)
        each->installEventFilter(&paints);
    QTRY_VERIFY((paints.places.clear(), QApplication::processEvents(), paints.places.isEmpty()));
    const int top = m_table->rowAt(10);
    for (const auto &[row, isSeen] : {std::pair(-1, false), {top + 3, true}, {top - 3, false}}) {
        if (row >= 0)
            work("lock " + text(row, NameColumn));
        paints.places.clear();
        m_panel->refresh();
        QApplication::processEvents();
        QCOMPARE(paints.places.size(), int(isSeen));
        if (isSeen)
            QCOMPARE(paints.places.at(0),
                     qMakePair(static_cast<QObject *>(m_table->viewport()),
                               m_table->visualRect(m_model->index(row, UnlockedColumn))));
    }

    const QStringList before = names();
    work(QString("erase %1, erase %2, erase %3, add Layer0, add Layer100a, add Zoo")
                 .arg(before[5], before[6], before[100]));
    int changes = 0;
    const auto count = [&changes] { ++changes; };
    connect(m_model, &QStandardItemModel::rowsInserted, this, count);
    connect(m_model, &QStandardItemModel::layoutChanged, this, count);
    connect(m_model, &QStandardItemModel::rowsRemoved, this, count);
    m_panel->refresh();
    QCOMPARE(changes, 3);
    QCOMPARE(m_frozen->currentIndex().data().toString(), before.at(7));
    QCOMPARE(m_table->verticalScrollBar()->value(), 2000);
    QCOMPARE(current.count(), 0);
    m_table->InitLayerModel();
    QTest::keyClick(m_table, Qt::Key_F10, Qt::ShiftModifier); // opens no menu
    QCOMPARE(m_table->verticalScrollBar()->value(), 2000);
}

/// A row that is edited stays as long as its editor does.
void tst_LayerTable::refreshWaitsForEditors()
{
    work("newLayer, add Attic, add Zoo, refresh, type Hall");
    QCOMPARE(names().join(' '), QString("0 Attic Doors Walls Layer1 Zoo wall-1"));
    work("key Return");
    QTRY_COMPARE(rows(), layerRows());

    work("select Doors, renameLayer, erase Doors, lock Walls, refresh");
    QCOMPARE(text(rowOf("Walls"), UnlockedColumn), QString("false"));
    QCOMPARE(editor()->text(), QString("Doors"));
    work("key Esc");
    QTRY_COMPARE(rows(), layerRows());
    QVERIFY(!names().contains("Doors"));

    m_table->openPersistentEditor(m_model->index(0, DescriptionColumn));
    m_model->item(0, DescriptionColumn)->setText("typed");
    m_panel->refresh();
    QCOMPARE(text(0, DescriptionColumn), QString("typed"));
    m_table->closePersistentEditor(m_model->index(0, DescriptionColumn));
    QTRY_COMPARE(rows(), layerRows());
}

void tst_LayerTable::propertyDialogs_data()
{
    QTest::addColumn<QStringList>("fields"); // the column, where the dialog starts, keys, the wish
    for (const char *row :
         {"Color|ll*;1,2,3|Return|color Doors Walls #040506", "Color|ll*;1,2,3|Esc|",
          "Linetype|DASHED|Down, Return|linetype Doors Walls Hidden", "Linetype|another|Return|",
          "Lineweight|0.05 mm|Down, Return|lineweight Doors Walls 9",
          "Lineweight|0.00 mm|Up, Return|lineweight Doors Walls -3",
          "Description|as it was|End, X, Return|description Doors Walls as it wasx"})
        QTest::newRow(row) << QString(row).split('|');
}

void tst_LayerTable::propertyDialogs()
{
    QFETCH(QStringList, fields);
    const int column = headerList.indexOf(fields[0]);
    m_panel->setLinetypes({"Continuous", "Dashed", "Hidden"});
    m_model->item(rowOf("Walls"), column)->setText(fields[1]);
    const Rows before = rows();
    const auto answer = [&fields](QDialog &dialog) {
        QWidget *field = dialog.findChild<QAbstractItemView *>();
        if (auto *colors = qobject_cast<QColorDialog *>(&dialog)) {
            QCOMPARE(colors->currentColor(), QColor(1, 2, 3));
            colors->setCurrentColor(QColor(4, 5, 6));
            field = colors;
        }
        QTest::keySequence(field ? field : dialog.findChild<QLineEdit *>(),
                           QKeySequence(fields[2]));
    };
    for (const bool isOn : {false, true}) {
        m_table->setPropertyEditing(isOn);
        select({"Doors", "Walls"});
        QCOMPARE(isAsked([&] { doubleClick("Walls", column); }, answer), isOn);
        QCOMPARE(selected().size(), isOn ? 2 : 1);
        QCOMPARE(told(), isOn ? fields[3] : QString());
    }
    const auto press = [](QWidget *view) {
        return [view] { QTest::keyClick(view, Qt::Key_Enter, Qt::KeypadModifier); };
    };
    QVERIFY(isAsked(press(m_table), answer) && isAsked(press(m_frozen), answer));
    QCOMPARE(m_told.size(), fields[3].isEmpty() ? 0 : 2);
    QCOMPARE(rows(), before);
    for (const int other : {NameColumn, OnColumn, PlotStyleColumn}) {
        m_table->selectionModel()->setCurrentIndex(m_model->index(0, other), {});
        QVERIFY(!isAsked(press(m_table), answer));
    }
}

void tst_LayerTable::merging()
{
    for (const char *row :
         {"select Walls, mergeSelection;0 of 0 Doors wall-1;editColor;0;merge Walls "
          "0", // one at a time
          // The current layer stays, and what is hidden is left alone.
          "select wall-1 0 Walls, search w, mergeSelection;0 of 0 Doors Walls wall-1;"
          "add Another, slotUpLayerModel;wall-1;merge Walls wall-1",
          "search, select Walls, mergeSelection;0 of 0 Another Doors wall-1;"
          "erase Walls, slotUpLayerModel;0;"}) {
        const QStringList fields = QString(row).split(';');
        const auto answer = [&](QDialog &dialog) {
            auto *box = dialog.findChild<QComboBox *>();
            QStringList targets(box->currentText() + " of");
            for (int target = 0; target < box->count(); ++target)
                targets += box->itemText(target);
            QCOMPARE(targets.join(' '), fields[1]);
            work(fields[2]);
            box->setCurrentText(fields[3]);
            QTest::keyClick(&dialog, Qt::Key_Return);
        };
        QVERIFY(isAsked([&] { work(fields[0]); }, answer));
        QCOMPARE(told(), fields[4]);
    }
}

void tst_LayerTable::questionsAreDropped()
{
    m_table->setPropertyEditing(true);
    work("renameLayer, type Windows");
    QVERIFY(isAsked([this] { m_table->editColor(); },
                    [&](QDialog &dialog) {
                        QCOMPARE(told(), QString("rename 0 Windows"));
                        m_panel->showOtherDrawing();
                        QVERIFY(!dialog.isVisible());
                    }));
    std::optional<OpenDrawing> other; // that the table has not been told of
    QVERIFY(isAsked([this] { doubleClick("Walls", ColorColumn); },
                    [&](QDialog &dialog) {
                        other.emplace(drawingWithLayers({"Walls"}));
                        dialog.accept();
                    }));
    QVERIFY(isAsked([this] { doubleClick("Walls", ColorColumn); },
                    [this](QDialog &) { m_panel.reset(); }));
    QVERIFY(m_told.isEmpty());
}

void tst_LayerTable::rowMenu()
{
    QVERIFY(!menuOf("Walls", ColorColumn)); // off
    m_table->setRowMenu(true);
    const auto texts = [](const QMenu &menu, bool (QAction::*is)() const, bool expected) {
        QStringList texts;
        const QList<QAction *> entries = menu.actions();
        for (const QAction *entry : entries) {
            if ((entry->*is)() == expected)
                texts += entry->text().remove('&').remove("...");
        }
        return texts.join(", ");
    };

    // A row that is not selected is for itself, and no flag is toggled.
    select({"Doors", "Walls"});
    QMenu *menu = menuOf("wall-1", UnlockedColumn, Qt::ControlModifier);
    QCOMPARE(selected(), QStringList("wall-1"));
    QCOMPARE(texts(*menu, &QAction::isChecked, true), QString("On, Plot"));
    QCOMPARE(texts(*menu, &QAction::isEnabled, false), QString("Give back, Select unused"));
    choose(menu, "F");
    QCOMPARE(told(), QString("Freeze layer 1/0 wall-1"));

    // A selected one is for all that are.
    m_table->setUsage({{"Doors", 2}});
    select({"Doors", "Walls", "wall-1"});
    menu = menuOf("wall-1", NameColumn);
    QCOMPARE(texts(*menu, &QAction::isChecked, true), QString("On, Frozen, Plot"));
    QCOMPARE(texts(*menu, &QAction::isEnabled, false), QString("Make current, Rename, Give back"));
    menu->close();
    QCOMPARE(after("menu wall-1 L, menu Doors T"),
             QString("Lock 3 layers 3/0 Doors,Walls,wall-1|Thaw 4 layers 1/0 wall-1"));
    work("menu Doors S");
    QCOMPARE(selected(), (QStringList{"0", "Walls", "wall-1"}));
    QCOMPARE(after("menu Walls V, menu Doors C"), QString("current Doors"));
    // "0" stays on.
    QVERIFY(isAsked([this] { work("menu Doors I"); }, [](QDialog &) {}) && m_table->canGiveBack());
    QVERIFY(after("menu Doors G").startsWith("Give back isolated layers "));

    m_table->setPropertyEditing(true);
    for (const char *key : {"R", "Y", "W", "E", "M"})
        QVERIFY(isAsked([&] { work(QString("menu Doors ") + key); },
                        [](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Return); }));
    QCOMPARE(m_told.size(), 5);
    work("menu Doors N");
    QVERIFY(editor());
    QCOMPARE(after("menu Doors D"), QString("remove Doors"));
}

void tst_LayerTable::rowMenuByHand()
{
    m_table->setRowMenu(true);
    int chosen = 0;
    const auto zap = [&chosen] { ++chosen; };
    const auto addZap = [&](QMenu *menu) { menu->addAction("&Zap", m_panel.get(), zap); };
    connect(m_table, &LayerTableWidget::rowMenuAboutToShow, m_panel.get(), addZap);
    select({"Doors"});
    QTest::keyClick(m_frozen, Qt::Key_F10, Qt::ShiftModifier);
    QMenu *menu = shownMenu();
    QVERIFY(menu
            && menu->geometry().contains(m_frozen->viewport()->mapToGlobal(
                    m_frozen->visualRect(m_frozen->currentIndex()).bottomLeft())));
    choose(menu, "Z");
    QCOMPARE(chosen, 1);

    m_table->setFocus();
    QContextMenuEvent byKey(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QApplication::sendEvent(m_table, &byKey);
    QVERIFY(shownMenu());
    m_panel->showOtherDrawing(); // the menu was for the other one
    QVERIFY(!shownMenu());
    m_table->slotSearchLayer("w"); // the current row is hidden
    QTest::keyClick(m_table, Qt::Key_F10, Qt::ShiftModifier);
    QVERIFY(!shownMenu());
    m_table->setContextMenuPolicy(Qt::NoContextMenu);
    QVERIFY(!menuOf("Walls", NameColumn));
    m_table->setContextMenuPolicy(Qt::DefaultContextMenu);
    const QPointer open(menuOf("Walls", NameColumn));
    QVERIFY(open);
    QTest::keyClick(open, Qt::Key_R);
    m_panel.reset(); // before the command is carried out
    QVERIFY(!shownMenu() && !open);
}

void tst_LayerTable::rowsAsText()
{
    for (const int column : {NameColumn, LinetypeColumn, PlotStyleColumn, NewViewportFreezeColumn})
        m_table->hideColumn(column);
    click("Doors", ThawedColumn);
    m_model->item(rowOf("Doors"), ColorColumn)->setText("ll*red;255,0,0");
    m_model->item(rowOf("Doors"), DescriptionColumn)->setText("two\nlines\tand a tab");
    for (const QStringList &names : {QStringList{"Doors", "0"}, QStringList()}) {
        select(names);
        m_table->copySelection(); // none selected, what was copied stays
        QCOMPARE(QApplication::clipboard()->text(),
                 QString("\tName\tOn\tFreeze\tLock\tColor\tLineweight\tPlot\tDescription\n"
                         "current\t0\ton\tthawed\tunlocked\twhite\tDefault\tplotted\t\n"
                         "\tDoors\ton\tfrozen\tunlocked\tred\tDefault\tplotted\t"
                         "two lines and a tab\n"));
    }
}

void tst_LayerTable::columnLayoutIsKept()
{
    for (int run = 0; run < 3; ++run) {
        const QList<LayerAction *> actions = m_table->findChildren<LayerAction *>();
        QVERIFY(m_table->isColumnHidden(ViewportFreezeColumn));
        QCOMPARE(actions.at(0)->isEnabled(), run > 0);
        QCOMPARE(m_table->isColumnHidden(PlotStyleColumn), run > 0);
        if (run == 0)
            chooseText("Plot Style", [this] {
                QContextMenuEvent event(QContextMenuEvent::Mouse, {5, 5}, {5, 5});
                QApplication::sendEvent(m_table->horizontalHeader()->viewport(), &event);
            });
        else if (run == 2)
            actions.at(0)->trigger();
        openPanel();
    }
    for (const int isModelSpace : {0, 1}) {
        KcHost::setVariable("TILEMODE", isModelSpace);
        for (const char *reload : {"slotUpLayerModel", "refresh"}) {
            m_table->showColumn(ViewportFreezeColumn);
            work(reload);
            QCOMPARE(m_table->isColumnHidden(ViewportFreezeColumn), isModelSpace == 1);
        }
    }
    QSettings settings(QStringLiteral("Brevik"), QStringLiteral("TessaViewer"));
    QCOMPARE(settings.value("Plot Style/isChecked").toBool(), false);
    QCOMPARE(settings.value("Name/isChecked").toBool(), false);
    QCOMPARE(settings.value("Color/isEnabled").toBool(), true);
    QCOMPARE(settings.childGroups().size(), 11);
}

void tst_LayerTable::layoutState()
{
    m_frozen->setColumnWidth(CurrentColumn, 40);
    m_frozen->setColumnWidth(NameColumn, 140);
    m_table->setColumnWidth(PlotColumn, 99);
    m_table->sortByColumn(NameColumn, Qt::DescendingOrder);
    for (const int column : {NameColumn, ColorColumn})
        m_table->hideColumn(column);
    m_table->setColumnWidth(ColorColumn, 77);
    const QByteArray state = m_table->saveState();
    openPanel();
    const QByteArray plain = m_table->saveState();

    QByteArrayList bad{{}, state + 'x', "x" + state};
    for (int place = 1; place < state.size(); ++place)
        bad.append(state.left(place));
    // The version, a width, a flag, the column that is sorted by.
    for (const auto &[place, value] :
         {std::pair(3, 2), {4, -1}, {4, 1}, {8, 2}, {state.size() - 2, 13}}) {
        bad.append(state);
        bad.last()[place] = char(value);
    }
    for (const QByteArray &bytes : std::as_const(bad))
        QVERIFY(!m_table->restoreState(bytes) && m_table->saveState() == plain);

    QVERIFY(m_table->restoreState(state));
    QCOMPARE(m_table->saveState(), state);
    QCOMPARE(m_table->columnViewportPosition(OnColumn), m_frozen->width());
    QCOMPARE(text(0, NameColumn), QString("wall-1"));
    for (const char *title : {"Name", "Color"})
        m_table->findChild<LayerAction *>(title)->trigger();
    for (const auto &[column, width] :
         {std::pair(NameColumn, 140), {ColorColumn, 77}, {PlotColumn, 99}})
        QCOMPARE(m_table->columnWidth(column), width);
    QCOMPARE(m_frozen->width(), 40 + 140);

    LayerTableWidget::setSettingsScope("Elsewhere", "Host");
    openPanel();
    m_table->findChild<LayerAction *>("Plot")->trigger();
    openPanel();
    LayerTableWidget::setSettingsScope("Brevik", "TessaViewer");
    QVERIFY(m_table->isColumnHidden(PlotColumn));
    QCOMPARE(QSettings("Elsewhere", "Host").value("Plot/isChecked"), QVariant("false"));
}

void tst_LayerTable::searchField()
{
    auto *button = m_search->findChild<QPushButton *>(QStringLiteral("searchBtn"));
    QSignalSpy searches(m_search, &SearchLayerEdit::searchTextChanged);
    const QPixmap magnifier = loadImage(":/IDB_LAYER_SEARCH.bmp");
    QVERIFY(!magnifier.isNull());
    QCOMPARE(shownOn(button), magnifier);
    m_search->setFocus();
    QTest::keyClicks(m_search, "a*");
    QVERIFY(shownOn(button).toImage() != magnifier.toImage());
    m_frozen->setFocus();
    QVERIFY(m_search->text() == "a*" && shownNames().isEmpty());
    QCOMPARE(searches.count(), 2);

    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(m_panel->focusWidget(), m_search);
    QCOMPARE(shownOn(button), magnifier);
    QCOMPARE(shownNames(), names().join('|'));
    QCOMPARE(searches.count(), 3);
    m_search->setFocus();
    QTest::keyClicks(m_search, "*");
    m_frozen->setFocus();
    QTRY_COMPARE(m_search->text(), QString());
}

void tst_LayerTable::filterMenu()
{
    const QImage plain = m_panel->grab().toImage();
    for (const bool isVisible : {true, false, true}) {
        m_panel->setFilterVisible(isVisible);
        QApplication::processEvents();
        QCOMPARE(m_panel->grab().toImage() == plain, !isVisible);
    }
    auto *button = m_panel->findChild<QToolButton *>("filterBtn");
    const auto *count = m_panel->findChild<QLabel *>("filterCount");
    QSignalSpy changes(m_table, &LayerTableWidget::filterChanged);
    const auto choose = [&](const QString &text) {
        chooseText(text, [button] { QTest::mouseClick(button, Qt::LeftButton); });
    };
    work("off Walls, freeze Doors, lock Walls, lock wall-1, refresh");
    choose("In use"); // nobody knows
    choose("Of the selected entities");
    QCOMPARE(changes.count(), 0);
    m_panel->setUsage({{"0", 2}, {"wall-1", 1}, {"Doors", 0}});
    m_panel->setPicked({"0", "Walls"});
    for (const char *expected :
         {"Locked;Walls|wall-1;2 of 4;Filter: Locked",
          "In use;wall-1;1 of 4;Filter: Locked, In use",
          "Unused;Walls;1 of 4;Filter: Locked, Unused",
          "Off;Walls;1 of 4;Filter: Off, Locked, Unused",
          "All layers;0|Doors|Walls|wall-1;4 of 4;Filter layers",
          "Of the selected entities;0|Walls;2 of 4;Filter: Of the selected entities",
          "Frozen;;0 of 4;Filter: Frozen, Of the selected entities",
          "Of the selected entities;Doors;1 of 4;Filter: Frozen"}) {
        const QString choice = QString(expected).section(';', 0, 0);
        choose(choice);
        const QStringList told{choice, shownNames(), count->text(), button->toolTip()};
        QCOMPARE(told.join(';'), QString(expected));
        QCOMPARE(button->isChecked(), m_table->filter() != LayerTableWidget::NoFilter);
    }
    QCOMPARE(changes.count(), 8);
    m_search->setText("d");
    QCOMPARE(count->text(), QString("1 of 4"));
    const QImage one = m_table->grab().toImage();
    m_search->setText("w");
    const QImage none = m_table->grab().toImage();
    m_table->setNoMatchText({});
    QVERIFY(none != m_table->grab().toImage() && none != one);

    m_search->clear();
    m_panel->setFilterVisible(false);
    QCOMPARE(shownNames(), names().join('|'));
}

void tst_LayerTable::filtersFollowTheDrawing()
{
    work("freeze Doors, freeze Walls, slotUpLayerModel");
    QSignalSpy counts(m_table, &LayerTableWidget::shownRowsChanged);
    const auto shown = [&](int signalCount, const QString &steps = {}) {
        work(steps);
        const int told = counts.count();
        counts.clear();
        return told == signalCount ? shownNames() : "signals: " + QString::number(told);
    };
    m_table->setFilter(LayerTableWidget::FrozenFilter);
    QCOMPARE(shown(1), QString("Doors|Walls"));
    m_table->InitLayerModel();
    QCOMPARE(shown(0), QString("Doors|Walls"));
    work("unfreeze Doors");
    m_panel->refreshLayers({"Doors"});
    QCOMPARE(shown(1), QString("Walls"));
    QCOMPARE(shown(1, "freeze Doors, refresh"), QString("Doors|Walls"));
    clickHeader(*m_table, ThawedColumn); // thawed ones go to the end, and the row moves
    work("unfreeze Doors");
    m_panel->refreshLayers({"Doors"});
    QCOMPARE(shown(1), QString("Walls"));
    QCOMPARE(shown(1, "erase Doors, refresh"), QString("Walls"));

    m_table->setFilter(LayerTableWidget::PickedFilter);
    QCOMPARE(shown(1), QString("Walls|0|wall-1")); // as nothing is picked
    m_table->setPicked({"wall-1"});
    QCOMPARE(shown(1), QString("wall-1"));
    m_panel->newLayer(); // whose editor stays, and its row with it
    m_table->setPicked({"0"});
    QCOMPARE(shown(1), QString("0|Layer1"));
    work("key Esc");
    QTRY_COMPARE(shownNames(), QString("0"));
    m_table->remove();
    m_table->setUsage({{"0", 1}});
    m_table->setFilter(LayerTableWidget::UnusedFilter);
    QVERIFY(!shownNames().contains('0'));
    m_table->setUsage({});
    QVERIFY(shownNames().contains('0'));
}

QTEST_MAIN(tst_LayerTable)
#include "tst_layertable.moc"
