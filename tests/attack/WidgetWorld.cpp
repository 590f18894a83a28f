// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Events.h"

#include "tests/Support.h"

#include <KcHost/RibbonBar.h>

#include <QBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTimer>
#include <QTranslator>
#include <QUndoStack>

using namespace OvCc;

namespace Attack {
namespace {

template <class Widget>
QWidget *make()
{
    if constexpr (std::is_base_of_v<QDialog, Widget>)
        return new Widget(nullptr);
    else
        return new Widget;
}

QWidget *makeBar()
{
    auto *bar = new LayerControl;
    new StackWidget(bar);
    return bar;
}

/// A view of our own, of all layers as they are now.
template <class View>
QWidget *makeView()
{
    auto *view = new View;
    auto *model = new LayerModel(view);
    auto rows = std::make_shared<QList<QStringList>>();
    OvLayerUtility().getAllLayerDate(*rows);
    model->setHorizontalHeader(headerList);
    model->setModalDatas(rows.get());
    model->refrushModel();
    QObject::connect(model, &QObject::destroyed, [rows] {}); // clazy:exclude=connect-3arg-lambda
    view->setModel(model);
    return view;
}

QWidget *makeRibbon()
{
    auto *bar = new KcHost::RibbonBar;
    KcHost::RibbonGroup *group = bar->addPage(QStringLiteral("A"))->addGroup(QStringLiteral("B"));
    for (QWidget *widget : {make<ViewGallery>(), make<ViewPortGallery>(), make<ViewButton>()})
        group->addWidget(widget);
    return bar;
}

constexpr quint32 linkedCount = 4; // the first of these are in a link
constexpr QWidget *(*makers[])(){
        make<LayerManager>,
        make<LayerComboBox>,
        make<LayerTableWidget>,
        makeBar,
        make<LayerManager>,
        make<LayerComboBox>,
        make<CustomControl>,
        make<PropertyManager>,
        make<QOvColorComboBox>,
        make<LineWidthComboBox>,
        make<LineTypeComboBox>,
        make<ColorComboBox>,
        make<TextStyleComboBox>,
        make<VisualStyleComboBox>,
        make<ViewButton>,
        makeRibbon,
        make<ViewGallery>,
        make<MinMaxButton>,
        make<SearchLayerEdit>,
        makeView<QTableView>,
        makeView<FrozenTableWidget>,
        make<OvLineWeightDialog>,
        make<LayerWarningDialog>,
        make<LayerLineWeightDialog>,
        make<LayerLineTypeDialog>,
};

/// Another language.
class Words : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *, const char *text, const char *, int) const override
    {
        return QStringLiteral("<%1>").arg(QString::fromUtf8(text));
    }
};

/// To what has the focus there.
void pressKey(QWidget *widget, Qt::Key key, Qt::KeyboardModifiers modifiers = {})
{
    QWidget *focus = widget->window()->focusWidget();
    const QPointer<QWidget> guard(focus ? focus : widget);
    QTest::keyPress(guard, key, modifiers);
    if (guard)
        QTest::keyRelease(guard, key, modifiers);
}

/// By a number: where, the button, the modifiers.
void send(const QPointer<QWidget> &widget, std::initializer_list<QEvent::Type> types,
          quint32 number)
{
    constexpr Qt::MouseButton buttons[]{Qt::LeftButton, Qt::LeftButton, Qt::RightButton,
                                        Qt::MiddleButton};
    constexpr Qt::KeyboardModifier keys[]{Qt::NoModifier, Qt::NoModifier, Qt::ControlModifier,
                                          Qt::ShiftModifier};
    for (const QEvent::Type type : types) {
        if (widget && widget->isVisible() && widget->window()->windowHandle())
            mouse(type, widget,
                  {int(number % quint32(qMax(1, widget->width()))),
                   int(number / 4096 % quint32(qMax(1, widget->height())))},
                  buttons[(number >> 28) % 4], keys[number >> 30]);
    }
}

/// A value for a slot or property; invalid if it is of another type.
QVariant valueOf(int type, quint32 number, const QString &layer)
{
    switch (type) {
    case QMetaType::Bool:
        return number % 2 == 0;
    case QMetaType::Int:
        return int(number % 24) - 2;
    case QMetaType::QString:
        return layer.left(int(number % 8));
    case QMetaType::QStringList:
        return QStringList{layer, QStringLiteral("none")};
    case QMetaType::QSize:
        return QSize(16 + int(number % 48), 16 + int(number / 64 % 48));
    default:
        return {};
    }
}

