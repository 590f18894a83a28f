// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Support.h"

#include <QLabel>
#include <QLayout>
#include <QListWidget>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTextDocument>
#include <QToolTip>

using namespace OvCc;

namespace {

using Calls = QList<QVariantList>;

/// The buttons of a row, in the order of statusChanged()'s index; the colour comes last.
enum Button { Light, Freeze, Lock, Color };

QPushButton *buttonOf(const LayerItem *row, Button button)
{
    return row->findChildren<QPushButton *>().at(button);
}

QPixmap shownOn(const QLabel *label)
{
    return label->pixmap(Qt::ReturnByValue);
}

/// The labels of the combo box's face from left to right: light, freeze, lock, colour, name.
QList<QLabel *> labelsOf(const QLineEdit &face)
{
    QList<QLabel *> labels;
    for (int place = 0; place < face.layout()->count(); ++place) {
        if (auto *label = qobject_cast<QLabel *>(face.layout()->itemAt(place)->widget()))
            labels.append(label);
    }
    return labels;
}

QList<LayerItemData> drawingLayers()
{
    const std::unique_ptr<QList<LayerItemData>> layers(OvLayerUtility().getAllLayer());
    return *layers;
}

QStringList drawingNames()
{
    QStringList names;
    const QList<LayerItemData> layers = drawingLayers();
    for (const LayerItemData &layer : layers)
        names.append(layer.name);
    return names;
}

LayerItemData layerNamed(const QString &name)
{
    return drawingLayers().value(drawingNames().indexOf(name));
}

} // namespace

class tst_LayerComboBox : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_drawing = std::make_unique<OpenDrawing>(drawingWithLayers({"Doors", "Walls"}));
        m_combo = std::make_unique<LayerComboBox>();
        m_combo->slotUpdate();
        m_list = qobject_cast<QListWidget *>(m_combo->view());
        m_labels = labelsOf(*m_combo->lineEdit());
        m_hostCalls = 0;
        KcHost::setLayerTableChangesHandler([this] { ++m_hostCalls; });
    }
    void cleanup()
    {
        m_combo.reset();
        m_drawing.reset();
    }

    void itemNames();
    void itemTogglesFollowTheRecord();
    void faceParts();
    void longNameOnTheFace();
    void rowsAndFaceFollowTheDrawing();
    void dropDownOnTheCurrentLayer_data();
    void dropDownOnTheCurrentLayer();
    void rowsOutOfSight();
    void choosing();
    void clicksInThePopup();
    void shownLayers();
    void popupClosesAsItOpened();
    void rowsStayWherePossible_data();
    void rowsStayWherePossible();
    void hostReloadsFromInside();
    void hostDeletesFromInside();
    void partsOfTheHost();
    void closedDrawing();
    void currentLayerOpenElsewhere();

private:
    void openPopup()
    {
        showOnScreen(*m_combo);
        click(m_combo->lineEdit());
        QVERIFY(QTest::qWaitForWindowExposed(m_list->window()));
    }

    void clickInPopup(int row, Button button)
    {
        m_list->scrollToItem(m_list->item(row));
        QTest::mouseClick(buttonOf(rowAt(row), button), Qt::LeftButton);
    }

    LayerItem *rowAt(int row) const
    {
        return qobject_cast<LayerItem *>(m_list->itemWidget(m_list->item(row)));
    }

    QStringList names() const
    {
        QStringList names;
        for (int row = 0; row < m_list->count(); ++row)
            names.append(m_combo->layerItem(row)->layerName());
        return names;
    }

    std::unique_ptr<OpenDrawing> m_drawing;
    std::unique_ptr<LayerComboBox> m_combo;
    QListWidget *m_list = nullptr;
    QList<QLabel *> m_labels;
    int m_hostCalls = 0;
};

void tst_LayerComboBox::itemNames()
{
    LayerItem item(nullptr);
    // One code unit, a pair of surrogates, a letter with a combining accent.
    for (const QString &character : {QString("a"), QString("\U0001F600"), QString("e\u0301")}) {
        item.setLayerName(character.repeated(10));
        QCOMPARE(item.layerName(), character.repeated(10));
        item.setLayerName(character.repeated(11));
        QCOMPARE(item.layerName(), character.repeated(9) + "...");
    }

    LayerItemData layer;
    layer.name = QStringLiteral("<b>abcdefghij;*</b>");
    item.setCurrentLayer(layer);
    QCOMPARE(item.layerName(), layer.name);
    QCOMPARE(item.findChild<QLabel *>()->textFormat(), Qt::PlainText);
}

