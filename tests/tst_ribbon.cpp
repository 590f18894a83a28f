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
using namespace OvCc;

namespace {

constexpr QSize cell(120, 21);
constexpr int count = 10;

QIcon plainIcon(const QColor &color)
{
    QPixmap pixmap(16, 16);
    pixmap.fill(color);
    return QIcon(pixmap);
}

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

/// A gallery as a ribbon has it, and its copy in its drop-down menu, with the items that are pressed
/// in them.
class tst_Ribbon : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_window.reset(); }
    void items();
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

private:
    QAbstractButton *button(int index) const;
    bool isChecked(int index) const;
    int topItem() const;
    void openMenu() const;

    std::unique_ptr<QWidget> m_window;
    QPointer<ViewGallery> m_gallery;
    QPointer<RibbonGalleryGroup> m_group;
    QPointer<OfficePopupMenu> m_menu;
    QPointer<RibbonGallery> m_copy;
    QList<int> m_presses;
    QList<int> m_pressesInMenu; // -1 for one that comes after the menu has closed
};

void tst_Ribbon::init()
{
    m_window = std::make_unique<QWidget>();
    m_window->resize(400, 260);
    m_gallery = new ViewGallery(m_window.get());
    m_group = m_gallery->galleryGroup();
    m_menu = m_gallery->popupMenu();
    m_copy = m_gallery->popupGallery();
    m_presses = m_pressesInMenu = {};
    connect(m_gallery, &RibbonGallery::itemPressed, this,
            [this](auto *item) { m_presses.append(m_group->indexOf(item)); });
    connect(m_copy, &RibbonGallery::itemPressed, this, [this](auto *item) {
        m_pressesInMenu.append(m_menu->isVisible() ? m_group->indexOf(item) : -1);
    });
    showOnScreen(*m_window);
    m_window->activateWindow();
    m_gallery->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

QAbstractButton *tst_Ribbon::button(int index) const
{
    return m_gallery->findChildren<QAbstractButton *>(QString(), Qt::FindDirectChildrenOnly)
            .at(index);
}

/// Whether that is the checked item of the gallery and of its copy.
bool tst_Ribbon::isChecked(int index) const
{
    const RibbonGalleryItem *item = m_group->item(index);
    return m_gallery->checkedItem() == item && m_copy->checkedItem() == item;
}

/// The number of the item that a click in the top row presses.
int tst_Ribbon::topItem() const
{
    click(m_gallery, inRow(0));
    return m_presses.value(m_presses.size() - 1, -1);
}

void tst_Ribbon::openMenu() const
{
    click(button(2));
    QVERIFY(QTest::qWaitForWindowExposed(m_menu));
}

/// Two views share a name, but none a picture.
void tst_Ribbon::items()
{
    const ViewPortGallery viewports;
    for (const BaseGallery *gallery :
         std::initializer_list<BaseGallery const *>{m_gallery, &viewports}) {
        const RibbonGalleryGroup &group = *gallery->galleryGroup();
        const bool isViews = gallery == m_gallery;
        QCOMPARE(group.getItemCount(), isViews ? 10 : 12);
        QCOMPARE(gallery->popupGallery()->galleryGroup(), &group);
        QCOMPARE(gallery->checkedItem(), group.item(0));
        QSet<QString> captions;
        QList<QImage> images;
        for (int index = 0; index < group.getItemCount(); ++index) {
            captions.insert(group.item(index)->caption());
            images.append(group.item(index)->icon().pixmap(16, 16).toImage());
            QCOMPARE(images.last().size(), QSize(16, 16));
            QCOMPARE(images.indexOf(images.last()), index);
        }
        QCOMPARE(captions.size(), isViews ? 9 : 12);
    }
    QCOMPARE(m_group->item(NortheastView)->caption(), "Northeast");
    QCOMPARE(m_group->item(SoutheastView)->caption(), m_group->item(NorthwestView)->caption());
    QCOMPARE(viewports.galleryGroup()->item(ThreeBelowViewports)->caption(), "Three:Below");
}

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
        init();
        act(m_gallery, words);
        QVERIFY2(m_presses == presses && m_pressesInMenu.isEmpty(), words);
        QVERIFY2(isChecked(presses.isEmpty() ? 0 : presses.last()), words);
    }
}

