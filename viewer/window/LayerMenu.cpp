// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerMenu.h"

#include "Phrases.h"
#include "viewer/canvas/Drawing.h"

#include <OvCustomControl/LayerLink.h>
#include <OvCustomControl/LayerManager.h>
#include <OvCustomControl/LayerTableWidget.h>

#include <QInputDialog>
#include <QMessageBox>

#include <algorithm>
#include <utility>

namespace Tessa {

namespace {

/// A name as a menu shows it.
QString entryText(QString name)
{
    return name.replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace

LayerMenu::LayerMenu(OvCc::LayerLink &link, OvCc::LayerManager &panel, QWidget *parent)
    : QMenu(tr("&Layers"), parent)
    , m_link(link)
    , m_deletion(new QMenu(tr("&Delete state"), this))
{
    addTools(panel);
    addSeparator();
    addAction(tr("&Save layer state..."), this, &LayerMenu::saveState);
    addMenu(m_deletion);
    addSeparator();
    showStates();
}

void LayerMenu::addTools(OvCc::LayerManager &panel)
{
    OvCc::LayerTableWidget *table = panel.table();
    QAction *isolate = addAction(tr("&Isolate selected layers"), this, &LayerMenu::aboutToAct);
    isolate->setShortcut(QStringLiteral("Ctrl+I"));
    connect(isolate, &QAction::triggered, table, &OvCc::LayerTableWidget::isolateSelection);
    QAction *back = addAction(tr("&Give back"), table, &OvCc::LayerTableWidget::giveBack);
    back->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_I);
    back->setEnabled(table->canGiveBack());
    connect(table, &OvCc::LayerTableWidget::giveBackChanged, back, &QAction::setEnabled);

    QAction *follow = addAction(tr("Show &only selected layers"));
    follow->setCheckable(true);
    connect(follow, &QAction::toggled, &panel, &OvCc::LayerManager::setVisibilityFollowsSelection);
    connect(&panel, &OvCc::LayerManager::visibilityFollowsSelectionChanged, follow,
            &QAction::setChecked);
}

void LayerMenu::setDrawing(const Drawing *drawing)
{
    m_drawing = drawing;
    QString error;
    m_states.open(drawing ? drawing->fileName : QString(), &error);
    if (!error.isEmpty())
        emit refused(error);
    showStates();
}

void LayerMenu::followSaving()
{
    QString error;
    if (!m_states.moveTo(m_drawing->fileName, &error))
        emit refused(error);
    showStates();
}

void LayerMenu::showStates()
{
    qDeleteAll(std::exchange(m_entries, {}));
    m_deletion->clear();
    const QStringList names = m_states.names();
    for (const QString &name : names) {
        m_entries += addAction(entryText(name), this, [this, name] { restore(name); });
        m_deletion->addAction(entryText(name), this, [this, name] { remove(name); });
    }
    m_deletion->setEnabled(!m_entries.isEmpty());
}

void LayerMenu::saveState()
{
    emit aboutToAct();
    const QString name =
            QInputDialog::getText(parentWidget(), tr("Save layer state"), tr("Name of the state:"))
                    .simplified();
    if (name.isEmpty())
        return;
    const QString question = tr("There is a state %1. Replace it?").arg(quoted(name));
    if (m_states.contains(name)
        && QMessageBox::question(parentWidget(), tr("Tessa"), question) != QMessageBox::Yes)
        return;
    QString error;
    if (!m_states.save(name, OvCc::LayerState::capture(), &error))
        emit refused(error);
    showStates();
}

void LayerMenu::restore(const QString &name)
{
    emit aboutToAct();
    QString error;
    const OvCc::LayerState state = m_states.state(name, &error);
    if (!error.isEmpty()) {
        emit refused(tr("The state %1 cannot be restored: %2").arg(quoted(name), error));
        return;
    }
    QStringList others = m_link.restore(state);
    std::transform(others.begin(), others.end(), others.begin(), quoted);
    if (!others.isEmpty())
        emit refused(tr("State %1: these layers are gone or refuse: %2.")
                             .arg(quoted(name), listed(others)));
}

/// The entry that was chosen is still in use.
void LayerMenu::remove(const QString &name)
{
    QString error;
    if (!m_states.remove(name, &error))
        emit refused(error);
    QMetaObject::invokeMethod(this, &LayerMenu::showStates, Qt::QueuedConnection);
}

} // namespace Tessa
