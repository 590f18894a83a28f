#include "Support.h"

#include <OvCustomControl/OvCustomControl.h>

#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTableWidget>
#include <QTimer>

using namespace OvCc;

namespace {

/// What runDialog() returns when the user did not close the dialog.
constexpr int stayedOpen = -1;

/// Executes @p dialog as its caller does; @p act is what the user does once it is on the screen.
template <class Act>
int runDialog(QDialog &dialog, Act act)
{
    QTimer::singleShot(0, &dialog, [&] {
        if (QTest::qWaitForWindowExposed(&dialog))
            act();
        if (dialog.isVisible())
            dialog.done(stayedOpen);
    });
    return dialog.exec();
}

/// Answers by a key, by closing the window, or else by clicking the button with that label.
void answerDialog(QDialog &dialog, const QString &answer)
{
    if (answer == QLatin1String("Escape"))
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Escape);
    else if (answer == QLatin1String("Return"))
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    else if (answer == QLatin1String("Close"))
        dialog.close();
    const auto buttons = dialog.findChildren<QPushButton *>();
    for (QPushButton *button : buttons) {
        if (button->isVisible() && button->text() == answer)
            QTest::mouseClick(button, Qt::LeftButton);
    }
}

/// Presses "Help", closes the box that comes up by a key and returns its title and text.
QString readHelp(QDialog &dialog)
{
    QString shown;
    QTimer::singleShot(0, &dialog, [&] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            shown = box->windowTitle() + QLatin1String(": ") + box->text();
            QTest::keyClick(box, Qt::Key_Escape);
        }
    });
    answerDialog(dialog, QStringLiteral("Help"));
    return shown;
}

void clickRow(const QDialog &dialog, int row)
{
    auto *list = dialog.findChild<QListWidget *>();
    list->scrollToItem(list->item(row));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                      list->visualItemRect(list->item(row)).center());
}

} // namespace

class tst_Dialogs : public QObject
{
    Q_OBJECT

private slots:
    void warningAnswers_data();
    void warningAnswers();
    void lineWeightRows_data();
    void lineWeightRows();
    void lineWeightChoice();
    void lineTypeTable();
    void answers_data();
    void answers();
};

void tst_Dialogs::warningAnswers_data()
{
    QTest::addColumn<bool>("isQuestion");
    QTest::addColumn<bool>("wasOn");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<int>("result");

    QTest::newRow("yes, on") << true << true << "Yes" << int(QDialog::Accepted);
    QTest::newRow("yes, off") << true << false << "Yes" << int(QDialog::Accepted);
    QTest::newRow("return") << true << true << "Return" << int(QDialog::Accepted);
    QTest::newRow("no") << true << true << "No" << int(QDialog::Rejected);
    QTest::newRow("escape") << true << true << "Escape" << int(QDialog::Rejected);
    QTest::newRow("close") << true << true << "Close" << int(QDialog::Rejected);
    QTest::newRow("notice, ok") << false << true << "OK" << int(QDialog::Rejected);
    QTest::newRow("notice, return") << false << true << "Return" << int(QDialog::Rejected);
    QTest::newRow("notice, close") << false << true << "Close" << int(QDialog::Rejected);
}

void tst_Dialogs::warningAnswers()
{
    QFETCH(bool, isQuestion);
    QFETCH(bool, wasOn);
    QFETCH(QString, answer);
    QFETCH(int, result);
    const QString walls = QStringLiteral("Walls");
    const OpenDrawing drawing(drawingWithLayers({walls}));
    KcHost::setCurrentLayer(*drawing, walls);
    OvLayerUtility().setLayerOff(walls, wasOn);
    QStringList changed;
    KcHost::setLayerModifiedHandler([&](const QString &name) { changed.append(name); });

    // The other kind of warning has been shown before.
    LayerWarningDialog dialog(nullptr);
    const auto *picture = dialog.findChild<QLabel *>(QStringLiteral("label"));
    QVERIFY(picture->pixmap(Qt::ReturnByValue).hasAlphaChannel());
    dialog.setButtonStatus(!isQuestion);
    const int before = runDialog(dialog, [&] { answerDialog(dialog, isQuestion ? "OK" : "No"); });
    QCOMPARE(before, int(QDialog::Rejected));

    dialog.setButtonStatus(isQuestion);
    dialog.setIsOn(wasOn);
    dialog.setLayerName(walls);
    const int end = runDialog(dialog, [&] {
        const auto buttons = dialog.findChildren<QPushButton *>();
        QCOMPARE(buttons.at(0)->isVisible(), isQuestion);
        QCOMPARE(buttons.at(1)->text(), QString(isQuestion ? "No" : "OK"));
        answerDialog(dialog, answer);
    });
    KcHost::setLayerModifiedHandler(nullptr);
    QCOMPARE(end, result);

    const bool isSwitched = result == QDialog::Accepted;
    LayerItemData layer;
    QVERIFY(OvLayerUtility().getCurrentLayer(layer));
    QCOMPARE(layer.isOn, wasOn != isSwitched);
    QCOMPARE(changed, isSwitched ? QStringList(walls) : QStringList());
    QCOMPARE(KcHost::openObjectCount(), 0);
}

