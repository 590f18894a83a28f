#include "Support.h"

#include <KcHost/RibbonBar.h>

#include <NsRc.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QHelpEvent>
#include <QPointer>
#include <QSignalSpy>
#include <QToolButton>
#include <QToolTip>
#include <QVBoxLayout>

#include <functional>

using namespace NsRc;

namespace {

constexpr QSize cell(120, 21);
constexpr QSize inRibbon(120, 65);
constexpr int count = 10;

QIcon plainIcon(const QColor &color)
{
    QPixmap pixmap(16, 16);
    pixmap.fill(color);
    return QIcon(pixmap);
}

RibbonGalleryGroup *newGroup()
{
    auto *group = RibbonGalleryGroup::createGalleryGroup();
    group->setSize(cell);
    for (int number = 0; number < count; ++number) {
        auto *item = new RibbonToolGalleryItem;
        item->setIcon(plainIcon(QColor::fromHsv(number * 30, 255, 255).toRgb()));
        item->setCaption(QStringLiteral("Item %1").arg(number));
        group->appendItem(item);
    }
    return group;
}

/// A gallery as a ribbon has it, and its copy in its drop-down menu, with what is heard of them. The
/// listener checks what is pressed in both.
struct Galleries
{
    Galleries()
        : group(newGroup())
        , gallery(new RibbonGallery(&window))
        , menu(OfficePopupMenu::createPopupMenu(nullptr))
        , copy(new RibbonGallery)
    {
        window.resize(400, 260);
        gallery->setFixedSize(inRibbon);
        gallery->setLabelsVisible(false);
        gallery->setContentsMargins(0, 1, 0, 1);
        gallery->setBorderVisible(true);
        gallery->setPopupMenu(menu);
        copy->setFixedSize(cell.width(), count * cell.height() + 2);
        copy->setScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        for (RibbonGallery *shown : {gallery.data(), copy.data()}) {
            shown->setGalleryGroup(group);
            shown->setCheckedIndex(0);
            QObject::connect(shown, &RibbonGallery::itemPressed, shown,
                             [this](RibbonGalleryItem *item) {
                                 presses.append(group->indexOf(item));
                                 gallery->setCheckedItem(item);
                                 copy->setCheckedItem(item);
                             });
        }
        menu->addWidget(copy);
    }
    ~Galleries()
    {
        delete copy;
        delete group;
        delete gallery;
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

    QWidget window;
    QPointer<RibbonGalleryGroup> group;
    QPointer<RibbonGallery> gallery;
    QPointer<OfficePopupMenu> menu;
    QPointer<RibbonGallery> copy;
    QList<int> presses;
};

/// The middle of a row that is in sight; of the second column, on request.
QPoint inRow(int row, int column = 0)
{
    return {40 + 120 * column, 1 + cell.height() * row + cell.height() / 2};
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

/// A window of @p width with @p bar at its top, which it owns.
std::unique_ptr<QWidget> barWindow(KcHost::RibbonBar *bar, int width)
{
    auto window = std::make_unique<QWidget>();
    auto *layout = new QVBoxLayout(window.get());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(bar);
    layout->addStretch(1);
    window->resize(width, 200);
    return window;
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
    void menu_data();
    void menu();
    void menuOpensAndClosesByItsButton();
    void buttonsCome();
    void looks();
    void toolTips();
    void severalGalleries();
    void destruction_data();
    void destruction();
    void destructionInsideAPress_data();
    void destructionInsideAPress();
    void bar();
    void narrowBar();
};

void tst_Ribbon::presses_data()
{
    QTest::addColumn<Act>("act");
    QTest::addColumn<QList<int>>("presses");

    constexpr auto press = QEvent::MouseButtonPress;
    constexpr auto move = QEvent::MouseMove;
    constexpr auto release = QEvent::MouseButtonRelease;
    const auto add = [](const char *name, const QList<int> &presses, const Act &act) {
        QTest::newRow(name) << act << presses;
    };
    add("click", {1}, [](Galleries &on) { click(on.gallery, inRow(1)); });
    add("checked item", {0}, [](Galleries &on) { click(on.gallery, inRow(0)); });
    add("right button", {}, [](Galleries &on) {
        mouse(press, on.gallery, inRow(1), Qt::RightButton);
        mouse(release, on.gallery, inRow(1), Qt::RightButton);
    });
    add("drag to another item", {}, [](Galleries &on) {
        mouse(press, on.gallery, inRow(1));
        mouse(move, on.gallery, inRow(2));
        mouse(release, on.gallery, inRow(2));
    });
    add("drag off", {}, [](Galleries &on) {
        mouse(press, on.gallery, inRow(1));
        mouse(release, on.gallery, {300, 30});
    });
    add("drag away and back", {1}, [](Galleries &on) {
        mouse(press, on.gallery, inRow(1));
        mouse(move, on.gallery, inRow(2));
        mouse(move, on.gallery, inRow(1));
        mouse(release, on.gallery, inRow(1));
    });
    add("item deleted under the mouse", {}, [](Galleries &on) {
        mouse(press, on.gallery, inRow(1));
        delete on.group->item(1);
        mouse(release, on.gallery, inRow(1));
    });
    add("Down, Space", {1}, [](Galleries &on) {
        typeKeys(on.gallery, {Qt::Key_Down, Qt::Key_Space});
    });
    add("End, Up, Return", {8}, [](Galleries &on) {
        typeKeys(on.gallery, {Qt::Key_End, Qt::Key_Up, Qt::Key_Return});
    });
    add("beyond both ends", {9, 0}, [](Galleries &on) {
        typeKeys(on.gallery, {Qt::Key_End, Qt::Key_Down, Qt::Key_Enter, Qt::Key_Home, Qt::Key_Up,
                              Qt::Key_Enter});
    });
    add("pages", {3, 6, 3}, [](Galleries &on) {
        typeKeys(on.gallery, {Qt::Key_PageDown, Qt::Key_Space, Qt::Key_PageDown, Qt::Key_Space,
                              Qt::Key_PageUp, Qt::Key_Space});
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
    if (presses.isEmpty())
        return;
    for (const RibbonGallery *gallery : {galleries.gallery.data(), galleries.copy.data()})
        QCOMPARE(gallery->checkedItem(), galleries.group->item(presses.constLast()));
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
    galleries.gallery->setCheckedIndex(-1);
    QVERIFY(!galleries.gallery->checkedItem());

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

void tst_Ribbon::menu_data()
{
    QTest::addColumn<Act>("act");
    QTest::addColumn<QList<int>>("presses");

    QTest::newRow("click") << Act([](Galleries &on) { click(on.copy, inRow(5)); }) << QList<int>{5};
    QTest::newRow("last item") << Act([](Galleries &on) { click(on.copy, inRow(count - 1)); })
                               << QList<int>{count - 1};
    QTest::newRow("keys") << Act([](Galleries &on) {
        typeKeys(on.menu, {Qt::Key_Down, Qt::Key_Down, Qt::Key_Return});
    }) << QList<int>{2};
    QTest::newRow("Escape") << Act([](Galleries &on) {
        typeKeys(on.menu, {Qt::Key_Down, Qt::Key_Escape});
    }) << QList<int>{};
    QTest::newRow("closed by its program")
            << Act([](Galleries &on) { on.menu->close(); }) << QList<int>{};
}

void tst_Ribbon::menu()
{
    QFETCH(Act, act);
    QFETCH(QList<int>, presses);
    Galleries galleries;
    QSignalSpy shown(galleries.menu, &QMenu::aboutToShow);
    QSignalSpy hidden(galleries.menu, &QMenu::aboutToHide);
    bool isOpenAtPress = true;
    openMenu(galleries);
    QVERIFY(galleries.button(2)->isDown());
    QCOMPARE(galleries.copy->size(), QSize(120, 212));
    QVERIFY(galleries.menu->rect().contains(galleries.copy->geometry()));
    QVERIFY(galleries.copy->hasFocus());
    // This listener is the last one.
    connect(galleries.copy, &RibbonGallery::itemPressed, this,
            [&] { isOpenAtPress = isOpenAtPress && galleries.menu->isVisible(); });
    act(galleries);
    QCOMPARE(galleries.presses, presses);
    QVERIFY(isOpenAtPress);
    QVERIFY(!galleries.menu->isVisible());
    QVERIFY(!galleries.button(2)->isDown());
    QCOMPARE(shown.count(), 1);
    QCOMPARE(hidden.count(), 1);
    QCOMPARE(galleries.gallery->checkedItem(),
             galleries.group->item(presses.isEmpty() ? 0 : presses.first()));
    QVERIFY(galleries.gallery->hasFocus());
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

/// The icon lies where it should, on light and dark; what the style draws is its own business.
void tst_Ribbon::looks()
{
    Galleries galleries;
    galleries.group->item(1)->setIcon({});
    galleries.group->item(2)->setIcon(QIcon(QStringLiteral(":/no-such-picture.png")));
    galleries.show();
    for (const QColor &base : {QColor(Qt::white), QColor(30, 30, 30)}) {
        QPalette palette(base);
        palette.setColor(QPalette::Base, base);
        galleries.gallery->setPalette(palette);
        const QImage image = galleries.gallery->grab().toImage();
        const QRect icon = QRect(1, 1, galleries.button(0)->x() - 1, 21);
        const QColor red(Qt::red);
        const int left = icon.center().x() - 7;
        QCOMPARE(image.pixelColor(left, 3), red);
        QCOMPARE(image.pixelColor(left + 14, 18), red);
        QVERIFY(image.pixelColor(left, 2) != red);
        QVERIFY(image.pixelColor(left, 19) != red);
        // A caption stands in for a missing icon.
        const QRect middle(2, 23, icon.width() - 2, 19);
        const QImage before = image.copy(middle);
        galleries.group->item(1)->setCaption(QString());
        QVERIFY(galleries.gallery->grab().toImage().copy(middle) != before);
        galleries.group->item(1)->setCaption(QStringLiteral("Item 1"));
    }
    // With labels, the icon is at the left.
    galleries.gallery->setLabelsVisible(true);
    QCOMPARE(galleries.gallery->grab().toImage().pixelColor(6, 11), QColor(Qt::red));
    galleries.gallery->setFixedSize(2, 2);
    QVERIFY(!galleries.gallery->grab().isNull());
}

void tst_Ribbon::toolTips()
{
    Galleries galleries;
    openMenu(galleries);
    const QString caption = QStringLiteral("Item 1");
    QCOMPARE(toolTipAt(galleries.gallery, inRow(1)), caption);
    QCOMPARE(toolTipAt(galleries.copy, inRow(1)), QString());
    const QString longer = caption.repeated(5);
    galleries.group->item(1)->setCaption(longer);
    QCOMPARE(toolTipAt(galleries.copy, inRow(1)), longer);
    QCOMPARE(toolTipAt(galleries.gallery, {-5, -5}), QString());
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
    delete galleries.group->item(4);
    QCOMPARE(changes.count(), 1);
    QVERIFY(!other.checkedItem());
    QCOMPARE(galleries.group->item(4)->caption(), QStringLiteral("Item 5"));

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

void tst_Ribbon::destruction_data()
{
    QTest::addColumn<QString>("order");
    QTest::addColumn<bool>("isOpen");
    QString order = QStringLiteral("cgmr"); // copy, group, menu, the gallery in the ribbon
    do {
        for (const bool isOpen : {false, true})
            QTest::addRow("%s, %s", qPrintable(order), isOpen ? "open" : "closed")
                    << order << isOpen;
    } while (std::next_permutation(order.begin(), order.end()));
}

void tst_Ribbon::destruction()
{
    QFETCH(QString, order);
    QFETCH(bool, isOpen);
    Galleries galleries;
    if (isOpen)
        openMenu(galleries);
    for (const QChar part : order) {
        if (part == QLatin1Char('c'))
            delete galleries.copy;
        else if (part == QLatin1Char('g'))
            delete galleries.group;
        else if (part == QLatin1Char('m'))
            delete galleries.menu;
        else
            delete galleries.gallery;
        // Those that are left go on without it.
        for (RibbonGallery *gallery : {galleries.gallery.data(), galleries.copy.data()}) {
            if (gallery)
                gallery->grab();
            if (gallery && !galleries.group)
                QVERIFY(!gallery->checkedItem() && !gallery->galleryGroup());
        }
        if (galleries.menu)
            galleries.menu->grab();
    }
    QVERIFY(!galleries.copy);
    QVERIFY(!galleries.menu);
    QVERIFY(!QApplication::activePopupWidget());
}

void tst_Ribbon::destructionInsideAPress_data()
{
    QTest::addColumn<Act>("press");
    QTest::addColumn<bool>("isInMenu");
    const Act mouse = [](Galleries &on) {
        const bool isInMenu = on.menu->isVisible();
        click(isInMenu ? on.copy : on.gallery, inRow(1));
    };
    const Act key = [](Galleries &on) {
        QTest::keyPress(on.menu->isVisible() ? on.menu->windowHandle() : on.window.windowHandle(),
                        Qt::Key_Space);
    };
    for (const bool isInMenu : {false, true}) {
        QTest::addRow("mouse, %s", isInMenu ? "menu" : "ribbon") << mouse << isInMenu;
        QTest::addRow("key, %s", isInMenu ? "menu" : "ribbon") << key << isInMenu;
    }
}

void tst_Ribbon::destructionInsideAPress()
{
    QFETCH(Act, press);
    QFETCH(bool, isInMenu);
    Galleries galleries;
    if (isInMenu)
        openMenu(galleries);
    else
        galleries.show();
    RibbonGallery *pressed = isInMenu ? galleries.copy : galleries.gallery;
    connect(pressed, &RibbonGallery::itemPressed, this, [on = &galleries] {
        delete on->copy;
        delete on->group;
        delete on->gallery;
    });
    press(galleries);
    QCOMPARE(galleries.presses.count(), 1);
    QVERIFY(!galleries.menu);
}

void tst_Ribbon::bar()
{
    Galleries galleries;
    auto &bar = *new KcHost::RibbonBar;
    QVERIFY(!bar.currentPage());
    KcHost::RibbonPage *home = bar.addPage(QStringLiteral("Home"));
    KcHost::RibbonPage *view = bar.addPage(QStringLiteral("View"));
    KcHost::RibbonGroup *views = view->addGroup(QStringLiteral("Views"));
    views->addWidget(galleries.gallery);
    auto *action = new QAction(plainIcon(Qt::red), QStringLiteral("Fit"), &bar);
    QSignalSpy triggered(action, &QAction::triggered);
    const QPointer<QToolButton> button = views->addButton(action);
    const std::unique_ptr<QWidget> window = barWindow(&bar, 800);
    showOnScreen(*window);
    QCOMPARE(bar.currentPage(), home);
    bar.setCurrentPage(nullptr);
    QCOMPARE(bar.currentPage(), home);
    QVERIFY(!galleries.gallery->isVisible());

    auto *tabs = bar.findChild<QTabBar *>();
    click(tabs, tabs->tabRect(1).center());
    QCOMPARE(bar.currentPage(), view);
    QVERIFY(galleries.gallery->isVisible());
    QCOMPARE(galleries.gallery->size(), inRibbon);
    QTRY_COMPARE(galleries.gallery->visibleRegion().boundingRect(), galleries.gallery->rect());

    click(button);
    QCOMPARE(triggered.count(), 1);
    delete action;
    QTRY_VERIFY(!button);
    click(galleries.gallery, inRow(1));
    QCOMPARE(galleries.presses, QList<int>{1});
}

void tst_Ribbon::narrowBar()
{
    auto &bar = *new KcHost::RibbonBar;
    KcHost::RibbonPage *page = bar.addPage(QStringLiteral("Home"));
    QList<KcHost::RibbonGroup *> groups;
    for (int number = 0; number < 5; ++number) {
        groups.append(page->addGroup(QString::number(number)));
        auto *wide = new QWidget;
        wide->setFixedSize(150, 65);
        groups.constLast()->addWidget(wide);
    }
    // The bar has its size at once, not after some rounds of events with a wrong one.
    const std::unique_ptr<QWidget> window = barWindow(&bar, 300);
    window->show();
    QCOMPARE(groups.first()->visibleRegion().boundingRect(), groups.first()->rect());
    showOnScreen(*window);
    for (int number = 1; number < groups.size(); ++number)
        QCOMPARE(groups.at(number)->x(), groups.at(number - 1)->geometry().right() + 1);

    const auto isWhole = [&](int number) {
        return groups.at(number)->visibleRegion().boundingRect() == groups.at(number)->rect();
    };
    QList<QToolButton *> ends =
            page->findChildren<QToolButton *>(QString(), Qt::FindDirectChildrenOnly);
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
    window->resize(1000, window->height());
    QTRY_VERIFY(!ends.at(0)->isVisible());
    QVERIFY(isWhole(0) && isWhole(4));
}

QTEST_MAIN(tst_Ribbon)
#include "tst_ribbon.moc"