bool isOurs(const QMetaObject *meta)
{
    return meta && QByteArray(meta->className()).startsWith("OvCc::");
}

class WidgetWorld : public QObject, public World
{
public:
    WidgetWorld();
    ~WidgetWorld() override;
    void play(const Event &event) override;
    QString wrong() override;

    struct Act
    {
        const char *name;
        int weight;
        void (WidgetWorld::*play)(const Event &);
    };
    static const Act acts[];

private:
    QWidget *top(quint32 number);
    QWidget *target(const Event &event);
    template <class Widget>
    const QList<Widget *> all() const;
    template <class Widget>
    Widget *any(quint32 number);
    QString layerName(quint32 number) const;

    void link();
    void add(QWidget *widget, bool isLinked);
    void notified();
    void wish(const std::function<void(KcDbDatabase &)> &answer);
    void tellOfDrawing();
    void letGo();
    void show(std::unique_ptr<KcDbDatabase> drawing);
    void answer(int generation, int round);

    void click(const Event &event);
    void key(const Event &event);
    void cell(const Event &event);
    void row(const Event &event);
    void look(const Event &event);
    void invoke(const Event &event);
    void setProperty(const Event &event);
    void command(const Event &event);
    void changeLayer(const Event &event);
    void hold(const Event &event);
    void undo(const Event &event);
    void otherDrawing(const Event &event);
    void destroy(const Event &event);

    QString wrongIn(LayerTableWidget *table, const QList<QStringList> &rows) const;
    QString wrongIn(LayerComboBox *box, const QList<LayerItemData> &layers) const;

    QTemporaryDir m_folder;
    Words m_words;
    std::unique_ptr<KcDbDatabase> m_drawings[3]; // the first one is the working one
    QList<KcDbLayerTableRecord *> m_held;
    std::unique_ptr<KcHost::UndoGroup> m_group;
    QPointer<QWidget> m_windows[3];
    QPointer<QWidget> m_tops[std::size(makers)];
    QPointer<LayerLink> m_link;
    LayerState m_state;
    quint32 m_mode = 0;         // of the host, see notified() and wish()
    QPointer<QObject> m_doomed; // goes with the next notification
    QVector<std::function<void()>> m_later;
    QRandomGenerator m_chance; // of the event that is played
    int m_generation = 0;
    int m_depth = 0;
    bool m_isNotified = false;
};

const WidgetWorld::Act WidgetWorld::acts[] = {
        {"click", 40, &WidgetWorld::click},
        {"key", 22, &WidgetWorld::key},
        {"cell", 20, &WidgetWorld::cell},
        {"row", 8, &WidgetWorld::row},
        {"look", 6, &WidgetWorld::look},
        {"invoke", 14, &WidgetWorld::invoke},
        {"property", 8, &WidgetWorld::setProperty},
        {"command", 30, &WidgetWorld::command},
        {"change", 24, &WidgetWorld::changeLayer},
        {"hold", 6, &WidgetWorld::hold},
        {"undo", 6, &WidgetWorld::undo},
        {"drawing", 4, &WidgetWorld::otherDrawing},
        {"destroy", 6, &WidgetWorld::destroy},
};

WidgetWorld::WidgetWorld()
{
    // What depends on the clock happens at once, or never.
    QApplication::setDoubleClickInterval(0);
    QApplication::setCursorFlashTime(0);
    KcHost::setLayerModifiedHandler([this](const QString &name) {
        if (m_link)
            m_link->layerChanged(name);
    });
    KcHost::setLayerTableChangesHandler([this] { notified(); });
    link();
    show(drawingWithLayers({QStringLiteral("Doors"), QStringLiteral("Walls")}));
}

WidgetWorld::~WidgetWorld()
{
    letGo();
    for (const auto &window : m_windows)
        delete window;
    for (const auto &top : m_tops)
        delete top;
    delete m_link;
    KcHost::setLayerModifiedHandler(nullptr);
    KcHost::setLayerTableChangesHandler(nullptr);
    QCoreApplication::removeTranslator(&m_words);
}

void WidgetWorld::play(const Event &event)
{
    m_chance.seed(event.a ^ event.b ^ event.c);
    const int generation = ++m_generation;
    QTimer::singleShot(0, this, [this, generation] { answer(generation, 0); });
    ++m_depth;
    (this->*acts[event.kind].play)(event);
    --m_depth;
    ++m_generation;
}

