// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "PickerSupport.h"

#include <QScrollBar>
#include <QTextDocument>
#include <QToolTip>

using namespace OvCc;

namespace {

using Calls = QList<QVariantList>;

/// The buttons of a row, in the order of statusChanged()'s index; the colour comes last.
enum Button { Light, Freeze, Lock, Color };

/// The picture of a flag by its name, "-" for none, any other by the colour in its middle.
QString nameOf(const QPixmap &picture)
{
    for (const char *name : {"von", "voff", "thw", "frz", "ulk", "lk"}) {
        if (picture.toImage() == statusImage(name).toImage())
            return name;
    }
    return picture.isNull() ? "-" : picture.toImage().pixelColor(picture.rect().center()).name();
}

/// What the labels of a face show from left to right, such as "von thw ulk #ffffff 0".
QString shownOn(const QLineEdit &face)
{
    QString text;
    const QList<QLabel *> labels = face.findChildren<QLabel *>(), pictures = labels.mid(0, 4);
    for (const QLabel *label : pictures)
        text += nameOf(label->pixmap(Qt::ReturnByValue)) + ' ';
    return text + labels.last()->text();
}

/// The pictures of its flags.
QString shownOn(const LayerItem &item)
{
    const auto buttons = item.findChildren<QPushButton *>().mid(0, Color);
    QStringList names;
    for (const QPushButton *button : buttons)
        names += nameOf(shownOn(button));
    return names.join(' ');
}

/// The layer in that place of the drawing.
LayerItemData layer(int row)
{
    const std::unique_ptr<QList<LayerItemData>> layers(OvLayerUtility().getAllLayer());
    return layers->value(row);
}

} // namespace

class tst_LayerComboBox : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        cleanup();
        m_drawing = std::make_unique<OpenDrawing>(drawingWithLayers({"Doors", "Walls"}));
        m_combo = std::make_unique<LayerComboBox>();
        m_combo->slotUpdate();
        m_list = listOf(*m_combo);
        m_hostCalls = 0;
        KcHost::setLayerTableChangesHandler([this] { ++m_hostCalls; });
    }
    void cleanup()
    {
        m_combo.reset();
        m_drawing.reset();
    }

    void items();
    void faceParts();
    void longNameOnTheFace();
    void rowsAndFaceFollowTheDrawing();
    void dropDownOnTheCurrentLayer();
    void rowsOutOfSight();
    void choosing();
    void closedBoxTakesNoKeys();
    void clicksInThePopup();
    void shownLayers();
    void popupClosesAsItOpened();
    void rowsStayWherePossible();
    void hostReloadsFromInside();
    void hostDeletesFromInside();
    void partsOfTheHost();
    void closedDrawing();

private:
    void openPopup()
    {
        showOnScreen(*m_combo);
        openPopupAtOnce(*m_combo);
    }

    void clickInPopup(int row, Button button)
    {
        QTest::mouseClick(inRow<QPushButton>(*m_combo, row, button), Qt::LeftButton);
    }

    LayerItem *rowAt(int row) const
    {
        return qobject_cast<LayerItem *>(m_list->itemWidget(m_list->item(row)));
    }

    QString face() const { return shownOn(*m_combo->lineEdit()); }

    std::unique_ptr<OpenDrawing> m_drawing;
    std::unique_ptr<LayerComboBox> m_combo;
    QListWidget *m_list = nullptr;
    int m_hostCalls = 0;
};