void tst_Ribbon::noPresses()
{
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Space, {}, {}, true);
    QApplication::sendEvent(m_gallery, &repeated);
    mouse(QEvent::MouseButtonPress, m_gallery, inRow(1), Qt::RightButton);
    act(m_gallery, "release 1 press 1");
    mouse(QEvent::MouseButtonRelease, m_gallery, inRow(1), Qt::RightButton);
    delete m_group->item(1);
    act(m_gallery, "release 1");
    QVERIFY(isChecked(0));
    m_gallery->setGalleryGroup(nullptr);
    act(m_gallery, "press 1 release 1 Home End Down PgDown Space");
    QCOMPARE(m_presses, QList<int>{});
}

void tst_Ribbon::scrolling()
{
    const QAbstractButton *up = button(0), *down = button(1);
    QVERIFY(!up->isEnabled());
    click(down);
    click(down);
    QCOMPARE(topItem(), 2);
    click(up);
    QCOMPARE(topItem(), 1);

    // Fine turns of a wheel add up.
    wheel(m_gallery, {-60});
    QCOMPARE(topItem(), 1);
    wheel(m_gallery, {-60});
    QCOMPARE(topItem(), 2);
    wheel(m_gallery, {-120 * count});
    QVERIFY(up->isEnabled() && !down->isEnabled());
    QCOMPARE(topItem(), count - 3);

    // A newly checked item comes into sight; one that was checked already leaves the rows alone.
    m_gallery->setCheckedIndex(2);
    m_gallery->setCheckedIndex(5);
    QCOMPARE(topItem(), 3);
    m_gallery->setCheckedIndex(2);
    wheel(m_gallery, {-120 * count});
    m_gallery->setCheckedIndex(2);
    QCOMPARE(topItem(), count - 3);

    m_gallery->setFixedHeight(cell.height() * count + 2);
    QCOMPARE(topItem(), 0);
}

void tst_Ribbon::keysInAGrid()
{
    m_gallery->setFixedSize(2 * cell.width() + 40, 65);
    act(m_gallery, "Right Up Down Space Right Left Left Space End Left Down Space");
    m_gallery->setLayoutDirection(Qt::RightToLeft);
    act(m_gallery, "Left Space");
    m_gallery->setCheckedIndex(0);
    click(m_gallery, inRow(0, 1));
    QCOMPARE(m_presses, (QList<int>{3, 2, 8, 9, 0}));
}

void tst_Ribbon::menu()
{
    const std::pair<const char *, QList<int>> rows[] = {
            {"press 9 release 9", {9}}, {"Up Up Return", {6}}, {"Down Esc", {}}};
    for (const auto &[words, presses] : rows) {
        init();
        QSignalSpy shown(m_menu, &QMenu::aboutToShow);
        QSignalSpy hidden(m_menu, &QMenu::aboutToHide);
        m_gallery->setCheckedIndex(8);
        openMenu();
        QVERIFY(button(2)->isDown());
        QVERIFY(m_menu->rect().contains(m_copy->geometry()));
        QVERIFY(m_copy->hasFocus() && isChecked(8));
        act(m_copy, words);
        QVERIFY2(m_pressesInMenu == presses && m_presses.isEmpty(), words);
        QVERIFY(!m_menu->isVisible() && !button(2)->isDown());
        QVERIFY(shown.count() == 1 && hidden.count() == 1);
        QVERIFY(isChecked(presses.value(0, 8)) && m_gallery->hasFocus());
    }
}