/// Called in the loop of a dialog, menu or drag that the event has begun, till that is over.
void WidgetWorld::answer(int generation, int round)
{
    if (generation != m_generation)
        return;
    QTimer::singleShot(0, this, [this, generation, round] { answer(generation, round + 1); });
    QWidget *popup = QApplication::activePopupWidget();
    QWidget *asking = popup ? popup : QApplication::activeModalWidget();
    const quint32 chance = m_chance.generate();
    const Event next{0, m_chance.generate(), m_chance.generate(), m_chance.generate()};
    if (!asking)
        pressKey(any<LayerManager>(0), Qt::Key_Escape); // a drag
    else if (round > 20)
        asking->hide();
    else if (chance % 8 < 2)
        pressKey(asking, chance % 8 ? Qt::Key_Return : Qt::Key_Escape);
    else if (chance % 8 < 4)
        click(next);
    else if (chance % 8 < 5)
        key(next);
    else if (auto *dialog = qobject_cast<QDialog *>(asking); chance % 8 < 6)
        dialog ? dialog->done(int(next.a % 2)) : void(asking->close());
    else if (m_depth < 3) { // something happens under it
        constexpr decltype(Act::play) unders[]{
                &WidgetWorld::destroy, &WidgetWorld::changeLayer, &WidgetWorld::otherDrawing,
                &WidgetWorld::destroy, &WidgetWorld::command,     &WidgetWorld::undo,
                &WidgetWorld::hold};
        ++m_depth;
        (this->*unders[chance / 8 % std::size(unders)])(next);
        --m_depth;
    }
}

// ---- What is there ----

QWidget *WidgetWorld::top(quint32 number)
{
    const quint32 index = number % quint32(std::size(makers));
    if (QWidget *widget = m_tops[index])
        return widget;
    QWidget *widget = makers[index]();
    if (index % 4 < std::size(m_windows) && !qobject_cast<QDialog *>(widget)) {
        QPointer<QWidget> &window = m_windows[index % 4];
        if (!window) {
            window = new QWidget;
            (new QVBoxLayout(window))->setSizeConstraint(QLayout::SetNoConstraint);
            window->resize(300, 400);
            window->show();
        }
        window->layout()->addWidget(widget);
    }
    m_tops[index] = widget;
    add(widget, index < linkedCount);
    widget->show();
    return widget;
}

/// A part of any widget, or of what is open over all, that is shown.
QWidget *WidgetWorld::target(const Event &event)
{
    QWidget *popup = QApplication::activePopupWidget();
    QWidget *root = event.a % 8 == 0 ? nullptr : popup ? popup : QApplication::activeModalWidget();
    if (!root) {
        root = top(event.a / 8);
        root->window()->show();
        root->show();
    }
    QWidgetList parts = root->findChildren<QWidget *>();
    parts.erase(std::remove_if(parts.begin(), parts.end(),
                               [](const QWidget *part) { return !part->isVisible(); }),
                parts.end());
    parts += root;
    return parts[int(event.b % quint32(parts.size()))];
}

template <class Widget>
const QList<Widget *> WidgetWorld::all() const
{
    QList<Widget *> found;
    for (QWidget *top : m_tops) {
        if (auto *widget = qobject_cast<Widget *>(top))
            found += widget;
        if (top)
            found += top->findChildren<Widget *>();
    }
    return found;
}

template <class Widget>
Widget *WidgetWorld::any(quint32 number)
{
    top(0);
    top(1);
    const QList<Widget *> found = all<Widget>();
    return found[int(number % quint32(found.size()))];
}

QString WidgetWorld::layerName(quint32 number) const
{
    const std::unique_ptr<QList<LayerItemData>> layers(OvLayerUtility().getAllLayer());
    return layers->isEmpty() ? QStringLiteral("0")
                             : layers->at(int(number % quint32(layers->size()))).name;
}

// ---- What the host does ----

