#include "Support.h"

#include <OvCustomControl/OvCustomControl.h>

#include <QAbstractItemModelTester>
#include <QCompleter>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QSettings>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTimer>

using namespace OvCc;

namespace {

enum Column { Current, Name, On, Thawed, Unlocked, Color, Linetype, Weight, PlotStyle, Plot };

const QString marker = QStringLiteral(":/IDB_LSTATE_CURRENT.png");

FrozenTableWidget *frozenOf(const LayerTableWidget &table)
{
    return table.findChild<FrozenTableWidget *>(QStringLiteral("frozenTable"));
}

QString textAt(const QTableView &table, int row, int column)
{
    return table.model()->index(row, column).data().toString();
}

int rowOf(const QTableView &table, const QString &name)
{
    for (int row = 0; row < table.model()->rowCount(); ++row) {
        if (textAt(table, row, Name) == name)
            return row;
    }
    return -1;
}

QStringList namesOf(const QTableView &table)
{
    QStringList names;
    for (int row = 0; row < table.model()->rowCount(); ++row)
        names.append(textAt(table, row, Name));
    return names;
}

QStringList shownNames(const QTableView &table)
{
    QStringList names;
    for (int row = 0; row < table.model()->rowCount(); ++row) {
        if (!table.isRowHidden(row))
            names.append(textAt(table, row, Name));
    }
    return names;
}

QList<QStringList> drawingRows()
{
    QList<QStringList> rows;
    OvLayerUtility().getAllLayerDate(rows);
    std::sort(rows.begin(), rows.end(),
              [](const QStringList &one, const QStringList &other) { return one[1] < other[1]; });
    return rows;
}

QList<QStringList> tableRows(const QTableView &table)
{
    QList<QStringList> rows;
    for (int row = 0; row < table.model()->rowCount(); ++row) {
        rows.append(QStringList());
        for (int column = 0; column < table.model()->columnCount(); ++column)
            rows.last().append(textAt(table, row, column));
    }
    return rows;
}

QString drawingText(const QString &name, int column)
{
    const QList<QStringList> rows = drawingRows();
    for (const QStringList &row : rows) {
        if (row.at(Name) == name)
            return row.at(column);
    }
    return {};
}

QLineEdit *openEditor(const QTableView &view)
{
    const QList<QLineEdit *> editors = view.findChildren<QLineEdit *>();
    for (QLineEdit *editor : editors) {
        if (!editor->isHidden())
            return editor;
    }
    return nullptr;
}

void clickCell(QTableView &view, int row, int column, Qt::MouseButton button = Qt::LeftButton)
{
    const QModelIndex cell = view.model()->index(row, column);
    view.scrollTo(cell);
    QTest::mouseClick(view.viewport(), button, {}, view.visualRect(cell).center());
}

void clickHeader(QTableView &view, int column)
{
    const QHeaderView *header = view.horizontalHeader();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                      {header->sectionViewportPosition(column) + 5, header->height() / 2});
}

/// Answers the next warning with the button of this name, and tells what it said.
class Answer
{
public:
    explicit Answer(const char *button)
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this, button] {
            auto *dialog = qobject_cast<LayerWarningDialog *>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            m_timer.stop();
            text = dialog->findChild<QLabel *>(QStringLiteral("textLabel"))->text();
            QTest::mouseClick(dialog->findChild<QPushButton *>(QLatin1String(button)),
                              Qt::LeftButton);
        });
        m_timer.start(0);
    }

    QString text;

private:
    QTimer m_timer;
};

void show(QWidget &widget)
{
    widget.resize(900, 400);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
}

} // namespace

class tst_LayerTable : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void model();
    void rowsFollowTheDrawing();
    void frozenViewIsInPlace();
    void flagCells_data();
    void flagCells();
    void currentLayerIsGuarded();
    void otherClicksOnlyNotify();
    void hostReloadsFromInside();
    void cellPixels();
    void sortingKeepsBothHeadersInStep();
    void search_data();
    void search();
    void searchSurvivesSortAndReload();
    void proposedNames_data();
    void proposedNames();
    void addedAndRenamed();
    void completion();
    void removal();
    void setCurrent();
    void scrollPositionStays();
    void columnLayoutIsKept();
    void panelSearchField();
    void panelLabelAndIcons();
    void namesAreData();
    void randomWork();