void tst_LayerComboBox::itemTogglesFollowTheRecord()
{
    LayerItem item(nullptr);
    QSignalSpy changes(&item, &LayerItem::statusChanged);
    LayerItemData layer = layerNamed("Walls");
    layer.isFrozen = true;
    item.setCurrentLayer(layer);
    QCOMPARE(shownOn(buttonOf(&item, Freeze)), statusImage("frz"));
    QCOMPARE(shownOn(buttonOf(&item, Light)), statusImage("von"));
    QCOMPARE(shownOn(buttonOf(&item, Lock)), statusImage("ulk"));

    QTest::mouseClick(buttonOf(&item, Freeze), Qt::LeftButton);
    QCOMPARE(shownOn(buttonOf(&item, Freeze)), statusImage("thw"));
    QTest::mouseClick(buttonOf(&item, Freeze), Qt::LeftButton);
    QVERIFY(layerNamed("Walls").isFrozen);
    QTest::mouseClick(buttonOf(&item, Light), Qt::LeftButton);
    QVERIFY(!layerNamed("Walls").isOn);
    QTest::mouseClick(buttonOf(&item, Lock), Qt::LeftButton);
    QVERIFY(layerNamed("Walls").isLocked);

    QCOMPARE(changes.count(), 4);
    QCOMPARE(changes.at(0).at(0).toInt(), int(FreezeStatus));
    QVERIFY(!changes.at(0).at(1).value<LayerItemData>().isFrozen);
    QCOMPARE(changes.at(2).at(0).toInt(), int(OnStatus));
    QCOMPARE(changes.at(3).at(0).toInt(), int(LockStatus));
    QVERIFY(changes.at(3).at(1).value<LayerItemData>().isLocked);
}

void tst_LayerComboBox::faceParts()
{
    const LayerItemData before = layerNamed("Walls");
    LayerItemData after;
    after.isLocked = after.isFrozen = true;
    after.color = Qt::red;
    after.name = QStringLiteral("New");
    // The labels that change with each index, the first and the last of which mean none.
    int index = -1;
    for (const char *changes :
         {"", "light freeze lock", "freeze lock", "lock", "color", "name", ""}) {
        const QString news(changes);
        LayerEdit face(nullptr);
        face.setCurrentLayer(before);
        face.setLabelChange(index++, after);
        const QList<QLabel *> labels = labelsOf(face);
        QCOMPARE(shownOn(labels.at(0)), statusImage(news.contains("light") ? "voff" : "von"));
        QCOMPARE(shownOn(labels.at(1)), statusImage(news.contains("freeze") ? "frz" : "thw"));
        QCOMPARE(shownOn(labels.at(2)), statusImage(news.contains("lock") ? "lk" : "ulk"));
        const QColor color = news.contains("color") ? after.color : before.color;
        QCOMPARE(shownOn(labels.at(3)), creatColorPix(color));
        QCOMPARE(labels.at(4)->text(), news.contains("name") ? after.name : before.name);
        QVERIFY(face.text().isEmpty());
    }
}

void tst_LayerComboBox::longNameOnTheFace()
{
    QLabel *label = m_labels.at(4);
    showOnScreen(*m_combo);
    for (const QString &name : {QString("0"), "<b>" + QString(60, 'x')}) {
        LayerItemData layer;
        layer.name = name;
        m_combo->findChild<LayerEdit *>()->setLabelChange(NameStatus, layer);
        const QImage shown = label->grab().toImage();
        QCOMPARE(label->text(), name);
        const QString part = label->fontMetrics().elidedText(name, Qt::ElideRight, label->width());
        QLabel plain(part, label->parentWidget());
        plain.setTextFormat(Qt::PlainText);
        plain.resize(label->size());
        QCOMPARE(shown, plain.grab().toImage());

        QHelpEvent hover(QEvent::ToolTip, {1, 1}, label->mapToGlobal(QPoint(1, 1)));
        QApplication::sendEvent(label, &hover);
        QCOMPARE(QToolTip::text(), part == name ? QString() : Qt::convertFromPlainText(name));
    }
    QToolTip::hideText();
}