/// A link, with the host's answers to what the user wants.
void WidgetWorld::link()
{
    m_link = new LayerLink;
    const auto answer = [this](auto signal, auto act) {
        connect(m_link, signal, this, [this, act](const auto &...what) {
            wish([act, what...](KcDbDatabase &drawing) { act(drawing, what...); });
        });
    };
    const auto forEach = [](auto act) {
        return [act](KcDbDatabase &drawing, const QStringList &names, const auto &...what) {
            for (const QString &name : names)
                act(drawing, name, what...);
        };
    };
    const auto change = [forEach](auto member) {
        return forEach([member](KcDbDatabase &drawing, const QString &name, const auto &value) {
            KcHost::LayerChange wanted;
            if constexpr (std::is_same_v<std::decay_t<decltype(value)>, QColor>)
                wanted.*member = value.rgb() & 0xffffff;
            else
                wanted.*member = value;
            KcHost::changeLayer(drawing, name, wanted);
        });
    };
    answer(&LayerLink::currentLayerRequested, KcHost::setCurrentLayer);
    answer(&LayerLink::addRequested, KcHost::addLayer);
    answer(&LayerLink::renameRequested, KcHost::renameLayer);
    answer(&LayerLink::removeRequested, forEach(KcHost::eraseLayer));
    answer(&LayerLink::mergeRequested, forEach(KcHost::mergeLayer));
    answer(&LayerLink::colorRequested, change(&KcHost::LayerChange::trueColor));
    answer(&LayerLink::linetypeRequested, change(&KcHost::LayerChange::linetype));
    answer(&LayerLink::lineWeightRequested, change(&KcHost::LayerChange::lineWeight));
    answer(&LayerLink::descriptionRequested, change(&KcHost::LayerChange::description));
    connect(m_link, &LayerLink::changesBegin, this, [this](const QString &text) {
        if (KcDbDatabase *drawing = getCurrentDb())
            m_group = std::make_unique<KcHost::UndoGroup>(*drawing, text);
        notified();
    });
    connect(m_link, &LayerLink::changesEnd, this, [this] {
        m_group = nullptr;
        notified();
    });
    connect(m_link, &LayerLink::layersToggled, this, &WidgetWorld::notified);
    connect(m_link, &LayerLink::updated, this, &WidgetWorld::notified);
    for (quint32 index = 0; index < linkedCount; ++index) {
        if (m_tops[index])
            add(m_tops[index], true);
    }
}

/// Hears of a widget by the link, or by itself.
void WidgetWorld::add(QWidget *widget, bool isLinked)
{
    auto *panel = qobject_cast<LayerManager *>(widget);
    auto *child = widget->findChild<LayerComboBox *>();
    auto *box = child ? child : qobject_cast<LayerComboBox *>(widget);
    if (isLinked && !m_link) {
        link(); // it adds them all
    } else if (isLinked) {
        m_link->add(panel);
        m_link->add(qobject_cast<LayerTableWidget *>(widget));
        m_link->add(box);
    } else if (panel) {
        connect(panel, &LayerManager::updateCurretnLayer, this, &WidgetWorld::notified);
        connect(panel, &LayerManager::changesBegin, this, &WidgetWorld::notified);
        connect(panel, &LayerManager::layerManagerChanged, this, &WidgetWorld::notified);
    } else if (box) {
        connect(box, &LayerComboBox::changesBegin, this, &WidgetWorld::notified);
        connect(box, &LayerComboBox::layerComboBoxChanged, this, &WidgetWorld::notified);
    }
}

/// The host reloads, or deletes, from inside a notification.
void WidgetWorld::notified()
{
    if (std::exchange(m_isNotified, true))
        return;
    if (m_doomed)
        std::exchange(m_doomed, nullptr)->deleteLater();
    if (m_link && m_mode % 8 == 1)
        m_link->layersChanged();
    if (m_link && m_mode % 8 == 2)
        m_link->flush();
    const QList<LayerManager *> panels = all<LayerManager>();
    for (LayerManager *panel : panels) {
        if (m_mode % 8 == 3)
            panel->refresh();
        if (m_mode % 8 == 4)
            panel->slotUpLayerModel();
        if (m_mode % 8 == 5)
            panel->table()->InitLayerModel();
    }
    const QList<LayerComboBox *> boxes =
            m_mode % 8 == 6 ? all<LayerComboBox>() : QList<LayerComboBox *>();
    for (LayerComboBox *box : boxes)
        box->slotUpdate();
    m_isNotified = false;
}

/// The host does what the user wants, at once or later, or refuses.
void WidgetWorld::wish(const std::function<void(KcDbDatabase &)> &answer)
{
    const auto act = [answer] {
        if (KcDbDatabase *drawing = getCurrentDb())
            answer(*drawing);
    };
    if (m_mode / 8 % 4 < 2)
        act();
    else if (m_mode / 8 % 4 == 2)
        m_later += act;
    notified();
}

void WidgetWorld::tellOfDrawing()
{
    KcHost::setWorkingDatabase(m_drawings[0].get());
    if (m_link)
        m_link->drawingChanged();
    const QList<LayerManager *> panels = all<LayerManager>();
    for (LayerManager *panel : panels)
        panel->showOtherDrawing();
}

