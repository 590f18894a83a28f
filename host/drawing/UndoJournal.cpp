// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "UndoJournal.h"

#include "Database.h"
#include "HostServices.h"

#include <QCoreApplication>
#include <QUndoStack>

#include <algorithm>
#include <iterator>

namespace Embedded {

namespace {

/// A step of a drawing. It is done when it is made, and never done twice nor undone twice.
class Step : public QUndoCommand
{
public:
    Step(UndoJournal &journal, UndoValues values, const QString &text, int mergeId)
        : QUndoCommand(text)
        , m_journal(journal)
        , m_values(std::move(values))
        , m_mergeId(mergeId)
    {
    }

    int id() const override { return m_mergeId; }
    void undo() override { setDone(false); }
    void redo() override { setDone(true); }

    bool mergeWith(const QUndoCommand *other) override
    {
        const auto *next = dynamic_cast<const Step *>(other);
        if (!next)
            return false;
        addMissing(m_values.layers, next->m_values.layers);
        addMissing(m_values.entities, next->m_values.entities);
        if (!m_values.currentLayer)
            m_values.currentLayer = next->m_values.currentLayer;
        m_journal.prune(m_values);
        setObsolete(m_values.isEmpty());
        return true;
    }

private:
    void setDone(bool isDone)
    {
        if (m_isDone != isDone && m_journal.exchange(m_values, this, isDone))
            m_isDone = isDone;
    }

    /// Where both have something, the earlier one counts.
    template <class Values>
    static void addMissing(Values &values, const Values &later)
    {
        Values all;
        all.reserve(values.size() + later.size());
        std::set_union(
                values.begin(), values.end(), later.begin(), later.end(), std::back_inserter(all),
                [](const auto &left, const auto &right) { return left.first < right.first; });
        all.shrink_to_fit();
        values = std::move(all);
    }

