// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "PickerSupport.h"

#include <QColorDialog>
#include <QRadioButton>
#include <QSignalSpy>

using namespace OvCc;

namespace {

using Make = BaseComboBox *(*)();

template <class Picker>
BaseComboBox *kind()
{
    return new Picker;
}

QLabel *iconOf(const QComboBox &picker)
{
    return picker.lineEdit()->findChildren<QLabel *>().at(0);
}

QStringList labelsOf(const QListWidget &list)
{
    QStringList labels;
    for (int row = 0; row < list.count(); ++row)
        labels.append(list.item(row)->text());
    return labels;
}

/// Answers the colour dialog; an empty name cancels it.
template <class Ask>
void pickColor(Ask ask, const QString &name)
{
    answerDialog(ask, [&](QDialog &dialog) {
        auto *colors = qobject_cast<QColorDialog *>(&dialog);
        QVERIFY(colors);
        colors->setCurrentColor(QColor(name));
        dialog.done(name.isEmpty() ? QDialog::Rejected : QDialog::Accepted);
    });
}

/// Does what a user does, step by step: "open", "click 2" on that row, "wheel 120", or a key.
void play(BaseComboBox &picker, const char *steps)
{
    constexpr auto press = QEvent::MouseButtonPress, move = QEvent::MouseMove;
    QWidget *face = picker.lineEdit();
    const QHash<QString, std::function<void(int)>> acts{
            {"show", [&](int) { show(picker); }},
            {"disable", [&](int) { picker.setEnabled(false); }},
            {"open", [&](int) { openPopup(picker); }},
            {"face", [&](int) { click(face); }},
            {"hold", [&](int) { mouse(press, face, face->rect().center()); }},
            {"press", [&](int row) { onRow(picker, press, row); }},
            {"drag", [&](int row) { onRow(picker, move, row); }},
            {"hover", [&](int row) { onRow(picker, move, row, Qt::NoButton); }},
            {"release", [&](int row) { onRow(picker, QEvent::MouseButtonRelease, row); }},
            {"click", [&](int row) { clickRow(picker, row); }},
            {"right", [&](int row) { clickRow(picker, row, Qt::RightButton); }},
            {"wheel", [&](int turn) { wheel(face, {turn}); }},
    };
    const QStringList each = QString(steps).split(", ");
    for (const QString &step : each) {
        const QWidget *popup = QApplication::activePopupWidget();
        if (const auto act = acts.value(step.section(' ', 0, 0)))
            act(step.section(' ', 1).toInt());
        else
            QTest::keySequence((popup ? popup : picker.window())->windowHandle(),
                               QKeySequence(step));
    }
}

} // namespace

class tst_Pickers : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
    void lineWeightRowsComeOnce();
    void faces();
    void gestures();
    void programsAreNotReported();
    void buttonOfTheHost();
    void customColors();
    void plainColors();
    void lineWeightSettings();
    void panel();
    void deletedInside();
    void partsOfTheHost();
    void destruction();
};

/// Comes first: the first drop-down in the process is the one that gets all rows.
void tst_Pickers::lineWeightRowsComeOnce()
{
    LineWidthComboBox first;
    LineWidthComboBox second;
    QSignalSpy choices(&first, &LineWidthComboBox::lineWeightChosen);
    QCOMPARE(listOf(first)->count(), 9);
    clickRow(first, LineWeightDefaultRow);
    clickRow(first, 26);
    QCOMPARE(listOf(first)->count(), 27);
    QCOMPARE(textOf(first), QStringLiteral("2.11 mm"));
    QCOMPARE(iconOf(first)->pixmap(Qt::ReturnByValue).toImage(), drawLineWeight(15.5).toImage());
    QCOMPARE(choices, (QList<QVariantList>{{int(LineWeightDefault)}, {211}}));

    openPopup(first);
    QVERIFY(listOf(first)->viewport()->rect().contains(
            listOf(first)->visualItemRect(first.item(26))));
    typeKeys(first.view(), {Qt::Key_Escape});
    openPopup(second);
    QCOMPARE(listOf(second)->count(), 9);
}