private:
    std::unique_ptr<OpenDrawing> m_drawing;
    int m_hostCalls = 0;
};

void tst_LayerTable::init()
{
    QSettings(QStringLiteral("Brevik"), QStringLiteral("TessaViewer")).clear();
    m_drawing = std::make_unique<OpenDrawing>(drawingWithLayers({"Walls", "Doors", "wall-1"}));
    m_hostCalls = 0;
    KcHost::setLayerTableChangesHandler([this] { ++m_hostCalls; });
}

void tst_LayerTable::cleanup()
{
    KcHost::setLayerTableChangesHandler(nullptr);
    KcHost::setLayerModifiedHandler(nullptr);
    m_drawing.reset();
    QCOMPARE(KcHost::openObjectCount(), 0);
}

void tst_LayerTable::model()
{
    LayerModel model;
    QSignalSpy counts(&model, &LayerModel::updateCount);
    QSignalSpy changes(&model, &LayerModel::dataChanged);
    model.setHorizontalHeader({"one", "two", "three"});
    model.refrushModel();
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.columnCount(), 3);

    QList<QStringList> rows{{"a", "b", "c"}, {"d"}};
    model.setModalDatas(&rows);
    model.refrushModel();
    QCOMPARE(counts, (QList<QVariantList>{{0}, {2}}));
    QCOMPARE(model.headerData(1, Qt::Horizontal).toString(), QStringLiteral("two"));
    QVERIFY(!model.index(1, 2).data().isValid());
    QVERIFY(!model.index(0, 0).data(Qt::EditRole).isValid());

    QVERIFY(!model.setData(model.index(0, 1), "x", Qt::EditRole));
    QVERIFY(!model.setData(model.index(1, 2), "x", Qt::DisplayRole));
    QCOMPARE(changes.count(), 0);
    QVERIFY(model.setData(model.index(0, 1), 5, Qt::DisplayRole));
    QCOMPARE(rows.at(0).at(1), QStringLiteral("5"));
    QCOMPARE(changes.count(), 1);
    QVERIFY(model.flags(model.index(0, 0)) & Qt::ItemIsEditable);
}

void tst_LayerTable::rowsFollowTheDrawing()
{
    KcHost::setCurrentLayer(**m_drawing, "Doors");
    LayerTableWidget table;
    const QAbstractItemModelTester tester(table.model());
    QCOMPARE(tableRows(table), drawingRows());
    const auto *items = qobject_cast<QStandardItemModel *>(table.model());
    QCOMPARE(items->item(1, Name)->text(), textAt(table, 1, Name));

    QSignalSpy current(&table, &LayerTableWidget::updateCurretnLayer);
    KcHost::setCurrentLayer(**m_drawing, "Walls");
    KcHost::eraseLayer(**m_drawing, "Doors");
    OvLayerUtility().setLayerLock("wall-1", true);
    table.InitLayerModel();
    QCOMPARE(tableRows(table), drawingRows());
    QCOMPARE(current, (QList<QVariantList>{{"Walls"}}));
    QCOMPARE(table.currentIndex().row(), rowOf(table, "Walls"));
    QCOMPARE(table.selectionModel()->selectedRows().size(), 1);

    KcHost::setWorkingDatabase(nullptr);
    table.InitLayerModel();
    QCOMPARE(table.model()->rowCount(), 0);
    QCOMPARE(current.count(), 1);
}

void tst_LayerTable::frozenViewIsInPlace()
{
    LayerTableWidget table;
    show(table);
    const FrozenTableWidget *frozen = frozenOf(table);
    QCOMPARE(frozen->width(), table.columnWidth(Current) + table.columnWidth(Name));
    for (int row = 0; row < table.model()->rowCount(); ++row) {
        QCOMPARE(table.rowHeight(row), 22);
        const QModelIndex name = table.model()->index(row, Name);
        QCOMPARE(frozen->viewport()->mapTo(&table, frozen->visualRect(name).topLeft()),
                 table.viewport()->mapTo(&table, table.visualRect(name).topLeft()));
    }
    table.setColumnWidth(Name, 120);
    QCOMPARE(frozen->columnWidth(Name), 120);
    QCOMPARE(frozen->width(), table.columnWidth(Current) + 120);

    // Walking left, the cell stops right of the frozen columns instead of under them.
    table.resize(300, 200);
    table.setCurrentIndex(table.model()->index(0, 12));
    table.setFocus();
    while (table.currentIndex().column() > On) {
        QTest::keyClick(&table, Qt::Key_Left);
        QVERIFY(table.visualRect(table.currentIndex()).left() >= frozen->width());
    }
}

