#include "Support.h"

#include <QMenu>
#include <QSignalSpy>
#include <QTimer>
#include <QWindow>

using namespace OvCc;
using namespace NsRc;

namespace {

using Make = BaseGallery *(*)();

template <class Gallery>
BaseGallery *make()
{
    return new Gallery;
}

constexpr Make kinds[] = {&make<ViewGallery>, &make<ViewPortGallery>};

/// Presses row @p row of those that are in sight.
void pressRow(const RibbonGallery &gallery, int row)
{
    const QPoint pos = gallery.mapTo(gallery.window(), QPoint(30, 1 + 21 * row + 10));
    QTest::mouseClick(gallery.window()->windowHandle(), Qt::LeftButton, {}, pos);
}

void typeKeys(const QWidget &widget, std::initializer_list<Qt::Key> keys)
{
    for (const Qt::Key key : keys)
        QTest::keyClick(widget.window()->windowHandle(), key);
}

void show(QWidget &widget)
{
    widget.show();
    widget.activateWindow();
    widget.setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&widget));
}

void openDropDown(const BaseGallery &gallery)
{
    QTest::mouseClick(gallery.windowHandle(), Qt::LeftButton, {},
                      gallery.rect().bottomRight() - QPoint(6, 8));
    QVERIFY(QTest::qWaitForWindowExposed(gallery.popupMenu()));
}

int checkedIn(const RibbonGallery &gallery)
{
    for (int index = 0; index < gallery.galleryGroup()->getItemCount(); ++index) {
        if (gallery.galleryGroup()->item(index) == gallery.checkedItem())
            return index;
    }
    return -1;
}

QList<int> checkedIn(const QMenu &menu)
{
    QList<int> places;
    for (int place = 0; place < menu.actions().size(); ++place) {
        if (menu.actions().at(place)->isChecked())
            places.append(place);
    }
    return places;
}

/// Opens the menu of @p button and does @p act with it.
template <class Act>
void useMenu(ViewButton &button, Act act)
{
    bool isOpen = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        QWindow *window = button.menu()->windowHandle();
        if (!window || !window->isExposed())
            return;
        timer.stop();
        isOpen = true;
        act(*button.menu());
        button.menu()->close();
    });
    timer.start(0);
    QTest::mouseClick(&button, Qt::LeftButton);
    QVERIFY(isOpen);
}

} // namespace

using Gesture = std::function<void(BaseGallery &)>;
Q_DECLARE_METATYPE(Make)
Q_DECLARE_METATYPE(Gesture)

class tst_Galleries : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<RibbonGalleryItem *>("NsRc::RibbonGalleryItem*"); }
    void items();
    void pressesKeepInStep_data();
    void pressesKeepInStep();
    void viewButton();
    void viewButtonSaysItsText();
    void destruction();
};

void tst_Galleries::items()
{
    for (const Make make : kinds) {
        const std::unique_ptr<BaseGallery> gallery(make());
        const RibbonGalleryGroup &group = *gallery->galleryGroup();
        const bool isViews = make == kinds[0];
        const int count = isViews ? 10 : 12;
        QCOMPARE(group.getItemCount(), count);
        QCOMPARE(gallery->size(), QSize(120, 65));
        QCOMPARE(gallery->popupGallery()->size(), QSize(120, isViews ? 212 : 254));
        QCOMPARE(gallery->popupGallery()->galleryGroup(), &group);

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
        QCOMPARE(group.item(7)->caption() == group.item(9)->caption(), isViews);
    }
}