void tst_LayerComboBox::items()
{
    LayerItem item(nullptr);
    // One code unit, a pair of surrogates, a letter with a combining accent.
    for (const QString &character : {QString("a"), QString("\U0001F600"), QString("e\u0301")}) {
        for (const int length : {10, 11}) {
            item.setLayerName(character.repeated(length));
            QCOMPARE(item.layerName(),
                     length == 10 ? character.repeated(10) : character.repeated(9) + "...");
        }
    }

    QStringList heard;
    connect(&item, &LayerItem::statusChanged, this, [&](int index, const LayerItemData &data) {
        heard += QString("%1:%2%3%4")
                         .arg(index)
                         .arg(data.isOn)
                         .arg(data.isFrozen)
                         .arg(data.isLocked);
    });
    KcHost::renameLayer(**m_drawing, "Walls", "<b>abcdefghij");
    LayerItemData walls = layer(2);
    walls.isFrozen = true;
    item.setCurrentLayer(walls);
    QCOMPARE(item.layerName(), walls.name);
    QCOMPARE(item.findChild<QLabel *>()->textFormat(), Qt::PlainText);
    QCOMPARE(shownOn(item), QString("von frz ulk"));
    for (const Button button : {Freeze, Freeze, Light, Lock})
        QTest::mouseClick(item.findChildren<QPushButton *>().at(button), Qt::LeftButton);
    QCOMPARE(heard.join(' '), QString("1:100 1:110 0:010 2:011"));
    QCOMPARE(shownOn(item), QString("voff frz lk"));
    QVERIFY(!layer(2).isOn && layer(2).isFrozen && layer(2).isLocked);
}

/// What each index changes, the first and the last of which mean nothing.
void tst_LayerComboBox::faceParts()
{
    LayerItemData news;
    news.isLocked = news.isFrozen = true;
    news.color = Qt::red;
    news.name = "New";
    QStringList faces;
    for (int index = -1; index <= NameStatus + 1; ++index) {
        LayerEdit face(nullptr);
        face.setCurrentLayer(layer(2));
        face.setLabelChange(index, news);
        faces += shownOn(face);
    }
    QCOMPARE(faces, QStringList({"von thw ulk #ffffff Walls", "voff frz lk #ffffff Walls",
                                 "von frz lk #ffffff Walls", "von thw lk #ffffff Walls",
                                 "von thw ulk #ff0000 Walls", "von thw ulk #ffffff New",
                                 "von thw ulk #ffffff Walls"}));
}

void tst_LayerComboBox::longNameOnTheFace()
{
    QLabel *label = m_combo->lineEdit()->findChildren<QLabel *>().last();
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
    KcHost::setCurrentLayer(**m_drawing, "Walls");
    OvLayerUtility().setLayerLock("Walls", true);
    QCOMPARE(face(), QString("von thw ulk #ffffff 0"));
    m_combo->slotUpdate();
    QCOMPARE(face(), QString("von thw lk #ffffff Walls"));
    QVERIFY(isAsDrawing(*m_combo));
    QCOMPARE(m_combo->getDisplayItem(), 2);
    QCOMPARE(m_list->currentRow(), 2);
    QCOMPARE(m_combo->currentIndex(), 0);
    QVERIFY(!m_list->hasMouseTracking() && m_combo->lineEdit()->isReadOnly());
    openPopup();
    for (int row = 0; row < 3; ++row)
        QCOMPARE(m_list->visualItemRect(m_list->item(row)).height(), 25);

    KcDbLayerTableRecord *walls = getLayerByName("Walls");
    QCOMPARE(walls->upgradeOpen(), Kcore::eOk);
    m_combo->slotUpdate();
    QCOMPARE(m_combo->getDisplayItem() + m_list->currentRow(), 0);
    QCOMPARE(m_list->count(), 2);
    walls->close();
}

void tst_LayerComboBox::dropDownOnTheCurrentLayer()
{
    for (const int layers : {40, 2000}) {
        init();
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

        // The open drop-down stays where the user scrolled it to, and on the row where the user is.
        m_list->scrollToItem(m_list->item(20));
        const int position = m_list->verticalScrollBar()->value();
        KcHost::setCurrentLayer(**m_drawing, "Layer005");
        m_combo->slotUpdate();
        QCOMPARE(m_list->currentRow(), 8);
        QCOMPARE(m_list->verticalScrollBar()->value(), position);
        typeKeys(m_list, {Qt::Key_Down});
        for (const auto &[gone, stays] :
             {std::pair("Layer000", "Layer006"), {"Layer006", "Layer005"}}) {
            KcHost::eraseLayer(**m_drawing, gone);
            m_combo->refresh();
            QCOMPARE(m_list->currentItem()->text(), QString(stays));
        }
    }
}