void tst_Ribbon::menuOpensAndClosesByItsButton()
{
    QSignalSpy shown(m_menu, &QMenu::aboutToShow);
    openMenu();
    const QWidget *more = button(2);
    const QPoint center = more->rect().center();
    const QPoint onButton = m_menu->mapFromGlobal(more->mapToGlobal(center));
    QTest::mousePress(m_menu->windowHandle(), Qt::LeftButton, {}, onButton);
    QCoreApplication::processEvents();
    QTest::mouseRelease(m_window->windowHandle(), Qt::LeftButton);
    QVERIFY(!m_menu->isVisible() && shown.count() == 1);
    click(more);
    QVERIFY(m_menu->isVisible());
    m_menu->close();
    act(m_gallery, "F4");
    QVERIFY(m_menu->isVisible() && shown.count() == 3);
    m_menu->close();

    // One drag from the button to an item.
    mouse(QEvent::MouseButtonPress, more, center);
    act(m_copy, "move 0 move 4 release 4");
    QCOMPARE(m_pressesInMenu, QList<int>{4});
    QTRY_VERIFY(!m_menu->isVisible());
    QVERIFY(isChecked(4));
}

void tst_Ribbon::buttonsCome()
{
    const auto shown = [&] {
        QString all;
        for (int index = 0; index < 3; ++index)
            all += button(index)->isVisible() ? QLatin1Char('x') : QLatin1Char('-');
        return all;
    };
    QCOMPARE(shown(), QStringLiteral("xxx"));
    m_gallery->setScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    QCOMPARE(shown(), QStringLiteral("--x"));
    delete m_copy;
    m_gallery->setPopupMenu(nullptr);
    QVERIFY(!m_menu);
    QCOMPARE(shown(), QStringLiteral("---"));
    m_gallery->setScrollBarPolicy(Qt::ScrollBarAsNeeded);
    QCOMPARE(shown(), QStringLiteral("xx-"));
    while (m_group->getItemCount() > 3)
        delete m_group->item(3);
    QCOMPARE(shown(), QStringLiteral("---"));
    m_gallery->setScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    QCOMPARE(shown(), QStringLiteral("xx-"));
}

/// The icon lies where it should; what the style draws is its own business.
void tst_Ribbon::looks()
{
    const QColor red(Qt::red);
    m_group->item(0)->setIcon(plainIcon(red));
    m_group->item(1)->setIcon({});
    m_group->item(2)->setIcon(QIcon(QStringLiteral(":/no-such-picture.png")));
    const QImage image = m_gallery->grab().toImage();
    const QRect icon(1, 1, button(0)->x() - 1, 21);
    const int left = icon.center().x() - 7;
    QVERIFY(image.pixelColor(left, 3) == red && image.pixelColor(left + 14, 18) == red);
    QVERIFY(image.pixelColor(left, 2) != red && image.pixelColor(left, 19) != red);
    // A caption stands in for a missing icon, be there none or one without a picture.
    for (const int row : {1, 2}) {
        const QRect inside(2, 2 + 21 * row, icon.width() - 2, 19);
        m_group->item(row)->setCaption(QString());
        QVERIFY(m_gallery->grab().toImage().copy(inside) != image.copy(inside));
    }
    // With labels, the icon is at the left.
    m_gallery->setLabelsVisible(true);
    QCOMPARE(m_gallery->grab().toImage().pixelColor(6, 11), red);
}

void tst_Ribbon::toolTips()
{
    openMenu();
    const QString caption = m_group->item(1)->caption();
    QCOMPARE(toolTipAt(m_gallery, inRow(1)), caption);
    QCOMPARE(toolTipAt(m_copy, inRow(1)), QString());
    const QString longer = caption.repeated(5);
    m_group->item(1)->setCaption(longer);
    QCOMPARE(toolTipAt(m_copy, inRow(1)), longer);
    m_copy->setFixedWidth(m_copy->sizeHint().width());
    QCOMPARE(toolTipAt(m_copy, inRow(1)), QString());
}

