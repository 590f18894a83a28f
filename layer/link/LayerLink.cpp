// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerLink.h"

#include "layer/data/HostNotice.h"
#include "layer/data/LayerFlags.h"
#include "layer/data/LayerSearch.h"

#include <OvCustomControl/LayerComboBox.h>
#include <OvCustomControl/LayerManager.h>
#include <OvCustomControl/LayerState.h>
#include <OvCustomControl/LayerTableWidget.h>
#include <OvCustomControl/OvLayerUtility.h>

#include <QMap>
#include <QPointer>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace OvCc {

namespace {

/// What has to be put right in a widget.
struct Due
{
    QStringList layers;     ///< these, and which one is current
    bool isAll = false;     ///< all layers
    bool isDrawing = false; ///< all layers, of another drawing

    bool isNone() const { return layers.isEmpty() && !isAll && !isDrawing; }
};

/// The three kinds of widgets as one.
class Linked
{
public:
    explicit Linked(LayerComboBox *box)
        : m_box(box)
    {
    }

    explicit Linked(LayerTableWidget *table, LayerManager *panel = nullptr)
        : m_table(table)
        , m_panel(panel)
    {
    }

    bool isGone() const { return !m_box && !m_table; }
    bool shows(const QWidget *widget) const { return m_box == widget || m_table == widget; }
    LayerTableWidget *table() const { return m_table; }
    void setPanel(LayerManager *panel) { m_panel = panel; }

    /// @return whether the widget shows anything else than before
    bool update(const Due &what) const
    {
        if (m_box)
            return what.isAll || what.isDrawing ? m_box->refresh()
                                                : m_box->refreshLayers(what.layers);
        if (m_panel)
            return updateTable(*m_panel, what);
        return m_table && updateTable(*m_table, what);
    }

    Due due;

private:
    template <class Table>
    static bool updateTable(Table &table, const Due &what)
    {
        if (what.isDrawing)
            return table.showOtherDrawing();
        return what.isAll ? table.refresh() : table.refreshLayers(what.layers);
    }

    QPointer<LayerComboBox> m_box;
    QPointer<LayerTableWidget> m_table;
    QPointer<LayerManager> m_panel;
};

/// Linetypes go by any letter case.
bool hasLinetype(const LayerState::Layer &layer, const QString &linetype)
{
    return layer.linetype.compare(linetype, Qt::CaseInsensitive) == 0;
}

bool isAs(LayerState::Layer wanted, const LayerState::Layer &layer)
{
    if (hasLinetype(layer, wanted.linetype))
        wanted.linetype = layer.linetype;
    return layer == wanted;
}

/// What restoring @p state has come to.
struct Restored
{
    Restored(const LayerState &state, const LayerState &before)
    {
        const LayerState after = LayerState::capture();
        const QStringList names = after.names();
        for (const QString &name : names) {
            const bool isMadeCurrent =
                    name == after.currentLayer() && name != before.currentLayer();
            changed += isMadeCurrent || after.layer(name) != before.layer(name);
            refused += state.contains(name) && !isAs(state.layer(name), after.layer(name));
        }
        const QStringList wanted = state.names();
        refused += int(std::count_if(wanted.begin(), wanted.end(), [&after](const QString &name) {
            return !after.contains(name);
        }));
    }

    int changed = 0;
    int refused = 0;
};

} // namespace

struct LayerLink::Private
{
    Linked *find(const QWidget *widget);
    void take(const Linked &linked);
    template <class Widget>
    void listenToChanges(Widget *widget);
    void listenToCommands(LayerTableWidget *table);
    void listenToProperties(LayerTableWidget *table);
    void requestCurrent(const QString &name);
    template <class Signal, class... Arguments>
    void passWish(const QWidget *from, Signal signal, const Arguments &...arguments);
    template <class Signal, class... Arguments>
    bool ask(const QStringList &layers, Signal signal, const Arguments &...arguments);

    void askFor(const LayerState &state, const LayerState &before);

    void note(const QString &layer);
    void note(const QStringList &layers);
    void noteAll(const QWidget *widget);
    void schedule();
    void post();

    LayerLink *const q;
    std::vector<Linked> widgets{};
    KcDbDatabase *drawing = nullptr; ///< that is shown
    std::optional<QStringList> linetypes{};
    bool doesChoiceMakeCurrent = true;
    bool isScheduled = false;
    bool isUpdating = false;
    LayerMemory memory{};
};

LayerLink::LayerLink(QObject *parent)
    : QObject(parent)
    , m_d(new Private{this})
{
}

LayerLink::~LayerLink() = default;

void LayerLink::add(LayerComboBox *box)
{
    if (!box || m_d->find(box))
        return;
    m_d->take(Linked(box));
    m_d->listenToChanges(box);
    connect(box, &LayerComboBox::layerChosen, this, [this](const QString &name) {
        const QPointer<LayerLink> self(this);
        emit layerChosen(name);
        if (self && m_d->doesChoiceMakeCurrent)
            m_d->requestCurrent(name);
    });
}