void tst_LayerTable::flagCells_data()
{
    QTest::addColumn<int>("column");
    QTest::newRow("on") << int(On);
    QTest::newRow("freeze") << int(Thawed);
    QTest::newRow("lock") << int(Unlocked);
    QTest::newRow("plot") << int(Plot);
}

void tst_LayerTable::flagCells()
{
    QFETCH(int, column);
    LayerTableWidget table;
    show(table);
    QSignalSpy changes(&table, &LayerTableWidget::updateLayerCombo);
    const int row = rowOf(table, "Walls");
    for (const char *expected : {"false", "true"}) {
        clickCell(table, row, column);
        QCOMPARE(textAt(table, row, column), QLatin1String(expected));
        QCOMPARE(drawingText("Walls", column), QLatin1String(expected));
    }
    // The press and the release of each click.
    QCOMPARE(changes.count(), 4);
    QCOMPARE(m_hostCalls, 4);
    QCOMPARE(tableRows(table), drawingRows());
}

void tst_LayerTable::currentLayerIsGuarded()
{
    LayerTableWidget table;
    show(table);
    const int row = rowOf(table, "0");
    {
        const Answer no("noBtn");
        clickCell(table, row, On);
        QCOMPARE(no.text, QStringLiteral("The current layer is turned off."));
        QCOMPARE(drawingText("0", On), QStringLiteral("true"));
        QCOMPARE(textAt(table, row, On), QStringLiteral("true"));
    }
    {
        const Answer yes("okBtn");
        clickCell(table, row, On);
        QCOMPARE(drawingText("0", On), QStringLiteral("false"));
        QCOMPARE(textAt(table, row, On), QStringLiteral("false"));
    }
    clickCell(table, row, On);
    QCOMPARE(drawingText("0", On), QStringLiteral("true"));

    const Answer notice("noBtn");
    clickCell(table, row, Thawed);
    QCOMPARE(notice.text, QStringLiteral("The current layer can't be frozen!"));
    QCOMPARE(tableRows(table), drawingRows());
}

void tst_LayerTable::otherClicksOnlyNotify()
{
    LayerTableWidget table;
    show(table);
    const QList<QStringList> before = tableRows(table);
    clickCell(table, 1, On, Qt::RightButton);
    clickCell(table, 1, Color);
    QCOMPARE(m_hostCalls, 4);
    m_hostCalls = 0;
    QTest::mousePress(frozenOf(table)->viewport(), Qt::LeftButton, {}, {5, 5});
    QCOMPARE(m_hostCalls, 0);
    QTest::mouseDClick(table.viewport(), Qt::LeftButton, {},
                       table.visualRect(table.model()->index(1, 12)).center());
    QVERIFY(!table.findChild<QLineEdit *>());
    QCOMPARE(tableRows(table), before);
    QCOMPARE(drawingRows(), before);
}

void tst_LayerTable::hostReloadsFromInside()
{
    LayerManager panel;
    show(panel);
    auto *table = panel.findChild<LayerTableWidget *>();
    int reloads = 0;
    const auto reload = [&] {
        panel.slotUpLayerModel();
        ++reloads;
    };
    KcHost::setLayerTableChangesHandler(reload);
    KcHost::setLayerModifiedHandler([&](const QString &) { reload(); });
    connect(&panel, &LayerManager::layerManagerChanged, reload);
    connect(table, &LayerTableWidget::updateCurretnLayer, reload);
    connect(&panel, &LayerManager::layerAdded, reload);
    for (const int column : {On, Thawed, Unlocked, Plot, Color})
        clickCell(*table, rowOf(*table, "Walls"), column);
    const Answer yes("okBtn");
    clickCell(*table, rowOf(*table, "0"), On);
    QVERIFY(reloads > 20);
    QCOMPARE(tableRows(*table), drawingRows());

    QMetaObject::invokeMethod(&panel, "slotNewLayer");
    QTest::keyClick(openEditor(*frozenOf(*table)), Qt::Key_Return);
    QCOMPARE(tableRows(*table), drawingRows());
}

