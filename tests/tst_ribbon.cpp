// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Support.h"

#include <KcHost/RibbonBar.h>

#include <NsRc.h>

#include <QAction>
#include <QHelpEvent>
#include <QSignalSpy>
#include <QToolButton>
#include <QToolTip>
#include <QVBoxLayout>

using namespace NsRc;
using OvCc::ViewGallery;

namespace {

constexpr QSize cell(120, 21);
constexpr int count = 10;

QIcon plainIcon(const QColor &color)
{
    QPixmap pixmap(16, 16);
    pixmap.fill(color);
    return QIcon(pixmap);
}

/// A gallery as a ribbon has it, and its copy in its drop-down menu, with the items that are pressed
/// in them.
struct Galleries
{
    Galleries()
        : gallery(new ViewGallery)
        , group(gallery->galleryGroup())
        , menu(gallery->popupMenu())
        , copy(gallery->popupGallery())
    {
        window.resize(400, 260);
        gallery->setParent(&window);
        QObject::connect(gallery, &RibbonGallery::itemPressed, gallery,
                         [this](auto *item) { presses.append(group->indexOf(item)); });
        QObject::connect(copy, &RibbonGallery::itemPressed, copy, [this](auto *item) {
            pressesInMenu.append(menu->isVisible() ? group->indexOf(item) : -1);
        });
    }
    Q_DISABLE_COPY(Galleries)

    void show()
    {
        showOnScreen(window);
        window.activateWindow();
        gallery->setFocus();
        QVERIFY(QTest::qWaitForWindowActive(&window));
    }

    QAbstractButton *button(int index) const
    {
        return gallery->findChildren<QAbstractButton *>(QString(), Qt::FindDirectChildrenOnly)
                .at(index);
    }

    /// The checked items of the gallery and of its copy.
    QList<int> checked() const
    {
        return {group->indexOf(gallery->checkedItem()), group->indexOf(copy->checkedItem())};
    }

    QWidget window;
    QPointer<ViewGallery> gallery;
    QPointer<RibbonGalleryGroup> group;
    QPointer<OfficePopupMenu> menu;
    QPointer<RibbonGallery> copy;
    QList<int> presses;
    QList<int> pressesInMenu; // -1 for one that comes after the menu has closed
};

/// The middle of a row that is in sight; of the second column, on request.
QPoint inRow(int row, int column = 0)
{
    return {40 + 120 * column, 1 + cell.height() * row + cell.height() / 2};
}

void drag(const QWidget *widget, const QList<QPoint> &path)
{
    mouse(QEvent::MouseButtonPress, widget, path.first());
    for (const QPoint &pos : path)
        mouse(QEvent::MouseMove, widget, pos);
    mouse(QEvent::MouseButtonRelease, widget, path.last());
}

/// The number of the item that a click in the top row presses.
int topItem(const Galleries &galleries)
{
    click(galleries.gallery, inRow(0));
    return galleries.presses.isEmpty() ? -1 : galleries.presses.constLast();
}

void openMenu(Galleries &galleries)
{
    galleries.show();
    click(galleries.button(2));
    QVERIFY(QTest::qWaitForWindowExposed(galleries.menu));
}

QString toolTipAt(QWidget *widget, QPoint pos)
{
    QHelpEvent event(QEvent::ToolTip, pos, widget->mapToGlobal(pos));
    QApplication::sendEvent(widget, &event);
    const QString text = QToolTip::text();
    QToolTip::hideText();
    const bool isHidden = QTest::qWaitFor([] { return QToolTip::text().isEmpty(); });
    return isHidden ? text : QStringLiteral("It stays.");
}

} // namespace

using Act = std::function<void(Galleries &)>;
Q_DECLARE_METATYPE(Act)

class tst_Ribbon : public QObject
{
    Q_OBJECT

private slots:
    void presses_data();
    void presses();
    void scrolling();
    void keysInAGrid();
    void menu();
    void menuOpensAndClosesByItsButton();
    void buttonsCome();
    void looks();
    void toolTips();
    void severalGalleries();
    void destruction();
    void destructionInsideAPress();
    void narrowBar();
};