void tst_Pickers::faces()
{
    using Row = std::tuple<Make, QString, QSize, int, QSize, QString>;
    const QSize big(148, 210);
    const QString words = "2d_LineFrame 3d_LineFrame 3d_Hide Flat Grouraud Flat+Edges Gouraud+Edge";
    const QStringList pictures = words.split(' ');
    for (const auto &[make, text, icon, rows, size, button] :
         {Row{&kind<QOvColorComboBox>, "By Layer", {14, 14}, 9, big, "select a color..."},
          Row{&kind<LineWidthComboBox>, "By Layer", {48, 16}, 9, big, "Lineweight settings..."},
          Row{&kind<LineTypeComboBox>, "By Layer", {48, 16}, 3, {148, 90}, "Others..."},
          Row{&kind<TextStyleComboBox>, "Standard", {}, 1, {148, 110}, "Manager Text Styles..."},
          Row{&kind<VisualStyleComboBox>, "2D wireframe", {16, 16}, 7, {280, 240}, {}}}) {
        const std::unique_ptr<BaseComboBox> picker(make());
        openPopup(*picker);
        QCOMPARE(textOf(*picker), QString(text));
        QCOMPARE(iconOf(*picker)->isVisible(), icon.isValid());
        if (icon.isValid())
            QCOMPARE(iconOf(*picker)->pixmap(Qt::ReturnByValue).size(), icon);
        QCOMPARE(listOf(*picker)->count(), rows);
        const QWidget *dropDown = listOf(*picker)->parentWidget();
        QCOMPARE(dropDown->size(), size);
        QCOMPARE(picker->view()->viewport()->size(), size);
        QCOMPARE(buttonOf(*picker)->isVisible(), !button.isEmpty());
        QCOMPARE(buttonOf(*picker)->text(), button);
        QVERIFY(!opensMenu(*picker));
        for (int row = 0; row < rows; ++row) {
            const QPixmap picture = picker->item(row)->icon().pixmap(50, 50);
            QVERIFY(!picture.isNull());
            if (button.isEmpty())
                QCOMPARE(picture, QIcon(loadImage(":/" + pictures[row] + ".bmp")).pixmap(50, 50));
            QVERIFY(dropDown->rect().contains(listOf(*picker)->visualItemRect(picker->item(row))));
        }
    }
}

void tst_Pickers::gestures()
{
    using Rows = QList<int>; // those that are reported, from row 1 on
    for (const auto &[steps, rows] :
         {std::pair("click 2", Rows{2}),
          {"open, press 0, drag 2, release 2", {2}},
          {"show, hold, drag 0, drag 2, release 2", {2}},
          {"open, hover 2, Return", {2}},
          {"open, hover 2, Esc", {}},
          {"open, face", {}},
          {"open, press 2, Esc, right 2, Esc", {}},
          {"open, hover 2, Left, Up, Return", {1}},
          {"open, Home, Return", {0}},
          {"show, Down, Up, Up, Up", {2, 1, 0}},
          {"show, wheel 120, wheel 120, wheel -120, wheel -120", {0, 1, 2}},
          {"show, disable, wheel -120, hold", {}}}) {
        for (const Make make : {&kind<QOvColorComboBox>, &kind<VisualStyleComboBox>}) {
            const std::unique_ptr<BaseComboBox> picker(make());
            picker->setCurrentIndex(1);
            Rows chosen;
            connect(picker.get(), &BaseComboBox::rowChosen, this, [&](int row) { chosen += row; });
            play(*picker, steps);
            const QListWidgetItem *item = picker->item(picker->currentRow());
            QVERIFY2(chosen == rows && !QApplication::activePopupWidget(), steps);
            QVERIFY2(picker->currentRow() == (rows.isEmpty() ? 1 : rows.constLast()), steps);
            QVERIFY2(item->isSelected() && textOf(*picker) == item->text(), steps);
        }
    }
}

void tst_Pickers::programsAreNotReported()
{
    QOvColorComboBox picker;
    QSignalSpy choices(&picker, &BaseComboBox::rowChosen);
    for (const int row : {int(YellowRow), int(FirstCustomColorRow), -1})
        picker.setCurrentIndex(row);
    QCOMPARE(picker.currentRow(), int(YellowRow));
    QCOMPARE(textOf(picker), QStringLiteral("Yellow"));
    picker.showCurrentItem({}, QStringLiteral("  <b>a \n b "));
    QCOMPARE(textOf(picker), QStringLiteral("<b>a b"));
    picker.setCurrentIndex(YellowRow);
    QCOMPARE(textOf(picker), QStringLiteral("Yellow"));
    QCOMPARE(choices.count(), 0);
    QVERIFY(!picker.item(FirstCustomColorRow));
}

