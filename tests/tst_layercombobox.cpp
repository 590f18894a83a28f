#include "Support.h"

#include <OvCustomControl/OvCustomControl.h>

#include <QJsonArray>
#include <QLabel>
#include <QLayout>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QWindow>

using namespace OvCc;

namespace {

/// The buttons of a row, in the order of statusChanged()'s index; the colour comes last.
enum Button { Light, Freeze, Lock, Color };

QPushButton *buttonOf(const LayerItem *row, Button button)
{
    return row->findChildren<QPushButton *>().at(button);
}

QListWidget *listOf(const LayerComboBox &combo)
{
    return qobject_cast<QListWidget *>(combo.view());
}

QList<LayerItem *> rowsOf(const LayerComboBox &combo)
{
    const QListWidget *list = listOf(combo);
    QList<LayerItem *> rows;
    for (int row = 0; row < list->count(); ++row)
        rows.append(qobject_cast<LayerItem *>(list->itemWidget(list->item(row))));
    return rows;
}

QStringList namesOf(const LayerComboBox &combo)
{
    QStringList names;
    const QList<LayerItem *> rows = rowsOf(combo);
    for (const LayerItem *row : rows)
        names.append(row->layerName());
    return names;
}

/// Clicks as the window system does, so that a popup in between gets its part of the events.
void clickOnFace(LayerComboBox &combo)
{
    const QWidget *face = combo.lineEdit();
    QTest::mouseClick(combo.window()->windowHandle(), Qt::LeftButton, {},
                      face->mapTo(combo.window(), face->rect().center()));
}

/// Opens the drop-down as a user does.
void openPopup(LayerComboBox &combo)
{
    combo.show();
    QVERIFY(QTest::qWaitForWindowExposed(&combo));
    clickOnFace(combo);
    QVERIFY(QTest::qWaitForWindowExposed(combo.view()->window()));
    QVERIFY(combo.view()->isVisible());
}

void clickInPopup(LayerComboBox &combo, int row, Button button)
{
    QListWidget *list = listOf(combo);
    list->scrollToItem(list->item(row));
    QTest::mouseClick(buttonOf(rowsOf(combo).at(row), button), Qt::LeftButton);
}

QStringList drawingNames()
{
    QStringList names;
    const std::unique_ptr<QList<LayerItemData>> layers(OvLayerUtility().getAllLayer());
    for (const LayerItemData &layer : qAsConst(*layers))
        names.append(layer.name);
    return names;
}

QImage shownOn(const QLabel *label)
{
    return label->pixmap(Qt::ReturnByValue).toImage();
}

QImage shownOn(const QPushButton *button)
{
    return button->icon().pixmap(button->iconSize()).toImage();
}

QImage statusImage(const char *name)
{
    return loadImage(QStringLiteral(":/core_cc%1.bmp").arg(QLatin1String(name))).toImage();
}

/// The face's labels from left to right: light, freeze, lock, colour, name.
QList<QLabel *> labelsOf(const LayerEdit &face)
{
    QList<QLabel *> labels;
    for (int place = 0; place < face.layout()->count(); ++place) {
        if (auto *label = qobject_cast<QLabel *>(face.layout()->itemAt(place)->widget()))
            labels.append(label);
    }
    return labels;
}

LayerItemData layerNamed(const QString &name)
{
    const std::unique_ptr<QList<LayerItemData>> layers(OvLayerUtility().getAllLayer());
    for (const LayerItemData &layer : qAsConst(*layers)) {
        if (layer.name == name)
            return layer;
    }
    return {};
}

} // namespace

class tst_LayerComboBox : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void itemNames();
    void itemTogglesFollowTheRecord();
    void faceParts_data();
    void faceParts();

    void fill();
    void faceFollowsTheCurrentLayer();
    void togglesOfAnotherLayerAreSilent();
    void togglesOfTheCurrentLayerAreTold();
    void colorButtonDoesNothing();
    void choosingARowKeepsTheFace();
    void pressOnTheFaceOpensAndCloses();
    void rowsStayWherePossible_data();
    void rowsStayWherePossible();
    void hostReloadsFromInside();
    void scrollPositionStays();
    void closedDrawing();
    void currentLayerOpenElsewhere();
    void writtenChangesReadBack();
    void randomClicks();