void tst_Ribbon::presses_data()
{
    QTest::addColumn<Act>("act");
    QTest::addColumn<QList<int>>("presses");

    const auto add = [](const char *name, const QList<int> &presses, const Act &act) {
        QTest::newRow(name) << act << presses;
    };
    add("click", {1}, [](Galleries &on) { click(on.gallery, inRow(1)); });
    add("checked item", {0}, [](Galleries &on) { click(on.gallery, inRow(0)); });
    add("right button", {}, [](Galleries &on) {
        mouse(QEvent::MouseButtonPress, on.gallery, inRow(1), Qt::RightButton);
        mouse(QEvent::MouseButtonRelease, on.gallery, inRow(1), Qt::RightButton);
    });
    add("drag to another", {}, [](Galleries &on) { drag(on.gallery, {inRow(1), inRow(2)}); });
    add("drag off", {}, [](Galleries &on) { drag(on.gallery, {inRow(1), {300, 30}}); });
    add("drag away and back", {1}, [](Galleries &on) {
        drag(on.gallery, {inRow(1), inRow(2), inRow(1)});
    });
    add("item deleted under the mouse", {}, [](Galleries &on) {
        mouse(QEvent::MouseButtonPress, on.gallery, inRow(1));
        delete on.group->item(1);
        mouse(QEvent::MouseButtonRelease, on.gallery, inRow(1));
    });
    add("keys", {1, 8, 9, 0, 3, 6, 3}, [](Galleries &on) {
        typeKeys(on.gallery, {Qt::Key_Down, Qt::Key_Space, Qt::Key_End, Qt::Key_Up, Qt::Key_Return,
                              Qt::Key_End, Qt::Key_Down, Qt::Key_Enter, Qt::Key_Home, Qt::Key_Up,
                              Qt::Key_Enter, Qt::Key_PageDown, Qt::Key_Space, Qt::Key_PageDown,
                              Qt::Key_Space, Qt::Key_PageUp, Qt::Key_Space});
    });
    add("key held down", {0}, [](Galleries &on) {
        for (const bool isRepeated : {false, true}) {
            QKeyEvent event(QEvent::KeyPress, Qt::Key_Space, {}, {}, isRepeated);
            QApplication::sendEvent(on.gallery, &event);
        }
    });
    add("disabled", {}, [](Galleries &on) {
        on.gallery->setEnabled(false);
        click(on.gallery, inRow(1));
    });
    add("no group", {}, [](Galleries &on) {
        on.gallery->setGalleryGroup(nullptr);
        click(on.gallery, inRow(1));
        typeKeys(on.gallery,
                 {Qt::Key_Home, Qt::Key_End, Qt::Key_Down, Qt::Key_PageDown, Qt::Key_Space});
    });
}

void tst_Ribbon::presses()
{
    QFETCH(Act, act);
    QFETCH(QList<int>, presses);
    Galleries galleries;
    galleries.show();
    act(galleries);
    QCOMPARE(galleries.presses, presses);
    QCOMPARE(galleries.pressesInMenu, QList<int>{});
    const int checked = presses.isEmpty() ? 0 : presses.last();
    if (galleries.gallery->galleryGroup())
        QCOMPARE(galleries.checked(), (QList<int>{checked, checked}));
}

void tst_Ribbon::scrolling()
{
    Galleries galleries;
    galleries.show();
    QAbstractButton *up = galleries.button(0);
    QAbstractButton *down = galleries.button(1);
    QVERIFY(!up->isEnabled());
    click(down);
    click(down);
    QCOMPARE(topItem(galleries), 2);
    click(up);
    QCOMPARE(topItem(galleries), 1);

    // Fine turns of a wheel add up.
    wheel(galleries.gallery, {-60});
    QCOMPARE(topItem(galleries), 1);
    wheel(galleries.gallery, {-60});
    QCOMPARE(topItem(galleries), 2);
    wheel(galleries.gallery, {-120 * count});
    QVERIFY(up->isEnabled());
    QVERIFY(!down->isEnabled());
    QCOMPARE(topItem(galleries), count - 3);

    // A newly checked item comes into sight; one that was checked already leaves the rows alone.
    galleries.gallery->setCheckedIndex(2);
    galleries.gallery->setCheckedIndex(5);
    QCOMPARE(topItem(galleries), 3);
    galleries.gallery->setCheckedIndex(2);
    wheel(galleries.gallery, {-120 * count});
    galleries.gallery->setCheckedIndex(2);
    QCOMPARE(topItem(galleries), count - 3);

    galleries.gallery->setFixedHeight(cell.height() * count + 2);
    QCOMPARE(topItem(galleries), 0);
}

