// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "layer/data/HostRecords.h"
#include "layer/table/LayerTablePrivate.h"

#include <OvCustomControl/LayerDelegate.h>
#include <OvCustomControl/LayerState.h>
#include <OvCustomControl/OvLayerUtility.h>

#include <QPointer>

#include <utility>

namespace OvCc {

namespace {

QSet<QString> asSet(const QStringList &names)
{
    return {names.begin(), names.end()};
}

/// What is to change where only these layers are to be seen. Of a layer that is as wanted nothing is.
FlagOrders isolatingOrders(const LayerState &before, const QSet<QString> &selected)
{
    FlagOrders orders = ordersOf(before);
    const auto isAsWanted = [&selected](FlagOrder &order) {
        const SomeFlags before = order.wanted;
        const bool isSelected = selected.contains(order.name);
        order.wanted = oneFlag(OnColumn, isSelected);
        if (isSelected)
            order.wanted.at(flagPlace(ThawedColumn)) = true;
        return before.at(flagPlace(OnColumn)) == isSelected
               && (!isSelected || before.at(flagPlace(ThawedColumn)) == true);
    };
    orders.erase(std::remove_if(orders.begin(), orders.end(), isAsWanted), orders.end());
    return orders;
}

} // namespace

void LayerTableWidget::isolateSelection()
{
    const QStringList selected = selectedLayers();
    if (!selected.isEmpty())
        m_d->isolate(asSet(selected));
}

void LayerTableWidget::Private::isolate(const QSet<QString> &selected)
{
    const LayerState before = LayerState::capture();
    FlagOrders orders = isolatingOrders(before, selected);
    if (orders.empty())
        return;
    const QPointer<LayerTableWidget> table(q);
    const QPointer<LayerDelegate> delegate(editing->delegate());
    const bool couldGiveBack = q->canGiveBack();
    if (!couldGiveBack)
        isolation = Isolation{getCurrentDb(), {}};
    const auto text = [count = int(selected.size())](int) {
        return count == 1 ? tr("Isolate layer") : tr("Isolate %n layers", nullptr, count);
    };
    const auto show = [this, table, &before](const FlagOrders &outcome) {
        if (!table)
            return;
        showFlags(outcome);
        if (isolation)
            isolation->note(outcome, before);
    };
    const int guarded = guardedPlace(orders, OnColumn, false);
    FlagGestures::of(*delegate).change(text, orders, show, guarded);
    tell(delegate, orders);
    if (table && q->canGiveBack() != couldGiveBack)
        emit q->giveBackChanged(!couldGiveBack);
}

/// Of flags that were noted already, what they were before that counts.
void LayerTableWidget::Private::Isolation::note(const FlagOrders &outcome, const LayerState &state)
{
    for (const FlagOrder &order : outcome) {
        if (!order.isChanged)
            continue;
        const SomeFlags flags = flagsOf(state.layer(order.name));
        SomeFlags &noted = before[order.name];
        for (size_t place = 0; place < noted.size(); ++place) {
            const bool isOther = order.shown.at(place) && order.shown.at(place) != flags.at(place);
            if (isOther && !noted.at(place))
                noted.at(place) = flags.at(place);
        }
    }
}

bool LayerTableWidget::canGiveBack() const
{
    const auto &isolation = m_d->isolation;
    return isolation && !isolation->before.isEmpty() && isolation->drawing == getCurrentDb();
}

void LayerTableWidget::giveBack()
{
    if (!canGiveBack())
        return;
    const QPointer<LayerTableWidget> table(this);
    const QPointer<LayerDelegate> delegate(m_d->editing->delegate());
    FlagOrders orders;
    const auto before = std::exchange(m_d->isolation, {})->before;
    walkLayers(getCurrentDb(), [&before, &orders](const KcDbLayerTableRecord &record) {
        const auto flags = before.constFind(layerName(record));
        if (flags != before.cend())
            orders.push_back({flags.key(), *flags});
        return true;
    });
    const auto text = [](int) { return tr("Give back isolated layers"); };
    if (!orders.empty())
        FlagGestures::of(*delegate).change(text, orders, m_d->showing());
    Private::tell(delegate, orders);
    if (table)
        emit giveBackChanged(false);
}

/// What was kept of a drawing that is not the working one any more.
/// @param isOther the working drawing is another one, though it may lie where the one before lay
void LayerTableWidget::Private::forgetOtherDrawing(bool isOther)
{
    const QPointer<LayerTableWidget> table(q);
    const auto isOfOther = [isOther](const auto &kept) {
        return kept && (isOther || kept->drawing != getCurrentDb());
    };
    if (isOfOther(isolation)) {
        isolation.reset();
        emit q->giveBackChanged(false);
    }
    if (table && isOfOther(following)) {
        following.reset();
        emit q->visibilityFollowsSelectionChanged(false);
    }
}

bool LayerTableWidget::visibilityFollowsSelection() const
{
    return m_d->following.has_value();
}

void LayerTableWidget::setVisibilityFollowsSelection(bool follows)
{
    if (follows == visibilityFollowsSelection())
        return;
    if (!follows) {
        // Out of a gesture of its own it comes too early.
        if (m_d->following->isBusy)
            QMetaObject::invokeMethod(
                    this, [this] { setVisibilityFollowsSelection(false); }, Qt::QueuedConnection);
        else
            m_d->stopFollowing();
        return;
    }
    m_d->following = Private::Following{getCurrentDb()};
    const QPointer<LayerTableWidget> table(this);
    m_d->followSelection(selectedLayers());
    if (table && m_d->following)
        emit visibilityFollowsSelectionChanged(true);
}

void LayerTableWidget::Private::stopFollowing()
{
    const QPointer<LayerTableWidget> table(q);
    if (following)
        followSelection({});
    if (!table || !following)
        return;
    following.reset();
    emit q->visibilityFollowsSelectionChanged(false);
}

void LayerTableWidget::Private::selectionChanged()
{
    if (following && !std::exchange(following->isDue, true))
        postFollowing();
}

void LayerTableWidget::Private::postFollowing()
{
    QMetaObject::invokeMethod(
            q,
            [this] {
                if (following && following->isDue && !following->isBusy)
                    followSelection(q->selectedLayers());
            },
            Qt::QueuedConnection);
}

/// @param selected the layers that are to be on; with none of them all are as the user has them
void LayerTableWidget::Private::followSelection(const QStringList &selected)
{
    const QPointer<LayerTableWidget> table(q);
    forgetOtherDrawing();
    if (!table || !following)
        return;
    following->isDue = false;
    FlagOrders orders = following->ordersFor(asSet(selected));
    if (orders.empty())
        return;
    const QPointer<LayerDelegate> delegate(editing->delegate());
    const auto text = [](int) { return tr("Show selected layers"); };
    const auto show = [this, table](const FlagOrders &outcome) {
        if (!table)
            return;
        showFlags(outcome);
        if (following)
            following->note(outcome);
    };
    following->isBusy = true;
    FlagGestures::of(*delegate).change(text, orders, show);
    tell(delegate, orders);
    if (!table || !following)
        return;
    following->isBusy = false;
    if (following->isDue)
        postFollowing();
}

/// A layer that is otherwise than it was left here is so by the wish of somebody, and so in the end.
FlagOrders LayerTableWidget::Private::Following::ordersFor(const QSet<QString> &selected)
{
    FlagOrders orders;
    walkLayers(drawing, [&](const KcDbLayerTableRecord &record) {
        const QString name = layerName(record);
        const bool isOn = !record.isOff();
        const auto known = layers.find(name);
        if (known == layers.end())
            layers.insert(name, {isOn, isOn});
        else if (known->left != isOn)
            *known = {isOn, isOn};
        const bool wanted = selected.isEmpty() ? layers.value(name).own : selected.contains(name);
        if (wanted != isOn)
            orders.push_back({name, oneFlag(OnColumn, wanted)});
        return true;
    });
    return orders;
}

void LayerTableWidget::Private::Following::note(const FlagOrders &outcome)
{
    for (const FlagOrder &order : outcome) {
        if (const std::optional<bool> isOn = order.shown.at(flagPlace(OnColumn)))
            layers[order.name].left = *isOn;
    }
}

} // namespace OvCc