/// Closes what the host has open.
void WidgetWorld::letGo()
{
    m_group = nullptr;
    const auto held = std::exchange(m_held, {});
    for (KcDbLayerTableRecord *record : held)
        record->close();
}

void WidgetWorld::show(std::unique_ptr<KcDbDatabase> drawing)
{
    letGo();
    m_drawings[0] = std::move(drawing);
    tellOfDrawing();
}

// ---- What happens ----

/// Or a press, a release, a double click, a move or the wheel.
void WidgetWorld::click(const Event &event)
{
    constexpr auto press = QEvent::MouseButtonPress;
    constexpr auto release = QEvent::MouseButtonRelease;
    QWidget *widget = target(event);
    switch (event.a / 512 % 8) {
    case 0:
        return send(widget, {press}, event.c);
    case 1:
        return send(widget, {release}, event.c);
    case 2:
        return send(widget, {press, release, QEvent::MouseButtonDblClick, release}, event.c);
    case 3:
        return send(widget, {QEvent::MouseMove}, event.c);
    case 4:
        return wheel(widget, {event.c % 2 ? 120 : -120});
    default:
        return send(widget, {press, release}, event.c);
    }
}

void WidgetWorld::key(const Event &event)
{
    constexpr Qt::Key keys[]{Qt::Key_Up,       Qt::Key_Down,     Qt::Key_Left,   Qt::Key_Right,
                             Qt::Key_Home,     Qt::Key_End,      Qt::Key_Tab,    Qt::Key_Return,
                             Qt::Key_F2,       Qt::Key_Escape,   Qt::Key_F4,     Qt::Key_Space,
                             Qt::Key_A,        Qt::Key_C,        Qt::Key_Menu,   Qt::Key_Backspace,
                             Qt::Key_PageDown, Qt::Key_L,        Qt::Key_Delete, Qt::Key_V,
                             Qt::Key_0,        Qt::Key_Asterisk, Qt::Key_PageUp};
    constexpr Qt::KeyboardModifier modifiers[]{Qt::NoModifier,      Qt::NoModifier,
                                               Qt::ControlModifier, Qt::AltModifier,
                                               Qt::ShiftModifier,   Qt::NoModifier};
    QWidget *focus = QApplication::focusWidget();
    QWidget *widget = focus && event.a / 512 % 2 ? focus : target(event);
    if (event.a / 1024 % 2)
        widget->setFocus();
    pressKey(widget, keys[event.c % std::size(keys)],
             modifiers[event.c / 64 % std::size(modifiers)]);
}

/// A click on a cell of a layer table.
void WidgetWorld::cell(const Event &event)
{
    auto *table = any<LayerTableWidget>(event.a);
    const int column = int(event.b % LayerColumnCount);
    QTableView *view =
            column <= NameColumn ? static_cast<QTableView *>(table->frozenView()) : table;
    const QModelIndex cell = table->model()->index(
            int(event.b / 16 % quint32(table->model()->rowCount() + 1)), column);
    if (!cell.isValid())
        return;
    view->scrollTo(cell);
    const QPoint place = view->visualRect(cell).center();
    const quint32 number = (event.c & 0xff000000) | quint32(qMax(0, place.y())) * 4096
                           | quint32(qMax(0, place.x()));
    send(view->viewport(), {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}, number);
    if (event.c % 4 == 0)
        click({0, event.a, event.b, event.c});
}

/// A click in the drop-down of a layer box.
void WidgetWorld::row(const Event &event)
{
    auto *box = any<LayerComboBox>(event.a);
    if (box->count() == 0)
        return; // without a face
    box->window()->show();
    send(box->lineEdit(), {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}, 0);
    const auto *list = qobject_cast<QListWidget *>(box->view());
    if (list->count() == 0 || !list->isVisible())
        return;
    const QWidgetList parts =
            box->layerItem(int(event.b % quint32(list->count())))->findChildren<QWidget *>();
    send(parts[int(event.c % quint32(parts.size()))],
         {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}, 0);
}