void tst_Ribbon::keysInAGrid()
{
    Galleries galleries;
    galleries.gallery->setFixedSize(2 * cell.width() + 40, 65);
    galleries.show();
    const auto press = [&](std::initializer_list<Qt::Key> keys) {
        typeKeys(galleries.gallery, keys);
        typeKeys(galleries.gallery, {Qt::Key_Space});
        return galleries.presses.constLast();
    };
    QCOMPARE(press({Qt::Key_Right, Qt::Key_Down}), 3);
    QCOMPARE(press({Qt::Key_Right, Qt::Key_Left, Qt::Key_Left}), 2);
    galleries.gallery->setLayoutDirection(Qt::RightToLeft);
    QCOMPARE(press({Qt::Key_Left}), 3);
    galleries.gallery->setCheckedIndex(0);
    click(galleries.gallery, inRow(0, 1));
    QCOMPARE(galleries.presses.constLast(), 0);
}

void tst_Ribbon::menu()
{
    const std::pair<Act, QList<int>> rows[] = {
            {[](Galleries &on) { click(on.copy, inRow(9)); }, {9}},
            {[](Galleries &on) {
                 typeKeys(on.menu, {Qt::Key_Up, Qt::Key_Up, Qt::Key_Return});
             },
             {6}},
            {[](Galleries &on) {
                 typeKeys(on.menu, {Qt::Key_Down, Qt::Key_Escape});
             },
             {}}};
    for (const auto &[act, presses] : rows) {
        Galleries galleries;
        QSignalSpy shown(galleries.menu, &QMenu::aboutToShow);
        QSignalSpy hidden(galleries.menu, &QMenu::aboutToHide);
        galleries.gallery->setCheckedIndex(8);
        openMenu(galleries);
        QVERIFY(galleries.button(2)->isDown());
        QVERIFY(galleries.menu->rect().contains(galleries.copy->geometry()));
        QVERIFY(galleries.copy->hasFocus());
        QCOMPARE(galleries.checked(), (QList<int>{8, 8}));
        act(galleries);
        QCOMPARE(galleries.pressesInMenu, presses);
        QCOMPARE(galleries.presses, QList<int>{});
        QVERIFY(!galleries.menu->isVisible() && !galleries.button(2)->isDown());
        QVERIFY(shown.count() == 1 && hidden.count() == 1);
        const int checked = presses.value(0, 8);
        QCOMPARE(galleries.checked(), (QList<int>{checked, checked}));
        QVERIFY(galleries.gallery->hasFocus());
    }
}

void tst_Ribbon::menuOpensAndClosesByItsButton()
{
    Galleries galleries;
    QSignalSpy shown(galleries.menu, &QMenu::aboutToShow);
    openMenu(galleries);
    const QWidget *button = galleries.button(2);
    const QPoint onButton =
            galleries.menu->mapFromGlobal(button->mapToGlobal(button->rect().center()));
    QTest::mousePress(galleries.menu->windowHandle(), Qt::LeftButton, {}, onButton);
    QCoreApplication::processEvents();
    QTest::mouseRelease(galleries.window.windowHandle(), Qt::LeftButton);
    QVERIFY(!galleries.menu->isVisible());
    QCOMPARE(shown.count(), 1);
    click(button);
    QVERIFY(galleries.menu->isVisible());
    galleries.menu->close();
    typeKeys(galleries.gallery, {Qt::Key_F4});
    QCOMPARE(shown.count(), 3);
    QVERIFY(galleries.menu->isVisible());
    galleries.menu->close();

    // One drag from the button to an item.
    mouse(QEvent::MouseButtonPress, button, button->rect().center());
    mouse(QEvent::MouseMove, galleries.copy, inRow(0));
    mouse(QEvent::MouseMove, galleries.copy, inRow(4));
    mouse(QEvent::MouseButtonRelease, galleries.copy, inRow(4));
    QCOMPARE(galleries.pressesInMenu, QList<int>{4});
    QTRY_VERIFY(!galleries.menu->isVisible());
    QCOMPARE(galleries.checked(), (QList<int>{4, 4}));
}

void tst_Ribbon::buttonsCome()
{
    Galleries galleries;
    galleries.show();
    const auto shown = [&] {
        QString all;
        for (int index = 0; index < 3; ++index)
            all += galleries.button(index)->isVisible() ? QLatin1Char('x') : QLatin1Char('-');
        return all;
    };
    QCOMPARE(shown(), QStringLiteral("xxx"));
    galleries.gallery->setScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    QCOMPARE(shown(), QStringLiteral("--x"));
    delete galleries.copy;
    galleries.gallery->setPopupMenu(nullptr);
    QVERIFY(!galleries.menu);
    QCOMPARE(shown(), QStringLiteral("---"));
    galleries.gallery->setScrollBarPolicy(Qt::ScrollBarAsNeeded);
    QCOMPARE(shown(), QStringLiteral("xx-"));
    while (galleries.group->getItemCount() > 3)
        delete galleries.group->item(3);
    QCOMPARE(shown(), QStringLiteral("---"));
    galleries.gallery->setScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    QCOMPARE(shown(), QStringLiteral("xx-"));
}