void tst_LayerComboBox::rowsOutOfSight()
{
    addNumberedLayers(**m_drawing, 2000);
    KcHost::setCurrentLayer(**m_drawing, "Layer1500");
    m_combo->slotUpdate();
    QCOMPARE(m_combo->getDisplayItem(), 1503);
    const QListWidgetItem *current = m_list->item(1503);
    QVERIFY(!rowAt(1503) && current->text() == "Layer1500" && current->sizeHint().height() == 25);
    QSignalSpy changes(m_combo.get(), &LayerComboBox::layerComboBoxChanged);
    for (const int row : {1502, 1503})
        m_combo->slotLabelChange(OnStatus, layer(row));
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
    QVERIFY(!asked && !rowAt(0) && !rowAt(1503) && layer(0).isLocked);
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
    for (int number = 0; number < 1803; ++number)
        KcHost::eraseLayer(**m_drawing, QString("Layer%1").arg(number, 3, 10, QChar('0')));
    m_combo->slotUpdate();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(isSightFull() && m_list->count() == 201 && !rowAt(100));
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
        QCOMPARE(chosen, (Calls{{layer(row).name}}));
        chosen.clear();
    }
    openPopup();
    typeKeys(m_list, {Qt::Key_W});
    QCOMPARE(m_list->currentRow(), 2);
    typeKeys(m_list, {Qt::Key_Escape});
    QVERIFY(chosen.isEmpty());
}

