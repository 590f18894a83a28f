// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Support.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QTableWidget>
#include <QTimer>

using namespace OvCc;

namespace {

/// What runDialog() returns when the user did not close the dialog.
constexpr int stayedOpen = -1;
constexpr int accepted = QDialog::Accepted;
constexpr int rejected = QDialog::Rejected;

/// Executes @p dialog as its caller does; @p act is what the user does once it is on the screen.
template <class Act>
int runDialog(QDialog &dialog, Act act)
{
    QTimer::singleShot(0, &dialog, [&] {
        if (QTest::qWaitForWindowExposed(&dialog))
            act();
        if (dialog.isVisible())
            dialog.done(stayedOpen);
        QVERIFY(!dialog.windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
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

/// Presses "Help" and closes the box that comes up by a key.
void readHelp(QDialog &dialog)
{
    QString shown;
    QTimer::singleShot(0, &dialog, [&] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        QVERIFY(box);
        shown = box->windowTitle() + QLatin1String(": ") + box->text();
        QTest::keyClick(box, Qt::Key_Escape);
    });
    answerDialog(dialog, QStringLiteral("Help"));
    QCOMPARE(shown, QStringLiteral("help: Tessa help  doc!"));
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
    void lineWeights();
    void lineTypeTable();
    void lineTypeChoice();
    void answers_data();
    void answers();
    /// A host may delete all windows before the application ends.
    void cleanupTestCase()
    {
        LayerDelegate();
        qDeleteAll(QApplication::topLevelWidgets());
    }
};

void tst_Dialogs::warningAnswers_data()
{
    QTest::addColumn<bool>("isQuestion");
    QTest::addColumn<bool>("wasOn");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<int>("result");

    QTest::newRow("yes") << true << true << "Yes" << accepted;
    QTest::newRow("return, off") << true << false << "Return" << accepted;
    QTest::newRow("no") << true << true << "No" << rejected;
    QTest::newRow("escape") << true << true << "Escape" << rejected;
    QTest::newRow("close") << true << true << "Close" << rejected;
    QTest::newRow("notice, ok") << false << true << "OK" << rejected;
    QTest::newRow("notice, return") << false << true << "Return" << rejected;
}

void tst_Dialogs::warningAnswers()
{
    QFETCH(bool, isQuestion);
    QFETCH(bool, wasOn);
    QFETCH(QString, answer);
    QFETCH(int, result);
    const OpenDrawing drawing(drawingWithLayers({"Walls"}));
    KcHost::setCurrentLayer(*drawing, "Walls");
    OvLayerUtility().setLayerOff("Walls", wasOn);
    QStringList changed;
    KcHost::setLayerModifiedHandler([&](const QString &name) { changed.append(name); });

    // The other kind of warning has been shown before.
    LayerWarningDialog dialog(nullptr);
    QVERIFY(dialog.findChild<QLabel *>("label")->pixmap(Qt::ReturnByValue).hasAlphaChannel());
    dialog.setButtonStatus(!isQuestion);
    QCOMPARE(runDialog(dialog, [&] { answerDialog(dialog, isQuestion ? "OK" : "No"); }), rejected);

    dialog.setButtonStatus(isQuestion);
    dialog.setIsOn(wasOn);
    dialog.setLayerName("Walls");
    const int end = runDialog(dialog, [&] {
        QCOMPARE(dialog.findChild<QPushButton *>(QStringLiteral("okBtn"))->isVisible(), isQuestion);
        answerDialog(dialog, answer);
    });
    QCOMPARE(end, result);

    const bool isSwitched = result == accepted;
    QCOMPARE(layerRows().at(1).at(2), QVariant(wasOn != isSwitched).toString());
    QCOMPARE(changed, isSwitched ? QStringList("Walls") : QStringList());
}

void tst_Dialogs::lineWeights()
{
    LayerLineWeightDialog dialog(nullptr);
    auto *list = dialog.findChild<QListWidget *>();
    using Row = std::tuple<int, const char *, double>;
    for (const auto &[row, label, width] :
         {Row{0, "Default", 1.0}, Row{10, "0.35 mm", 1.0}, Row{11, "0.40 mm", 2.0},
          Row{13, "0.53 mm", 2.0}, Row{14, "0.60 mm", 3.5}, Row{24, "2.11 mm", 13.5}}) {
        QCOMPARE(list->item(row)->text(), QLatin1String(label));
        QCOMPARE(list->item(row)->icon().pixmap(list->iconSize()), drawLineWeight(width));
    }

    const auto *original = dialog.findChild<QLabel *>(QStringLiteral("oldLabel"));
    const auto *chosen = dialog.findChild<QLabel *>(QStringLiteral("newLabel"));
    dialog.setCurrentLineweight(12);
    QCOMPARE(original->text(), QStringLiteral("0.50 mm"));
    QCOMPARE(chosen->text(), original->text());
    const int end = runDialog(dialog, [&] {
        clickRow(dialog, 3);
        dialog.setCurrentLineweight(-1);
        dialog.setCurrentLineweight(25);
        readHelp(dialog);
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
    QCOMPARE(table->item(0, 1)->icon().pixmap(table->iconSize()), drawLineType(Qt::SolidLine));
    const QStringList texts{"Continuous", "", "Solid Line"};
    const int end = runDialog(dialog, [&] {
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
        readHelp(dialog);
    });
    QCOMPARE(end, stayedOpen);
}

void tst_Dialogs::lineTypeChoice()
{
    LayerLineTypeDialog dialog(nullptr);
    const auto *table = dialog.findChild<QTableWidget *>();
    dialog.setLinetypes({"CONTINUOUS", "Dashed", "Hidden"});
    for (const auto &[asked, found] : {std::pair("", ""),
                                       {"continuous", "CONTINUOUS"},
                                       {"none", ""},
                                       {"HIDDEN", "Hidden"},
                                       {"", ""}}) {
        dialog.setCurrentLinetype(asked);
        QCOMPARE(dialog.currentLinetype(), QString(found));
    }
    QVERIFY(table->item(0, 1) && !table->item(1, 1)); // whoever knows no more than a name
    const int end = runDialog(dialog, [&] {
        QCOMPARE(dialog.currentLinetype(), QString());
        const QPoint cell = table->visualItemRect(table->item(1, 0)).center();
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, cell);
        QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, cell);
    });
    QCOMPARE(end, accepted);
    QCOMPARE(dialog.currentLinetype(), QString("Dashed"));
    dialog.setLinetypes({});
    dialog.setCurrentLinetype("Continuous");
    QCOMPARE(table->rowCount(), 1);
    QCOMPARE(dialog.currentLinetype(), QString("Continuous"));
}

void tst_Dialogs::answers_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("result");

    QTest::newRow("ok") << "OK" << 24 << accepted;
    QTest::newRow("return") << "Return" << 0 << accepted;
    QTest::newRow("cancel") << "Cancel" << 3 << rejected;
    QTest::newRow("escape") << "Escape" << 3 << rejected;
    QTest::newRow("close") << "Close" << 3 << rejected;
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
    connect(&lineWeight, &LayerLineWeightDialog::layerLineWeightChanged, this,
            [&](int current) { rows.append(lineWeight.isVisible() ? current : -1); });
    lineWeight.setCurrentLineweight(12);
    const int end = runDialog(lineWeight, [&] {
        clickRow(lineWeight, row);
        answerDialog(lineWeight, answer);
    });
    QCOMPARE(end, result);
    QCOMPARE(rows, result == accepted ? QList<int>{row} : QList<int>());
}

QTEST_MAIN(tst_Dialogs)
#include "tst_dialogs.moc"