/// Size, visibility, palette, style, font, language, direction, the active window.
void WidgetWorld::look(const Event &event)
{
    QWidget *widget = top(event.b);
    const bool isOn = event.c % 2;
    switch (event.a % 32) {
    case 0:
        return QApplication::setPalette({QColor::fromRgb(event.b), QColor::fromRgb(event.c)});
    case 1:
        return void(QApplication::setStyle(isOn ? QStringLiteral("Fusion")
                                                : QStringLiteral("Windows")));
    case 2:
        return qApp->setStyleSheet(QString::fromUtf8(
                isOn ? fileContent(QStringLiteral(OVCC_SOURCE_DIR "/docs/slate.qss"))
                     : QByteArray()));
    case 3:
        return QApplication::setFont(QFont(QStringLiteral("Sans"), 6 + int(event.c % 14)));
    case 4:
        return void(isOn ? QCoreApplication::installTranslator(&m_words)
                         : QCoreApplication::removeTranslator(&m_words));
    case 5:
        return QApplication::setLayoutDirection(isOn ? Qt::RightToLeft : Qt::LeftToRight);
    default:
        if (event.a % 4 == 0)
            QApplication::setActiveWindow(widget->window());
        else if (event.a % 4 == 1)
            widget->window()->resize(int(event.a / 64 % 500), int(event.c % 500));
        else
            (event.a % 4 == 2 ? widget : widget->window())->setVisible(isOn);
    }
}

/// A public slot.
void WidgetWorld::invoke(const Event &event)
{
    QWidget *widget = target(event);
    const QMetaObject *meta = widget->metaObject();
    QVector<QMetaMethod> found;
    for (; meta; meta = meta->superClass()) {
        for (int index = meta->methodOffset(); isOurs(meta) && index < meta->methodCount();
             ++index) {
            const QMetaMethod method = meta->method(index);
            if (method.methodType() == QMetaMethod::Slot && method.access() == QMetaMethod::Public
                && method.parameterCount() < 2
                && (method.parameterCount() == 0
                    || valueOf(method.parameterType(0), 0, {}).isValid()))
                found += method;
        }
    }
    if (found.isEmpty())
        return;
    const QMetaMethod method = found[int(event.c % quint32(found.size()))];
    const QVariant value = method.parameterCount() ? valueOf(method.parameterType(0), event.c / 64,
                                                             layerName(event.b))
                                                   : QVariant();
    method.invoke(widget, Qt::DirectConnection,
                  value.isValid() ? QGenericArgument(value.typeName(), value.constData())
                                  : QGenericArgument());
}

/// A switch.
void WidgetWorld::setProperty(const Event &event)
{
    QWidget *widget = target(event);
    QVector<QMetaProperty> properties;
    for (const QMetaObject *meta = widget->metaObject(); meta; meta = meta->superClass()) {
        for (int index = meta->propertyOffset(); isOurs(meta) && index < meta->propertyCount();
             ++index)
            properties += meta->property(index);
    }
    if (properties.isEmpty())
        return;
    const QMetaProperty property = properties[int(event.c % quint32(properties.size()))];
    property.write(widget, property.isFlagType() ? QVariant(int(event.c / 64 % 64))
                                                 : valueOf(property.userType(), event.c / 64,
                                                           layerName(event.b)));
}

/// A call of what is no slot, or what only the host knows.
void WidgetWorld::command(const Event &event)
{
    auto *table = any<LayerTableWidget>(event.a);
    auto *box = any<LayerComboBox>(event.a);
    auto *panel = any<LayerManager>(event.a);
    const auto column = LayerColumn(event.c % LayerColumnCount);
    const QStringList names{layerName(event.b), layerName(event.c)};
    const bool isOn = event.c / 16 % 2;
    KcDbDatabase *drawing = getCurrentDb();
    const std::function<void()> commands[]{
            [=] { table->setSelectedFlag(column, isOn); },
            [=] { table->setAllFlags(column, isOn); },
            [=] { table->setToggleSelection(isOn); },
            [=] { table->setPropertyEditing(isOn); },
            [=] { table->setRowMenu(isOn); },
            [=] { table->setVisibilityFollowsSelection(isOn); },
            [=] { table->sortByColumn(column, isOn ? Qt::AscendingOrder : Qt::DescendingOrder); },
            [=] { table->restoreState(table->saveState()); },
            [=] { table->editColor(); },
            [=] { table->editLinetype(); },
            [=] { table->editLineWeight(); },
            [=] { table->editDescription(); },
            [=] { table->mergeSelection(); },
            [=] { table->isolateSelection(); },
            [=] { table->giveBack(); },
            [=] { table->addLayer(); },
            [=] { table->renameLayer(); },
            [=] { table->finishEditing(); },
            [=] { table->selectAllShown(); },
            [=] { table->setLinetypes(drawing ? KcHost::linetypes(*drawing) : QStringList()); },
            [=] {
                panel->setUsage(drawing ? KcHost::layerUsage(*drawing) : QHash<QString, int>());
            },
            [=] { panel->setPicked(isOn ? names : QStringList()); },
            [=] { panel->setFilterVisible(isOn); },
            [=] { panel->searchEdit()->setText(names.first().left(int(event.c % 4))); },
            [=] { box->setShownLayers(isOn ? names : QStringList()); },
            [=] { isOn ? box->showPopup() : box->hidePopup(); },
            [this] { m_state = LayerState::capture(); },
            [this] { m_link ? m_link->restore(m_state) : m_state.restore(); },
            [this] { m_link ? m_link->flush() : void(); },
            [=] { m_mode = event.c; },
            [=] {
                m_doomed = event.c % 8 ? static_cast<QObject *>(top(event.c / 8)) : m_link.data();
            },
    };
    commands[event.b / 256 % std::size(commands)]();
}