void tst_LayerComboBox::closedBoxTakesNoKeys()
{
    m_combo->setCurrentIndex(2);
    QCOMPARE(face(), QString("von thw ulk #ffffff 0"));
    QVERIFY(m_combo->lineEdit()->text().isEmpty());
    m_combo->slotUpdate();
    m_combo->setCurrentIndex(1);
    for (const bool isEditable : {true, false}) {
        m_combo->setEditable(isEditable);
        for (const auto key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_End, Qt::Key_W}) {
            QKeyEvent press(QEvent::KeyPress, key, {}, key == Qt::Key_W ? "w" : "");
            QApplication::sendEvent(m_combo.get(), &press);
            QVERIFY(!press.isAccepted());
        }
        QWheelEvent turn({}, {}, {}, {0, -120}, {}, {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(m_combo.get(), &turn);
        QVERIFY(!turn.isAccepted());
    }
    QVERIFY(m_combo->currentIndex() == 1 && !m_list->isVisible());
    showOnScreen(*m_combo);
    typeKeys(m_combo.get(), {Qt::Key_F4});
    QVERIFY(m_list->isVisible());
}

void tst_LayerComboBox::clicksInThePopup()
{
    QSignalSpy changes(m_combo.get(), &LayerComboBox::layerComboBoxChanged);
    openPopup();
    clickInPopup(2, Light);
    clickInPopup(0, Color);
    QVERIFY(!layer(2).isOn && m_list->isVisible());
    QCOMPARE(changes.count() + m_hostCalls, 0);

    // Only the current layer is news. The drawing refuses to freeze it; the row shows the wish until it
    // is reloaded.
    clickInPopup(0, Light);
    clickInPopup(0, Freeze);
    QVERIFY(!layer(0).isOn && !layer(0).isFrozen);
    QCOMPARE(face(), QString("voff frz ulk #ffffff 0"));
    m_combo->slotUpdate();
    QCOMPARE(face(), QString("voff thw ulk #ffffff 0"));
    QCOMPARE(shownOn(*rowAt(0)), QString("voff thw ulk"));
    QVERIFY(changes.count() == 2 && m_hostCalls == 2);

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
    const QString plain = "von thw ulk #ffffff ";
    QSignalSpy changes(m_combo.get(), &LayerComboBox::layerComboBoxChanged);
    QSignalSpy chosen(m_combo.get(), &LayerComboBox::layerChosen);
    using Case = std::tuple<QStringList, QString, int>;
    for (const auto &[shown, text, row] :
         {Case{{"Walls", "", "Walls"}, plain + "Walls", 2},
          Case{{"Walls", "Doors"}, "- - - - Varies", 0}, Case{{"walls"}, "- - - - walls", 0},
          Case{{}, plain + "0", 0}, Case{{"Doors"}, plain + "Doors", 1}}) {
        m_combo->setShownLayers(shown);
        QCOMPARE(face(), text);
        m_combo->slotUpdate();
        QCOMPARE(face(), text);
        openPopup();
        QCOMPARE(m_list->currentRow(), row);
        m_combo->hidePopup();
        QVERIFY(!m_combo->refresh() && !m_combo->refreshLayers({"0", "Doors"}));
        QCOMPARE(m_combo->getDisplayItem(), 0);
    }
    QCOMPARE(m_combo->shownLayers(), QStringList("Doors"));

    openPopup();
    clickInPopup(2, Light);
    QCOMPARE(changes.count() + m_hostCalls, 0);
    clickInPopup(1, Light);
    clickInPopup(0, Lock); // the current one, which is not on the face
    QCOMPARE(face(), QString("voff thw ulk #ffffff Doors"));
    QVERIFY(changes.count() == 2 && m_hostCalls == 2);
    click(rowAt(2)->findChild<QLabel *>());
    QTRY_COMPARE(chosen, (Calls{{"Walls"}}));
    QCOMPARE(face(), QString("voff thw ulk #ffffff Doors"));

    OvLayerUtility().setLayerOff("Doors", true);
    QVERIFY(m_combo->refreshLayers({"Doors"}));
    QCOMPARE(face(), plain + "Doors");
    KcHost::eraseLayer(**m_drawing, "Doors");
    QVERIFY(m_combo->refresh());
    QCOMPARE(face(), QString("- - - - Doors"));
    KcHost::addLayer(**m_drawing, "Doors");
    QVERIFY(m_combo->refreshLayers({"Doors"}));
    QCOMPARE(face(), plain + "Doors");
    m_combo->setShownLayers({});
    QCOMPARE(face(), QString("von thw lk #ffffff 0"));
}

void tst_LayerComboBox::popupClosesAsItOpened()
{
    openPopup();
    QWidget *popup = m_list->window();
    const QPoint place = m_combo->lineEdit()->mapToGlobal(m_combo->lineEdit()->rect().center());
    QTest::mousePress(popup, Qt::LeftButton, {}, popup->mapFromGlobal(place));
    QTRY_VERIFY(!popup->isVisible());
    QVERIFY(popup->testAttribute(Qt::WA_NoMouseReplay));
    QVERIFY(!opensMenu(*m_combo));
}

void tst_LayerComboBox::rowsStayWherePossible()
{
    for (const auto &[added, erased] :
         {std::pair(0, ""), {1, ""}, {0, "Doors"}, {1, "Walls"}, {100, "Walls"}}) {
        init();
        QHash<QString, QPointer<LayerItem>> before;
        for (int row = 0; row < m_list->count(); ++row)
            before.insert(rowAt(row)->layerName(), rowAt(row));
        addNumberedLayers(**m_drawing, added);
        KcHost::eraseLayer(**m_drawing, erased);
        OvLayerUtility().setLayerOff("Walls", false);
        m_combo->slotUpdate();
        QVERIFY(isAsDrawing(*m_combo));
        for (int row = 0; row < m_list->count(); ++row) {
            QVERIFY(rowAt(row)->isVisibleTo(m_list));
            QCOMPARE(rowAt(row), before.value(rowAt(row)->layerName(), rowAt(row)));
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!before.value(erased));
    }
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
    QVERIFY(toggled.count() == 1 && !layer(2).isLocked && isAsDrawing(*m_combo));
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
        init();
        openPopup();
        place();
        clickInPopup(0, Light);
        QVERIFY(!m_combo);
        QCOMPARE(layer(0).isOn, &place == places);
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
        QVERIFY(face().endsWith(" 0"));
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
    LayerComboBox fresh;
    for (LayerComboBox *box : {m_combo.get(), &fresh}) {
        box->slotUpdate();
        box->refreshLayers({});
        QCOMPARE(box->getDisplayItem() + box->count(), 0);
    }
    QVERIFY(!fresh.lineEdit() && !m_combo->lineEdit()->isVisible());
    KcHost::setWorkingDatabase(&**m_drawing);
    m_combo->slotUpdate();
    QVERIFY(m_combo->lineEdit()->isVisible());
}

QTEST_MAIN(tst_LayerComboBox)
#include "tst_layercombobox.moc"