void tst_Ribbon::severalGalleries()
{
    RibbonGallery other;
    other.setGalleryGroup(m_group);
    other.resize(120, 65);
    showOnScreen(other);
    other.setCheckedIndex(4);
    QCOMPARE(m_gallery->checkedItem(), m_group->item(0));

    const QImage before = other.grab().toImage();
    m_group->item(4)->setIcon(plainIcon(Qt::black));
    QVERIFY(other.grab().toImage() != before);

    // The item that goes takes the check mark along; those behind it move up.
    QSignalSpy changes(m_group, &RibbonGalleryGroup::changed);
    const RibbonGalleryItem *next = m_group->item(5);
    delete m_group->item(4);
    QCOMPARE(changes.count(), 1);
    QVERIFY(!other.checkedItem() && m_group->item(4) == next);

    // An item is in one group only, and only there it can be checked.
    const std::unique_ptr<RibbonGalleryGroup> second(RibbonGalleryGroup::createGalleryGroup());
    RibbonGalleryItem *moved = m_group->item(0);
    for (RibbonGalleryItem *item : {moved, moved, static_cast<RibbonGalleryItem *>(nullptr)})
        second->appendItem(item);
    QCOMPARE(second->getItemCount(), 1);
    QCOMPARE(m_group->getItemCount(), count - 2);
    QVERIFY(!m_gallery->checkedItem());
    other.setCheckedIndex(1);
    other.setCheckedItem(moved);
    QVERIFY(!other.checkedItem());

    other.setGalleryGroup(second.get());
    other.setCheckedItem(moved);
    m_group->item(0)->setCaption({});
    QVERIFY(other.checkedItem() == moved && m_presses.isEmpty());
}

void tst_Ribbon::destruction()
{
    for (const bool isOpen : {false, true}) {
        const auto make = [&]() -> QList<QPointer<QObject>> {
            init();
            if (isOpen)
                openMenu();
            return {m_copy.data(), m_group.data(), m_menu.data(), m_gallery.data()};
        };
        destroyInEveryOrder(make, [&] {
            const auto windows = QApplication::topLevelWidgets();
            for (QWidget *left : windows)
                left->grab();
            const RibbonGallery *rest = m_gallery ? m_gallery.data() : m_copy.data();
            QVERIFY(!rest || m_group || !(rest->checkedItem() || rest->galleryGroup()));
            QVERIFY(m_menu || !(m_copy || QApplication::activePopupWidget()));
            QVERIFY(m_menu || !m_gallery || button(2)->isHidden());
        });
    }
}

void tst_Ribbon::destructionInsideAPress()
{
    for (const bool isInMenu : {false, true}) {
        for (const bool isByKey : {false, true}) {
            init();
            if (isInMenu)
                openMenu();
            RibbonGallery *pressed = isInMenu ? m_copy.data() : m_gallery.data();
            connect(pressed, &RibbonGallery::itemPressed, this, [this] {
                delete m_copy;
                delete m_group;
                delete m_gallery;
            });
            if (isByKey)
                QTest::keyPress(pressed->window()->windowHandle(), Qt::Key_Space);
            else
                click(pressed, inRow(1));
            QCOMPARE(m_presses.count() + m_pressesInMenu.count(), 1);
            QVERIFY(!m_menu);
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
    views->addWidget(m_gallery);
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
    QVERIFY(bar.currentPage() == home && !m_gallery->isVisible());
    auto *tabs = bar.findChild<QTabBar *>();
    click(tabs, tabs->tabRect(1).center());
    QCOMPARE(bar.currentPage(), view);
    QCOMPARE(m_gallery->size(), QSize(120, 65));
    QTRY_VERIFY(isWhole(m_gallery));
    click(button);
    QCOMPARE(triggered.count(), 1);
    delete action;
    QTRY_VERIFY(!button);
    click(m_gallery, inRow(1));
    QCOMPARE(m_presses, QList<int>{1});
}

QTEST_MAIN(tst_Ribbon)
#include "tst_ribbon.moc"
