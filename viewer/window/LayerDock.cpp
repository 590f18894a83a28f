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
constexpr int longestQuote = 40;
constexpr int mostReasons = 5;

/// The column of names, in average characters, and how many names are measured for it.
constexpr int fewestCharacters = 16;
constexpr int mostCharacters = 40;
constexpr int mostMeasured = 1000;

QString quoted(const QString &name)
{
    const bool isLong = name.size() > longestQuote;
    return QLatin1Char('"') + (isLong ? name.left(longestQuote - 1) + QChar(0x2026) : name)
           + QLatin1Char('"');
}

/// Why the drawing refuses, to go on after a colon.
QString reasonFor(Kcore::ErrorStatus status)
{
    switch (status) {
    case Kcore::eInvalidInput:
        return LayerDock::tr("a name has 1 to 255 characters, and none of <>/\\\":;?*|=");
    case Kcore::eDuplicateKey:
        return LayerDock::tr("there is another layer of that name");
    case Kcore::eCannotBeErasedByCaller:
        return LayerDock::tr("every drawing has this layer");
    case Kcore::eLayerIsCurrent:
        return LayerDock::tr("it is the current layer");
    case Kcore::eLayerInUse:
        return LayerDock::tr("there are entities on it");
    case Kcore::eKeyNotFound:
        return LayerDock::tr("the drawing has no such layer");
    default:
        return LayerDock::tr("it is in use elsewhere");
    }
}

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

    listenTo(link);
    link.add(m_panel);
    setDrawing(nullptr);
}

void LayerDock::listenTo(const OvCc::LayerLink &link)
{
    using OvCc::LayerLink;
    connect(&link, &LayerLink::addRequested, this, &LayerDock::addToDrawing);
    connect(&link, &LayerLink::removeRequested, this, &LayerDock::eraseFromDrawing);
    connect(&link, &LayerLink::renameRequested, this, &LayerDock::renameInDrawing);
    connect(&link, &LayerLink::currentLayerRequested, this, &LayerDock::makeCurrentInDrawing);
    connect(&link, &LayerLink::changesBegin, this,
            [this](const QString &text) { m_change = text; });
    connect(&link, &LayerLink::changesEnd, this, [this](int, int refusedLayers) {
        if (refusedLayers > 0)
            emit refused(tr("%1: the drawing refused.").arg(m_change));
    });
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
    // What comes next is to find the table as it will stay.
    m_link.flush();
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

void LayerDock::addToDrawing(const QString &name)
{
    tellRefusal(KcHost::addLayer(*m_drawing->database, name),
                tr("Layer %1 cannot be added").arg(quoted(name)));
}

void LayerDock::makeCurrentInDrawing(const QString &name)
{
    tellRefusal(KcHost::setCurrentLayer(*m_drawing->database, name),
                tr("Layer %1 cannot be made the current one").arg(quoted(name)));
}

void LayerDock::eraseFromDrawing(const QStringList &names)
{
    int stayed = 0;
    QStringList reasons;
    for (const QString &name : names) {
        const Kcore::ErrorStatus status = KcHost::eraseLayer(*m_drawing->database, name);
        if (status != Kcore::eOk && ++stayed <= mostReasons)
            reasons.append(tr("%1 (%2)").arg(quoted(name), reasonFor(status)));
    }
    if (stayed > mostReasons)
        emit refused(tr("Not deleted: %1 and %2 more.")
                             .arg(reasons.join(QLatin1String(", ")))
                             .arg(stayed - mostReasons));
    else if (stayed > 0)
        emit refused(tr("Not deleted: %1.").arg(reasons.join(QLatin1String(", "))));
}

void LayerDock::renameInDrawing(const QString &from, const QString &to)
{
    const Kcore::ErrorStatus status = KcHost::renameLayer(*m_drawing->database, from, to);
    if (status == Kcore::eOk)
        m_drawing->layers.rename(from, to);
    tellRefusal(status, tr("Layer %1 cannot be renamed to %2").arg(quoted(from), quoted(to)));
}

/// @param sentence is completed by the reason
void LayerDock::tellRefusal(Kcore::ErrorStatus status, const QString &sentence)
{
    if (status != Kcore::eOk)
        emit refused(tr("%1: %2.").arg(sentence, reasonFor(status)));
}

} // namespace Tessa
