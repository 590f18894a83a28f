// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerDock.h"

#include "viewer/canvas/Drawing.h"

#include <KcHost/KcHost.h>
#include <OvCustomControl/FrozenTableWidget.h>
#include <OvCustomControl/LayerColumns.h>
#include <OvCustomControl/LayerLink.h>
#include <OvCustomControl/LayerManager.h>
#include <OvCustomControl/LayerTableWidget.h>
#include <OvCustomControl/SearchLayerEdit.h>

#include <QAction>
#include <QHeaderView>
#include <QStyle>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <utility>

namespace Tessa {

namespace {

constexpr QSize iconSize(16, 16);

/// The column of names, in average characters, and how many names are measured for it.
constexpr int fewestCharacters = 16;
constexpr int mostCharacters = 40;
constexpr int mostMeasured = 1000;

} // namespace

LayerDock::LayerDock(OvCc::LayerLink &link, QWidget *parent)
    : QDockWidget(tr("Layer manager"), parent)
    , m_link(link)
    , m_commands(new QToolBar)
    , m_panel(new OvCc::LayerManager)
    , m_table(m_panel->table())
    , m_names(m_table->frozenView())
    , m_search(m_panel->searchEdit())
{
    setObjectName(QStringLiteral("layerDock"));
    setWidget(new QWidget);
    auto *column = new QVBoxLayout(widget());
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    createCommands();
    column->addWidget(m_panel);
    widenColumns();

    m_table->setToggleSelection(true);
    m_table->setPropertyEditing(true);
    m_table->setRowMenu(true);
    m_table->setNaturalOrder(true);
    m_panel->setFilterVisible(true);
    link.add(m_panel);
    setDrawing(nullptr);
}

void LayerDock::createCommands()
{
    m_commands->setIconSize(iconSize);
    m_commands->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    widget()->layout()->addWidget(m_commands);
    const auto icon = [this](OvCc::LayerManager::LayerIcons which) {
        return QIcon(m_panel->drawIcon(which, iconSize));
    };
    using OvCc::LayerManager;
    m_commands->addAction(icon(LayerManager::NewLayerIcon), tr("New"), this, &LayerDock::newLayer);
    const auto add = [this](const QIcon &picture, const QString &text,
                            void (LayerManager::*command)()) {
        QAction *action = m_commands->addAction(picture, text, this, &LayerDock::finishEditing);
        connect(action, &QAction::triggered, m_panel, command);
        return action;
    };
    add(icon(LayerManager::DeleteLayerIcon), tr("Delete"), &LayerManager::deleteLayers);
    add(icon(LayerManager::CurrentLayerIcon), tr("Set current"), &LayerManager::makeCurrent);
    QAction *rename = add(QIcon(), tr("Rename"), &LayerManager::renameLayer);
    rename->setShortcut(Qt::Key_F2);
    m_commands->addAction(icon(LayerManager::RefreshIcon), tr("Refresh"), this,
                          &LayerDock::refresh);
}

/// The panel's own widths are made for one font, and cut off what other fonts write.
void LayerDock::widenColumns()
{
    const QFontMetrics font = m_table->fontMetrics();
    const auto widthOf = [&font](const QString &text) {
        return font.horizontalAdvance(text) + 2 * font.averageCharWidth();
    };
    const std::array<std::pair<OvCc::LayerColumn, int>, 5> widths{{
            {OvCc::OnColumn, widthOf(QStringLiteral("On"))},
            {OvCc::ThawedColumn, widthOf(QStringLiteral("Freeze"))},
            {OvCc::UnlockedColumn, widthOf(QStringLiteral("Lock"))},
            {OvCc::ColorColumn, font.height() + widthOf(QStringLiteral("255,255,255"))},
            {OvCc::LinetypeColumn, widthOf(QStringLiteral("Continuous"))},
    }};
    for (const auto &[column, width] : widths)
        m_table->setColumnWidth(column, qMax(width, m_table->columnWidth(column)));
}

/// As wide as the names need, within limits. Of thousands of names only the longest are measured.
void LayerDock::fitNameColumn()
{
    QStringList names;
    const QAbstractItemModel &rows = *m_table->model();
    for (int row = 0; row < layerCount(); ++row)
        names += rows.index(row, OvCc::NameColumn).data().toString();
    const int measured = qMin(names.size(), mostMeasured);
    std::partial_sort(
            names.begin(), names.begin() + measured, names.end(),
            [](const QString &one, const QString &other) { return one.size() > other.size(); });
    const QFontMetrics font = m_table->fontMetrics();
    int width = fewestCharacters * font.averageCharWidth();
    for (int i = 0; i < measured; ++i)
        width = qMax(width, font.horizontalAdvance(names.at(i)) + 2 * font.averageCharWidth());
    // Names are shown by the view in front of the table, which may hide its own.
    m_names->setColumnWidth(OvCc::NameColumn,
                            qMin(width, mostCharacters * font.averageCharWidth()));
}

QSize LayerDock::sizeHint() const
{
    const int scrollBar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    const int table =
            m_table->horizontalHeader()->sectionPosition(OvCc::LineWeightColumn) + scrollBar;
    return {qMax(table + 2 * m_table->frameWidth(), m_commands->sizeHint().width()),
            QDockWidget::sizeHint().height()};
}

void LayerDock::setDrawing(Drawing *drawing)
{
    m_drawing = drawing;
    m_link.setLinetypes(drawing ? KcHost::linetypes(*drawing->database) : QStringList());
    m_link.drawingChanged();
    m_link.flush();
    fitNameColumn();
    m_names->scrollTo(m_names->currentIndex(), QAbstractItemView::PositionAtCenter);
}

int LayerDock::layerCount() const
{
    return m_table->model()->rowCount();
}

void LayerDock::finishEditing()
{
    m_table->finishEditing();
    m_panel->setVisibilityFollowsSelection(false);
    m_link.flush();
}

void LayerDock::showUsage(const QStringList &pickedLayers)
{
    m_panel->setUsage(m_drawing ? KcHost::layerUsage(*m_drawing->database) : QHash<QString, int>());
    m_panel->setPicked(pickedLayers);
}

void LayerDock::newLayer()
{
    finishEditing();
    m_search->clear(); // it could hide the new row
    m_panel->newLayer();
}

void LayerDock::refresh()
{
    finishEditing();
    m_link.layersChanged();
}

} // namespace Tessa