private:
    std::unique_ptr<OpenDrawing> m_drawing;
    int m_hostCalls = 0;
};

void tst_LayerComboBox::init()
{
    m_drawing = std::make_unique<OpenDrawing>(
            drawingWithLayers({QStringLiteral("Doors"), QStringLiteral("Walls")}));
    m_hostCalls = 0;
    KcHost::setLayerTableChangesHandler([this] { ++m_hostCalls; });
}

void tst_LayerComboBox::cleanup()
{
    KcHost::setLayerTableChangesHandler(nullptr);
    m_drawing.reset();
    QCOMPARE(KcHost::openObjectCount(), 0);
}

void tst_LayerComboBox::itemNames()
{
    LayerItem item(nullptr);
    const QString ten = QStringLiteral("abcdefghij");
    item.setLayerName(ten);
    QCOMPARE(item.layerName(), ten);
    item.setLayerName(ten + QLatin1Char('k'));
    QCOMPARE(item.layerName(), QStringLiteral("abcdefghi..."));
    QCOMPARE(item.currentLayerData().name, QStringLiteral("layer0"));

    LayerItemData layer;
    layer.name = QStringLiteral("<b>%1;*</b>").arg(ten);
    item.setCurrentLayer(layer);
    QCOMPARE(item.layerName(), layer.name);
    QCOMPARE(item.findChild<QLabel *>()->textFormat(), Qt::PlainText);
}

void tst_LayerComboBox::itemTogglesFollowTheRecord()
{
    LayerItem item(nullptr);
    QSignalSpy changes(&item, &LayerItem::statusChanged);
    LayerItemData layer = layerNamed(QStringLiteral("Walls"));
    layer.isFrozen = true;
    item.setCurrentLayer(layer);
    QCOMPARE(shownOn(buttonOf(&item, Freeze)), statusImage("frz"));
    QCOMPARE(shownOn(buttonOf(&item, Light)), statusImage("von"));
    QCOMPARE(shownOn(buttonOf(&item, Lock)), statusImage("ulk"));

    QTest::mouseClick(buttonOf(&item, Freeze), Qt::LeftButton);
    QCOMPARE(shownOn(buttonOf(&item, Freeze)), statusImage("thw"));
    QTest::mouseClick(buttonOf(&item, Freeze), Qt::LeftButton);
    QVERIFY(layerNamed(layer.name).isFrozen);
    QTest::mouseClick(buttonOf(&item, Light), Qt::LeftButton);
    QVERIFY(!layerNamed(layer.name).isOn);
    QTest::mouseClick(buttonOf(&item, Lock), Qt::LeftButton);
    QVERIFY(layerNamed(layer.name).isLocked);

    QCOMPARE(changes.count(), 4);
    QCOMPARE(changes.at(0).at(0).toInt(), 1);
    QVERIFY(!changes.at(0).at(1).value<LayerItemData>().isFrozen);
    QCOMPARE(changes.at(2).at(0).toInt(), 0);
    QCOMPARE(changes.at(3).at(0).toInt(), 2);
    QVERIFY(changes.at(3).at(1).value<LayerItemData>().isLocked);
}

void tst_LayerComboBox::faceParts_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QList<bool>>("updates");

    QTest::newRow("below") << -1 << QList<bool>{false, false, false, false, false};
    QTest::newRow("on/off") << 0 << QList<bool>{true, true, true, false, false};
    QTest::newRow("freeze") << 1 << QList<bool>{false, true, true, false, false};
    QTest::newRow("lock") << 2 << QList<bool>{false, false, true, false, false};
    QTest::newRow("color") << 3 << QList<bool>{false, false, false, true, false};
    QTest::newRow("name") << 4 << QList<bool>{false, false, false, false, true};
    QTest::newRow("above") << 5 << QList<bool>{false, false, false, false, false};
}

