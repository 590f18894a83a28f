// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Pictures.h"

#include "viewer/canvas/Canvas.h"
#include "viewer/canvas/CanvasPanes.h"
#include "viewer/window/MainWindow.h"
#include "viewer/window/PropertyBar.h"
#include "viewer/window/Tour.h"
#include "viewer/window/ViewRibbon.h"

#include <KcHost/KcHost.h>
#include <OvCustomControl/ViewPortGallery.h>
#include <OvCustomControl/Views.h>
#include <OvCustomControl/VisualStyleComboBox.h>

#include <QTemporaryDir>
#include <QtTest>

#include <memory>
#include <stdexcept>

namespace {

/// The viewer's window, which begins without a drawing.
std::unique_ptr<Tessa::MainWindow> shownWindow()
{
    KcHost::setWorkingDatabase(nullptr);
    auto window = std::make_unique<Tessa::MainWindow>();
    window->show();
    return window;
}

/// The tour's second stop, with the layers dropped down.
QPixmap onTour()
{
    const QTemporaryDir folder;
    const auto window = shownWindow();
    if (!Tessa::Tour(*window, folder.path())
                 .play(QStringLiteral(OVCC_SOURCE_DIR "/viewer/sample/floorplan.dxf")))
        throw std::runtime_error("the tour was not played");
    return QPixmap(folder.filePath(QStringLiteral("02-layers.png")));
}

/// Chooses what the ribbon or the tool bar has at @p index, as a press does.
void press(const OvCc::BaseGallery &gallery, int index)
{
    emit gallery.popupGallery()->itemPressed(gallery.galleryGroup()->item(index));
}

QPixmap threeViewports()
{
    const auto window = shownWindow();
    window->resize(1280, 800);
    QSignalSpy opened(window.get(), &Tessa::MainWindow::opened);
    window->open(QStringLiteral(OVCC_SOURCE_DIR "/viewer/sample/gardenhouse.dxf"));
    if (!opened.wait())
        throw std::runtime_error("a drawing does not open");
    Tessa::ViewRibbon &ribbon = *window->ribbon();
    press(*ribbon.arrangements(), OvCc::ThreeAboveViewports);
    press(*ribbon.views(), OvCc::SouthwestView);
    emit window->pickers()->visualStyles()->rowChosen(OvCc::FlatStyle);
    window->pickers()->visualStyles()->setCurrentIndex(OvCc::FlatStyle);
    window->panes()->shown().last()->setView(Tessa::ViewDirection::Front);
    // The ribbon is laid out anew for the longer name of the view, then its groups are.
    for (int pass = 0; pass < 3; ++pass)
        QCoreApplication::processEvents();
    return window->grab();
}

} // namespace

QVector<Picture> viewerPictures()
{
    return {{QStringLiteral("viewer.png"), onTour}, {QStringLiteral("views.png"), threeViewports}};
}