void tst_LayerTable::cellPixels()
{
    LayerDelegate delegate;
    QStandardItemModel model(1, 13);
    QStyleOptionViewItem option;
    option.rect = QRect(0, 0, 60, 22);
    const auto painted = [&](int column, const QString &text) {
        model.setData(model.index(0, column), text);
        QImage image(60, 22, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        QPainter painter(&image);
        delegate.paint(&painter, option, model.index(0, column));
        return image;
    };
    QImage expected(60, 22, QImage::Format_ARGB32_Premultiplied);
    const auto compose = [&](const QPoint &place, const QPixmap &picture) {
        expected.fill(Qt::white);
        QPainter(&expected).drawPixmap(place, picture);
        return expected;
    };
    QImage empty(60, 22, QImage::Format_ARGB32_Premultiplied);
    empty.fill(Qt::white);

    QCOMPARE(painted(On, "true"), compose({22, 3}, loadImage(":/core_ccvon.bmp")));
    QCOMPARE(painted(On, "false"), compose({22, 3}, loadImage(":/core_ccvoff.bmp")));
    QCOMPARE(painted(Current, marker), compose({22, 3}, loadImage(marker)));
    QCOMPARE(painted(Current, ""), empty);
    QCOMPARE(painted(Color, "ll*;1,2,3"), compose({2, 4}, creatColorPix(QColor(1, 2, 3))));
    QCOMPARE(painted(Color, "no star"), compose({2, 4}, creatColorPix(Qt::black)));
    QCOMPARE(painted(Color, "ll*"), painted(Color, "none"));
    QVERIFY(painted(Color, "ll*red") != painted(Color, "ll*"));
    QCOMPARE(painted(Weight, "").copy(0, 0, 22, 22), [&] {
        expected.fill(Qt::white);
        QPainter(&expected).drawPixmap(QRect(2, 3, 20, 16), drawLineWeight(0));
        return expected.copy(0, 0, 22, 22);
    }());
    for (const auto &[label, width] : {std::pair<const char *, int>{"Default", 1},
                                       {"0.25 mm", 1},
                                       {"0.30 mm", 2},
                                       {"0.40 mm", 2},
                                       {"0.50 mm", 3},
                                       {"2.11 mm", 15},
                                       {"thick", 0}})
        QCOMPARE(delegate.lineWeightIndexMap(QLatin1String(label)), width);

    option.state = QStyle::State_Selected;
    QCOMPARE(painted(Current, "").pixelColor(30, 11), option.palette.color(QPalette::Highlight));
    option.state |= QStyle::State_HasFocus;
    QCOMPARE(painted(On, "true").pixelColor(1, 1), QColor(Qt::white));
    QCOMPARE(painted(Current, "").pixelColor(1, 1), option.palette.color(QPalette::Highlight));
}

void tst_LayerTable::sortingKeepsBothHeadersInStep()
{
    LayerTableWidget table;
    show(table);
    OvLayerUtility().setLayerOff("Walls", false);
    table.InitLayerModel();
    const QStringList ascending = namesOf(table);
    const auto indicator = [&](const QTableView &view) {
        return qMakePair(view.horizontalHeader()->sortIndicatorSection(),
                         view.horizontalHeader()->sortIndicatorOrder());
    };
    clickHeader(table, On);
    QCOMPARE(textAt(table, 0, Name), QStringLiteral("Walls"));
    QCOMPARE(indicator(*frozenOf(table)), indicator(table));

    clickHeader(*frozenOf(table), Name);
    clickHeader(*frozenOf(table), Name);
    QCOMPARE(indicator(*frozenOf(table)), indicator(table));
    QStringList descending = ascending;
    std::reverse(descending.begin(), descending.end());
    QCOMPARE(namesOf(table), descending);

    table.InitLayerModel();
    QCOMPARE(namesOf(table), ascending);
    QCOMPARE(indicator(table), qMakePair(int(Name), Qt::AscendingOrder));
    QCOMPARE(indicator(*frozenOf(table)), indicator(table));
}

void tst_LayerTable::search_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("shown");
    QTest::newRow("nothing") << "" << QStringList{"0", "Outer wall", "Walls", "a*b*c", "wall-1"};
    QTest::newRow("beginning") << "Wall" << QStringList{"Walls", "wall-1"};
    QTest::newRow("end") << "*wall" << QStringList{"Outer wall"};
    QTest::newRow("beginning by star") << "o*" << QStringList{"Outer wall"};
    QTest::newRow("both") << "w*1" << QStringList{"wall-1"};
    QTest::newRow("all") << "*" << QStringList{"0", "Outer wall", "Walls", "a*b*c", "wall-1"};
    QTest::newRow("two stars") << "a*b*c" << QStringList{"a*b*c"};
    QTest::newRow("plain star behind a leading one") << "**c" << QStringList{"a*b*c"};
    QTest::newRow("plain star before a trailing one") << "a*b*" << QStringList{"a*b*c"};
    QTest::newRow("no one") << "x" << QStringList();
}

