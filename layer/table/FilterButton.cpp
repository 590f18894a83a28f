// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "FilterButton.h"

#include <OvCustomControl/LayerManager.h>

#include <QEvent>
#include <QMenu>
#include <QPainter>

#include <array>

namespace OvCc {

namespace {

using Filter = LayerTableWidget::Filter;

struct FilterTraits
{
    Filter filter;
    const char *text;
    Filter opposite = LayerTableWidget::NoFilter;
    bool isFirstOfGroup = false;
};

constexpr std::array<FilterTraits, 6> filterTable{{
        {LayerTableWidget::OffFilter, QT_TRANSLATE_NOOP("OvCc::LayerManager", "Off"),
         LayerTableWidget::NoFilter, true},
        {LayerTableWidget::FrozenFilter, QT_TRANSLATE_NOOP("OvCc::LayerManager", "Frozen")},
        {LayerTableWidget::LockedFilter, QT_TRANSLATE_NOOP("OvCc::LayerManager", "Locked")},
        {LayerTableWidget::UsedFilter, QT_TRANSLATE_NOOP("OvCc::LayerManager", "In use"),
         LayerTableWidget::UnusedFilter, true},
        {LayerTableWidget::UnusedFilter, QT_TRANSLATE_NOOP("OvCc::LayerManager", "Unused"),
         LayerTableWidget::UsedFilter},
        {LayerTableWidget::PickedFilter,
         QT_TRANSLATE_NOOP("OvCc::LayerManager", "Of the selected entities"),
         LayerTableWidget::NoFilter, true},
}};

/// A funnel, in the colour of the texts beside it: a bitmap would have one for all grounds.
QIcon funnelIcon(const QWidget &widget)
{
    constexpr QSize size(12, 12);
    QPixmap picture(size * widget.devicePixelRatioF());
    picture.setDevicePixelRatio(widget.devicePixelRatioF());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(widget.palette().buttonText());
    painter.drawPolygon(
            QPolygonF({{0.5, 1}, {11.5, 1}, {7.2, 6.2}, {7.2, 11.5}, {4.8, 9.7}, {4.8, 6.2}}));
    return picture;
}

Filter filterOf(const QAction &action)
{
    return Filter(action.data().toInt());
}

} // namespace

FilterButton::FilterButton(LayerTableWidget *table, QWidget *parent)
    : QToolButton(parent)
    , m_table(table)
{
    setObjectName(QStringLiteral("filterBtn"));
    setAccessibleName(LayerManager::tr("Filter layers"));
    setIcon(funnelIcon(*this));
    setIconSize({12, 12});
    setAutoRaise(true);
    setCheckable(true);
    setPopupMode(InstantPopup);
    setMenu(new QMenu(this));
    addFilters();
    connect(menu(), &QMenu::aboutToShow, this, &FilterButton::enableActions);
    connect(table, &LayerTableWidget::filterChanged, this, &FilterButton::showFilter);
    showFilter();
}

void FilterButton::changeEvent(QEvent *event)
{
    QToolButton::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        setIcon(funnelIcon(*this));
}

void FilterButton::addFilters()
{
    menu()->setObjectName(QStringLiteral("filterMenu"));
    const QAction *all = menu()->addAction(LayerManager::tr("All layers"));
    connect(all, &QAction::triggered, this, [this] {
        if (m_table)
            m_table->setFilter(LayerTableWidget::NoFilter);
    });
    for (const FilterTraits &traits : filterTable) {
        if (traits.isFirstOfGroup)
            menu()->addSeparator();
        QAction *action = menu()->addAction(LayerManager::tr(traits.text));
        action->setData(int(traits.filter));
        action->setCheckable(true);
        connect(action, &QAction::triggered, this,
                [this, filter = traits.filter](bool isOn) { choose(filter, isOn); });
    }
}

void FilterButton::choose(Filter filter, bool isOn)
{
    if (!m_table)
        return;
    LayerTableWidget::Filters filters = m_table->filter();
    filters.setFlag(filter, isOn);
    for (const FilterTraits &traits : filterTable) {
        if (isOn && traits.filter == filter)
            filters &= ~LayerTableWidget::Filters(traits.opposite);
    }
    m_table->setFilter(filters);
}

/// What is on can be switched off whatever is known.
void FilterButton::enableActions()
{
    if (!m_table)
        return;
    const LayerTableWidget::Filters enabled = m_table->availableFilters() | m_table->filter();
    const QList<QAction *> actions = menu()->actions();
    for (QAction *action : actions)
        action->setEnabled(action->isCheckable() ? enabled.testFlag(filterOf(*action))
                                                 : isChecked());
}

void FilterButton::showFilter()
{
    const LayerTableWidget::Filters filters = m_table->filter();
    setChecked(filters != LayerTableWidget::NoFilter);
    QStringList texts;
    const QList<QAction *> actions = menu()->actions();
    for (QAction *action : actions) {
        action->setChecked(action->isCheckable() && filters.testFlag(filterOf(*action)));
        if (action->isChecked())
            texts.append(action->text());
    }
    setToolTip(texts.isEmpty()
                       ? accessibleName()
                       : LayerManager::tr("Filter: %1").arg(texts.join(QLatin1String(", "))));
    setAccessibleDescription(toolTip());
}

} // namespace OvCc
