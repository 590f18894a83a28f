// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

/// The least that a host does: it shows the layers of a drawing, and does what the user wants of them.
#include <KcHost/KcHost.h>
#include <OvCustomControl/OvCustomControl.h>

#include <QApplication>
#include <QMainWindow>
#include <QStatusBar>
#include <QToolBar>

void showLayers(QMainWindow &window, KcDbDatabase &drawing)
{
    using OvCc::LayerLink, OvCc::LayerManager;
    auto *box = new OvCc::LayerComboBox;
    auto *panel = new LayerManager;
    QToolBar *bar = window.addToolBar(QStringLiteral("Layers"));
    bar->addWidget(box);
    bar->addAction(QStringLiteral("New"), panel, &LayerManager::newLayer);
    bar->addAction(QStringLiteral("Delete"), panel, &LayerManager::deleteLayers);
    bar->addAction(QStringLiteral("Rename"), panel, &LayerManager::renameLayer);
    bar->addAction(QStringLiteral("Set current"), panel, &LayerManager::makeCurrent);
    window.setCentralWidget(panel);

    auto *link = new LayerLink(&window);
    link->add(box);
    link->add(panel);
    KcHost::setLayerModifiedHandler([link](const QString &name) { link->layerChanged(name); });
    const auto answer = [link, &window, &drawing](auto wish, auto act) {
        QObject::connect(link, wish, &window, [act, &window, &drawing](const auto &...names) {
            if (act(drawing, names...) != Kcore::eOk)
                window.statusBar()->showMessage(QStringLiteral("The drawing refuses that."));
        });
    };
    answer(&LayerLink::currentLayerRequested, &KcHost::setCurrentLayer);
    answer(&LayerLink::addRequested, &KcHost::addLayer);
    answer(&LayerLink::renameRequested, &KcHost::renameLayer);
    answer(&LayerLink::removeRequested, [](KcDbDatabase &from, const QStringList &names) {
        Kcore::ErrorStatus refusal = Kcore::eOk;
        for (const QString &name : names)
            refusal = qMax(refusal, KcHost::eraseLayer(from, name));
        return refusal;
    });
}

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QString error;
    const auto drawing = KcHost::readDrawing(application.arguments().value(1), &error);
    if (!drawing) {
        qCritical("%s", qPrintable(error));
        return 1;
    }
    KcHost::setWorkingDatabase(drawing.get());
    QMainWindow window;
    showLayers(window, *drawing);
    window.show();
    return QApplication::exec();
}