void tst_Pickers::buttonOfTheHost()
{
    LineTypeComboBox picker;
    QSignalSpy requests(&picker, &BaseComboBox::dialogRequested);
    openPopup(picker);
    typeKeys(picker.view(), {Qt::Key_Down});
    click(buttonOf(picker));
    QCOMPARE(requests.count(), 1);
    QVERIFY(picker.view()->isVisible());
    QCOMPARE(picker.currentRow(), 0);
    typeKeys(picker.view(), {Qt::Key_Down, Qt::Key_Return});
    QCOMPARE(textOf(picker), QStringLiteral("By Block"));
}

void tst_Pickers::customColors()
{
    QOvColorComboBox picker;
    QSignalSpy choices(&picker, &QOvColorComboBox::colorChosen);
    const auto ask = [&] { pressButton(picker); };
    clickRow(picker, BlueRow);
    picker.addItem({}, QStringLiteral("of the host"));
    clickRow(picker, FirstCustomColorRow);
    for (const char *color : {"", "#ff8000", "#ff0000", "#ff8000", ""})
        pickColor(ask, QLatin1String(color));
    const QColor orange(255, 128, 0);
    QCOMPARE(choices, (QList<QVariantList>{{int(BlueRow), QColor(Qt::blue)},
                                           {int(FirstCustomColorRow), QColor()},
                                           {10, orange},
                                           {11, QColor(Qt::red)}}));
    QCOMPARE(labelsOf(*listOf(picker)).mid(10), (QStringList{"255,128,0", "255,0,0"}));
    QCOMPARE(textOf(picker), QStringLiteral("255,0,0"));

    // The first press after a dialog counts.
    openPopup(picker);
    QCOMPARE(listOf(picker)->parentWidget()->height(), 230);
}

void tst_Pickers::plainColors()
{
    ColorComboBox picker;
    QSignalSpy reports(&picker, &ColorComboBox::currentColorChanged);
    const auto ask = [&] { picker.setCurrentIndex(picker.count() - 1); };
    picker.setCurrentIndex(4);
    pickColor(ask, QString());
    QCOMPARE(picker.currentIndex(), 4);
    pickColor(ask, QStringLiteral("#ff8000"));
    const QColor orange(255, 128, 0);
    QCOMPARE(reports, (QList<QVariantList>{{QColor(Qt::blue)}, {orange}}));
    QCOMPARE(picker.currentIndex(), 0);
    QCOMPARE(picker.itemText(0), QStringLiteral("255,128,0"));
    QCOMPARE(picker.itemText(8), QStringLiteral("Select Color..."));
    QCOMPARE(picker.itemIcon(0).pixmap(14, 14).toImage(), creatColorPix(orange).toImage());

    for (const int row : {7, 0}) // of which the first is too far down
        picker.setCurrentIndex(row);
    QCOMPARE(reports.mid(2), (QList<QVariantList>{{orange}}));

    const QPointer<ColorComboBox> gone = new ColorComboBox;
    answerDialog([&] { gone->setCurrentIndex(7); },
                 [&](QDialog &) {
                     gone->deleteLater();
                     QCoreApplication::sendPostedEvents(gone, QEvent::DeferredDelete);
                 });
    QVERIFY(gone && gone->currentIndex() == 0);
    QCoreApplication::sendPostedEvents(gone, QEvent::DeferredDelete);
    QVERIFY(!gone);
}

void tst_Pickers::lineWeightSettings()
{
    LineWidthComboBox picker;
    QSignalSpy choices(&picker, &LineWidthComboBox::lineWeightChosen);
    picker.setCurrentIndex(4);
    const auto answer = [&](const char *unit, int row, const char *button) {
        const auto act = [&](QDialog &dialog) {
            auto *list = dialog.findChild<QListWidget *>("listWidget");
            const auto *name = dialog.findChild<QLabel *>("nameLabel");
            const auto *combo = dialog.findChild<QComboBox *>("comboBox");
            QCOMPARE(list->currentRow(), picker.currentRow());
            QTest::mouseClick(dialog.findChild<QRadioButton *>(unit), Qt::LeftButton, {}, {10, 8});
            QCOMPARE(name->text(), list->currentItem()->text());
            list->setCurrentRow(row);
            QCOMPARE(name->text(), list->currentItem()->text());
            QCOMPARE(combo->itemText(23), list->item(26)->text());
            QTest::mouseClick(dialog.findChild<QPushButton *>(button), Qt::LeftButton);
        };
        answerDialog([&] { pressButton(picker); }, act);
        return textOf(picker);
    };
    QCOMPARE(answer("inRadioBnt", 7, "cancelBnt"), QStringLiteral("0.05 mm"));
    QCOMPARE(answer("mmRadioBnt", 7, "okBnt"), QStringLiteral("0.15 mm"));
    QCOMPARE(answer("inRadioBnt", 8, "okBnt"), QStringLiteral("0.07\""));
    QCOMPARE(answer("mmRadioBnt", 5, "okBnt"), QStringLiteral("0.04\""));
    QCOMPARE(labelsOf(*listOf(picker)).mid(2, 3), (QStringList{"Default", "0.00\"", "0.02\""}));
    // This picker has 9 rows only.
    answer("mmRadioBnt", 20, "okBnt");
    QCOMPARE(picker.currentRow(), 5);
    picker.addRemainingRows();
    picker.addRemainingRows();
    QCOMPARE(labelsOf(*listOf(picker)).count(), 27);
    QCOMPARE(answer("mmRadioBnt", 20, "okBnt"), QStringLiteral("0.39\""));
    QCOMPARE(choices, (QList<QVariantList>{{15}, {18}, {9}, {100}}));
}