void tst_LayerComboBox::faceParts()
{
    QFETCH(int, index);
    QFETCH(QList<bool>, updates);
    LayerEdit face(nullptr);
    const LayerItemData before = layerNamed(QStringLiteral("Walls"));
    face.setCurrentLayer(before);

    LayerItemData after;
    after.isLocked = after.isFrozen = true;
    after.color = Qt::red;
    after.name = QStringLiteral("New");
    face.setLabelChange(index, after);
    const QList<QLabel *> labels = labelsOf(face);
    QCOMPARE(labels.size(), 5);
    QCOMPARE(shownOn(labels.at(0)), statusImage(updates.at(0) ? "voff" : "von"));
    QCOMPARE(shownOn(labels.at(1)), statusImage(updates.at(1) ? "frz" : "thw"));
    QCOMPARE(shownOn(labels.at(2)), statusImage(updates.at(2) ? "lk" : "ulk"));
    QCOMPARE(shownOn(labels.at(3)),
             creatColorPix(updates.at(3) ? after.color : before.color).toImage());
    QCOMPARE(labels.at(4)->text(), updates.at(4) ? after.name : before.name);
    QVERIFY(face.text().isEmpty());
}

void tst_LayerComboBox::fill()
{
    LayerComboBox combo;
    QCOMPARE(combo.count(), 0);
    KcHost::setCurrentLayer(**m_drawing, QStringLiteral("Walls"));
    combo.slotUpdate();
    QCOMPARE(combo.size(), QSize(150, 20));
    QCOMPARE(namesOf(combo), drawingNames());
    QCOMPARE(combo.getDisplayItem(), 2);
    QCOMPARE(listOf(combo)->currentRow(), 2);
    QCOMPARE(combo.currentIndex(), 0);
    QVERIFY(!combo.view()->hasMouseTracking());
    QVERIFY(combo.lineEdit()->isReadOnly());

    openPopup(combo);
    for (int row = 0; row < 3; ++row)
        QCOMPARE(listOf(combo)->visualItemRect(listOf(combo)->item(row)).height(), 25);
}

void tst_LayerComboBox::faceFollowsTheCurrentLayer()
{
    LayerComboBox combo;
    combo.slotUpdate();
    const auto *face = qobject_cast<LayerEdit *>(combo.lineEdit());
    QCOMPARE(labelsOf(*face).at(4)->text(), QStringLiteral("0"));
    KcHost::setCurrentLayer(**m_drawing, QStringLiteral("Doors"));
    OvLayerUtility().setLayerLock(QStringLiteral("Doors"), true);
    combo.slotUpdate();
    QCOMPARE(labelsOf(*face).at(4)->text(), QStringLiteral("Doors"));
    QCOMPARE(shownOn(labelsOf(*face).at(2)), statusImage("lk"));
}

void tst_LayerComboBox::togglesOfAnotherLayerAreSilent()
{
    LayerComboBox combo;
    combo.slotUpdate();
    QSignalSpy changes(&combo, &LayerComboBox::layerComboBoxChanged);
    openPopup(combo);
    clickInPopup(combo, 2, Light);
    clickInPopup(combo, 2, Freeze);
    clickInPopup(combo, 2, Lock);
    const LayerItemData walls = layerNamed(QStringLiteral("Walls"));
    QVERIFY(!walls.isOn && walls.isFrozen && walls.isLocked);
    QVERIFY(combo.view()->isVisible());
    QCOMPARE(changes.count(), 0);
    QCOMPARE(m_hostCalls, 0);
}

