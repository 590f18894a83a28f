// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "layer/table/LayerTablePrivate.h"
#include "layer/table/LayoutSettings.h"

#include <OvCustomControl/LayerAction.h>

#include <QCursor>
#include <QDataStream>
#include <QHeaderView>
#include <QIODevice>
#include <QMenu>

#include <array>
#include <optional>

namespace OvCc {

namespace {

/// What the bytes of a state begin with: "LTW" and the version of what follows.
constexpr quint32 stateBegin = 0x4c545701;

struct Layout
{
    struct Column
    {
        qint32 width;
        bool isHidden;
    };

    std::array<Column, LayerColumnCount> columns;
    qint32 sortColumn;
    bool isDescending;
};

QByteArray written(const Layout &layout)
{
    QByteArray state;
    QDataStream stream(&state, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_15);
    stream << stateBegin;
    for (const Layout::Column &column : layout.columns)
        stream << column.width << column.isHidden;
    stream << layout.sortColumn << layout.isDescending;
    return state;
}

/// Nothing if the bytes are not those of a layout, all of them.
std::optional<Layout> read(const QByteArray &state, int widest)
{
    QDataStream stream(state);
    stream.setVersion(QDataStream::Qt_5_15);
    quint32 begin = 0;
    stream >> begin;
    Layout layout{};
    bool isSound = begin == stateBegin;
    for (Layout::Column &column : layout.columns) {
        stream >> column.width >> column.isHidden;
        isSound = isSound && column.width > 0 && column.width <= widest;
    }
    stream >> layout.sortColumn >> layout.isDescending;
    isSound = isSound && layout.sortColumn >= -1 && layout.sortColumn < LayerColumnCount;
    // What a bool would not have been written as is not taken for one.
    if (!isSound || stream.status() != QDataStream::Ok || written(layout) != state)
        return std::nullopt;
    return layout;
}

} // namespace

void LayerTableWidget::setSettingsScope(const QString &organisation, const QString &application)
{
    LayoutSettings::setScope(organisation, application);
}

void LayerTableWidget::creatActions()
{
    m_d->menu = new QMenu(tr("layerManager"), horizontalHeader());
    const LayoutSettings settings;
    for (const ColumnTraits &column : columnTable) {
        if (column.hiding == Hiding::Never)
            continue;
        auto *action = new LayerAction(Private::shownTitle(column), this);
        action->setObjectName(QLatin1String(column.title));
        settings.restore(*action);
        m_d->menu->addAction(action);
        if (column.hiding == Hiding::OnceSaved)
            action->setEnabled(settings.wasCheckable(*action));
        if (!action->isChecked())
            setColumnHidden(column.column, true);
        connect(action, &LayerAction::layerTriggered, this, &LayerTableWidget::layerColumnVisiable);
    }
}

void LayerTableWidget::writeSettings()
{
    if (!m_d->menu)
        return;
    LayoutSettings settings;
    const QList<QAction *> actions = m_d->menu->actions();
    for (const QAction *action : actions)
        settings.save(*action);
}

QByteArray LayerTableWidget::saveState() const
{
    // A header tells the width of a hidden column only when it shows it: this one may.
    QHeaderView shown(Qt::Horizontal);
    shown.setModel(m_d->rows);
    shown.restoreState(horizontalHeader()->saveState());

    Layout layout{};
    for (int column = 0; column < LayerColumnCount; ++column) {
        shown.showSection(column);
        // Under the frozen view a column may stand for two.
        const bool isFrozen = !m_d->frozen->isColumnHidden(column);
        layout.columns[column] = {isFrozen ? m_d->frozen->columnWidth(column)
                                           : shown.sectionSize(column),
                                  isColumnHidden(column)};
    }
    layout.sortColumn = horizontalHeader()->sortIndicatorSection();
    layout.isDescending = horizontalHeader()->sortIndicatorOrder() == Qt::DescendingOrder;
    return written(layout);
}

bool LayerTableWidget::restoreState(const QByteArray &state)
{
    const std::optional<Layout> layout = read(state, horizontalHeader()->maximumSectionSize());
    if (!layout)
        return false;
    for (const ColumnTraits &column : columnTable) {
        auto *action = findChild<LayerAction *>(QLatin1String(column.title));
        if (column.hiding == Hiding::Never || !action)
            continue;
        const bool isHidden = layout->columns.at(column.column).isHidden;
        action->setChecked(!isHidden);
        action->setEnabled(true); // as when a saved layout is found
        setColumnHidden(column.column, isHidden);
    }
    for (int column = 0; column < LayerColumnCount; ++column) {
        const int width = layout->columns.at(column).width;
        if (m_d->frozen->isColumnHidden(column))
            setColumnWidth(column, width);
        else
            m_d->frozen->setColumnWidth(column, width);
    }
    sortByColumn(layout->sortColumn,
                 layout->isDescending ? Qt::DescendingOrder : Qt::AscendingOrder);
    return true;
}

void LayerTableWidget::show_contextMenu(const QPoint &)
{
    if (m_d->menu)
        m_d->menu->exec(QCursor::pos());
}

void LayerTableWidget::layerColumnVisiable(int column, bool visible)
{
    setColumnHidden(column, !visible);
}

} // namespace OvCc