void tst_LayerComboBox::rowsAndFaceFollowTheDrawing()
{
    QCOMPARE(m_labels.at(4)->text(), QStringLiteral("0"));
    KcHost::setCurrentLayer(**m_drawing, "Walls");
    OvLayerUtility().setLayerLock("Walls", true);
    m_combo->slotUpdate();
    QCOMPARE(m_labels.at(4)->text(), QStringLiteral("Walls"));
    QCOMPARE(shownOn(m_labels.at(2)), statusImage("lk"));
    QCOMPARE(names(), drawingNames());
    QCOMPARE(m_combo->getDisplayItem(), 2);
    QCOMPARE(m_list->currentRow(), 2);
    QCOMPARE(m_combo->currentIndex(), 0);
    QVERIFY(!m_list->hasMouseTracking());
    QVERIFY(m_combo->lineEdit()->isReadOnly());

    openPopup();
    for (int row = 0; row < 3; ++row)
        QCOMPARE(m_list->visualItemRect(m_list->item(row)).height(), 25);
}

void tst_LayerComboBox::dropDownOnTheCurrentLayer_data()
{
    QTest::addColumn<int>("layers");
    QTest::newRow("few") << 40;
    QTest::newRow("many") << 2000;
}

void tst_LayerComboBox::dropDownOnTheCurrentLayer()
{
    QFETCH(int, layers);
    const QString longest(99, 'x');
    KcHost::addLayer(**m_drawing, longest);
    addNumberedLayers(**m_drawing, layers);
    KcHost::setCurrentLayer(**m_drawing, "Layer033");
    m_combo->slotUpdate();
    for (const int chosen : {0, 40}) {
        m_combo->setCurrentIndex(chosen);
        openPopup();
        QCOMPARE(m_list->currentRow(), 37);
        const QRect row = m_list->visualItemRect(m_list->selectedItems().value(0));
        QCOMPARE(row & m_list->viewport()->rect(), row);
        QVERIFY(m_list->verticalScrollBar()->isVisible());
        QCOMPARE(m_list->width(), 400);
        m_combo->hidePopup();
    }
    KcHost::eraseLayer(**m_drawing, longest);
    m_combo->slotUpdate();
    openPopup();
    QVERIFY(m_list->width() < 200);

    // The open drop-down stays where the user scrolled it to.
    m_list->scrollToItem(m_list->item(20));
    const int position = m_list->verticalScrollBar()->value();
    KcHost::setCurrentLayer(**m_drawing, "Layer005");
    m_combo->slotUpdate();
    QCOMPARE(m_list->currentRow(), 8);
    QCOMPARE(m_list->verticalScrollBar()->value(), position);

    // And on the row where the user is.
    typeKeys(m_list, {Qt::Key_Down});
    for (const auto &[gone, stays] :
         {std::pair("Layer000", "Layer006"), {"Layer006", "Layer005"}}) {
        KcHost::eraseLayer(**m_drawing, gone);
        m_combo->refresh();
        QCOMPARE(m_list->currentItem()->text(), QString(stays));
    }
}