void tst_LayerComboBox::togglesOfTheCurrentLayerAreTold()
{
    LayerComboBox combo;
    combo.slotUpdate();
    const QList<QLabel *> labels = labelsOf(*qobject_cast<LayerEdit *>(combo.lineEdit()));
    QSignalSpy changes(&combo, &LayerComboBox::layerComboBoxChanged);
    openPopup(combo);

    clickInPopup(combo, 0, Light);
    QVERIFY(!layerNamed(QStringLiteral("0")).isOn);
    QCOMPARE(shownOn(labels.at(0)), statusImage("voff"));
    QCOMPARE(changes.count(), 1);
    QCOMPARE(m_hostCalls, 1);

    // The drawing refuses to freeze its current layer; the row shows the wish until it is reloaded.
    clickInPopup(combo, 0, Freeze);
    QVERIFY(!layerNamed(QStringLiteral("0")).isFrozen);
    QCOMPARE(shownOn(labels.at(1)), statusImage("frz"));
    QCOMPARE(changes.count(), 2);
    combo.slotUpdate();
    QCOMPARE(shownOn(labels.at(1)), statusImage("thw"));
    QCOMPARE(shownOn(buttonOf(rowsOf(combo).at(0), Freeze)), statusImage("thw"));
    QCOMPARE(changes.count(), 2);
    QCOMPARE(m_hostCalls, 2);
}

void tst_LayerComboBox::colorButtonDoesNothing()
{
    LayerComboBox combo;
    combo.slotUpdate();
    QSignalSpy rowChanges(rowsOf(combo).at(0), &LayerItem::statusChanged);
    openPopup(combo);
    clickInPopup(combo, 0, Color);
    QCOMPARE(rowChanges.count(), 0);
    QCOMPARE(m_hostCalls, 0);
}

void tst_LayerComboBox::choosingARowKeepsTheFace()
{
    LayerComboBox combo;
    combo.slotUpdate();
    openPopup(combo);
    const QRect row = listOf(combo)->visualItemRect(listOf(combo)->item(2));
    QTest::mouseClick(listOf(combo)->viewport(), Qt::LeftButton, {}, row.center() + QPoint(60, 0));
    QTRY_VERIFY(!combo.view()->isVisible());
    QCOMPARE(combo.currentIndex(), 2);
    const auto *face = qobject_cast<LayerEdit *>(combo.lineEdit());
    QCOMPARE(labelsOf(*face).at(4)->text(), QStringLiteral("0"));
    QVERIFY(face->text().isEmpty());
}

void tst_LayerComboBox::pressOnTheFaceOpensAndCloses()
{
    LayerComboBox combo;
    combo.slotUpdate();
    openPopup(combo);
    QWidget *popup = combo.view()->window();
    const QPoint face = combo.lineEdit()->mapToGlobal(combo.lineEdit()->rect().center());
    QTest::mousePress(popup, Qt::LeftButton, {}, popup->mapFromGlobal(face));
    QTRY_VERIFY(!popup->isVisible());
    QVERIFY(popup->testAttribute(Qt::WA_NoMouseReplay));
}

void tst_LayerComboBox::rowsStayWherePossible_data()
{
    QTest::addColumn<QStringList>("added");
    QTest::addColumn<QStringList>("erased");
    QTest::addColumn<QStringList>("kept");

    QStringList many;
    for (int number = 0; number < 100; ++number)
        many.append(QStringLiteral("Layer%1").arg(number));
    QTest::newRow("nothing") << QStringList() << QStringList()
                             << QStringList{"0", "Doors", "Walls"};
    QTest::newRow("one more") << QStringList{"New"} << QStringList()
                              << QStringList{"0", "Doors", "Walls"};
    QTest::newRow("one less") << QStringList() << QStringList{"Doors"} << QStringList{"0", "Walls"};
    QTest::newRow("exchanged") << QStringList{"New"} << QStringList{"Walls"}
                               << QStringList{"0", "Doors"};
    QTest::newRow("many more") << many << QStringList{"Doors"} << QStringList{"0"};
}