    UndoJournal &m_journal;
    UndoValues m_values;
    const int m_mergeId;
    bool m_isDone = true;
};

bool contains(const QUndoCommand *command, const QUndoCommand *wanted)
{
    bool isFound = command == wanted;
    for (int child = 0; !isFound && child < command->childCount(); ++child)
        isFound = contains(command->child(child), wanted);
    return isFound;
}

/// Leaves the values that are not what @p current returns for their number.
template <class Values, class Current>
void removeSame(Values &values, Current current)
{
    values.erase(std::remove_if(values.begin(), values.end(),
                                [&current](const auto &entry) {
                                    return entry.second == current(entry.first);
                                }),
                 values.end());
    values.shrink_to_fit();
}

} // namespace

UndoJournal::UndoJournal(KcDbDatabase &database)
    : m_database(&database)
{
}

UndoJournal::~UndoJournal() = default;

QUndoStack &UndoJournal::stack()
{
    if (!m_stack) {
        m_stack = std::make_unique<QUndoStack>();
        const std::weak_ptr<UndoJournal> self = weak_from_this();
        QObject::connect(m_stack.get(), &QUndoStack::indexChanged, m_stack.get(), [self] {
            if (const auto journal = self.lock())
                journal->onIndexChanged();
        });
    }
    return *m_stack;
}

void UndoJournal::begin(const QString &text, int mergeId)
{
    if (m_openGroups++ > 0)
        return;
    m_text = text;
    m_mergeId = mergeId < 0 ? kNeverMerged : mergeId;
}

void UndoJournal::end()
{
    if (--m_openGroups == 0 && m_database)
        commit();
}

void UndoJournal::commit()
{
    UndoValues values = takeKept();
    prune(values);
    if (!values.isEmpty())
        stack().push(new Step(*this, std::move(values), m_text, m_mergeId));
}

void UndoJournal::prune(UndoValues &values) const
{
    const Drawing &now = drawing();
    removeSame(values.layers, [&now](int layer) { return now.layerValue(layer); });
    removeSame(values.entities, [&now](int entity) { return now.entity(entity); });
    if (values.currentLayer == now.currentLayer)
        values.currentLayer.reset();
}

/// A layer that is open for write goes into the file as it is now, and into a command when it is
/// closed: no place on the stack is what the file has. Nor is any while somebody's macro is open, in
/// which a stack never becomes clean.
void UndoJournal::noteSaved()
{
    commit();
    const std::deque<Layer> &layers = drawing().layers;
    const bool isHalfChanged = std::any_of(layers.begin(), layers.end(), [](const Layer &layer) {
        return layer.state != layer.announced;
    });
    if (!isHalfChanged && !m_stack)
        return;
    if (!isHalfChanged)
        stack().setClean();
    if (isHalfChanged || !stack().isClean())
        stack().resetClean();
}

void UndoJournal::forgetDatabase()
{
    m_database = nullptr;
    if (m_stack && m_announcements > 0) {
        m_stack->clear();
        m_stack.release()->deleteLater();
    }
    m_stack.reset();
}

bool UndoJournal::exchange(UndoValues &values, const QUndoCommand *command, bool isRedo)
{
    if (m_indexToKeep)
        return false;
    if (m_openGroups > 0 || isAnyOpen(values)) {
        qWarning("KcHost: cannot undo or redo while a group, or a layer that changes, is open");
        m_indexToKeep = indexOf(command) + (isRedo ? 0 : 1);
        return false;
    }
    apply(values);
    values = takeKept();
    return true;
}

/// What goes to another layer lies on none while the layers change: it is counted by the names that
/// they have before, and after.
void UndoJournal::apply(const UndoValues &values)
{
    Drawing &data = drawing();
    EntityProperties erased;
    erased.isErased = true;
    for (const auto &[entity, properties] : values.entities) {
        const EntityProperties before = data.entity(entity);
        if (properties.layer != before.layer || properties.isErased != before.isErased)
            data.setEntity(entity, erased);
    }
    for (const auto &[layer, value] : values.layers) {
        noteLayer(layer);
        data.setLayerValue(layer, value);
        noteLayer(layer);
    }
    for (const auto &[entity, properties] : values.entities) {
        data.setEntity(entity, properties);
        m_changedEntities.push_back(entity);
    }
    if (values.currentLayer) {
        noteLayer(data.currentLayer);
        data.setCurrentLayer(*values.currentLayer);
        noteLayer(data.currentLayer);
    }
}

UndoValues UndoJournal::takeKept()
{
    KeptValues kept = std::exchange(drawing().kept, {});
    UndoValues values;
    values.layers.assign(std::make_move_iterator(kept.layers.begin()),
                         std::make_move_iterator(kept.layers.end()));
    values.entities.assign(kept.entities.begin(), kept.entities.end());
    values.currentLayer = kept.currentLayer;
    return values;
}

void UndoJournal::noteLayer(int layer)
{
    m_changedLayers += QString::fromStdWString(drawing().layers[layer].name);
}

bool UndoJournal::isAnyOpen(const UndoValues &values) const
{
    return std::any_of(values.layers.begin(), values.layers.end(), [this](const auto &entry) {
        return KcDbObjectAccess::isOpen(KcDbObjectAccess::layerRecord(*m_database, entry.first));
    });
}

/// Or that of the macro which the command is in.
int UndoJournal::indexOf(const QUndoCommand *command) const
{
    int index = 0;
    while (index < m_stack->count() && !contains(m_stack->command(index), command))
        ++index;
    return index;
}

/// The stack has done here what it was asked for, so that whoever hears of it may change the drawing,
/// undo more, or close the drawing.
void UndoJournal::onIndexChanged()
{
    if (!m_database)
        return;
    ++m_announcements;
    if (const std::optional<int> index = std::exchange(m_indexToKeep, {}))
        m_stack->setIndex(*index);
    else
        announce();
    --m_announcements;
}

void UndoJournal::announce()
{
    QStringList layers = std::exchange(m_changedLayers, {});
    std::vector<int> entities = std::exchange(m_changedEntities, {});
    layers.removeDuplicates();
    std::sort(entities.begin(), entities.end());
    entities.erase(std::unique(entities.begin(), entities.end()), entities.end());
    for (auto entity = entities.cbegin(); m_database && entity != entities.cend(); ++entity) {
        if (!drawing().entityRecord(*entity).isNull())
            announceEntity(*entity);
    }
    for (auto layer = layers.cbegin(); m_database && layer != layers.cend(); ++layer)
        announceChange(layer->toStdWString());
}

Drawing &UndoJournal::drawing() const
{
    return KcDbObjectAccess::drawing(*m_database);
}

QString changeText(const LayerState &before, const LayerState &after)
{
    struct Flag
    {
        bool LayerState::*member;
        const char *set;
        const char *unset;
    };
    constexpr Flag flags[] = {
            {&LayerState::isOff, QT_TRANSLATE_NOOP("KcHost", "Switch layer off"),
             QT_TRANSLATE_NOOP("KcHost", "Switch layer on")},
            {&LayerState::isFrozen, QT_TRANSLATE_NOOP("KcHost", "Freeze layer"),
             QT_TRANSLATE_NOOP("KcHost", "Thaw layer")},
            {&LayerState::isLocked, QT_TRANSLATE_NOOP("KcHost", "Lock layer"),
             QT_TRANSLATE_NOOP("KcHost", "Unlock layer")},
            {&LayerState::isPlottable, QT_TRANSLATE_NOOP("KcHost", "Plot layer"),
             QT_TRANSLATE_NOOP("KcHost", "Leave layer out of plots")},
    };
    for (const Flag &flag : flags) {
        LayerState changed = before;
        changed.*flag.member = after.*flag.member;
        if (changed == after)
            return QCoreApplication::translate("KcHost",
                                               after.*flag.member ? flag.set : flag.unset);
    }
    return QCoreApplication::translate("KcHost", "Change layer");
}

} // namespace Embedded
