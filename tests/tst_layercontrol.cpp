// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Support.h"

#include <QActionGroup>
#include <QMenu>
#include <QPainterPath>
#include <QSignalSpy>

using namespace OvCc;

namespace {

/// The buttons in a row of widgets, from left to right.
QList<QPushButton *> buttonsOf(const QWidget &row)
{
    QList<QPushButton *> buttons =
            row.findChildren<QPushButton *>(QString(), Qt::FindDirectChildrenOnly);
    std::sort(buttons.begin(), buttons.end(),
              [](const QWidget *one, const QWidget *other) { return one->x() < other->x(); });
    return buttons;
}

/// Moves the mouse as the window system does, so that the widgets under it are entered and left.
void moveMouse(const QWidget &window, QPoint pos)
{
    QTest::mouseMove(window.windowHandle(), pos);
    QCoreApplication::processEvents();
}

} // namespace

class tst_LayerControl : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_window = std::make_unique<QWidget>();
        m_window->setGeometry(100, 100, 400, 300);
        m_bar = new LayerControl(m_window.get());
        m_bar->setGeometry(QRect(QPoint(30, 40), m_bar->sizeHint()));
    }
    void cleanup() { m_window.reset(); }
    void folding();
    void stackFollowsTheBar();
    void controlAndStrip();
    void paintedIcons();
    void viewButton();
    void destruction();

private:
    std::unique_ptr<QWidget> m_window;
    LayerControl *m_bar = nullptr;
};

void tst_LayerControl::folding()
{
    StackWidget stack(m_bar);
    QSignalSpy folds(m_bar, &LayerControl::folded);
    showOnScreen(*m_window);
    QCOMPARE(m_bar->layerComboBox()->geometry(), QRect(19, 2, 150, 20));
    QPushButton *button = buttonsOf(*m_bar).at(1);
    QVERIFY(!button->icon().isNull() && !stack.isVisible());
    for (const bool isFolded : {false, true, false}) {
        click(button);
        const QPixmap image(isFolded ? ":/ribbonMaximize.png" : ":/ribbonMinimize.png");
        QCOMPARE(button->icon().pixmap(64).toImage(), image.toImage());
        QVERIFY(stack.isVisible());
        QCOMPARE(stack.propertyManager()->isVisible(), !isFolded);
        QCOMPARE(stack.mask().isEmpty(), !isFolded);
    }
    stack.setCurrentIndex(1);
    QVERIFY(!stack.mask().isEmpty());
    stack.setCurrentIndex(0);
    QVERIFY(stack.mask().isEmpty());
    QCOMPARE(folds, (QList<QVariantList>{{false}, {true}, {false}}));

    // A window manager minimises it with the window around the bar.
    stack.setWindowState(Qt::WindowMinimized);
    stack.hide();
    stack.hide(true);
    QVERIFY(stack.isVisible() && !stack.isMinimized() && stack.currentIndex() == 1);
}

void tst_LayerControl::stackFollowsTheBar()
{
    showOnScreen(*m_window);
    StackWidget stack(m_bar);
    QSignalSpy changes(m_bar, &LayerControl::geometryChanged);
    const auto placeOfBar = [this] { return m_bar->mapToGlobal(QPoint(0, 0)); };
    const QPoint below(0, stack.height() - 8);
    m_bar->move(50, 60);
    QCOMPARE(stack.pos(), placeOfBar() + below);
    QTest::mouseClick(buttonsOf(*m_bar).at(1), Qt::LeftButton);
    QVERIFY(QTest::qWaitForWindowExposed(&stack));
    QVERIFY(stack.isWindow() && stack.windowType() == Qt::Tool);
    QCOMPARE(stack.pos(), placeOfBar() + below);

    const QPoint before = stack.pos();
    m_window->move(200, 110);
    QTRY_VERIFY(placeOfBar() + below != before);
    QCOMPARE(stack.pos(), before);
    QCOMPARE(changes.count(), 1);
    m_bar->resize(220, 24);
    QCOMPARE(stack.pos(), placeOfBar() + below);
    stack.resize(200, 90);
    stack.adjustGeometry();
    QCOMPARE(stack.pos(), placeOfBar() + QPoint(0, 82));
    QCOMPARE(changes.count(), 2);

    delete stack.propertyManager();
    const QPoint last = stack.pos();
    m_bar->move(10, 10);
    QCOMPARE(stack.pos(), last);
}

void tst_LayerControl::controlAndStrip()
{
    CustomControl control(m_window.get());
    MinMaxButton strip(m_window.get());
    control.setGeometry(50, 100, 210, 20);
    strip.move(50, 150);
    showOnScreen(*m_window);
    QCOMPARE(control.layerComboBox()->geometry(), control.rect());
    moveMouse(*m_window, QPoint(5, 5));
    for (const QWidget *piece : std::initializer_list<QWidget *>{&control, &strip}) {
        QSignalSpy crossings(piece, SIGNAL(enter(bool)));
        moveMouse(*m_window, piece->geometry().center());
        QCOMPARE(crossings, (QList<QVariantList>{{true}}));
        moveMouse(*m_window, piece->geometry().center() + QPoint(2, 2));
        moveMouse(*m_window, QPoint(5, 5));
        QCOMPARE(crossings, (QList<QVariantList>{{true}, {false}}));
    }

    QSignalSpy minimize(&strip, &MinMaxButton::clickedMin);
    QSignalSpy restore(&strip, &MinMaxButton::clickedNormal);
    QSignalSpy close(&strip, &MinMaxButton::clickedClosed);
    QCOMPARE(strip.size(), QSize(60, 20));
    for (const int x : {4, 30, 30, 56, 56, 56})
        click(&strip, QPoint(x, 10));
    QVERIFY(minimize.count() == 1 && restore.count() == 2 && close.count() == 3);

    control.adjustGeometry();
    QCOMPARE(control.width(), 210);
    QPointer<ViewButton> button = new ViewButton(m_window.get());
    control.setWidthCompanion(button);
    control.setWidthCompanion(button);
    connect(button, &ViewButton::geometryChanged, &control, &CustomControl::adjustGeometry);
    button->menu()->actions().at(SouthwestView)->trigger();
    QCOMPARE(control.size(), QSize(button->width() + 165, 20));
    control.setWidthCompanion(nullptr);
    QVERIFY(!button);
}