void tst_LayerComboBox::rowsStayWherePossible()
{
    QFETCH(QStringList, added);
    QFETCH(QStringList, erased);
    QFETCH(QStringList, kept);
    LayerComboBox combo;
    combo.slotUpdate();
    QHash<QString, QPointer<LayerItem>> before;
    const QList<LayerItem *> oldRows = rowsOf(combo);
    for (LayerItem *row : oldRows)
        before.insert(row->layerName(), row);

    for (const QString &name : qAsConst(added))
        QCOMPARE(KcHost::addLayer(**m_drawing, name), Kcore::eOk);
    for (const QString &name : qAsConst(erased))
        QCOMPARE(KcHost::eraseLayer(**m_drawing, name), Kcore::eOk);
    OvLayerUtility().setLayerOff(QStringLiteral("Walls"), false);
    combo.slotUpdate();

    QCOMPARE(namesOf(combo), drawingNames());
    const QList<LayerItem *> newRows = rowsOf(combo);
    for (LayerItem *row : newRows) {
        QVERIFY(row->isVisibleTo(row->parentWidget()));
        QCOMPARE(row->currentLayerData().isOn, row->layerName() != QLatin1String("Walls"));
        if (kept.contains(row->layerName()))
            QCOMPARE(before.value(row->layerName()).data(), row);
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    for (const QString &name : qAsConst(erased))
        QVERIFY(before.value(name).isNull());

    // And back: taking many rows away again.
    for (const QString &name : qAsConst(added))
        KcHost::eraseLayer(**m_drawing, name);
    combo.slotUpdate();
    QCOMPARE(namesOf(combo), drawingNames());
}

void tst_LayerComboBox::hostReloadsFromInside()
{
    LayerComboBox combo;
    combo.slotUpdate();
    int updates = 0;
    const auto rebuild = [&] {
        // Every row goes and comes back while one of them is still in its own slot.
        KcHost::setWorkingDatabase(nullptr);
        combo.slotUpdate();
        QCOMPARE(combo.count(), 0);
        KcHost::setWorkingDatabase(&**m_drawing);
        combo.slotUpdate();
        ++updates;
    };
    KcHost::setLayerTableChangesHandler(rebuild);
    connect(&combo, &LayerComboBox::layerComboBoxChanged, this, rebuild);
    connect(&combo, QOverload<int>::of(&QComboBox::currentIndexChanged), &combo,
            &LayerComboBox::slotUpdate);
    openPopup(combo);
    for (Button button : {Light, Freeze, Lock})
        clickInPopup(combo, 0, button);
    QCOMPARE(updates, 6);

    KcHost::setLayerModifiedHandler([&](const QString &) { rebuild(); });
    for (Button button : {Light, Freeze, Lock})
        clickInPopup(combo, 2, button);
    KcHost::setLayerModifiedHandler(nullptr);
    QCOMPARE(updates, 9);
    QCOMPARE(namesOf(combo), drawingNames());
}

void tst_LayerComboBox::scrollPositionStays()
{
    for (int number = 0; number < 200; ++number)
        KcHost::addLayer(**m_drawing, QStringLiteral("Layer%1").arg(number));
    LayerComboBox combo;
    combo.slotUpdate();
    openPopup(combo);
    listOf(combo)->scrollToItem(listOf(combo)->item(100));
    const int position = listOf(combo)->verticalScrollBar()->value();
    QVERIFY(position > 0);
    KcHost::setCurrentLayer(**m_drawing, QStringLiteral("Layer5"));
    combo.slotUpdate();
    QCOMPARE(listOf(combo)->currentRow(), 8);
    QCOMPARE(listOf(combo)->verticalScrollBar()->value(), position);
}

void tst_LayerComboBox::closedDrawing()
{
    KcHost::setWorkingDatabase(nullptr);
    LayerComboBox combo;
    combo.slotUpdate();
    QCOMPARE(combo.count(), 0);
    QVERIFY(!combo.lineEdit());
    QCOMPARE(combo.getDisplayItem(), 0);

    KcHost::setWorkingDatabase(&**m_drawing);
    combo.slotUpdate();
    combo.show();
    QVERIFY(combo.lineEdit()->isVisible());
    KcHost::setWorkingDatabase(nullptr);
    combo.slotUpdate();
    QCOMPARE(combo.count(), 0);
    QVERIFY(!combo.lineEdit()->isVisible());
}

void tst_LayerComboBox::currentLayerOpenElsewhere()
{
    KcHost::setCurrentLayer(**m_drawing, QStringLiteral("Walls"));
    LayerComboBox combo;
    combo.slotUpdate();
    KcDbLayerTableRecord *walls = getLayerByName(QStringLiteral("Walls"));
    QCOMPARE(walls->upgradeOpen(), Kcore::eOk);
    combo.slotUpdate();
    QCOMPARE(combo.getDisplayItem(), 0);
    QCOMPARE(listOf(combo)->currentRow(), 0);
    QCOMPARE(namesOf(combo), (QStringList{"0", "Doors"}));
    walls->close();
}

void tst_LayerComboBox::writtenChangesReadBack()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("before.dxf"));
    const QString changed = dir.filePath(QStringLiteral("after.dxf"));
    const int count = 10000;
    QCOMPARE(ezdxf(QStringLiteral("layers.py"), {"write", path, QString::number(count)}).size(),
             count);
    QJsonObject expected = ezdxf(QStringLiteral("layers.py"), {"read", path});
    m_drawing.reset();
    m_drawing = std::make_unique<OpenDrawing>(KcHost::readDrawing(path));

    LayerComboBox combo;
    combo.slotUpdate();
    openPopup(combo);
    const QStringList names = drawingNames();
    QJsonObject layers = expected.value(QLatin1String("layers")).toObject();
    int clicks = 0;
    for (int row = 1; row < names.size(); row += 397, ++clicks) {
        const auto button = Button(clicks % 3);
        QJsonArray layer = layers.value(names.at(row)).toArray();
        clickInPopup(combo, row, button);
        layer[button] = !layer.at(button).toBool();
        if (button != Light)
            layer[4] = layer.at(4).toInt() ^ (button == Freeze ? 1 : 4);
        layers.insert(names.at(row), layer);
    }
    QVERIFY(clicks > 20);
    expected.insert(QLatin1String("layers"), layers);

    QStringList warnings;
    QVERIFY(KcHost::writeDrawing(**m_drawing, changed, nullptr, &warnings));
    QCOMPARE(warnings, QStringList());
    QCOMPARE(ezdxf(QStringLiteral("layers.py"), {"read", changed}), expected);

    // One line per click differs, and nothing else.
    const QList<QByteArray> before = fileContent(path).split('\n');
    const QList<QByteArray> after = fileContent(changed).split('\n');
    QCOMPARE(after.size(), before.size());
    int differences = 0;
    for (int line = 0; line < before.size(); ++line)
        differences += before.at(line) != after.at(line);
    QCOMPARE(differences, clicks);
}

