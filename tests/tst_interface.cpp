// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "PickerSupport.h"

#include <QMessageBox>
#include <QMetaProperty>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTranslator>
#include <QVersionNumber>

#include <utility>

using namespace OvCc;

namespace {

/// Has every text of the library say in which context it was translated.
class Marks : public QTranslator
{
public:
    Marks() { QCoreApplication::installTranslator(this); }
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        static const QRegularExpression ours("^(OvCc::|LineWeight|Layer(LWidth|LType|Warning))");
        return ours.match(context).hasMatch() ? QString("%1|%2").arg(context, text) : QString();
    }
};

/// All that @p root and what it holds show.
QStringList textsIn(const QObject &root)
{
    QStringList texts;
    for (const char *name : {"text", "title", "windowTitle", "placeholderText"})
        texts.append(root.property(name).toString());
    const auto *model = qobject_cast<const QAbstractItemModel *>(&root);
    for (int column = 0; model && column < model->columnCount(); ++column) {
        if (qobject_cast<const QTableView *>(root.parent()))
            texts.append(model->headerData(column, Qt::Horizontal).toString());
        for (int row = 0; row < model->rowCount(); ++row)
            texts.append(model->index(row, column).data().toString());
    }
    for (const QObject *child : root.children())
        texts += textsIn(*child);
    texts.removeAll({});
    return texts;
}

/// Has @p slot of @p object, or the choice of row 7, open its dialog.
void checkBox(QObject *object, const char *slot, const QByteArray &context)
{
    const auto ask = [=] {
        *slot ? QMetaObject::invokeMethod(object, slot) : object->setProperty("currentIndex", 7);
    };
    answerDialog(ask, [&](QDialog &box) {
        const auto *help = qobject_cast<QMessageBox *>(&box);
        QCOMPARE(box.windowTitle(), context + (help ? "|help" : "|Select Color"));
        QVERIFY(!help || help->text() == context + "|Tessa help  doc!");
        box.reject();
    });
}

template <class... Classes>
QList<QObject *> make(QWidget *owner)
{
    return {new Classes(owner)...};
}

} // namespace

class tst_Interface : public QObject
{
    Q_OBJECT

private slots:
    void strings();
    void queuedRecords();
    void properties();
    void styleSheets();
    void version();
};

/// The strings that hosts connect by, in which names are without their namespaces, and the contexts
/// of what the widgets show.
void tst_Interface::strings()
{
    const OpenDrawing drawing(KcHost::newDrawing());
    LayerTableWidget layers;
    layers.resize(900, 80);
    const QImage plain = layers.grab().toImage();
    const Marks marks;
    QVERIFY(layers.grab().toImage() != plain); // a lineweight is translated where it is painted
    QCOMPARE(layers.model()->index(0, LineWeightColumn).data().toString(), QString("Default"));
    QSignalSpy begun(&layers, &LayerTableWidget::changesBegin);
    QTest::mousePress(layers.viewport(), Qt::LeftButton, {},
                      layers.visualRect(layers.model()->index(0, UnlockedColumn)).center());
    QCOMPARE(begun.value(0).value(0), QVariant("OvCc::LayerFlags|Lock layer"));
    LayerComboBox box;
    box.slotUpdate();

    KcHost::setWorkingDatabase(nullptr);
    QWidget owner;
    QList<QObject *> objects =
            make<LayerModel, LayerDelegate, LayerTableWidget, SearchLayerEdit, LayerManager,
                 LayerItem, LayerComboBox, LayerControl, ListWidget, ListView, BaseComboBox,
                 ColorComboBox, QOvColorComboBox, LineWidthComboBox, LineTypeComboBox,
                 TextStyleComboBox, VisualStyleComboBox, OvLineWeightDialog, LayerLineWeightDialog,
                 LayerLineTypeDialog, LayerWarningDialog, BaseGallery, ViewButton, CustomControl,
                 MinMaxButton>(&owner);
    objects.append(new LayerAction("Lock", &owner));
    objects.append(new LayerLink(&owner));
    objects.append(new StackWidget(owner.findChild<LayerControl *>(), &owner));
    owner.findChild<QAbstractButton *>("inRadioBnt")->click();

    const auto rows = fileContent(OVCC_SOURCE_DIR "/tests/interface.txt").split('\n');
    QVERIFY(rows.contains("LayerItem signals statusChanged(int,LayerItemData)"));
    for (const QByteArray &row : rows) {
        const QList<QByteArray> words = row.split(' ');
        QObject *object = nullptr;
        for (QObject *each : std::as_const(objects))
            object = "OvCc::" + words.at(0) == each->metaObject()->className() ? each : object;
        for (int place = 2; place < words.size(); ++place) {
            if (words.at(1) == "signals")
                QVERIFY2(connect(object, '2' + words.at(place), &owner, SLOT(close())), row);
            if (words.at(1) == "slots")
                QVERIFY2(object->metaObject()->indexOfSlot(words.at(place)) >= 0, row);
        }
        if (words.value(1) == "texts") {
            const QStringList texts = textsIn(*object);
            QCOMPARE(texts.filter(QRegularExpression('^' + words.at(2) + "\\|")), texts);
            QCOMPARE(texts.size(), words.at(3).toInt());
        }
        if (words.value(1) == "box")
            checkBox(object, words.value(3), words.at(2));
    }
    LayerManager panel;
    QCOMPARE(textsIn(panel).filter("OvCc::LayerManager|").size(), 2);
    panel.setFilterVisible(true);
    QCOMPARE(textsIn(panel).filter("OvCc::LayerManager|").size(), 10);
    QCOMPARE(panel.table()->noMatchText(), QString("OvCc::LayerManager|No match"));
    box.setShownLayers({"0", "1"});
    QVERIFY(textsIn(box).contains("OvCc::LayerComboBox|Varies"));
    QCOMPARE(textsIn(*ViewButton().menu()).filter("|"), QStringList());
    QVERIFY(headerList.contains("Name") && owner.findChild<LayerAction *>("Plot Style"));
}