void tst_LayerComboBox::rowsOutOfSight()
{
    addNumberedLayers(**m_drawing, 2000);
    KcHost::setCurrentLayer(**m_drawing, "Layer1500");
    m_combo->slotUpdate();
    QCOMPARE(m_combo->getDisplayItem(), 1503);
    QVERIFY(m_combo->lineEdit()->text().isEmpty());
    const QListWidgetItem *current = m_list->item(1503);
    QVERIFY(!rowAt(1503) && current->text() == "Layer1500" && current->sizeHint().height() == 25);
    QSignalSpy changes(m_combo.get(), &LayerComboBox::layerComboBoxChanged);
    m_combo->slotLabelChange(OnStatus, layerNamed("Layer1499"));
    QCOMPARE(changes.count(), 0);
    m_combo->slotLabelChange(OnStatus, layerNamed("Layer1500"));
    QCOMPARE(changes.count(), 1);
    QVERIFY(!m_combo->layerItem(-1) && !m_combo->layerItem(2003));
    QPointer<LayerItem> asked = m_combo->layerItem(9);
    QVERIFY(asked == rowAt(9) && asked->currentLayerData().name == "Layer006");

    openPopup();
    const auto isSightFull = [this] {
        const int last = m_list->indexAt(m_list->viewport()->rect().bottomLeft()).row();
        for (int row = m_list->indexAt({0, 0}).row(); row <= last; ++row) {
            const LayerItem *item = rowAt(row);
            if (!item || !item->isVisible() || item->layerName() != m_list->item(row)->text()
                || item->geometry() != m_list->visualItemRect(m_list->item(row)))
                return false;
        }
        return last > 0 && m_list->findChildren<LayerItem *>().size() <= 200;
    };
    QVERIFY(isSightFull());
    clickInPopup(0, Lock);
    clickInPopup(1503, Freeze);
    for (int row = 0; row <= 2000; row += 60) {
        m_list->scrollToItem(m_list->item(row));
        QVERIFY(isSightFull());
    }
    // The current layer was not frozen; a row shows the wish until it is reloaded, even so.
    QVERIFY(!asked && !rowAt(0) && !rowAt(1503) && layerNamed("0").isLocked);
    QVERIFY(m_combo->layerItem(0)->currentLayerData().isLocked);
    QVERIFY(m_combo->layerItem(1503)->currentLayerData().isFrozen);
    m_combo->slotUpdate();
    QVERIFY(!rowAt(1503)->currentLayerData().isFrozen);

    m_combo->hidePopup();
    openPopup();
    QVERIFY(isSightFull());

    m_list->setCurrentRow(1000);
    typeKeys(m_list, {Qt::Key_End});
    QVERIFY(isSightFull());
    for (int number = 0; number < 1500; ++number)
        KcHost::eraseLayer(**m_drawing, QString("Layer%1").arg(number, 3, 10, QChar('0')));
    m_combo->slotUpdate();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(isSightFull() && !rowAt(0));
    for (int number = 1501; number < 1803; ++number)
        KcHost::eraseLayer(**m_drawing, QString("Layer%1").arg(number));
    m_combo->slotUpdate();
    QVERIFY(m_list->count() == 201 && !rowAt(100));
    KcHost::eraseLayer(**m_drawing, m_list->itemAt(0, 0)->text());
    m_combo->slotUpdate();
    for (int row = 0; row < 200; ++row)
        QCOMPARE(rowAt(row)->layerName(), m_list->item(row)->text());
}