void tst_LayerComboBox::randomClicks()
{
    QRandomGenerator random(20261121);
    LayerComboBox combo;
    connect(&combo, &LayerComboBox::layerComboBoxChanged, &combo, &LayerComboBox::slotUpdate);
    combo.slotUpdate();
    openPopup(combo);
    for (int step = 0; step < 500; ++step) {
        const QString name = QStringLiteral("Random%1").arg(random.bounded(40));
        switch (random.bounded(5)) {
        case 0:
            KcHost::addLayer(**m_drawing, name);
            break;
        case 1:
            KcHost::eraseLayer(**m_drawing, name);
            break;
        case 2:
            KcHost::setCurrentLayer(**m_drawing, name);
            combo.slotUpdate();
            break;
        default:
            clickInPopup(combo, random.bounded(combo.count()), Button(random.bounded(4)));
        }
    }
    combo.slotUpdate();
    QCOMPARE(namesOf(combo), drawingNames());
    const QList<LayerItem *> rows = rowsOf(combo);
    for (const LayerItem *row : rows) {
        const LayerItemData layer = layerNamed(row->layerName());
        const LayerItemData shown = row->currentLayerData();
        QCOMPARE(shown.isOn, layer.isOn);
        QCOMPARE(shown.isFrozen, layer.isFrozen);
        QCOMPARE(shown.isLocked, layer.isLocked);
    }
    QCOMPARE(listOf(combo)->currentRow(), combo.getDisplayItem());
}

QTEST_MAIN(tst_LayerComboBox)
#include "tst_layercombobox.moc"
