// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "World.h"

#include "tests/Changes.h"

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QUndoStack>

using namespace OvCc;

namespace Attack {

namespace {

constexpr auto pressed = QEvent::MouseButtonPress;
constexpr auto released = QEvent::MouseButtonRelease;
constexpr auto moved = QEvent::MouseMove;
constexpr int mostAnswers = 20; // to one event, before what asks is closed

} // namespace

World::World()
{
    // What depends on the clock happens at once, or never.
    QApplication::setDoubleClickInterval(0);
    QApplication::setCursorFlashTime(0);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &World::answer);
    const std::tuple<const char *, int, Types> gestures[]{
            {"press", 6, {pressed}},
            {"move", 8, {moved}},
            {"release", 6, {released}},
            {"click", 28, clicked},
            {"double-click", 4, {pressed, released, QEvent::MouseButtonDblClick, released}},
            {"drag", 8, {pressed, moved, moved, released}}};
    for (const auto &[name, weight, types] : gestures)
        m_acts[name] = {weight, [this, all = types](const Event &event) { gesture(event, all); }};
    add("wheel", 6, &World::wheel);
    add("key", 18, &World::key);
    add("look", 5, &World::look);
    add("layer", 12, &World::layer);
    add("undo", 4, &World::undo);
}

void World::play(const Act &act, const Event &event)
{
    m_random.seed(event.a ^ event.b ^ event.c);
    expectQuestions(Mode::Playing);
    act.play(event);
    m_mode = Mode::Idle;
}

QString World::wrong()
{
    m_wrong.clear();
    while (QWidget *widget = asking())
        widget->close();
    check();
    return m_wrong;
}

// ---- What asks ----

QWidget *World::asking()
{
    QWidget *popup = QApplication::activePopupWidget();
    return popup ? popup : QApplication::activeModalWidget();
}

void World::expectQuestions(Mode mode)
{
    m_mode = mode;
    m_answers = 0;
    m_timer.start(0);
}

/// Comes in the event loops of dialogs, menus and drags, as long as there is one.
void World::answer()
{
    if (m_mode == Mode::Idle)
        return;
    m_timer.start(0);
    QWidget *asked = m_mode == Mode::Playing ? asking() : QApplication::activeModalWidget();
    const quint32 chance = number();
    const Event next{number(), number(), number()};
    if (!asked && m_mode == Mode::Playing)
        QTest::keyClick(root(0), Qt::Key_Escape); // ends a drag
    else if (!asked || answerItself(asked))
        return;
    else if (++m_answers > mostAnswers)
        asked->hide();
    else if (auto *dialog = qobject_cast<QDialog *>(asked); chance % 8 == 0)
        dialog ? dialog->done(int(next.a % 2)) : void(asked->close());
    else
        m_acts[pick(m_answersBy, chance / 8)].play(next);
}

bool World::answerItself(QWidget *)
{
    return false;
}

// ---- What the user does ----

QWidgetList World::shownIn(QWidget *root)
{
    QWidgetList widgets = root->findChildren<QWidget *>() << root;
    const auto isHidden = [](const QWidget *it) { return !it->isVisible(); };
    widgets.erase(std::remove_if(widgets.begin(), widgets.end(), isHidden), widgets.end());
    return widgets;
}

QWidgetList World::targets(quint32 number)
{
    QWidget *one = root(number);
    one->window()->show();
    one->show();
    return shownIn(one);
}

/// What asks goes first, and is passed over now and then.
QWidget *World::target(const Event &event)
{
    QWidget *over = event.a % 8 ? asking() : nullptr;
    const QWidgetList widgets = over ? shownIn(over) : targets(event.a / 8);
    return widgets.isEmpty() ? root(0) : pick(widgets, event.a / 64);
}

/// Presses and the like, each move some pixels further, by a number for buttons and modifiers.
void World::send(const QPointer<QWidget> &widget, QPoint at, const Types &types, quint32 keys)
{
    using namespace Qt;
    for (const auto type : types) {
        if (type == moved)
            at += {int(keys / 20 % 200) - 100, int(keys / 4000 % 100) - 50};
        if (widget && widget->isVisible() && widget->window()->windowHandle())
            ::mouse(type, widget, at,
                    pick({LeftButton, LeftButton, LeftButton, MiddleButton, RightButton}, keys),
                    pick({NoModifier, NoModifier, ControlModifier, ShiftModifier}, keys / 5));
    }
}