void tst_LayerComboBox::choosing()
{
    QSignalSpy chosen(m_combo.get(), &LayerComboBox::layerChosen);
    // The name is that of the row, even if its choice reloads the list.
    connect(m_combo.get(), QOverload<int>::of(&QComboBox::currentIndexChanged), m_combo.get(),
            &LayerComboBox::slotUpdate);
    for (const auto &[row, byMouse] : {std::pair(2, true), {0, true}, {1, false}, {0, false}}) {
        openPopup();
        m_list->setCurrentRow(row);
        if (byMouse)
            click(rowAt(row)->findChild<QLabel *>());
        else
            typeKeys(m_list, {Qt::Key_Return});
        QTRY_VERIFY(!m_list->isVisible());
        QCOMPARE(chosen.count(), 1);
        QCOMPARE(chosen.takeFirst().at(0).toString(), drawingNames().at(row));
    }

    openPopup();
    typeKeys(m_list, {Qt::Key_W});
    QCOMPARE(m_list->currentRow(), 2);
    typeKeys(m_list, {Qt::Key_Escape});
    m_combo->disconnect(SIGNAL(currentIndexChanged(int)));
    m_combo->setCurrentIndex(2);
    m_combo->slotUpdate();
    m_combo->setCurrentIndex(1);
    for (const bool isEditable : {true, false}) {
        m_combo->setEditable(isEditable);
        for (const auto key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_End, Qt::Key_W}) {
            QKeyEvent press(QEvent::KeyPress, key, {}, key == Qt::Key_W ? "w" : "");
            QApplication::sendEvent(m_combo.get(), &press);
            QVERIFY(!press.isAccepted());
        }
        const QPoint center = m_combo->rect().center();
        QWheelEvent turn(center, center, {}, {0, -120}, {}, {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(m_combo.get(), &turn);
        QVERIFY(!turn.isAccepted());
    }
    QCOMPARE(m_combo->currentIndex(), 1);
    QVERIFY(chosen.isEmpty() && !m_list->isVisible());
    typeKeys(m_combo.get(), {Qt::Key_F4});
    QVERIFY(m_list->isVisible());
}

void tst_LayerComboBox::clicksInThePopup()
{
    QSignalSpy changes(m_combo.get(), &LayerComboBox::layerComboBoxChanged);
    openPopup();
    clickInPopup(2, Light);
    clickInPopup(0, Color);
    QVERIFY(!layerNamed("Walls").isOn && m_list->isVisible());
    QCOMPARE(changes.count(), 0);
    QCOMPARE(m_hostCalls, 0);

    // Only the current layer is news.
    clickInPopup(0, Light);
    QVERIFY(!layerNamed("0").isOn);
    QCOMPARE(shownOn(m_labels.at(0)), statusImage("voff"));
    QCOMPARE(changes.count(), 1);
    QCOMPARE(m_hostCalls, 1);

    // The drawing refuses to freeze it; the row shows the wish until it is reloaded.
    clickInPopup(0, Freeze);
    QVERIFY(!layerNamed("0").isFrozen);
    QCOMPARE(shownOn(m_labels.at(1)), statusImage("frz"));
    m_combo->slotUpdate();
    QCOMPARE(shownOn(m_labels.at(1)), statusImage("thw"));
    QCOMPARE(shownOn(buttonOf(rowAt(0), Freeze)), statusImage("thw"));
    QCOMPARE(changes.count(), 2);
    QCOMPARE(m_hostCalls, 2);

    OvLayerUtility().setLayerOff("Doors", false); // as the click wants it, which does not know
    QSignalSpy toggled(m_combo.get(), &LayerComboBox::layersToggled);
    QSignalSpy ends(m_combo.get(), &LayerComboBox::changesEnd);
    clickInPopup(1, Light);
    clickInPopup(1, Lock);
    QCOMPARE(ends, (Calls{{0, 0}, {1, 0}}));
    QCOMPARE(toggled, (Calls{{QStringList{"Doors"}}}));
}

void tst_LayerComboBox::shownLayers()
{
    const auto face = [this] {
        QStringList parts(m_labels.at(4)->text());
        for (const int place : {0, 1, 2, 3})
            parts += shownOn(m_labels.at(place)).isNull() ? "-" : "*";
        return parts.join(' ');
    };
    QSignalSpy changes(m_combo.get(), &LayerComboBox::layerComboBoxChanged);
    QSignalSpy chosen(m_combo.get(), &LayerComboBox::layerChosen);
    const struct
    {
        QStringList names;
        QString face;
        int row;
    } cases[] = {{{"Walls", "", "Walls"}, "Walls * * * *", 2},
                 {{"Walls", "Doors"}, "Varies - - - -", 0},
                 {{"walls"}, "walls - - - -", 0},
                 {{}, "0 * * * *", 0},
                 {{"Doors"}, "Doors * * * *", 1}};
    for (const auto &[shown, text, row] : cases) {
        m_combo->setShownLayers(shown);
        for (const bool isAnew : {false, true}) {
            if (isAnew)
                m_combo->slotUpdate();
            QCOMPARE(face(), text);
            openPopup();
            QCOMPARE(m_list->currentRow(), row);
            m_combo->hidePopup();
        }
        QVERIFY(!m_combo->refresh() && !m_combo->refreshLayers({"0", "Doors"}));
        QCOMPARE(m_combo->getDisplayItem(), 0);
    }
    QCOMPARE(m_combo->shownLayers(), QStringList("Doors"));

    openPopup();
    clickInPopup(2, Light);
    QCOMPARE(changes.count() + m_hostCalls, 0);
    clickInPopup(1, Light);
    QCOMPARE(shownOn(m_labels.at(0)), statusImage("voff"));
    clickInPopup(0, Lock); // the current one, which is not on the face
    QCOMPARE(face(), QString("Doors * * * *"));
    QCOMPARE(shownOn(m_labels.at(2)), statusImage("ulk"));
    QCOMPARE(qMakePair(int(changes.count()), m_hostCalls), qMakePair(2, 2));
    click(rowAt(2)->findChild<QLabel *>());
    QTRY_COMPARE(chosen, (Calls{{"Walls"}}));
    QCOMPARE(face(), QString("Doors * * * *"));

    OvLayerUtility().setLayerOff("Doors", true);
    QVERIFY(m_combo->refreshLayers({"Doors"}));
    QCOMPARE(shownOn(m_labels.at(0)), statusImage("von"));
    KcHost::eraseLayer(**m_drawing, "Doors");
    QVERIFY(m_combo->refresh());
    QCOMPARE(face(), QString("Doors - - - -"));
    KcHost::addLayer(**m_drawing, "Doors");
    QVERIFY(m_combo->refreshLayers({"Doors"}));
    QCOMPARE(face(), QString("Doors * * * *"));
    m_combo->setShownLayers({});
    QCOMPARE(shownOn(m_labels.at(2)), statusImage("lk"));
}

void tst_LayerComboBox::popupClosesAsItOpened()
{
    openPopup();
    const QRect row = m_list->visualItemRect(m_list->item(2));
    QTest::mouseClick(m_list->viewport(), Qt::LeftButton, {}, row.center() + QPoint(60, 0));
    QTRY_VERIFY(!m_list->isVisible());
    QCOMPARE(m_combo->currentIndex(), 2);
    QCOMPARE(m_labels.at(4)->text(), QStringLiteral("0"));
    QVERIFY(m_combo->lineEdit()->text().isEmpty());

    openPopup();
    QWidget *popup = m_list->window();
    const QPoint face = m_combo->lineEdit()->mapToGlobal(m_combo->lineEdit()->rect().center());
    QTest::mousePress(popup, Qt::LeftButton, {}, popup->mapFromGlobal(face));
    QTRY_VERIFY(!popup->isVisible());
    QVERIFY(popup->testAttribute(Qt::WA_NoMouseReplay));

    QContextMenuEvent menu(QContextMenuEvent::Mouse, {5, 5}, face);
    QApplication::sendEvent(m_combo->lineEdit(), &menu);
    QVERIFY(!QApplication::activePopupWidget());
}

void tst_LayerComboBox::rowsStayWherePossible_data()
{
    QTest::addColumn<int>("added");
    QTest::addColumn<QString>("erased");
    QTest::newRow("nothing") << 0 << "";
    QTest::newRow("one more") << 1 << "";
    QTest::newRow("one less") << 0 << "Doors";
    QTest::newRow("exchanged") << 1 << "Walls";
    QTest::newRow("many more") << 100 << "Walls";
}

void tst_LayerComboBox::rowsStayWherePossible()
{
    QFETCH(int, added);
    QFETCH(QString, erased);
    QHash<QString, QPointer<LayerItem>> before;
    for (int row = 0; row < m_list->count(); ++row)
        before.insert(rowAt(row)->layerName(), rowAt(row));
    addNumberedLayers(**m_drawing, added);
    KcHost::eraseLayer(**m_drawing, erased);
    OvLayerUtility().setLayerOff("Walls", false);
    m_combo->slotUpdate();

    const QStringList after = drawingNames();
    QCOMPARE(names(), after);
    for (int row = 0; row < m_list->count(); ++row) {
        QVERIFY(rowAt(row)->isVisibleTo(m_list));
        QCOMPARE(rowAt(row)->currentLayerData().isOn, after.at(row) != QLatin1String("Walls"));
        QVERIFY(!before.contains(after.at(row)) || before.value(after.at(row)) == rowAt(row));
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(before.value(erased).isNull());
}

void tst_LayerComboBox::hostReloadsFromInside()
{
    const auto rebuild = [this] {
        // Every row goes and comes back while one of them is still in its own slot.
        KcHost::setWorkingDatabase(nullptr);
        m_combo->slotUpdate();
        QCOMPARE(m_combo->count(), 0);
        KcHost::setWorkingDatabase(&**m_drawing);
        m_combo->slotUpdate();
        ++m_hostCalls;
    };
    KcHost::setLayerTableChangesHandler(rebuild);
    connect(m_combo.get(), &LayerComboBox::layerComboBoxChanged, this, rebuild);
    connect(m_combo.get(), QOverload<int>::of(&QComboBox::currentIndexChanged), m_combo.get(),
            &LayerComboBox::slotUpdate);
    openPopup();
    for (const Button button : {Light, Freeze, Lock})
        clickInPopup(0, button);
    QCOMPARE(m_hostCalls, 6);

    KcHost::setLayerModifiedHandler([rebuild](const QString &) { rebuild(); });
    for (const Button button : {Light, Freeze, Lock})
        clickInPopup(2, button);
    QCOMPARE(m_hostCalls, 9);
    connect(m_combo.get(), &LayerComboBox::changesBegin, this, rebuild);
    QSignalSpy toggled(m_combo.get(), &LayerComboBox::layersToggled);
    clickInPopup(2, Lock);
    QCOMPARE(m_hostCalls, 11);
    QVERIFY(toggled.count() == 1 && !layerNamed("Walls").isLocked);
    QCOMPARE(names(), drawingNames());
}

void tst_LayerComboBox::hostDeletesFromInside()
{
    const auto remove = [this] { m_combo.reset(); };
    using Box = LayerComboBox;
    const std::function<void()> places[] = {
            [&] { connect(m_combo.get(), &Box::changesBegin, this, remove); },
            [&] { connect(m_combo.get(), &Box::changesEnd, this, remove); },
            [&] { connect(m_combo.get(), &Box::layersToggled, this, remove); },
            [&] { connect(m_combo.get(), &Box::layerComboBoxChanged, this, remove); },
            [&] { KcHost::setLayerTableChangesHandler(remove); },
            [&] { KcHost::setLayerModifiedHandler([&](const QString &) { remove(); }); },
    };
    for (const auto &place : places) {
        cleanup();
        init();
        openPopup();
        place();
        clickInPopup(0, Light);
        QVERIFY(!m_combo);
        QCOMPARE(layerNamed("0").isOn, &place == places);
    }
}

void tst_LayerComboBox::partsOfTheHost()
{
    for (const bool isEditable : {true, false}) {
        if (isEditable)
            m_combo->setLineEdit(new QLineEdit);
        else
            m_combo->setEditable(false);
        clickInPopup(0, Light);
        m_combo->slotUpdate();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(labelsOf(*m_combo->lineEdit()).at(4)->text(), QStringLiteral("0"));
        openPopup();
        m_combo->hidePopup();
    }
    m_combo->setView(new QListView);
    m_combo->slotUpdate();
    m_combo->clearListWidget();
    QCOMPARE(m_combo->getDisplayItem() + m_combo->count(), 0);
}

void tst_LayerComboBox::closedDrawing()
{
    showOnScreen(*m_combo);
    KcHost::setWorkingDatabase(nullptr);
    m_combo->slotUpdate();
    m_combo->refreshLayers({});
    QCOMPARE(m_combo->count(), 0);
    QVERIFY(!m_combo->lineEdit()->isVisible());
    LayerComboBox combo;
    combo.slotUpdate();
    QVERIFY(!combo.lineEdit());
    QCOMPARE(combo.getDisplayItem() + combo.count(), 0);
    KcHost::setWorkingDatabase(&**m_drawing);
    m_combo->slotUpdate();
    QVERIFY(m_combo->lineEdit()->isVisible());
}

void tst_LayerComboBox::currentLayerOpenElsewhere()
{
    KcHost::setCurrentLayer(**m_drawing, "Walls");
    m_combo->slotUpdate();
    KcDbLayerTableRecord *walls = getLayerByName("Walls");
    QCOMPARE(walls->upgradeOpen(), Kcore::eOk);
    m_combo->slotUpdate();
    QCOMPARE(m_combo->getDisplayItem(), 0);
    QCOMPARE(m_list->currentRow(), 0);
    QCOMPARE(names(), (QStringList{"0", "Doors"}));
    walls->close();
}

QTEST_MAIN(tst_LayerComboBox)
#include "tst_layercombobox.moc"