/// Pixels well inside a line of width 2 are white, those well outside of all lines transparent.
void tst_LayerControl::paintedIcons()
{
    QPainterPath icons[3];
    const int lines[][5] = {// of which icon, from where to where
                            {0, 3, 10, 17, 10},
                            {1, 8, 2, 20, 2},
                            {1, 19, 2, 19, 12},
                            {2, 5, 5, 15, 15},
                            {2, 15, 5, 5, 15}};
    for (const auto &[icon, x1, y1, x2, y2] : lines) {
        icons[icon].moveTo(x1, y1);
        icons[icon].lineTo(x2, y2);
    }
    icons[1].addRect(5, 5, 10, 10);
    QPainterPathStroker inside, around;
    inside.setWidth(1.4);
    around.setWidth(3.2);
    around.setCapStyle(Qt::SquareCap);
    MinMaxButton strip;
    showOnScreen(strip);
    for (int place = 0; place < 3; ++place) {
        const QPixmap icon = buttonsOf(strip).at(place)->icon().pixmap(20, 20);
        const QImage image = icon.toImage().convertToFormat(QImage::Format_ARGB32);
        QCOMPARE(image.size(), QSize(20, 20));
        for (int pixel = 0; pixel < 400; ++pixel) {
            const QPoint pos(pixel % 20, pixel / 20);
            if (inside.createStroke(icons[place]).contains(pos + QPointF(0.5, 0.5)))
                QCOMPARE(image.pixel(pos), 0xffffffff);
            else if (!around.createStroke(icons[place]).contains(pos + QPointF(0.5, 0.5)))
                QCOMPARE(image.pixel(pos), 0U);
        }
    }
}

void tst_LayerControl::viewButton()
{
    // The text takes the whole width, where a style draws an arrow on buttons with a menu.
    ViewButton top;
    QPushButton plain(top.text());
    plain.setFlat(true);
    plain.setFixedSize(top.size());
    QCOMPARE(top.grab().toImage(), plain.grab().toImage());

    ViewButton button(m_window.get());
    QSignalSpy changes(&button, &ViewButton::geometryChanged);
    QMenu *menu = button.menu();
    const auto open = [menu] {
        menu->popup(QPoint());
        QVERIFY(QTest::qWaitForWindowExposed(menu));
    };
    const auto check = [&](const QString &text, int checked) {
        QCOMPARE(button.text(), text);
        QCOMPARE(button.size(), QSize(button.fontMetrics().horizontalAdvance(text) + 4, 20));
        for (int place = 0; place < menu->actions().size(); ++place)
            QCOMPARE(menu->actions().at(place)->isChecked(), place == checked);
    };
    check("Top", TopView);
    const QList<int> choices{SouthwestView, SouthwestView, SoutheastView, NorthwestView,
                             SoutheastView, BottomView,    SoutheastView};
    for (const int place : choices) {
        QAction *action = menu->actions().at(place);
        open();
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
        check(action->text(), place == SoutheastView ? int(NorthwestView) : place); // of that name
        QCOMPARE(button.view(), place);
    }
    open();
    typeKeys(menu, {Qt::Key_Up, Qt::Key_Return});
    check("Northwest", NorthwestView);
    open();
    typeKeys(menu, {Qt::Key_Down, Qt::Key_Escape});

    QFont font = button.font();
    font.setPointSize(font.pointSize() + 4);
    button.setFont(font);
    check("Northwest", NorthwestView);
    QCOMPARE(changes.count(), choices.size() + 1);
}

void tst_LayerControl::destruction()
{
    destroyInEveryOrder([]() -> QList<QPointer<QObject>> {
        auto *window = new QWidget;
        auto *bar = new LayerControl(window);
        auto *stack = new StackWidget(bar, window);
        stack->hide(false);
        return {window, bar, bar->layerComboBox(), stack, stack->propertyManager()};
    });
    destroyInEveryOrder([]() -> QList<QPointer<QObject>> {
        auto *window = new QWidget;
        auto *control = new CustomControl(window);
        control->setWidthCompanion(new ViewButton(window));
        return {window, control, control->layerComboBox(), control->widthCompanion()};
    });
    destroyInEveryOrder([]() -> QList<QPointer<QObject>> {
        auto *strip = new MinMaxButton;
        const QList<QPushButton *> buttons = buttonsOf(*strip);
        return {strip, buttons.at(0), buttons.at(1), buttons.at(2)};
    });

    destroyInEveryOrder([]() -> QList<QPointer<QObject>> {
        auto *window = new QWidget;
        auto *button = new ViewButton(window);
        return {window, button, button->menu(), button->findChild<QActionGroup *>()};
    });
    ViewButton button;
    delete button.findChild<QActionGroup *>();
    button.setView(BackView);
    QCOMPARE(button.view(), int(TopView));
    connect(m_bar, &LayerControl::folded, this, [this] { m_window.reset(); });
    showOnScreen(*m_window);
    click(buttonsOf(*m_bar).at(1));
    QVERIFY(!m_window);
}

QTEST_MAIN(tst_LayerControl)
#include "tst_layercontrol.moc"