void tst_Pickers::panel()
{
    PropertyManager panel;
    QSignalSpy colors(&panel, &PropertyManager::colorChosen);
    QSignalSpy lineWeights(&panel, &PropertyManager::lineWeightChosen);
    QSignalSpy lineTypes(&panel, &PropertyManager::lineTypeChosen);
    clickRow(*panel.colorPicker(), 2);
    clickRow(*panel.lineWeightPicker(), 2);
    clickRow(*panel.lineTypePicker(), 2);
    QCOMPARE(colors, (QList<QVariantList>{{2, QColor(Qt::red)}}));
    QCOMPARE(lineWeights, (QList<QVariantList>{{int(LineWeightDefault)}}));
    QCOMPARE(lineTypes, (QList<QVariantList>{{QStringLiteral("Continuous")}}));
}

void tst_Pickers::deletedInside()
{
    const auto run = [this](auto *picker, auto signal, auto gesture) {
        const QPointer<QObject> alive = picker;
        connect(picker, signal, this, [picker] { delete picker; });
        gesture(*picker);
        QVERIFY(!alive);
    };
    const auto accept = [](BaseComboBox &picker) {
        answerDialog([&] { pressButton(picker); }, [](QDialog &dialog) { dialog.accept(); });
    };
    const auto remove = [](BaseComboBox &picker) {
        answerDialog([&] { pressButton(picker); }, [&](QDialog &) { delete picker.window(); });
    };
    run(new QOvColorComboBox, &BaseComboBox::rowChosen, [](BaseComboBox &picker) {
        show(picker);
        QTest::keyPress(picker.windowHandle(), Qt::Key_Down);
    });
    run(new QOvColorComboBox, &QOvColorComboBox::colorChosen, accept);
    run(new LineWidthComboBox, &LineWidthComboBox::lineWeightChosen, accept);
    run(new LineTypeComboBox, &LineTypeComboBox::lineTypeChosen,
        [](BaseComboBox &picker) { clickRow(picker, 1); });
    run(new LineTypeComboBox, &BaseComboBox::dialogRequested, pressButton);
    run(new LineWidthComboBox, &QWidget::windowTitleChanged, remove);
    run((new PropertyManager)->colorPicker(), &QWidget::windowTitleChanged, remove);
}

void tst_Pickers::partsOfTheHost()
{
    QOvColorComboBox picker;
    show(picker);
    picker.setEditable(false);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    picker.setCurrentIndex(RedRow);
    picker.setLineEdit(new QLineEdit);
    picker.hideShowIcon();
    typeKeys(&picker, {Qt::Key_Down});
    QCOMPARE(picker.currentRow(), int(YellowRow));
    picker.clear();
    picker.setListWidgetHeight(9);
    picker.setView(new QListView);
    picker.hideSettingBtn();
    picker.setListWidgetHeight(9);
    picker.showCurrentItem({}, QString());
    answerDialog([&] { picker.openDialog(); }, [](QDialog &dialog) { dialog.accept(); });
    typeKeys(&picker, {Qt::Key_Down});
    QCOMPARE(picker.currentRow(), -1);
    QVERIFY(!picker.item(0));
}

void tst_Pickers::destruction()
{
    destroyInEveryOrder([]() -> QList<QPointer<QObject>> {
        auto *panel = new PropertyManager;
        panel->show();
        LineWidthComboBox *picker = panel->lineWeightPicker();
        picker->showPopup();
        return {panel, picker, picker->view(), listOf(*picker)->parentWidget()};
    });
}

QTEST_MAIN(tst_Pickers)
#include "tst_pickers.moc"