void tst_LayerTable::search()
{
    QFETCH(QString, text);
    QFETCH(QStringList, shown);
    LayerTableWidget table;
    auto *model = table.model();
    const QStringList names{"0", "Outer wall", "Walls", "a*b*c", "wall-1"};
    model->removeRows(0, model->rowCount());
    for (int row = 0; row < names.size(); ++row) {
        QVERIFY(table.insertRowData(row));
        model->setData(model->index(row, Name), names.at(row));
    }
    table.slotSearchLayer("zzz");
    table.slotSearchLayer(text);
    QCOMPARE(shownNames(table), shown);
    QCOMPARE(shownNames(*frozenOf(table)), shown);
}

void tst_LayerTable::searchSurvivesSortAndReload()
{
    LayerManager panel;
    show(panel);
    const auto *table = panel.findChild<LayerTableWidget *>();
    QTest::keyClicks(panel.findChild<SearchLayerEdit *>(), "wall");
    QCOMPARE(shownNames(*table), (QStringList{"Walls", "wall-1"}));
    clickHeader(*frozenOf(*table), Name);
    QCOMPARE(shownNames(*table), (QStringList{"wall-1", "Walls"}));
    QCOMPARE(shownNames(*frozenOf(*table)), shownNames(*table));

    KcHost::addLayer(**m_drawing, "Wallpaper");
    panel.slotUpLayerModel();
    QCOMPARE(shownNames(*table), (QStringList{"Wallpaper", "Walls", "wall-1"}));
    QCOMPARE(shownNames(*frozenOf(*table)), shownNames(*table));
}

void tst_LayerTable::proposedNames_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("proposed");
    QTest::newRow("one row") << QStringList{"0"} << "Layer1";
    QTest::newRow("no row") << QStringList() << "Layer0";
    QTest::newRow("none of the form") << QStringList{"0", "Walls"} << "Layer1";
    QTest::newRow("a gap") << QStringList{"0", "Layer1", "Layer2", "Layer4"} << "Layer3";
    QTest::newRow("no first") << QStringList{"0", "Layer2", "Layer3"} << "Layer1";
    QTest::newRow("no gap, any case") << QStringList{"0", "LAYER2", "layer1"} << "Layer3";
    QTest::newRow("leading zero") << QStringList{"0", "Layer1", "layer02"} << "Layer2";
    QTest::newRow("first row left out") << QStringList{"Layer1", "x"} << "Layer1";
    QTest::newRow("no number") << QStringList{"0", "Layer", "Layer1a", "Layer99999999999"}
                               << "Layer1";
}

void tst_LayerTable::proposedNames()
{
    QFETCH(QStringList, names);
    QFETCH(QString, proposed);
    LayerTableWidget table;
    auto *model = table.model();
    model->removeRows(0, model->rowCount());
    for (int row = 0; row < names.size(); ++row) {
        table.insertRowData(row);
        model->setData(model->index(row, Name), names.at(row));
    }
    table.addLayer();
    QCOMPARE(textAt(table, names.size(), Name), proposed);
}