/// The icon lies where it should; what the style draws is its own business.
void tst_Ribbon::looks()
{
    Galleries galleries;
    const QColor red(Qt::red);
    galleries.group->item(0)->setIcon(plainIcon(red));
    galleries.group->item(1)->setIcon({});
    galleries.group->item(2)->setIcon(QIcon(QStringLiteral(":/no-such-picture.png")));
    galleries.show();
    const QImage image = galleries.gallery->grab().toImage();
    const QRect icon(1, 1, galleries.button(0)->x() - 1, 21);
    const int left = icon.center().x() - 7;
    QCOMPARE(image.pixelColor(left, 3), red);
    QCOMPARE(image.pixelColor(left + 14, 18), red);
    QVERIFY(image.pixelColor(left, 2) != red);
    QVERIFY(image.pixelColor(left, 19) != red);
    // A caption stands in for a missing icon, be there none or one without a picture.
    for (const int row : {1, 2}) {
        const QRect inside(2, 2 + 21 * row, icon.width() - 2, 19);
        galleries.group->item(row)->setCaption(QString());
        QVERIFY(galleries.gallery->grab().toImage().copy(inside) != image.copy(inside));
    }
    // With labels, the icon is at the left.
    galleries.gallery->setLabelsVisible(true);
    QCOMPARE(galleries.gallery->grab().toImage().pixelColor(6, 11), red);
}

void tst_Ribbon::toolTips()
{
    Galleries galleries;
    openMenu(galleries);
    const QString caption = galleries.group->item(1)->caption();
    QCOMPARE(toolTipAt(galleries.gallery, inRow(1)), caption);
    QCOMPARE(toolTipAt(galleries.copy, inRow(1)), QString());
    const QString longer = caption.repeated(5);
    galleries.group->item(1)->setCaption(longer);
    QCOMPARE(toolTipAt(galleries.copy, inRow(1)), longer);
    galleries.copy->setFixedWidth(galleries.copy->sizeHint().width());
    QCOMPARE(toolTipAt(galleries.copy, inRow(1)), QString());
}

void tst_Ribbon::severalGalleries()
{
    Galleries galleries;
    galleries.show();
    RibbonGallery other;
    other.setGalleryGroup(galleries.group);
    other.resize(120, 65);
    showOnScreen(other);
    other.setCheckedIndex(4);
    QCOMPARE(galleries.gallery->checkedItem(), galleries.group->item(0));

    const QImage before = other.grab().toImage();
    galleries.group->item(4)->setIcon(plainIcon(Qt::black));
    QVERIFY(other.grab().toImage() != before);

    // The item that goes takes the check mark along; those behind it move up.
    QSignalSpy changes(galleries.group, &RibbonGalleryGroup::changed);
    const RibbonGalleryItem *next = galleries.group->item(5);
    delete galleries.group->item(4);
    QCOMPARE(changes.count(), 1);
    QVERIFY(!other.checkedItem());
    QCOMPARE(galleries.group->item(4), next);

    // An item is in one group only, and only there it can be checked.
    const std::unique_ptr<RibbonGalleryGroup> second(RibbonGalleryGroup::createGalleryGroup());
    RibbonGalleryItem *moved = galleries.group->item(0);
    second->appendItem(moved);
    second->appendItem(moved);
    second->appendItem(nullptr);
    QCOMPARE(second->getItemCount(), 1);
    QCOMPARE(galleries.group->getItemCount(), count - 2);
    QVERIFY(!galleries.gallery->checkedItem());
    other.setCheckedIndex(1);
    other.setCheckedItem(moved);
    QVERIFY(!other.checkedItem());

    other.setGalleryGroup(second.get());
    other.setCheckedItem(moved);
    galleries.group->item(0)->setCaption({});
    QCOMPARE(other.checkedItem(), moved);
    QCOMPARE(galleries.presses.count(), 0);
}

void tst_Ribbon::destruction()
{
    for (const bool isOpen : {false, true}) {
        std::unique_ptr<Galleries> on;
        const auto make = [&]() -> QList<QPointer<QObject>> {
            on = std::make_unique<Galleries>();
            if (isOpen)
                openMenu(*on);
            return {on->copy.data(), on->group.data(), on->menu.data(), on->gallery.data()};
        };
        destroyInEveryOrder(make, [&] {
            for (RibbonGallery *gallery :
                 std::initializer_list<RibbonGallery *>{on->gallery, on->copy}) {
                if (gallery)
                    gallery->grab();
                if (gallery && !on->group)
                    QVERIFY(!gallery->checkedItem() && !gallery->galleryGroup());
            }
            if (on->menu)
                on->menu->grab();
            else
                QVERIFY(!on->copy && !QApplication::activePopupWidget());
        });
    }
}

