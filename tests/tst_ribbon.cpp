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

    /// Whether that is the checked item of the gallery and of its copy.
    bool isChecked(int index) const
    {
        const RibbonGalleryItem *item = group->item(index);
        return gallery->checkedItem() == item && copy->checkedItem() == item;
    }

    QWidget window;
    QPointer<ViewGallery> gallery = new ViewGallery;
    QPointer<RibbonGalleryGroup> group = gallery->galleryGroup();
    QPointer<OfficePopupMenu> menu = gallery->popupMenu();
    QPointer<RibbonGallery> copy = gallery->popupGallery();
    QList<int> presses;
    QList<int> pressesInMenu; // -1 for one that comes after the menu has closed
};

/// The middle of a row that is in sight; of the second column, on request.
QPoint inRow(int row, int column = 0)
{
    return {40 + 120 * column, 1 + cell.height() * row + cell.height() / 2};
}

/// What a user does, in words: "press 1", "move 2" and "release 2" in rows, and the names of keys.
void act(const QWidget *gallery, const QString &words)
{
    static const QHash<QString, QEvent::Type> types{{"press", QEvent::MouseButtonPress},
                                                    {"move", QEvent::MouseMove},
                                                    {"release", QEvent::MouseButtonRelease}};
    QEvent::Type type = QEvent::None;
    const QStringList all = words.split(' ');
    for (const QString &word : all) {
        type = types.value(word, type);
        if (word.at(0).isDigit())
            mouse(type, gallery, inRow(word.toInt()));
        else if (!types.contains(word))
            QTest::keySequence(gallery->window()->windowHandle(), QKeySequence(word));
    }
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

class tst_Ribbon : public QObject
{
    Q_OBJECT

private slots:
    void presses();
    void noPresses();
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

void tst_Ribbon::presses()
{
    const std::pair<const char *, QList<int>> rows[] = {
            {"press 1 release 1", {1}},
            {"press 1 move 2 release 2", {}},
            {"press 1 move 3 release 3", {}}, // below the gallery
            {"press 1 move 2 move 1 release 1", {1}},
            {"Down Space End Up Return End Down Enter", {1, 8, 9}},
            {"Home Up Enter PgDown Space PgDown Space PgUp Space", {0, 3, 6, 3}}};
    for (const auto &[words, presses] : rows) {
        Galleries galleries;
        galleries.show();
        act(galleries.gallery, words);
        QVERIFY2(galleries.presses == presses && galleries.pressesInMenu.isEmpty(), words);
        QVERIFY2(galleries.isChecked(presses.isEmpty() ? 0 : presses.last()), words);
    }
}

void tst_Ribbon::noPresses()
{
    Galleries galleries;
    galleries.show();
    mouse(QEvent::MouseButtonPress, galleries.gallery, inRow(1), Qt::RightButton);
    mouse(QEvent::MouseButtonRelease, galleries.gallery, inRow(1), Qt::RightButton);
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Space, {}, {}, true);
    QApplication::sendEvent(galleries.gallery, &repeated);
    act(galleries.gallery, "press 1");
    delete galleries.group->item(1);
    act(galleries.gallery, "release 1");
    QVERIFY(galleries.isChecked(0));
    galleries.gallery->setGalleryGroup(nullptr);
    act(galleries.gallery, "press 1 release 1 Home End Down PgDown Space");
    QCOMPARE(galleries.presses, QList<int>{});
}

void tst_Ribbon::scrolling()
{
    Galleries galleries;
    galleries.show();
    const QAbstractButton *up = galleries.button(0), *down = galleries.button(1);
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
    QVERIFY(up->isEnabled() && !down->isEnabled());
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
    act(galleries.gallery, "Right Down Space Right Left Left Space");
    galleries.gallery->setLayoutDirection(Qt::RightToLeft);
    act(galleries.gallery, "Left Space");
    galleries.gallery->setCheckedIndex(0);
    click(galleries.gallery, inRow(0, 1));
    QCOMPARE(galleries.presses, (QList<int>{3, 2, 3, 0}));
}

void tst_Ribbon::menu()
{
    const std::pair<const char *, QList<int>> rows[] = {
            {"press 9 release 9", {9}}, {"Up Up Return", {6}}, {"Down Esc", {}}};
    for (const auto &[words, presses] : rows) {
        Galleries galleries;
        QSignalSpy shown(galleries.menu, &QMenu::aboutToShow);
        QSignalSpy hidden(galleries.menu, &QMenu::aboutToHide);
        galleries.gallery->setCheckedIndex(8);
        openMenu(galleries);
        QVERIFY(galleries.button(2)->isDown());
        QVERIFY(galleries.menu->rect().contains(galleries.copy->geometry()));
        QVERIFY(galleries.copy->hasFocus() && galleries.isChecked(8));
        act(galleries.copy, words);
        QVERIFY2(galleries.pressesInMenu == presses && galleries.presses.isEmpty(), words);
        QVERIFY(!galleries.menu->isVisible() && !galleries.button(2)->isDown());
        QVERIFY(shown.count() == 1 && hidden.count() == 1);
        QVERIFY(galleries.isChecked(presses.value(0, 8)) && galleries.gallery->hasFocus());
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
    QVERIFY(!galleries.menu->isVisible() && shown.count() == 1);
    click(button);
    QVERIFY(galleries.menu->isVisible());
    galleries.menu->close();
    act(galleries.gallery, "F4");
    QVERIFY(galleries.menu->isVisible() && shown.count() == 3);
    galleries.menu->close();

    // One drag from the button to an item.
    mouse(QEvent::MouseButtonPress, button, button->rect().center());
    act(galleries.copy, "move 0 move 4 release 4");
    QCOMPARE(galleries.pressesInMenu, QList<int>{4});
    QTRY_VERIFY(!galleries.menu->isVisible());
    QVERIFY(galleries.isChecked(4));
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
    QVERIFY(image.pixelColor(left, 3) == red && image.pixelColor(left + 14, 18) == red);
    QVERIFY(image.pixelColor(left, 2) != red && image.pixelColor(left, 19) != red);
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
    QVERIFY(!other.checkedItem() && galleries.group->item(4) == next);

    // An item is in one group only, and only there it can be checked.
    const std::unique_ptr<RibbonGalleryGroup> second(RibbonGalleryGroup::createGalleryGroup());
    RibbonGalleryItem *moved = galleries.group->item(0);
    for (RibbonGalleryItem *item : {moved, moved, static_cast<RibbonGalleryItem *>(nullptr)})
        second->appendItem(item);
    QCOMPARE(second->getItemCount(), 1);
    QCOMPARE(galleries.group->getItemCount(), count - 2);
    QVERIFY(!galleries.gallery->checkedItem());
    other.setCheckedIndex(1);
    other.setCheckedItem(moved);
    QVERIFY(!other.checkedItem());

    other.setGalleryGroup(second.get());
    other.setCheckedItem(moved);
    galleries.group->item(0)->setCaption({});
    QVERIFY(other.checkedItem() == moved && galleries.presses.isEmpty());
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
            const auto windows = QApplication::topLevelWidgets();
            for (QWidget *left : windows)
                left->grab();
            const RibbonGallery *rest = on->gallery ? on->gallery.data() : on->copy.data();
            QVERIFY(!rest || on->group || !(rest->checkedItem() || rest->galleryGroup()));
            QVERIFY(on->menu || !(on->copy || QApplication::activePopupWidget()));
        });
    }
}

