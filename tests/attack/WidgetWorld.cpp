// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "World.h"

#include "tests/Changes.h"

#include <KcHost/RibbonBar.h>

#include <QBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QPluginLoader>
#include <QTemporaryDir>
#include <QTranslator>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

using namespace OvCc;

namespace Attack {
namespace {

using Maker = std::function<QWidget *()>;

template <class Widget>
QWidget *make()
{
    return new Widget(nullptr);
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

QWidget *makeBar()
{
    auto *bar = new LayerControl;
    new StackWidget(bar);
    return bar;
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

/// What has most to do with layers, what Qt Designer offers, and the rest.
QVector<Maker> allMakers()
{
    QVector<Maker> makers{make<LayerManager>, make<LayerComboBox>, make<LayerTableWidget>, makeBar,
                          make<LayerManager>, make<LayerComboBox>};
    QPluginLoader plugin(OVCC_DESIGNER_PLUGIN);
    const auto *offer = qobject_cast<QDesignerCustomWidgetCollectionInterface *>(plugin.instance());
    const auto widgets = offer->customWidgets();
    for (QDesignerCustomWidgetInterface *each : widgets)
        makers += [each] { return each->createWidget(nullptr); };
    return makers
           << makeRibbon
           << makeView<
                      QTableView> << makeView<FrozenTableWidget> << make<OvLineWeightDialog> << make<LayerWarningDialog> << make<LayerLineWeightDialog> << make<LayerLineTypeDialog>;
}

/// A value for a slot or property; invalid if it is of another type.
QVariant valueOf(int type, quint32 number, const QString &layer)
{
    switch (type) {
    case QMetaType::Bool:
        return number % 2 == 0;
    case QMetaType::Int:
        return int(number % 66) - 2;
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

class WidgetWorld : public World
{
public:
    WidgetWorld();
    ~WidgetWorld() override;

protected:
    void check() override;
    QWidgetList roots() const override;
    QWidget *root(quint32 number) override;

private:
    template <class Widget>
    Widget *any(quint32 number);

    void link();
    void add(QWidget *widget, bool isLinked);
    void notified();
    void wish(const QStringList &step);
    void reload(const QByteArray &slot);
    void tellOfDrawing();
    void letGo();
    void show(std::unique_ptr<KcDbDatabase> drawing);

    void cell(const Event &event);
    void row(const Event &event);
    void invoke(const Event &event);
    void command(const Event &event);
    void hold(const Event &event);
    void undo(const Event &event);
    void drawing(const Event &event);
    void destroy(const Event &event);

    const QVector<Maker> m_makers = allMakers();
    QTemporaryDir m_folder;
    std::unique_ptr<KcDbDatabase> m_drawings[3]; // the first one is the working one
    QList<KcDbLayerTableRecord *> m_held;
    std::unique_ptr<KcHost::UndoGroup> m_group;
    QPointer<QWidget> m_windows[3];
    QVector<QPointer<QWidget>> m_tops{m_makers.size()};
    QPointer<LayerLink> m_link;
    Words m_words;
    LayerState m_state;
    quint32 m_mode = 0;         // of the host, see notified() and wish()
    QPointer<QObject> m_doomed; // goes with the next notification
    QList<QStringList> m_later;
    bool m_isNotified = false;
};

WidgetWorld::WidgetWorld()
{
    World::add("cell", 20, &WidgetWorld::cell);
    World::add("row", 8, &WidgetWorld::row);
    World::add("invoke", 30, &WidgetWorld::invoke);
    World::add("command", 20, &WidgetWorld::command);
    World::add("hold", 6, &WidgetWorld::hold);
    World::add("undo", 5, &WidgetWorld::undo);
    World::add("drawing", 4, &WidgetWorld::drawing);
    World::add("destroy", 6, &WidgetWorld::destroy);
    addBeneath({"destroy", "destroy", "layer", "drawing", "command", "invoke", "undo", "hold"});
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
    for (const auto &top : std::as_const(m_tops))
        delete top;
    delete m_link;
    KcHost::setLayerModifiedHandler(nullptr);
    KcHost::setLayerTableChangesHandler(nullptr);
}

// ---- What is there ----

QWidgetList WidgetWorld::roots() const
{
    QWidgetList roots;
    for (QWidget *top : m_tops)
        roots += top ? QWidgetList{top} : QWidgetList();
    return roots;
}

QWidget *WidgetWorld::root(quint32 number)
{
    const int index = int(number % quint32(m_tops.size()));
    if (QWidget *widget = m_tops[index])
        return widget;
    QWidget *widget = m_makers[index]();
    if (index % 4 < int(std::size(m_windows)) && !qobject_cast<QDialog *>(widget)) {
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
    add(widget, index < int(linkedCount));
    widget->show();
    return widget;
}

template <class Widget>
Widget *WidgetWorld::any(quint32 number)
{
    root(0);
    root(1);
    return pick(all<Widget>(), number);
}

// ---- What the host does ----

/// A link, with the host's answers to what the user wants.
void WidgetWorld::link()
{
    m_link = new LayerLink;
    const auto answer = [this](auto signal, const QStringList &words) {
        connect(m_link, signal, this, [this, words](const auto &...what) {
            const QVariantList values{QVariant(what)...};
            const QStringList names = values[0].toStringList();
            for (const QString &name : names) {
                QStringList step = words;
                step.insert(1, name);
                if (values.size() > 1)
                    step += values[1].toString().remove('#'); // a color's
                wish(step);
            }
        });
    };
    answer(&LayerLink::currentLayerRequested, {"current"});
    answer(&LayerLink::addRequested, {"add"});
    answer(&LayerLink::renameRequested, {"rename"});
    answer(&LayerLink::removeRequested, {"erase"});
    answer(&LayerLink::mergeRequested, {"merge"});
    answer(&LayerLink::colorRequested, {"layer", "true"});
    answer(&LayerLink::linetypeRequested, {"layer", "type"});
    answer(&LayerLink::lineWeightRequested, {"layer", "weight"});
    answer(&LayerLink::descriptionRequested, {"layer", "description"});
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
    const auto linked = m_tops.mid(0, linkedCount);
    for (const auto &top : linked) {
        if (top)
            add(top, true);
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
    constexpr const char *reloads[]{"layersChanged", "flush", "refresh", "slotUpLayerModel",
                                    "slotUpdate"};
    if (m_mode % 3 > 0)
        reload(pick(reloads, m_mode));
    for (LayerTableWidget *table : all<LayerTableWidget>()) {
        if (m_mode % 8 == 5)
            table->InitLayerModel();
    }
    m_isNotified = false;
}

/// Calls a slot of all that have it.
void WidgetWorld::reload(const QByteArray &slot)
{
    QVector<QPointer<QObject>> objects{m_link.data()}; // rows of a box go, for example
    for (QWidget *widget : all<QWidget>())
        objects += widget;
    for (const QPointer<QObject> &object : std::as_const(objects)) {
        if (object && object->metaObject()->indexOfSlot(slot + "()") >= 0)
            QMetaObject::invokeMethod(object, slot);
    }
}

/// The host does what the user wants, at once or later, or refuses.
void WidgetWorld::wish(const QStringList &step)
{
    if (m_mode / 8 % 4 == 2)
        m_later += step;
    else if (m_mode / 8 % 4 < 2 && getCurrentDb())
        ::change(step);
    notified();
}

void WidgetWorld::tellOfDrawing()
{
    KcHost::setWorkingDatabase(m_drawings[0].get());
    if (m_link)
        m_link->drawingChanged();
    for (LayerManager *panel : all<LayerManager>())
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

/// A click on a cell of a layer table.
void WidgetWorld::cell(const Event &event)
{
    auto *table = any<LayerTableWidget>(event.a);
    const int column = int(event.b % LayerColumnCount);
    QTableView *view = table;
    if (column <= NameColumn)
        view = table->frozenView();
    const QModelIndex cell = table->model()->index(
            int(event.b / 16 % quint32(table->model()->rowCount() + 1)), column);
    if (!cell.isValid())
        return;
    table->window()->show();
    view->scrollTo(cell);
    send(view->viewport(), view->visualRect(cell).center(), clicked, event.c);
    if (event.c / 64 % 4 == 0)
        click({event.a, event.b, event.c});
}

/// A click in the drop-down of a layer box.
void WidgetWorld::row(const Event &event)
{
    auto *box = any<LayerComboBox>(event.a);
    if (box->count() == 0)
        return; // without a face
    box->window()->show();
    send(box->lineEdit(), {}, clicked, 0);
    const auto *list = qobject_cast<QListWidget *>(box->view());
    if (list->count() == 0 || !list->isVisible())
        return;
    const auto *item = box->layerItem(int(event.b % quint32(list->count())));
    send(pick(item->findChildren<QWidget *>(), event.c), {}, clicked, 0);
}

/// A public slot or a switch of a widget, or of what it is in.
void WidgetWorld::invoke(const Event &event)
{
    QVector<std::function<void()>> calls;
    const auto value = [number = event.c / 64, layer = layerName(event.b)](int type) {
        return valueOf(type, number, layer);
    };
    for (QWidget *at = target(event); at && calls.isEmpty(); at = at->parentWidget()) {
        const QMetaObject *meta = at->metaObject();
        for (; QByteArray(meta->className()).startsWith("OvCc::"); meta = meta->superClass()) {
            for (int index = meta->propertyOffset(); index < meta->propertyCount(); ++index) {
                const QMetaProperty property = meta->property(index);
                const int type = property.isFlagType() ? QMetaType::Int : property.userType();
                calls += [=] { property.write(at, value(type)); };
            }
            for (int index = meta->methodOffset(); index < meta->methodCount(); ++index) {
                const QMetaMethod slot = meta->method(index);
                const int type = slot.parameterCount() ? slot.parameterType(0) : 0;
                if (slot.methodType() != QMetaMethod::Slot || slot.access() != QMetaMethod::Public
                    || slot.parameterCount() > 1 || (type && !value(type).isValid()))
                    continue;
                calls += [=, kept = value(type)] {
                    slot.invoke(at, Qt::DirectConnection,
                                QGenericArgument(kept.typeName(), kept.constData()));
                };
            }
        }
    }
    if (!calls.isEmpty())
        pick(calls, event.c)();
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
    const auto linetypes = drawing ? KcHost::linetypes(*drawing) : QStringList();
    const auto usage = drawing ? KcHost::layerUsage(*drawing) : QHash<QString, int>();
    const std::function<void()> commands[]{
            [=] { table->setSelectedFlag(column, isOn); },
            [=] { table->setAllFlags(column, isOn); },
            [=] { table->sortByColumn(column, isOn ? Qt::AscendingOrder : Qt::DescendingOrder); },
            [=] { table->restoreState(table->saveState()); },
            [=] { table->finishEditing(); },
            [=] { table->setLinetypes(linetypes); },
            [=] { panel->setUsage(usage); },
            [=] { panel->setPicked(isOn ? names : QStringList()); },
            [=] { panel->searchEdit()->setText(names.first().left(int(event.c % 4))); },
            [=] { box->setShownLayers(isOn ? names : QStringList()); },
            [=] { isOn ? box->showPopup() : box->hidePopup(); },
            [=] { m_state = LayerState::capture(); },
            [=] { m_link ? m_link->restore(m_state) : m_state.restore(); },
            [=] { m_link ? m_link->flush() : void(); },
            [=] { m_mode = event.c; },
            [=] { isOn ? qApp->installTranslator(&m_words) : qApp->removeTranslator(&m_words); },
            [=] { m_doomed = event.c % 8 ? root(event.c / 8) : static_cast<QObject *>(m_link); },
    };
    pick(commands, event.b / 256)();
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
    World::undo(event);
}

/// None, one from a file, a new one, the same one saved and read again, or one that was there before.
void WidgetWorld::drawing(const Event &event)
{
    const quint32 which = event.a % 16;
    const QString fileName = m_folder.filePath(QStringLiteral("drawing.dxf"));
    if (which == 0)
        return show(nullptr);
    if (which == 1)
        return show(KcHost::readDrawing(OVCC_SOURCE_DIR "/viewer/sample/floorplan.dxf"));
    if (which < 6) {
        auto drawing = KcHost::newDrawing();
        addNumberedLayers(*drawing, event.b % 16 ? int(event.c % 30) : 300);
        return show(std::move(drawing));
    }
    if (which < 9) {
        if (m_drawings[0] && KcHost::writeDrawing(*m_drawings[0], fileName) && event.b % 2)
            show(KcHost::readDrawing(fileName));
        return;
    }
    letGo();
    std::swap(m_drawings[0], m_drawings[1 + event.b % 2]);
    tellOfDrawing();
}

/// A window, the link or a widget goes, at once or soon.
void WidgetWorld::destroy(const Event &event)
{
    QWidget *widget = pick(m_tops, event.b);
    QWidget *asking = event.c % 2 ? QApplication::activeModalWidget() : nullptr;
    for (; asking; asking = asking->parentWidget()) // what the dialog is of
        widget = m_tops.contains(asking) ? asking : widget;
    if (event.a % 16 == 0)
        delete pick(m_windows, event.b);
    else if (event.a % 16 == 1)
        delete m_link;
    else if (widget && event.a % 2 && answers() == 0)
        delete widget;
    else if (widget)
        widget->deleteLater();
    if (!m_link)
        link();
}

// ---- What holds ----

void WidgetWorld::check()
{
    letGo();
    m_isNotified = true; // the host is quiet
    for (LayerTableWidget *table : all<LayerTableWidget>())
        table->finishEditing();
    const auto late = std::exchange(m_later, {});
    for (const QStringList &step : late) {
        if (getCurrentDb())
            ::change(step);
    }
    for (int round = 0; round < 3; ++round) {
        QCoreApplication::processEvents();
        if (!m_link)
            link();
        for (const char *slot : {"layersChanged", "flush", "refresh"}) // somebody had layers open
            reload(slot);
    }
    m_isNotified = false;
    checkLayers();
}

} // namespace

std::unique_ptr<World> makeWidgets()
{
    return std::make_unique<WidgetWorld>();
}

} // namespace Attack
