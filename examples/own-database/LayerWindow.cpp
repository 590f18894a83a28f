// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerWindow.h"

#include "LayerFile.h"
#include "OwnDatabase.h"

#include <QAction>
#include <QToolBar>
#include <QVBoxLayout>

using namespace OvCc;

LayerWindow::LayerWindow(KcDbDatabase &drawing)
{
    auto *bar = new QToolBar;
    const std::pair<const char *, void (LayerManager::*)()> commands[] = {
            {"New", &LayerManager::newLayer},
            {"Delete", &LayerManager::deleteLayers},
            {"Rename", &LayerManager::renameLayer},
            {"Make current", &LayerManager::makeCurrent}};
    for (const auto &[text, command] : commands)
        connect(bar->addAction(text), &QAction::triggered, &m_manager, command);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(&m_box, 0, Qt::AlignLeft);
    layout->addWidget(bar);
    layout->addWidget(&m_manager);
    resize(800, 400);
    m_link.add(&m_box);
    m_link.add(&m_manager);
    followWishes(drawing);
    connect(&drawing.file(), &LayerFile::changedElsewhere, &m_link, &LayerLink::layersChanged);
    OwnDatabase::setLayerModifiedHandler(
            [this](const QString &name) { m_link.layerChanged(name); });
}

LayerWindow::~LayerWindow()
{
    OwnDatabase::setLayerModifiedHandler(nullptr);
}

/// What the drawing refuses, the link undoes.
void LayerWindow::followWishes(KcDbDatabase &drawing)
{
    connect(&m_link, &LayerLink::currentLayerRequested, this,
            [&drawing](const QString &name) { OwnDatabase::setCurrentLayer(drawing, name); });
    connect(&m_link, &LayerLink::addRequested, this,
            [&drawing](const QString &name) { OwnDatabase::addLayer(drawing, name); });
    connect(&m_link, &LayerLink::removeRequested, this, [&drawing](const QStringList &names) {
        for (const QString &name : names)
            OwnDatabase::eraseLayer(drawing, name);
    });
    connect(&m_link, &LayerLink::renameRequested, this,
            [&drawing](const QString &from, const QString &to) {
                OwnDatabase::renameLayer(drawing, from, to);
            });
}