void tst_LayerTable::addedAndRenamed()
{
    LayerTableWidget table;
    show(table);
    QSignalSpy added(&table, &LayerTableWidget::layerAdded);
    QSignalSpy renamed(&table, &LayerTableWidget::layerRenamed);
    FrozenTableWidget *frozen = frozenOf(table);
    const auto editor = [&] { return openEditor(*frozen); };

    table.addLayer();
    const int row = table.model()->rowCount() - 1;
    QTRY_VERIFY(editor() && editor()->hasFocus());
    QCOMPARE(editor()->text(), QStringLiteral("Layer1"));
    QCOMPARE(textAt(table, row, Current), QStringLiteral("false"));
    QTest::keyClicks(editor(), "Roof");
    QTest::keyClick(editor(), Qt::Key_Return);
    QTRY_VERIFY(!editor());
    QCOMPARE(added, (QList<QVariantList>{{"Roof"}}));

    table.addLayer();
    QTest::keyClick(editor(), Qt::Key_Escape);
    QTRY_VERIFY(!editor());
    QCOMPARE(added.count(), 2);
    QCOMPARE(added.at(1).at(0).toString(), QStringLiteral("Layer1"));

    // None of them begins like another name: an open list of completions would take the key.
    for (const auto &[name, key] : {std::pair<const char *, Qt::Key>{"Attic", Qt::Key_Return},
                                    {"Basement", Qt::Key_Tab},
                                    {"Garage", Qt::Key_Escape}}) {
        frozen->edit(table.model()->index(row, Name));
        editor()->selectAll();
        QTest::keyClicks(editor(), QLatin1String(name));
        QTest::keyClick(editor(), key);
        QTRY_VERIFY(!editor());
    }
    QCOMPARE(renamed, (QList<QVariantList>{{"Roof", "Attic"}, {"Attic", "Basement"}}));

    // Leaving the editor ends it, too.
    frozen->edit(table.model()->index(row, Name));
    QTest::keyClicks(editor(), "Hall");
    table.setFocus();
    QTRY_VERIFY(!editor());
    QCOMPARE(renamed.count(), 3);
    QCOMPARE(added.count(), 2);
}

void tst_LayerTable::completion()
{
    LayerTableWidget table;
    show(table);
    frozenOf(table)->edit(table.model()->index(1, Name));
    const auto *completer = frozenOf(table)->findChild<QLineEdit *>()->completer();
    QStringList offered;
    for (int row = 0; row < completer->model()->rowCount(); ++row)
        offered.append(completer->model()->index(row, 0).data().toString());
    QCOMPARE(offered, namesOf(table).mid(1));
}

void tst_LayerTable::removal()
{
    for (int number = 0; number < 20; ++number)
        KcHost::addLayer(**m_drawing, QStringLiteral("Layer%1").arg(number, 2, 10, QChar('0')));
    LayerTableWidget table;
    const QAbstractItemModelTester tester(table.model());
    show(table);
    table.sortByColumn(Name, Qt::DescendingOrder);
    QStringList names = namesOf(table);
    QSignalSpy removed(&table, &LayerTableWidget::layersRemoved);
    const QPersistentModelIndex kept = table.model()->index(15, On);

    table.clearSelection();
    table.remove();
    QCOMPARE(removed.count(), 0);
    QItemSelection selection;
    QStringList gone;
    for (const int row : {3, 4, 9, 23}) {
        selection.select(table.model()->index(row, 0), table.model()->index(row, 12));
        gone.append(names.at(row));
    }
    table.selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    table.remove();
    for (const QString &name : qAsConst(gone))
        names.removeOne(name);
    QCOMPARE(removed, (QList<QVariantList>{{gone}}));
    QCOMPARE(namesOf(table), names);
    QCOMPARE(kept.row(), 12);
    QCOMPARE(namesOf(*frozenOf(table)), names);
}

void tst_LayerTable::setCurrent()
{
    LayerTableWidget table;
    QSignalSpy current(&table, &LayerTableWidget::updateCurretnLayer);
    table.selectRow(2);
    table.setCurrentLayer();
    QCOMPARE(textAt(table, 2, Current), marker);
    QCOMPARE(textAt(table, 0, Current), QString());
    table.setCurrentLayer();
    table.selectRow(1);
    table.setCurrentLayer();
    QCOMPARE(textAt(table, 2, Current), QString());
    table.clearSelection();
    table.setCurrentLayer();
    QCOMPARE(current, (QList<QVariantList>{{textAt(table, 2, Name)}, {textAt(table, 1, Name)}}));
}

void tst_LayerTable::scrollPositionStays()
{
    for (int number = 0; number < 300; ++number)
        KcHost::addLayer(**m_drawing, QStringLiteral("Layer%1").arg(number));
    LayerTableWidget table;
    show(table);
    QTRY_VERIFY(table.verticalScrollBar()->maximum() > 3000);
    frozenOf(table)->verticalScrollBar()->setValue(2000);
    QCOMPARE(table.verticalScrollBar()->value(), 2000);
    table.InitLayerModel();
    QCOMPARE(table.verticalScrollBar()->value(), 2000);
    QCOMPARE(frozenOf(table)->verticalScrollBar()->value(), 2000);
}