void World::gesture(const Event &event, const Types &types)
{
    QWidget *widget = target(event);
    send(widget,
         {int(event.b % quint32(qMax(1, widget->width()))),
          int(event.b / 5000 % quint32(qMax(1, widget->height())))},
         types, event.c);
}

void World::wheel(const Event &event)
{
    ::wheel(target(event), {int(event.b % 5) * 120 - 240});
}

/// What has the focus may go with the press of a key.
void World::key(const Event &event)
{
    using namespace Qt;
    const Key key =
            pick({Key_Return,    Key_Return,    Key_Escape, Key_Tab,  Key_Up,     Key_Down,
                  Key_Left,      Key_Right,     Key_Home,   Key_End,  Key_PageUp, Key_PageDown,
                  Key_Space,     Key_Backspace, Key_Delete, Key_Menu, Key_F2,     Key_F4,
                  Key_A,         Key_C,         Key_L,      Key_V,    Key_0,      Key_Asterisk,
                  Key_Ampersand, Key_Slash},
                 event.c);
    const KeyboardModifier modifier =
            pick({NoModifier, NoModifier, NoModifier, ControlModifier, AltModifier, ShiftModifier},
                 event.b);
    const QPointer<QWidget> widget = event.b / 8 % 3 ? nullptr : target(event);
    if (widget)
        widget->setFocus();
    for (const auto act : {QTest::Press, QTest::Release}) {
        QWidget *popup = QApplication::activePopupWidget();
        QWidget *over = popup ? popup : widget ? widget->window() : nullptr;
        QWidget *focus = over ? over->focusWidget() : QApplication::focusWidget();
        focus = focus ? focus : over ? over : target(event);
        // Without events of the modifiers' own keys, which would go to the same widget, be it gone or not.
        QTest::simulateEvent(focus, act == QTest::Press, key, modifier, QString(QChar(key & 0x7f)),
                             false);
    }
}

/// Windows, and all that has widgets look different.
void World::look(const Event &event)
{
    QWidget *widget = root(event.a / 4);
    QWidget *window = widget->window();
    const bool isOn = event.c % 2;
    const QSize size(int(event.c % 900), int(event.c / 1024 % 700));
    const QString sheet = isOn ? fileContent(OVCC_SOURCE_DIR "/docs/slate.qss") : QByteArray();
    const QPalette palette(QColor::fromRgb(event.a), QColor::fromRgb(event.c));
    const std::function<void()> changes[]{
            [=] { widget->setVisible(isOn); },
            [=] { window->setVisible(isOn); },
            [=] { QApplication::setActiveWindow(window); },
            [=] { window->setWindowState(isOn ? Qt::WindowMinimized : Qt::WindowNoState); },
            [=] { window->move(size.height() % 100, size.width() % 100); },
            [=] { window->resize(isOn ? QSize(1, 1) : QSize(800, 500)); },
            [=] { window->resize(size); },
            [=] { QApplication::setStyle(isOn ? "Fusion" : "Windows"); },
            [=] { qApp->setStyleSheet(sheet); },
            [=] { QApplication::setPalette(isOn ? palette : QPalette()); },
            [=] { QApplication::setFont(QFont("Sans", int(event.c % 14) + 4)); },
            [=] { QApplication::setLayoutDirection(Qt::LayoutDirection(isOn)); },
            [=] { QLocale::setDefault(isOn ? QLocale::German : QLocale::C); },
            [=] {
                QEvent event(QEvent::LanguageChange);
                QApplication::sendEvent(qApp, &event);
            },
    };
    pick(changes, event.a % 4 ? event.b % 7 : event.b)();
}

// ---- What the host does, or others ----

QString World::layerName(quint32 number)
{
    const auto rows = layerRows();
    return rows.isEmpty() ? "0" : pick(rows, number).at(NameColumn);
}