void LayerLink::add(LayerManager *panel)
{
    if (!panel || !panel->table())
        return;
    add(panel->table());
    m_d->find(panel->table())->setPanel(panel);
}

void LayerLink::add(LayerTableWidget *table)
{
    if (!table || m_d->find(table))
        return;
    m_d->take(Linked(table));
    m_d->listenToChanges(table);
    m_d->listenToCommands(table);
    m_d->listenToProperties(table);
    if (m_d->linetypes)
        table->setLinetypes(*m_d->linetypes);
}

bool LayerLink::choiceMakesCurrent() const
{
    return m_d->doesChoiceMakeCurrent;
}

void LayerLink::setChoiceMakesCurrent(bool makesCurrent)
{
    m_d->doesChoiceMakeCurrent = makesCurrent;
}

void LayerLink::setLinetypes(const QStringList &linetypes)
{
    m_d->linetypes = linetypes;
    for (const Linked &linked : m_d->widgets) {
        if (LayerTableWidget *table = linked.table())
            table->setLinetypes(linetypes);
    }
}

QStringList LayerLink::restore(const LayerState &state)
{
    const QPointer<LayerLink> self(this);
    const LayerState before = LayerState::capture();
    const QString current = state.currentLayer();
    emit changesBegin(tr("Restore layer state"));
    if (self && current != before.currentLayer() && before.contains(current))
        m_d->requestCurrent(current);
    if (!self)
        return state.names();

    FlagOrders orders = ordersOf(state);
    setLayerFlags(orders);
    if (self)
        m_d->askFor(state, before);
    if (self) {
        const Restored restored(state, before);
        m_d->noteAll(nullptr);
        emit changesEnd(restored.changed, restored.refused);
    }
    const QStringList toggled = changedIn(orders);
    if (self && !toggled.isEmpty())
        emit layersToggled(toggled);
    tellHost(state.names());
    return refusedIn(orders);
}

void LayerLink::layerChanged(const QString &name)
{
    m_d->note(name);
}

void LayerLink::layersChanged()
{
    if (const auto told = layersBeingTold())
        m_d->note(*told);
    else
        m_d->noteAll(nullptr);
}

void LayerLink::drawingChanged()
{
    LayerMemory::clear();
    for (Linked &linked : m_d->widgets)
        linked.due.isDrawing = true;
    m_d->schedule();
}

void LayerLink::flush()
{
    if (m_d->isUpdating)
        return;
    const QPointer<LayerLink> self(this);
    // A host may have forgotten to say so.
    KcDbDatabase *drawing = getCurrentDb();
    if (std::exchange(m_d->drawing, drawing) != drawing)
        drawingChanged();
    m_d->isScheduled = false;
    m_d->isUpdating = true;
    bool isAnyOther = false;
    // Those who hear of an update may take more widgets in, or delete some.
    for (size_t place = 0; self && place < m_d->widgets.size(); ++place) {
        const Linked linked = m_d->widgets[place];
        m_d->widgets[place].due = {};
        if (!linked.due.isNone())
            isAnyOther |= linked.update(linked.due);
    }
    if (!self)
        return;
    m_d->isUpdating = false;
    if (m_d->isScheduled)
        m_d->post();
    LayerMemory::clear();
    if (isAnyOther)
        emit updated();
}

Linked *LayerLink::Private::find(const QWidget *widget)
{
    const auto found = std::find_if(widgets.begin(), widgets.end(), [widget](const Linked &linked) {
        return linked.shows(widget);
    });
    return found == widgets.end() ? nullptr : &*found;
}

void LayerLink::Private::take(const Linked &linked)
{
    if (!isUpdating)
        widgets.erase(std::remove_if(widgets.begin(), widgets.end(),
                                     [](const Linked &each) { return each.isGone(); }),
                      widgets.end());
    if (widgets.empty())
        drawing = getCurrentDb();
    widgets.push_back(linked);
    widgets.back().due.isAll = true;
    schedule();
}

template <class Widget>
void LayerLink::Private::listenToChanges(Widget *widget)
{
    connect(widget, &Widget::changesBegin, q, &LayerLink::changesBegin);
    connect(widget, &Widget::changesEnd, q, [this, widget](int changed, int refused) {
        // The widget shows the user's click, taken or not.
        if (refused > 0)
            noteAll(widget);
        schedule(); // and be it to clear the memory
        emit q->changesEnd(changed, refused);
    });
    connect(widget, &Widget::layersToggled, q, [this](const QStringList &names) {
        note(names);
        emit q->layersToggled(names);
    });
}

