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
    followCommands(drawing);
    connect(&drawing.file(), &LayerFile::changedElsewhere, this, &LayerWindow::refresh);
    OwnDatabase::setLayerModifiedHandler([this](const QString &) { refresh(); });
    m_box.slotUpdate(); // the panel has filled itself
}

LayerWindow::~LayerWindow()
{
    OwnDatabase::setLayerModifiedHandler(nullptr);
}

/// What the drawing refuses is undone by the refresh.
void LayerWindow::followCommands(KcDbDatabase &drawing)
{
    const auto makeCurrent = [this, &drawing](const QString &name) {
        OwnDatabase::setCurrentLayer(drawing, name);
        refresh();
    };
    connect(&m_box, &LayerComboBox::layerChosen, this, makeCurrent);
    connect(&m_manager, &LayerManager::currentLayerRequested, this, makeCurrent);
    connect(&m_manager, &LayerManager::layerAdded, this, [this, &drawing](const QString &name) {
        OwnDatabase::addLayer(drawing, name);
        refresh();
    });
    connect(&m_manager, &LayerManager::layersRemoved, this,
            [this, &drawing](const QStringList &names) {
                for (const QString &name : names)
                    OwnDatabase::eraseLayer(drawing, name);
                refresh();
            });
    connect(&m_manager, &LayerManager::layerRenamed, this,
            [this, &drawing](const QString &from, const QString &to) {
                OwnDatabase::renameLayer(drawing, from, to);
                refresh();
            });
}

void LayerWindow::refresh()
{
    m_box.slotUpdate();
    m_manager.refresh();
}
