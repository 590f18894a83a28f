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

/// What runDialog() returns; the last one when the user did not close the dialog.
constexpr int accepted = QDialog::Accepted, rejected = QDialog::Rejected, stayedOpen = -1;

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

/// Answers by Return, by closing the window, or else by clicking the button with that label.
void answerDialog(QDialog &dialog, const QString &answer)
{
    if (answer == "Return")
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    else if (answer == "Close")
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
        shown = box->windowTitle() + ": " + box->text();
        QTest::keyClick(box, Qt::Key_Escape);
    });
    answerDialog(dialog, "Help");
    QCOMPARE(shown, QString("help: Tessa help  doc!"));
}

} // namespace

class tst_Dialogs : public QObject
{
    Q_OBJECT

private slots:
    void warnings();
    void lineWeights();
    void lineTypes();
    void answers();
    /// A host may delete all windows before the application ends.
    void cleanupTestCase()
    {
        LayerDelegate();
        qDeleteAll(QApplication::topLevelWidgets());
    }
};

void tst_Dialogs::warnings()
{
    const OpenDrawing drawing(drawingWithLayers({"Walls"}));
    KcHost::setCurrentLayer(*drawing, "Walls");
    QStringList changed;
    KcHost::setLayerModifiedHandler([&](const QString &name) { changed.append(name); });
    using Row = std::tuple<const char *, bool, bool, int>;
    for (const auto &[answer, isQuestion, wasOn, result] :
         {Row{"Yes", true, true, accepted}, Row{"Return", true, false, accepted},
          Row{"No", true, true, rejected}, Row{"Close", true, true, rejected},
          Row{"OK", false, true, rejected}, Row{"Return", false, true, rejected}}) {
        OvLayerUtility().setLayerOff("Walls", wasOn);
        changed.clear();
        // The other kind of warning has been shown before.
        LayerWarningDialog dialog(nullptr);
        QVERIFY(dialog.findChild<QLabel *>("label")->pixmap(Qt::ReturnByValue).hasAlphaChannel());
        dialog.setButtonStatus(!isQuestion);
        const char *other = isQuestion ? "OK" : "No";
        QCOMPARE(runDialog(dialog, [&] { answerDialog(dialog, other); }), rejected);

        dialog.setButtonStatus(isQuestion);
        QCOMPARE(dialog.findChild<QPushButton *>("okBtn")->isVisibleTo(&dialog), isQuestion);
        dialog.setIsOn(wasOn);
        dialog.setLayerName("Walls");
        QCOMPARE(runDialog(dialog, [&, text = answer] { answerDialog(dialog, text); }), result);
        const bool isSwitched = result == accepted;
        QCOMPARE(layerRows().at(1).at(OnColumn), QVariant(wasOn != isSwitched).toString());
        QCOMPARE(changed, isSwitched ? QStringList("Walls") : QStringList());
    }
}

void tst_Dialogs::lineWeights()
{
    LayerLineWeightDialog dialog(nullptr);
    auto *list = dialog.findChild<QListWidget *>();
    using Row = std::tuple<int, const char *, double>;
    for (const auto &[row, label, width] :
         {Row{0, "Default", 1.0}, Row{10, "0.35 mm", 1.0}, Row{11, "0.40 mm", 2.0},
          Row{13, "0.53 mm", 2.0}, Row{14, "0.60 mm", 3.5}, Row{24, "2.11 mm", 13.5}}) {
        QCOMPARE(list->item(row)->text(), QString(label));
        QCOMPARE(list->item(row)->icon().pixmap(list->iconSize()), drawLineWeight(width));
    }

    const auto labels = [&] {
        return dialog.findChild<QLabel *>("oldLabel")->text() + ", "
               + dialog.findChild<QLabel *>("newLabel")->text();
    };
    dialog.setCurrentLineweight(12);
    QCOMPARE(labels(), QString("0.50 mm, 0.50 mm"));
    const int end = runDialog(dialog, [&] {
        list->setCurrentRow(3);
        dialog.setCurrentLineweight(-1);
        dialog.setCurrentLineweight(25);
        readHelp(dialog);
    });
    QCOMPARE(end, stayedOpen);
    QCOMPARE(list->currentRow(), 3);
    list->setCurrentRow(-1);
    QCOMPARE(labels(), QString("0.50 mm, 0.09 mm"));
}

void tst_Dialogs::lineTypes()
{
    LayerLineTypeDialog dialog(nullptr);
    auto *table = dialog.findChild<QTableWidget *>();
    const auto clickTwice = [table](int row, int column) {
        const QPoint cell = table->visualItemRect(table->item(row, column)).center();
        click(table->viewport(), cell);
        QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, cell);
    };
    dialog.setLinetypes({"CONTINUOUS", "Dashed", "Hidden"});
    QStringList found;
    for (const char *asked : {"", "continuous", "none", "HIDDEN", ""}) {
        dialog.setCurrentLinetype(asked);
        found += dialog.currentLinetype();
    }
    QCOMPARE(found.join('|'), QString("|CONTINUOUS||Hidden|"));
    QVERIFY(table->item(0, 1) && !table->item(1, 1)); // whoever knows no more than a name
    QCOMPARE(runDialog(dialog, [&] { clickTwice(1, 0); }), accepted);
    QCOMPARE(dialog.currentLinetype(), QString("Dashed"));

    dialog.setLinetypes({});
    QCOMPARE(table->rowCount(), 1);
    QCOMPARE(table->item(0, 1)->icon().pixmap(table->iconSize()), drawLineType(Qt::SolidLine));
    const QStringList texts{"Continuous", "", "Solid Line"};
    const int end = runDialog(dialog, [&] {
        for (int column = 0; column < texts.size(); ++column) {
            table->clearSelection();
            clickTwice(0, column);
            QCOMPARE(table->selectedItems().size(), 3);
            QTest::keyClick(table, Qt::Key_F2);
            QTest::keyClick(table, Qt::Key_X);
            QVERIFY(!table->findChild<QLineEdit *>());
            QCOMPARE(table->item(0, column)->text(), texts.at(column));
        }
        readHelp(dialog);
    });
    QCOMPARE(end, stayedOpen);
    QCOMPARE(dialog.currentLinetype(), QString("Continuous"));
}

void tst_Dialogs::answers()
{
    using Row = std::tuple<const char *, int, int>;
    for (const auto &[answer, row, result] :
         {Row{"OK", 24, accepted}, Row{"Return", 0, accepted}, Row{"Cancel", 3, rejected},
          Row{"Close", 3, rejected}, Row{"loaded...", 3, stayedOpen}}) {
        LayerLineTypeDialog lineType(nullptr);
        const QString text(answer);
        QCOMPARE(runDialog(lineType, [&] { answerDialog(lineType, text); }), result);

        LayerLineWeightDialog lineWeight(nullptr);
        QList<int> rows;
        connect(&lineWeight, &LayerLineWeightDialog::layerLineWeightChanged, this,
                [&](int current) { rows.append(lineWeight.isVisible() ? current : -1); });
        lineWeight.setCurrentLineweight(12);
        const int end = runDialog(lineWeight, [&, row = row] {
            lineWeight.findChild<QListWidget *>()->setCurrentRow(row);
            answerDialog(lineWeight, text);
        });
        QCOMPARE(end, result);
        QCOMPARE(rows, result == accepted ? QList<int>{row} : QList<int>());
    }
}

QTEST_MAIN(tst_Dialogs)
#include "tst_dialogs.moc"