void LayerLink::Private::listenToCommands(LayerTableWidget *table)
{
    connect(table, &LayerTableWidget::currentLayerRequested, q,
            [this](const QString &name) { requestCurrent(name); });
    connect(table, &LayerTableWidget::layerAdded, q, [this, table](const QString &name) {
        passWish(table, &LayerLink::addRequested, name);
    });
    connect(table, &LayerTableWidget::layersRemoved, q, [this, table](const QStringList &names) {
        passWish(table, &LayerLink::removeRequested, names);
    });
    connect(table, &LayerTableWidget::layerRenamed, q,
            [this, table](const QString &from, const QString &to) {
                passWish(table, &LayerLink::renameRequested, from, to);
            });
}

/// What a table shows only when the drawing has it.
void LayerLink::Private::listenToProperties(LayerTableWidget *table)
{
    const auto pass = [this, table](auto signal, auto wish) {
        connect(table, signal, q, [this, wish](const QStringList &names, const auto &value) {
            this->ask(names, wish, names, value);
        });
    };
    pass(&LayerTableWidget::colorRequested, &LayerLink::colorRequested);
    pass(&LayerTableWidget::linetypeRequested, &LayerLink::linetypeRequested);
    pass(&LayerTableWidget::lineWeightRequested, &LayerLink::lineWeightRequested);
    pass(&LayerTableWidget::descriptionRequested, &LayerLink::descriptionRequested);
    pass(&LayerTableWidget::mergeRequested, &LayerLink::mergeRequested);
}

void LayerLink::Private::requestCurrent(const QString &name)
{
    ask({name}, &LayerLink::currentLayerRequested, name);
}

/// Sends as wishes what differs beside the flags.
void LayerLink::Private::askFor(const LayerState &state, const LayerState &before)
{
    QMap<QRgb, QStringList> colors;
    QMap<QString, QStringList> linetypes;
    QMap<int, QStringList> lineWeights;
    const QStringList names = state.names();
    for (const QString &name : names) {
        const LayerState::Layer wanted = state.layer(name);
        const LayerState::Layer present = before.contains(name) ? before.layer(name) : wanted;
        if (wanted.color != present.color)
            colors[wanted.color.rgb()].append(name);
        if (!hasLinetype(present, wanted.linetype))
            linetypes[wanted.linetype].append(name);
        if (wanted.lineWeight != present.lineWeight)
            lineWeights[wanted.lineWeight].append(name);
    }
    const QPointer<LayerLink> self(q);
    const auto askEach = [this, &self](const auto &wishes, auto signal, auto valueOf) {
        for (auto wish = wishes.cbegin(); self && wish != wishes.cend(); ++wish)
            this->ask(*wish, signal, *wish, valueOf(wish.key()));
    };
    const auto same = [](const auto &value) { return value; };
    askEach(colors, &LayerLink::colorRequested, [](QRgb rgb) { return QColor(rgb); });
    askEach(linetypes, &LayerLink::linetypeRequested, same);
    askEach(lineWeights, &LayerLink::lineWeightRequested, same);
}

/// The widget that a wish comes from shows it as fulfilled. Whether it was shows in the others, too, by
/// the names.
template <class Signal, class... Arguments>
void LayerLink::Private::passWish(const QWidget *from, Signal signal, const Arguments &...arguments)
{
    if (ask((QStringList() << ... << arguments), signal, arguments...))
        noteAll(from);
}

/// Passes a wish on, and has the widgets look at what became of @p layers.
/// @return false if the link is gone
template <class Signal, class... Arguments>
bool LayerLink::Private::ask(const QStringList &layers, Signal signal,
                             const Arguments &...arguments)
{
    const QPointer<LayerLink> self(q);
    emit(q->*signal)(arguments...);
    if (self)
        note(layers);
    return self;
}

void LayerLink::Private::note(const QString &layer)
{
    for (Linked &linked : widgets) {
        QStringList &layers = linked.due.layers;
        // So many that all are read, whatever their names.
        if (layers.size() <= mostSearches && !layers.contains(layer))
            layers.append(layer);
    }
    schedule();
}

void LayerLink::Private::note(const QStringList &layers)
{
    for (const QString &layer : layers)
        note(layer);
}

/// @param widget the one that may differ in all layers; null for all of them
void LayerLink::Private::noteAll(const QWidget *widget)
{
    for (Linked &linked : widgets)
        linked.due.isAll = linked.due.isAll || !widget || linked.shows(widget);
    schedule();
}

/// While the widgets are put right, which may take an event loop of the host, nothing else is done.
void LayerLink::Private::schedule()
{
    if (!std::exchange(isScheduled, true) && !isUpdating)
        post();
}

/// A queued call comes before the event loop turns to what the user does next.
void LayerLink::Private::post()
{
    QMetaObject::invokeMethod(
            q,
            [this] {
                if (isScheduled)
                    q->flush();
            },
            Qt::QueuedConnection);
}

} // namespace OvCc