/// A change behind the widgets' back, of which the database tells.
void World::layer(const Event &event)
{
    if (!getCurrentDb())
        return;
    const QString name = layerName(event.a);
    const QString fresh = pick({QString("Layer%1").arg(event.c % 200), QString("zinc"),
                                QString("Zinc"), QString("N & n"), QString("a/b"), QString()},
                               event.c);
    const char *flag =
            pick({"off", "unoff", "freeze", "unfreeze", "lock", "unlock", "plot"}, event.c);
    const QStringList steps[]{{flag, name},
                              {flag, name},
                              {"add", fresh},
                              {"add", fresh},
                              {"erase", name},
                              {"clear", name},
                              {"current", name},
                              {"rename", name, fresh},
                              {"merge", name, layerName(event.c)},
                              {"layer", name, "color", QString::number(event.c % 256)},
                              {"layer", name, "true", QString::number(event.c, 16)},
                              {"layer", name, "type", pick({"Dash", "Continuous"}, event.c)},
                              {"layer", name, "weight", pick({"25", "-3"}, event.c)},
                              {"layer", name, "description", fresh}};
    ::change(pick(steps, event.b));
}

void World::undo(const Event &event)
{
    if (KcDbDatabase *drawing = getCurrentDb()) {
        QUndoStack &stack = *KcHost::undoStack(*drawing);
        stack.setIndex(event.b % 4 ? stack.index() + int(event.a % 5) - 2
                                   : int(event.a % quint32(stack.count() + 1)));
    }
}

// ---- What holds ----

void World::expect(bool holds, const QString &what)
{
    if (!holds && m_wrong.isEmpty())
        m_wrong = what;
}

/// All that shows layers, beside the working drawing.
void World::checkLayers()
{
    const std::unique_ptr<QList<LayerItemData>> layers(OvLayerUtility().getAllLayer());
    LayerItemData current;
    const bool hasCurrent = OvLayerUtility().getCurrentLayer(current);
    const QList<QStringList> rows = layerRows();
    for (LayerTableWidget *table : all<LayerTableWidget>())
        checkTable(*table, rows);
    for (LayerComboBox *box : all<LayerComboBox>())
        checkBox(*box, *layers, current.name);
    for (const LayerManager *panel : all<LayerManager>()) {
        const QString label = panel->findChild<QLabel *>()->text();
        expect(!hasCurrent || label.endsWith(current.name),
               QString("label: '%1 instead of %2'").arg(label, current.name));
    }
}

void World::checkTable(LayerTableWidget &table, const QList<QStringList> &expected)
{
    const QAbstractItemModel &model = *table.model();
    QList<QStringList> rows;
    int count = 0;
    for (int row = 0; row < model.rowCount(); ++row) {
        QStringList texts;
        for (int column = 0; column < LayerColumnCount; ++column)
            texts += model.index(row, column).data().toString();
        rows += texts;
        expect(table.isRowHidden(row) == table.frozenView()->isRowHidden(row),
               "a row is hidden in one view");
        count += table.isRowHidden(row) ? 0 : 1;
    }
    sortByName(rows);
    for (int row = 0; rows != expected && row < qMax(rows.size(), expected.size()); ++row)
        expect(rows.value(row) == expected.value(row),
               QString("row of a table: '%1 instead of %2'")
                       .arg(rows.value(row).join('|'), expected.value(row).join('|')));
    expect(count == table.shownRowCount(), "count of shown rows");
}

void World::checkBox(LayerComboBox &box, const QList<LayerItemData> &layers, const QString &current)
{
    expect(box.count() == layers.size(), "number of rows of a box");
    const auto *list = qobject_cast<QListWidget *>(box.view());
    for (int row = 0; row < qMin(box.count(), int(layers.size())); row += 1 + box.count() / 16) {
        const LayerItemData is = box.layerItem(row)->currentLayerData();
        const LayerItemData &layer = layers[row];
        expect(list->item(row)->text() == layer.name && is.name == layer.name
                       && is.isOn == layer.isOn && is.isFrozen == layer.isFrozen
                       && is.isLocked == layer.isLocked && is.color == layer.color,
               QString("row of a box: '%1'").arg(layer.name));
    }
    if (layers.isEmpty())
        return;
    const QStringList shown = box.shownLayers() << current;
    const QString face = box.lineEdit()->findChildren<QLabel *>().last()->text();
    expect(shown.size() > 2 ? face.contains("Varies") : face == shown.first(),
           QString("face: '%1 instead of %2'").arg(face, shown.first()));
}

} // namespace Attack