void tst_Ribbon::destructionInsideAPress()
{
    for (const bool isInMenu : {false, true}) {
        for (const bool isByKey : {false, true}) {
            Galleries galleries;
            galleries.show();
            if (isInMenu)
                openMenu(galleries);
            RibbonGallery *pressed = isInMenu ? galleries.copy.data() : galleries.gallery.data();
            connect(pressed, &RibbonGallery::itemPressed, this, [on = &galleries] {
                delete on->copy;
                delete on->group;
                delete on->gallery;
            });
            if (isByKey)
                QTest::keyPress(pressed->window()->windowHandle(), Qt::Key_Space);
            else
                click(pressed, inRow(1));
            QCOMPARE(galleries.presses.count() + galleries.pressesInMenu.count(), 1);
            QVERIFY(!galleries.menu);
        }
    }
}

void tst_Ribbon::narrowBar()
{
    QWidget window;
    window.resize(300, 200);
    auto *layout = new QVBoxLayout(&window);
    layout->setContentsMargins(0, 0, 0, 0);
    auto &bar = *new KcHost::RibbonBar;
    layout->addWidget(&bar);
    layout->addStretch(1);

    KcHost::RibbonPage *home = bar.addPage(QStringLiteral("Home"));
    QList<KcHost::RibbonGroup *> groups;
    for (int number = 0; number < 5; ++number) {
        groups.append(home->addGroup(QString::number(number)));
        auto *wide = new QWidget;
        wide->setFixedSize(150, 65);
        groups.constLast()->addWidget(wide);
    }
    KcHost::RibbonPage *view = bar.addPage(QStringLiteral("View"));
    KcHost::RibbonGroup *views = view->addGroup(QStringLiteral("Views"));
    Galleries galleries;
    views->addWidget(galleries.gallery);
    auto *action = new QAction(plainIcon(Qt::red), QStringLiteral("Fit"), &bar);
    QSignalSpy triggered(action, &QAction::triggered);
    const QPointer<QToolButton> button = views->addButton(action);

    // The bar has its size at once, not after some rounds of events with a wrong one.
    window.show();
    QCOMPARE(groups.first()->visibleRegion().boundingRect(), groups.first()->rect());
    showOnScreen(window);
    for (int number = 1; number < groups.size(); ++number)
        QCOMPARE(groups.at(number)->x(), groups.at(number - 1)->geometry().right() + 1);

    const auto isWhole = [&](int number) {
        return groups.at(number)->visibleRegion().boundingRect() == groups.at(number)->rect();
    };
    QList<QToolButton *> ends =
            home->findChildren<QToolButton *>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(ends.size(), 2);
    QTRY_VERIFY(isWhole(0));
    QVERIFY(!isWhole(4));
    QVERIFY(!ends.at(0)->isEnabled());
    for (int turns = 0; turns < 20 && ends.at(1)->isEnabled(); ++turns)
        click(ends.at(1));
    QVERIFY(isWhole(4));
    wheel(groups.at(4), {120 * 20});
    QVERIFY(isWhole(0));
    QVERIFY(ends.at(0)->isVisible());
    window.resize(1000, window.height());
    QTRY_VERIFY(!ends.at(0)->isVisible());
    QVERIFY(isWhole(0) && isWhole(4));
    QCoreApplication::processEvents(); // all is in its place before it becomes narrow
    window.resize(700, window.height());
    QTRY_COMPARE(ends.at(1)->visibleRegion().boundingRect(), ends.at(1)->rect());

    bar.setCurrentPage(nullptr);
    QCOMPARE(bar.currentPage(), home);
    QVERIFY(!galleries.gallery->isVisible());
    auto *tabs = bar.findChild<QTabBar *>();
    click(tabs, tabs->tabRect(1).center());
    QCOMPARE(bar.currentPage(), view);
    QCOMPARE(galleries.gallery->size(), QSize(120, 65));
    QTRY_COMPARE(galleries.gallery->visibleRegion().boundingRect(), galleries.gallery->rect());
    click(button);
    QCOMPARE(triggered.count(), 1);
    delete action;
    QTRY_VERIFY(!button);
    click(galleries.gallery, inRow(1));
    QCOMPARE(galleries.presses, QList<int>{1});
}

QTEST_MAIN(tst_Ribbon)
#include "tst_ribbon.moc"