void tst_Galleries::pressesKeepInStep_data()
{
    QTest::addColumn<Make>("make");
    QTest::addColumn<Gesture>("gesture");
    QTest::addColumn<int>("checked");
    QTest::addColumn<int>("pressesHere");
    QTest::addColumn<int>("pressesInDropDown");

    for (const Make kind : kinds) {
        const auto add = [kind](const char *name, int checked, int here, int inDropDown,
                                const Gesture &gesture) {
            QTest::addRow("%s, %s", name, kind == kinds[0] ? "views" : "viewports")
                    << kind << gesture << checked << here << inDropDown;
        };
        add("click", 2, 1, 0, [](BaseGallery &gallery) { pressRow(gallery, 2); });
        add("click on the checked one", 0, 1, 0,
            [](BaseGallery &gallery) { pressRow(gallery, 0); });
        add("click in the drop-down", 5, 0, 1, [](BaseGallery &gallery) {
            openDropDown(gallery);
            pressRow(*gallery.popupGallery(), 5);
        });
        add("drag into the drop-down", 4, 0, 1, [](BaseGallery &gallery) {
            mouse(QEvent::MouseButtonPress, &gallery, gallery.rect().bottomRight() - QPoint(6, 8));
            const RibbonGallery *items = gallery.popupGallery();
            mouse(QEvent::MouseMove, items, QPoint(30, 10));
            mouse(QEvent::MouseMove, items, QPoint(30, 95));
            mouse(QEvent::MouseButtonRelease, items, QPoint(30, 95));
        });
        add("drop-down after a restored choice", 8, 0, 0, [](BaseGallery &gallery) {
            gallery.setCheckedIndex(8);
            openDropDown(gallery);
            typeKeys(*gallery.popupGallery(), {Qt::Key_Escape});
        });
        add("keys", 2, 1, 0, [](BaseGallery &gallery) {
            typeKeys(gallery, {Qt::Key_Down, Qt::Key_Down, Qt::Key_Return});
        });
        add("keys in the drop-down", 3, 0, 1, [](BaseGallery &gallery) {
            openDropDown(gallery);
            typeKeys(*gallery.popupGallery(),
                     {Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Space});
        });
    }
}

void tst_Galleries::pressesKeepInStep()
{
    QFETCH(Make, make);
    QFETCH(Gesture, gesture);
    QFETCH(int, checked);
    const std::unique_ptr<BaseGallery> gallery(make());
    QSignalSpy here(gallery.get(), &RibbonGallery::itemPressed);
    QSignalSpy inDropDown(gallery->popupGallery(), &RibbonGallery::itemPressed);
    show(*gallery);
    QCOMPARE(checkedIn(*gallery), 0);
    gesture(*gallery);
    QTRY_VERIFY(!gallery->popupMenu()->isVisible());
    QCOMPARE(checkedIn(*gallery), checked);
    QCOMPARE(checkedIn(*gallery->popupGallery()), checked);
    QTEST(here.count(), "pressesHere");
    QTEST(inDropDown.count(), "pressesInDropDown");
}

void tst_Galleries::viewButton()
{
    QWidget panel;
    ViewButton button(&panel);
    QSignalSpy changes(&button, &ViewButton::geometryChanged);
    const auto check = [&](const QString &text, int checked) {
        QCOMPARE(button.text(), text);
        QCOMPARE(button.size(), QSize(button.fontMetrics().horizontalAdvance(text) + 4, 20));
        QCOMPARE(checkedIn(*button.menu()), QList<int>{checked});
    };
    show(panel);
    check("Top", 0);

    const QList<QPair<int, int>> choices{{6, 6}, {6, 6}, {7, 9}, {9, 9}, {7, 9}, {1, 1}, {7, 9}};
    for (const auto &[place, checked] : choices) {
        useMenu(button, [place = place](QMenu &menu) {
            const QRect entry = menu.actionGeometry(menu.actions().at(place));
            QTest::mouseClick(&menu, Qt::LeftButton, {}, entry.center());
        });
        check(button.menu()->actions().at(place)->text(), checked);
    }
    useMenu(button, [](QMenu &menu) { typeKeys(menu, {Qt::Key_Up, Qt::Key_Return}); });
    check("Northwest", 9);
    useMenu(button, [](QMenu &menu) { typeKeys(menu, {Qt::Key_Down, Qt::Key_Escape}); });

    QFont font = button.font();
    font.setPointSize(font.pointSize() + 4);
    button.setFont(font);
    check("Northwest", 9);
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
    for (const Make make : kinds) {
        destroyInEveryOrder([make]() -> QList<QPointer<QObject>> {
            auto *ribbon = new QWidget;
            BaseGallery *gallery = make();
            gallery->setParent(ribbon);
            return {ribbon, gallery, gallery->popupMenu(), gallery->popupGallery(),
                    gallery->galleryGroup()};
        });
    }
    destroyInEveryOrder([]() -> QList<QPointer<QObject>> {
        auto *panel = new QWidget;
        auto *button = new ViewButton(panel);
        return {panel, button, button->menu(), button->findChild<QActionGroup *>()};
    });
}

QTEST_MAIN(tst_Galleries)
#include "tst_galleries.moc"