void tst_LayerTable::columnLayoutIsKept()
{
    const QStringList actionTitles{
            "Name",       "On",         "Freeze",     "Lock", "Color",
            "Linetype",   "Lineweight", "Plot Style", "Plot", "New Viewport Freeze",
            "Description"};
    for (int run = 0; run < 3; ++run) {
        LayerTableWidget table;
        show(table);
        const QList<LayerAction *> actions = table.findChildren<LayerAction *>();
        QStringList titles;
        for (const LayerAction *action : actions)
            titles.append(action->text());
        QCOMPARE(titles, actionTitles);
        QCOMPARE(table.model()->columnCount(), 13);
        QCOMPARE(headerList.size() % 13, 0);
        QVERIFY(table.isColumnHidden(11));
        QCOMPARE(actions.at(0)->isEnabled(), run > 0);
        QCOMPARE(table.isColumnHidden(PlotStyle), run > 0);
        if (run == 2) {
            actions.at(0)->trigger();
            QVERIFY(table.isColumnHidden(Name));
            QVERIFY(!frozenOf(table)->isColumnHidden(Name));
        }
        if (run == 0) {
            // Through the menu, as the user does.
            QTimer::singleShot(0, &table, [&] {
                auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
                QTest::mouseClick(menu, Qt::LeftButton, {},
                                  menu->actionGeometry(actions.at(7)).center());
            });
            QContextMenuEvent event(QContextMenuEvent::Mouse, {5, 5});
            QApplication::sendEvent(table.horizontalHeader()->viewport(), &event);
            QVERIFY(table.isColumnHidden(PlotStyle));
        }
    }
    QSettings settings(QStringLiteral("Brevik"), QStringLiteral("TessaViewer"));
    QCOMPARE(settings.value("Plot Style/isChecked").toBool(), false);
    QCOMPARE(settings.value("Name/isChecked").toBool(), false);
    QCOMPARE(settings.value("Color/isEnabled").toBool(), true);
    QCOMPARE(settings.childGroups().size(), actionTitles.size());

    LayerAction stranger(QStringLiteral("x"), nullptr);
    stranger.setObjectName(QStringLiteral("no title"));
    QSignalSpy triggered(&stranger, &LayerAction::layerTriggered);
    stranger.trigger();
    QCOMPARE(triggered.count(), 0);
}

void tst_LayerTable::panelSearchField()
{
    LayerManager panel;
    show(panel);
    const auto *table = panel.findChild<LayerTableWidget *>();
    auto *edit = panel.findChild<SearchLayerEdit *>();
    auto *button = edit->findChild<QPushButton *>(QStringLiteral("searchBtn"));
    QSignalSpy searches(edit, &SearchLayerEdit::searchTextChanged);
    const auto shownImage = [&] { return button->icon().pixmap(button->iconSize()).toImage(); };
    const QImage magnifier = loadImage(":/IDB_LAYER_SEARCH.bmp").toImage();
    QVERIFY(!magnifier.isNull());
    QVERIFY(button->height() <= 16);
    QCOMPARE(shownImage(), magnifier);

    edit->setFocus();
    QTest::keyClicks(edit, "a*");
    QVERIFY(shownImage() != magnifier);
    table->findChild<FrozenTableWidget *>()->setFocus();
    QCOMPARE(edit->text(), QStringLiteral("a*"));
    QCOMPARE(shownNames(*table), QStringList());
    QCOMPARE(searches.count(), 2);

    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(shownImage(), magnifier);
    QCOMPARE(shownNames(*table), namesOf(*table));
    QCOMPARE(shownNames(*frozenOf(*table)), namesOf(*table));
    QCOMPARE(searches.count(), 3);

    edit->setFocus();
    QTest::keyClicks(edit, "*");
    table->findChild<FrozenTableWidget *>()->setFocus();
    QTRY_COMPARE(edit->text(), QString());
    QCOMPARE(searches.constLast().at(0).toString(), QString());
}