void tst_Ribbon::destructionInsideAPress()
{
    for (const bool isInMenu : {false, true}) {
        for (const char *words : {"press 1 release 1", "Space"}) {
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
            act(pressed, words);
            QCOMPARE(galleries.presses.count() + galleries.pressesInMenu.count(), 1);
            QVERIFY(!galleries.menu);
        }
    }
}

void tst_Ribbon::narrowBar()
{
    QWidget window;
    window.resize(300, 200);
    QVBoxLayout layout(&window);
    layout.setContentsMargins({});
    KcHost::RibbonBar bar;
    layout.addWidget(&bar);
    layout.addStretch(1);

    KcHost::RibbonPage *home = bar.addPage("Home"), *view = bar.addPage("View");
    QList<KcHost::RibbonGroup *> groups;
    for (int number = 0; number < 5; ++number) {
        groups.append(home->addGroup(QString::number(number)));
        auto *wide = new QWidget;
        wide->setFixedSize(150, 65);
        groups.constLast()->addWidget(wide);
    }
    KcHost::RibbonGroup *views = view->addGroup("Views");
    Galleries galleries;
    views->addWidget(galleries.gallery);
    auto *action = new QAction(plainIcon(Qt::red), "Fit", &bar);
    QSignalSpy triggered(action, &QAction::triggered);
    const QPointer<QToolButton> button = views->addButton(action);
    const auto isWhole = [](const QWidget *widget) {
        return widget->visibleRegion().boundingRect() == widget->rect();
    };

    // The bar has its size at once, not after some rounds of events with a wrong one.
    window.show();
    const KcHost::RibbonGroup *first = groups.first(), *last = groups.last();
    QVERIFY(isWhole(first));
    showOnScreen(window);
    for (int number = 1; number < groups.size(); ++number)
        QCOMPARE(groups.at(number)->x(), groups.at(number - 1)->geometry().right() + 1);

    const auto ends = home->findChildren<QToolButton *>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(ends.size(), 2);
    QTRY_VERIFY(isWhole(first));
    QVERIFY(!isWhole(last) && !ends.at(0)->isEnabled());
    for (int turns = 0; turns < 20 && ends.at(1)->isEnabled(); ++turns)
        click(ends.at(1));
    QVERIFY(isWhole(last));
    wheel(groups.at(4), {120 * 20});
    QVERIFY(isWhole(first) && ends.at(0)->isVisible());
    window.resize(1000, window.height());
    QTRY_VERIFY(!ends.at(0)->isVisible());
    QVERIFY(isWhole(first) && isWhole(last));
    QCoreApplication::processEvents(); // all is in its place before it becomes narrow
    window.resize(700, window.height());
    QTRY_VERIFY(isWhole(ends.at(1)));

    bar.setCurrentPage(nullptr);
    QVERIFY(bar.currentPage() == home && !galleries.gallery->isVisible());
    auto *tabs = bar.findChild<QTabBar *>();
    click(tabs, tabs->tabRect(1).center());
    QCOMPARE(bar.currentPage(), view);
    QCOMPARE(galleries.gallery->size(), QSize(120, 65));
    QTRY_VERIFY(isWhole(galleries.gallery));
    click(button);
    QCOMPARE(triggered.count(), 1);
    delete action;
    QTRY_VERIFY(!button);
    click(galleries.gallery, inRow(1));
    QCOMPARE(galleries.presses, QList<int>{1});
}

QTEST_MAIN(tst_Ribbon)
#include "tst_ribbon.moc"