/// A change behind the widgets' back, of which the database tells.
void WidgetWorld::changeLayer(const Event &event)
{
    KcDbDatabase *drawing = getCurrentDb();
    if (!drawing)
        return;
    const QString name = layerName(event.a);
    const QString other = QStringLiteral("Layer%1").arg(event.c % 200);
    const bool isOn = event.c % 2;
    const std::function<void()> changes[]{
            [=] { OvLayerUtility().setLayerOff(name, isOn); },
            [=] { OvLayerUtility().setLayerFrozen(name, isOn); },
            [=] { OvLayerUtility().setLayerLock(name, isOn); },
            [=] { OvLayerUtility().setLayerPlot(name, isOn); },
            [=] { KcHost::addLayer(*drawing, other); },
            [=] { KcHost::addLayer(*drawing, other); },
            [=] { KcHost::eraseLayer(*drawing, name); },
            [=] { KcHost::renameLayer(*drawing, name, other); },
            [=] { KcHost::setCurrentLayer(*drawing, name); },
            [=] { KcHost::mergeLayer(*drawing, name, layerName(event.c)); },
            [=] { KcHost::eraseLayerWithEntities(*drawing, name); },
            [=] {
                KcHost::changeLayer(*drawing, name,
                                    {1 + int(event.c % 255), {}, isOn ? 25 : -3, {}, other});
            },
    };
    changes[event.b % std::size(changes)]();
}

/// Somebody opens a layer and leaves it open, or lets go of all.
void WidgetWorld::hold(const Event &event)
{
    if (event.a % 2)
        return letGo();
    if (KcDbLayerTableRecord *record = getLayerByName(layerName(event.b))) {
        if (event.c % 2)
            record->upgradeOpen();
        m_held += record;
    }
}

void WidgetWorld::undo(const Event &event)
{
    letGo();
    if (KcDbDatabase *drawing = getCurrentDb()) {
        QUndoStack *stack = KcHost::undoStack(*drawing);
        stack->setIndex(event.a % 4 ? stack->index() + (event.a % 2 ? 1 : -1)
                                    : int(event.b % quint32(stack->count() + 1)));
    }
}

/// None, one from a file, a new one, the same one saved and read again, or one that was there before.
void WidgetWorld::otherDrawing(const Event &event)
{
    const QString fileName = m_folder.filePath(QStringLiteral("drawing.dxf"));
    switch (event.a % 16) {
    case 0:
        return show(nullptr);
    case 1:
        return show(KcHost::readDrawing(
                QStringLiteral(OVCC_SOURCE_DIR "/viewer/sample/floorplan.dxf")));
    case 2:
    case 3:
    case 4:
    case 5: {
        auto drawing = KcHost::newDrawing();
        addNumberedLayers(*drawing, event.b % 16 ? int(event.c % 30) : 300);
        return show(std::move(drawing));
    }
    case 6:
    case 7:
    case 8:
        if (m_drawings[0] && KcHost::writeDrawing(*m_drawings[0], fileName) && event.b % 2)
            show(KcHost::readDrawing(fileName));
        return;
    default:
        letGo();
        std::swap(m_drawings[0], m_drawings[1 + event.b % 2]);
        tellOfDrawing();
    }
}

/// A window, the link or a widget goes, at once or soon.
void WidgetWorld::destroy(const Event &event)
{
    QWidget *widget = m_tops[event.b % std::size(m_tops)];
    QWidget *asking = event.c % 2 ? QApplication::activeModalWidget() : nullptr;
    for (; asking; asking = asking->parentWidget()) { // what the dialog is of
        if (std::count(std::begin(m_tops), std::end(m_tops), asking))
            widget = asking;
    }
    if (event.a % 16 == 0)
        delete m_windows[event.b % std::size(m_windows)];
    else if (event.a % 16 == 1)
        delete m_link;
    else if (widget && event.a % 2 && m_depth < 2)
        delete widget;
    else if (widget)
        widget->deleteLater();
    if (!m_link)
        link();
}