void tst_LayerTable::panelLabelAndIcons()
{
    LayerManager panel;
    QCOMPARE(panel.sizeHint(), QSize(300, 500));
    const auto *label = panel.findChild<QLabel *>();
    QCOMPARE(label->text(), QStringLiteral("Current layer: 0"));
    KcHost::setCurrentLayer(**m_drawing, "Walls");
    panel.slotUpLayerModel();
    QCOMPARE(label->text(), QStringLiteral("Current layer: Walls"));

    QList<QImage> icons;
    for (const auto icon : {LayerManager::NewLayerIcon, LayerManager::DeleteLayerIcon,
                            LayerManager::CurrentLayerIcon, LayerManager::RefreshIcon}) {
        const QImage image = panel.drawIcon(icon, {16, 16}).toImage();
        QVERIFY(!icons.contains(image));
        icons.append(image);
    }
    // No separator is cut along.
    const QImage strip = loadImage(":/layertoolbar.bmp").toImage();
    QCOMPARE(strip.size(), QSize(4 * 17 + 1, 16));
    for (int x = 0; x < strip.width(); x += 17) {
        for (int y = 0; y < strip.height(); ++y)
            QCOMPARE(qAlpha(strip.pixel(x, y)), 0);
    }
}

void tst_LayerTable::namesAreData()
{
    const QStringList names{QString(),
                            QString(255, 'x'),
                            QStringLiteral("a*;\"b\"'"),
                            QStringLiteral("two\nlines"),
                            QString::fromUtf8("\xd7\x90\xd7\x91\xd7\x92"),
                            QStringLiteral("%1 <b>&amp;</b>")};
    LayerTableWidget table;
    show(table);
    for (const QString &name : names) {
        const int row = table.model()->rowCount();
        table.insertRowData(row);
        table.model()->setData(table.model()->index(row, Name), name);
    }
    table.sortByColumn(Name, Qt::DescendingOrder);
    for (const QString &name : names) {
        table.slotSearchLayer(name);
        QVERIFY(shownNames(table).contains(name) || name.contains('*'));
        table.slotSearchLayer(QString());
        clickCell(table, rowOf(table, name), Unlocked);
        QVERIFY(!table.grab().isNull());
    }
}

void tst_LayerTable::randomWork()
{
    QRandomGenerator random(20261121);
    LayerManager panel;
    show(panel);
    auto *table = panel.findChild<LayerTableWidget *>();
    FrozenTableWidget *frozen = frozenOf(*table);
    connect(&panel, &LayerManager::layerAdded, this,
            [&](const QString &name) { KcHost::addLayer(**m_drawing, name); });
    connect(&panel, &LayerManager::layersRemoved, this, [&](const QStringList &names) {
        for (const QString &name : names)
            KcHost::eraseLayer(**m_drawing, name);
        panel.slotUpLayerModel();
    });
    QTimer answers;
    connect(&answers, &QTimer::timeout, &answers, [] {
        if (QWidget *dialog = QApplication::activeModalWidget())
            QTest::keyClick(dialog, Qt::Key_Escape);
    });
    answers.start(0);

    for (int step = 0; step < 1000; ++step) {
        const int rows = table->model()->rowCount();
        switch (random.bounded(9)) {
        case 0:
            QMetaObject::invokeMethod(&panel, "slotNewLayer");
            if (QLineEdit *editor = openEditor(*frozen))
                QTest::keyClick(editor, random.bounded(2) ? Qt::Key_Return : Qt::Key_Escape);
            break;
        case 1:
            table->selectRow(random.bounded(rows));
            QMetaObject::invokeMethod(&panel, "slotDeleteLayer");
            break;
        case 2:
            clickHeader(*table, On + random.bounded(9));
            break;
        case 3:
            clickHeader(*frozen, Name);
            break;
        case 4:
            panel.findChild<SearchLayerEdit *>()->setText(
                    QStringList{"", "l", "*1", "w*"}.at(random.bounded(4)));
            break;
        case 5:
            panel.slotUpLayerModel();
            break;
        case 6:
            QTest::keyClick(frozen, random.bounded(2) ? Qt::Key_Down : Qt::Key_Up);
            break;
        default:
            clickCell(*table, random.bounded(rows), On + random.bounded(11));
        }
    }
    panel.findChild<SearchLayerEdit *>()->clear();
    panel.slotUpLayerModel();
    QCOMPARE(tableRows(*table), drawingRows());
    QCOMPARE(namesOf(*frozen), namesOf(*table));
    QCOMPARE(KcHost::openObjectCount(), 0);
}

QTEST_MAIN(tst_LayerTable)
#include "tst_layertable.moc"
