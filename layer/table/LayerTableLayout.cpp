#include "layer/table/LayerTablePrivate.h"
#include "layer/table/LayoutSettings.h"

#include <OvCustomControl/LayerAction.h>

#include <QCursor>
#include <QHeaderView>
#include <QMenu>

namespace OvCc {

QString LayerTableWidget::Private::shownTitle(const ColumnTraits &column)
{
    return *column.title ? tr(column.title) : QString();
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
