// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Support.h"

#include <QActionGroup>
#include <QMenu>
#include <QSignalSpy>

using namespace OvCc;
using namespace NsRc;

namespace {

/// Opens the menu of @p button and does @p act with it.
template <class Act>
void useMenu(ViewButton &button, Act act)
{
    QMenu *menu = button.menu();
    const QObject opening;
    QObject::connect(
            menu, &QMenu::aboutToShow, &opening,
            [&] {
                QVERIFY(QTest::qWaitForWindowExposed(menu));
                act(*menu);
                menu->close();
            },
            Qt::QueuedConnection);
    QTest::mouseClick(&button, Qt::LeftButton);
}

} // namespace

class tst_Galleries : public QObject
{
    Q_OBJECT

private slots:
    void items();
    void viewButton();
    void viewButtonSaysItsText();
    void destruction();
};

void tst_Galleries::items()
{
    const ViewGallery views;
    const ViewPortGallery viewports;
    for (const auto *gallery : std::initializer_list<const BaseGallery *>{&views, &viewports}) {
        const RibbonGalleryGroup &group = *gallery->galleryGroup();
        const bool isViews = gallery == &views;
        const int count = isViews ? 10 : 12;
        const int named = isViews ? int(NortheastView) : int(ThreeBelowViewports);
        QCOMPARE(group.item(named)->caption(), isViews ? "Northeast" : "Three:Below");
        QCOMPARE(group.getItemCount(), count);
        QCOMPARE(gallery->popupGallery()->galleryGroup(), &group);
        QCOMPARE(gallery->checkedItem(), group.item(0));

        // Two views share a name, but none a picture.
        QSet<QString> captions;
        QList<QImage> images;
        for (int index = 0; index < count; ++index) {
            captions.insert(group.item(index)->caption());
            images.append(group.item(index)->icon().pixmap(16, 16).toImage());
            QCOMPARE(images.last().size(), QSize(16, 16));
            QCOMPARE(images.indexOf(images.last()), index);
        }
        QCOMPARE(captions.size(), isViews ? 9 : 12);
        QCOMPARE(group.item(SoutheastView)->caption() == group.item(NorthwestView)->caption(),
                 isViews);
    }
}

void tst_Galleries::viewButton()
{
    QWidget panel;
    ViewButton button(&panel);
    QSignalSpy changes(&button, &ViewButton::geometryChanged);
    const auto check = [&](const QString &text, int checked) {
        QCOMPARE(button.text(), text);
        QCOMPARE(button.size(), QSize(button.fontMetrics().horizontalAdvance(text) + 4, 20));
        for (int place = 0; place < 10; ++place)
            QCOMPARE(button.menu()->actions().at(place)->isChecked(), place == checked);
    };
    showOnScreen(panel);
    check("Top", TopView);

    const QList<int> choices{SouthwestView, SouthwestView, SoutheastView, NorthwestView,
                             SoutheastView, BottomView,    SoutheastView};
    for (const int place : choices) {
        useMenu(button, [place](QMenu &menu) {
            const QRect entry = menu.actionGeometry(menu.actions().at(place));
            QTest::mouseClick(&menu, Qt::LeftButton, {}, entry.center());
        });
        check(button.menu()->actions().at(place)->text(),
              place == SoutheastView ? int(NorthwestView) : place); // which has the same name
        QCOMPARE(button.view(), place);
    }
    useMenu(button, [](QMenu &menu) { typeKeys(&menu, {Qt::Key_Up, Qt::Key_Return}); });
    check("Northwest", NorthwestView);
    useMenu(button, [](QMenu &menu) { typeKeys(&menu, {Qt::Key_Down, Qt::Key_Escape}); });

    QFont font = button.font();
    font.setPointSize(font.pointSize() + 4);
    button.setFont(font);
    check("Northwest", NorthwestView);
    QCOMPARE(changes.count(), choices.size() + 1);
}

/// The text takes the whole width, where a style draws an arrow on buttons with a menu.
void tst_Galleries::viewButtonSaysItsText()
{
    ViewButton button;
    QPushButton plain(button.text());
    plain.setFlat(true);
    plain.setFixedSize(button.size());
    QCOMPARE(button.grab().toImage(), plain.grab().toImage());
}

void tst_Galleries::destruction()
{
    destroyInEveryOrder([]() -> QList<QPointer<QObject>> {
        auto *panel = new QWidget;
        auto *button = new ViewButton(panel);
        return {panel, button, button->menu(), button->findChild<QActionGroup *>()};
    });
    ViewButton button;
    delete button.findChild<QActionGroup *>();
    button.setView(BackView);
    QCOMPARE(button.view(), int(TopView));
}

QTEST_MAIN(tst_Galleries)
#include "tst_galleries.moc"