// ---- What holds ----

QString WidgetWorld::wrong()
{
    letGo();
    m_isNotified = true; // the host is quiet
    while (QWidget *popup = QApplication::activePopupWidget())
        popup->close();
    const QList<LayerTableWidget *> tables = all<LayerTableWidget>();
    for (LayerTableWidget *table : tables)
        table->finishEditing();
    const auto later = std::exchange(m_later, {});
    for (const auto &act : later)
        act();
    for (int round = 0; round < 3; ++round) {
        QCoreApplication::processEvents();
        if (!m_link)
            link();
        if (round == 0)
            m_link->layersChanged(); // somebody had layers open
        m_link->flush();
        for (LayerManager *panel : all<LayerManager>())
            panel->refresh();
        for (LayerComboBox *box : all<LayerComboBox>())
            box->refresh();
    }
    m_isNotified = false;

    QString wrong;
    const QList<QStringList> rows = layerRows();
    const std::unique_ptr<QList<LayerItemData>> layers(OvLayerUtility().getAllLayer());
    for (LayerTableWidget *table : all<LayerTableWidget>())
        wrong += wrongIn(table, rows);
    for (LayerComboBox *box : all<LayerComboBox>())
        wrong += wrongIn(box, *layers);
    LayerItemData current;
    const bool hasCurrent = OvLayerUtility().getCurrentLayer(current);
    for (const LayerManager *panel : all<LayerManager>()) {
        const QString label = panel->findChild<QLabel *>()->text();
        if (hasCurrent && !label.endsWith(current.name))
            wrong += QStringLiteral("label: '%1 instead of %2' ").arg(label, current.name);
    }
    return wrong;
}

QString WidgetWorld::wrongIn(LayerTableWidget *table, const QList<QStringList> &rows) const
{
    const QAbstractItemModel &model = *table->model();
    QList<QStringList> shown;
    int count = 0;
    for (int row = 0; row < model.rowCount(); ++row) {
        QStringList texts;
        for (int column = 0; column < LayerColumnCount; ++column)
            texts += model.index(row, column).data().toString();
        shown += texts;
        if (table->isRowHidden(row) != table->frozenView()->isRowHidden(row))
            return QStringLiteral("a row is hidden in one view ");
        count += table->isRowHidden(row) ? 0 : 1;
    }
    sortByName(shown);
    for (int row = 0; row < int(qMax(shown.size(), rows.size())); ++row) {
        if (shown.value(row) != rows.value(row))
            return QStringLiteral("row of a table: '%1 instead of %2' ")
                    .arg(shown.value(row).join('|'), rows.value(row).join('|'));
    }
    return count == table->shownRowCount() ? QString() : QStringLiteral("count of shown rows ");
}

QString WidgetWorld::wrongIn(LayerComboBox *box, const QList<LayerItemData> &layers) const
{
    const auto *list = qobject_cast<QListWidget *>(box->view());
    if (list->count() != layers.size())
        return QStringLiteral("number of rows of a box ");
    for (int row = 0; row < int(layers.size()); row += 1 + int(layers.size()) / 16) {
        const LayerItemData &layer = layers[row];
        const LayerItemData seen = box->layerItem(row)->currentLayerData();
        if (list->item(row)->text() != layer.name || seen.name != layer.name
            || seen.isOn != layer.isOn || seen.isFrozen != layer.isFrozen
            || seen.isLocked != layer.isLocked || seen.color != layer.color)
            return QStringLiteral("row of a box: '%1' ").arg(layer.name);
    }
    LayerItemData current;
    if (layers.isEmpty() || !box->shownLayers().isEmpty()
        || !OvLayerUtility().getCurrentLayer(current))
        return {};
    const QString face = box->lineEdit()->findChildren<QLabel *>().last()->text();
    return face == current.name
                   ? QString()
                   : QStringLiteral("face: '%1 instead of %2' ").arg(face, current.name);
}

} // namespace

WorldKind widgets()
{
    QVector<Kind> kinds;
    for (const WidgetWorld::Act &act : WidgetWorld::acts)
        kinds.append({act.name, act.weight});
    return {kinds, [] { return std::unique_ptr<World>(std::make_unique<WidgetWorld>()); }};
}

} // namespace Attack