void tst_Dialogs::lineWeightRows_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("label");
    QTest::addColumn<double>("width");

    QTest::newRow("first") << 0 << "Default" << 1.0;
    QTest::newRow("last thin") << 10 << "0.35 mm" << 1.0;
    QTest::newRow("first middle") << 11 << "0.40 mm" << 2.0;
    QTest::newRow("last middle") << 13 << "0.53 mm" << 2.0;
    QTest::newRow("first thick") << 14 << "0.60 mm" << 3.5;
    QTest::newRow("last") << 24 << "2.11 mm" << 13.5;
}

void tst_Dialogs::lineWeightRows()
{
    QFETCH(int, row);
    QFETCH(double, width);
    const LayerLineWeightDialog dialog(nullptr);
    const auto *list = dialog.findChild<QListWidget *>();
    QCOMPARE(list->count(), 25);
    QTEST(list->item(row)->text(), "label");
    QCOMPARE(list->item(row)->icon().pixmap(list->iconSize()).toImage(),
             drawLineWeight(width).toImage());
}

void tst_Dialogs::lineWeightChoice()
{
    LayerLineWeightDialog dialog(nullptr);
    const auto *original = dialog.findChild<QLabel *>(QStringLiteral("oldLabel"));
    const auto *chosen = dialog.findChild<QLabel *>(QStringLiteral("newLabel"));
    auto *list = dialog.findChild<QListWidget *>();
    dialog.setCurrentLineweight(12);
    QCOMPARE(original->text(), QStringLiteral("0.50 mm"));
    QCOMPARE(chosen->text(), original->text());

    const int end = runDialog(dialog, [&] {
        clickRow(dialog, 3);
        dialog.setCurrentLineweight(-1);
        dialog.setCurrentLineweight(25);
        QCOMPARE(readHelp(dialog), QStringLiteral("help: Tessa help  doc!"));
    });
    QCOMPARE(end, stayedOpen);
    QCOMPARE(list->currentRow(), 3);
    list->setCurrentRow(-1);
    QCOMPARE(original->text(), QStringLiteral("0.50 mm"));
    QCOMPARE(chosen->text(), QStringLiteral("0.09 mm"));
}

void tst_Dialogs::lineTypeTable()
{
    LayerLineTypeDialog dialog(nullptr);
    auto *table = dialog.findChild<QTableWidget *>();
    QCOMPARE(table->rowCount(), 1);
    QCOMPARE(table->item(0, 1)->icon().pixmap(table->iconSize()).toImage(),
             drawLineType(Qt::SolidLine).toImage());
    const QStringList texts{"Continuous", "", "Solid Line"};
    const int end = runDialog(dialog, [&] {
        QVERIFY(!table->verticalHeader()->isVisible());
        QCOMPARE(table->rowHeight(0), 22);
        for (int column = 0; column < texts.size(); ++column) {
            const QTableWidgetItem *item = table->item(0, column);
            const QPoint cell = table->visualItemRect(item).center();
            table->clearSelection();
            QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, cell);
            QCOMPARE(table->selectedItems().size(), 3);
            QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, cell);
            QTest::keyClick(table, Qt::Key_F2);
            QTest::keyClick(table, Qt::Key_X);
            QVERIFY(!table->findChild<QLineEdit *>());
            QCOMPARE(item->text(), texts.at(column));
        }
        QCOMPARE(readHelp(dialog), QStringLiteral("help: Tessa help  doc!"));
    });
    QCOMPARE(end, stayedOpen);
}

void tst_Dialogs::answers_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("result");

    QTest::newRow("ok") << "OK" << 3 << int(QDialog::Accepted);
    QTest::newRow("ok, first row") << "OK" << 0 << int(QDialog::Accepted);
    QTest::newRow("return") << "Return" << 24 << int(QDialog::Accepted);
    QTest::newRow("cancel") << "Cancel" << 3 << int(QDialog::Rejected);
    QTest::newRow("escape") << "Escape" << 3 << int(QDialog::Rejected);
    QTest::newRow("close") << "Close" << 3 << int(QDialog::Rejected);
    QTest::newRow("load") << "loaded..." << 3 << stayedOpen;
}

void tst_Dialogs::answers()
{
    QFETCH(QString, answer);
    QFETCH(int, row);
    QFETCH(int, result);
    LayerLineTypeDialog lineType(nullptr);
    QCOMPARE(runDialog(lineType, [&] { answerDialog(lineType, answer); }), result);

    LayerLineWeightDialog lineWeight(nullptr);
    QList<int> rows;
    bool isOpen = true;
    connect(&lineWeight, &LayerLineWeightDialog::layerLineWeightChanged, this, [&](int current) {
        rows.append(current);
        isOpen = lineWeight.isVisible();
    });
    lineWeight.setCurrentLineweight(12);
    const int end = runDialog(lineWeight, [&] {
        clickRow(lineWeight, row);
        answerDialog(lineWeight, answer);
    });
    QCOMPARE(end, result);
    QCOMPARE(rows, result == QDialog::Accepted ? QList<int>{row} : QList<int>());
    QVERIFY(isOpen);
}

QTEST_MAIN(tst_Dialogs)
#include "tst_dialogs.moc"