/// A spy and a queued connection look for what is sent under the name in the string.
void tst_Interface::queuedRecords()
{
    const QMetaObject &gallery = NsRc::RibbonGallery::staticMetaObject;
    const int pressed = gallery.indexOfSignal("itemPressed(RibbonGalleryItem*)");
    QCOMPARE(gallery.method(pressed).parameterType(0), qMetaTypeId<NsRc::RibbonGalleryItem *>());
    const char *const changed = SIGNAL(statusChanged(int, LayerItemData));
    LayerItem item(nullptr), other(nullptr);
    QSignalSpy spy(&other, changed);
    connect(&item, changed, &other, changed, Qt::QueuedConnection);
    item.slotLightChange();
    QTRY_COMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(1).value<LayerItemData>().name, QString("layer0"));
}

/// What a form sets is what the widget shows, and says so once.
void tst_Interface::properties()
{
    QOvColorComboBox colors;
    ListView list;
    LayerControl bar;
    const StackWidget stack(&bar);
    ViewButton button;
    LayerManager panel;
    const std::tuple<QObject &, const char *, QVariant> rows[] = {
            {colors, "currentRow", int(YellowRow)},
            {colors, "itemIconSize", QSize(9, 8)},
            {colors, "viewMode", 1},
            {colors, "buttonText", "more"},
            {colors, "listWidgetHeight", 99},
            {list, "itemHeight", 33},
            {bar, "folded", false},
            {panel, "filterVisible", true},
            {button, "view", int(SoutheastView)}};
    for (const auto &[object, name, value] : rows) {
        const QMetaObject &meta = *object.metaObject();
        const QMetaProperty property = meta.property(meta.indexOfProperty(name));
        const bool notifies = property.hasNotifySignal();
        QSignalSpy changes(&object, notifies ? property.notifySignal() : meta.method(0));
        for (int time = 0; time < 2; ++time)
            QVERIFY2(object.setProperty(name, value), name);
        QCOMPARE(object.property(name), value);
        QCOMPARE(changes.count(), int(notifies));
    }
    const ListWidget &shown = *listOf(colors);
    QVERIFY(shown.currentRow() == YellowRow && shown.iconSize() == QSize(9, 8));
    QVERIFY(shown.viewMode() == QListView::IconMode && buttonOf(colors)->text() == "more");
    const QListWidget *places = qobject_cast<QListWidget *>(colors.view());
    QCOMPARE(places->item(0)->sizeHint().height(), 99);
    list.addItem({}, {});
    QCOMPARE(list.item(0)->sizeHint().height(), 33);
    QVERIFY(stack.isVisible() && !panel.findChild<QWidget *>("filterBtn")->isHidden());
    QCOMPARE(button.text(), "Northwest");
    QCOMPARE(colors.metaObject()->userProperty().name(), "currentRow");
    QCOMPARE(textOf(colors), QString("Yellow"));
    ColorComboBox().setCurrentIndex(4);
    QCOMPARE(ColorComboBox().property("currentColor"), QColor(Qt::blue));
}

/// What docs/style.md and the sheet that it shows go by.
void tst_Interface::styleSheets()
{
    QWidget owner;
    make<LayerManager, LayerItem, LayerControl, QOvColorComboBox, ViewButton, CustomControl,
         MinMaxButton, OvLineWeightDialog, LayerLineWeightDialog, LayerLineTypeDialog,
         LayerWarningDialog>(&owner);
    owner.findChild<LayerManager *>()->setFilterVisible(true);
    const auto objects = owner.findChildren<QObject *>();
    const QString text = fileContent(OVCC_SOURCE_DIR "/docs/style.md")
                         + fileContent(OVCC_SOURCE_DIR "/docs/slate.qss");
    const auto check = [&](const char *pattern, auto isKnown) {
        QRegularExpression words(pattern, QRegularExpression::MultilineOption);
        for (auto found = words.globalMatch(text); found.hasNext();) {
            const QByteArray word = found.next().captured(1).toLatin1();
            QVERIFY2(std::any_of(objects.begin(), objects.end(),
                                 [&](const QObject *each) { return isKnown(*each, word); }),
                     word);
        }
    };
    check("(?:^|`)#(\\w+)", [](auto &it, auto &name) { return it.objectName() == name; });
    check("OvCc--(\\w+)", [](auto &it, auto &name) { return it.inherits("OvCc::" + name); });
    check("qproperty-(\\w+)",
          [](auto &it, auto &name) { return it.metaObject()->indexOfProperty(name) >= 0; });
}

void tst_Interface::version()
{
    static_assert(OVCC_VERSION_CHECK(1, 255, 9) < OVCC_VERSION_CHECK(2, 0, 3));
#if OVCC_VERSION >= OVCC_VERSION_CHECK(0, 1, 0) && OVCC_VERSION < OVCC_VERSION_CHECK(255, 0, 0)
    const QVersionNumber version(OVCC_VERSION_MAJOR, OVCC_VERSION_MINOR, OVCC_VERSION_PATCH);
    QCOMPARE(version.toString(), OVCC_VERSION_STR);
#endif
}

QTEST_MAIN(tst_Interface)
#include "tst_interface.moc"
