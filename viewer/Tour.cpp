#include "Tour.h"

#include "Canvas.h"
#include "MainWindow.h"

#include <OvCustomControl/LayerComboBox.h>
#include <OvCustomControl/LayerItem.h>

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QWheelEvent>
#include <QtTest>

#include <algorithm>
#include <cstdio>
#include <stdexcept>

namespace {

constexpr int loadingTime = 300000;
constexpr int wheelSteps = 5;

/// Ends the tour unless @p isDone.
void require(bool isDone, const char *otherwise)
{
    if (!isDone)
        throw std::runtime_error(otherwise);
}

/// Clicks on a widget through its window, as a user does: an open drop-down sees the click, too.
void click(const QWidget &widget)
{
    QTest::mouseClick(widget.window()->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                      widget.mapTo(widget.window(), widget.rect().center()));
}

} // namespace

Tour::Tour(MainWindow &window, const QString &folder)
    : m_window(window)
    , m_canvas(*window.findChild<Canvas *>())
    , m_layers(*window.findChild<OvCc::LayerComboBox *>())
    , m_folder(folder)
{
}

bool Tour::play(const QString &fileName)
{
    try {
        require(QDir().mkpath(m_folder), "the folder for the pictures cannot be made");
        openDrawing(fileName);
        const QImage whole = canvasImage();
        save(QStringLiteral("01-drawing.png"));

        openLayers();
        save(QStringLiteral("02-layers.png"));

        const int layer = busiestLayer();
        clickLight(layer);
        require(canvasImage() != whole, "the canvas still shows the layer that is off");
        save(QStringLiteral("03-layer-off.png"));

        closeLayers();
        zoomIn();
        save(QStringLiteral("04-zoom.png"));

        fit();
        openLayers();
        clickLight(layer);
        closeLayers();
        require(canvasImage() == whole, "the canvas is not as it was, with the layer on again");
        save(QStringLiteral("05-layer-on.png"));
    } catch (const std::runtime_error &error) {
        std::fprintf(stderr, "tessa-viewer: the tour ended, since %s\n", error.what());
        return false;
    }
    return true;
}

void Tour::openDrawing(const QString &fileName)
{
    require(QTest::qWaitForWindowExposed(&m_window), "the window does not show");
    m_window.open(fileName);
    QSignalSpy opened(&m_window, &MainWindow::opened);
    require(QTest::qWaitFor([&opened] { return !opened.isEmpty(); }, loadingTime),
            "the drawing takes too long to read");
    require(m_window.drawing() != nullptr, "there is no drawing");
    require(list().count() == m_window.drawing()->layers.count(),
            "the layer box does not show the layers of the drawing");
}

void Tour::openLayers()
{
    click(*m_layers.lineEdit());
    require(QTest::qWaitFor([this] { return list().isVisible(); }), "the layer box does not open");
}

void Tour::closeLayers()
{
    QTest::keyClick(&list(), Qt::Key_Escape);
    require(QTest::qWaitFor([this] { return !list().isVisible(); }),
            "the layer box does not close");
}

/// The shown layer with the most entities.
int Tour::busiestLayer() const
{
    const Drawing &drawing = *m_window.drawing();
    std::vector<int> entities(drawing.layers.count() + 1, 0);
    for (const Entity &entity : drawing.geometry.modelSpace().entities) {
        const LayerLook &look = drawing.layers.at(entity.style.layer);
        if (!entity.insert && look.isOn && !look.isFrozen)
            ++entities[entity.style.layer];
    }
    const auto busiest = std::max_element(entities.begin(), entities.end() - 1);
    require(*busiest > 0, "no layer shows anything");
    return int(busiest - entities.begin());
}

void Tour::clickLight(int row)
{
    QListWidgetItem *place = list().item(row);
    list().scrollToItem(place);
    auto *layer = static_cast<OvCc::LayerItem *>(list().itemWidget(place));
    const bool wasOn = layer->currentLayerData().isOn;
    click(*layer->findChild<QPushButton *>());
    require(m_window.drawing()->layers.at(row).isOn != wasOn,
            "the drawing does not have the layer's new state");
    require(list().isVisible(), "the layer box closed under the click");
}

void Tour::zoomIn()
{
    const QPointF pointer = QRectF(m_canvas.viewport()->rect()).center() * 0.8;
    const QPointF before = m_canvas.mapToScene(pointer.toPoint());
    const double scale = m_canvas.transform().m11();
    for (int step = 0; step < wheelSteps; ++step) {
        QWheelEvent wheel(pointer, m_canvas.viewport()->mapToGlobal(pointer.toPoint()), {},
                          QPoint(0, 120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(m_canvas.viewport(), &wheel);
    }
    require(m_canvas.transform().m11() > scale, "the wheel does not zoom");
    require((m_canvas.mapFromScene(before) - pointer.toPoint()).manhattanLength() <= wheelSteps,
            "the wheel does not zoom to the pointer");
}

void Tour::fit()
{
    const double scale = m_canvas.transform().m11();
    QTest::keyClick(&m_canvas, Qt::Key_Home);
    require(m_canvas.transform().m11() < scale, "the home key does not show the whole drawing");
}

QListWidget &Tour::list() const
{
    return *static_cast<QListWidget *>(m_layers.view());
}

QImage Tour::canvasImage() const
{
    return m_canvas.viewport()->grab().toImage();
}

/// Saves the window as it is, with the drop-down, a window of its own, in its place over it.
void Tour::save(const QString &name) const
{
    QCoreApplication::processEvents();
    const QWidget &popup = *list().window();
    const QRect popupPlace(m_window.mapFromGlobal(popup.pos()), popup.size());
    QRect place = m_window.rect();
    if (popup.isVisible())
        place |= popupPlace;

    QPixmap picture(place.size());
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.translate(-place.topLeft());
    painter.drawPixmap(0, 0, m_window.grab());
    if (popup.isVisible())
        painter.drawPixmap(popupPlace.topLeft(), list().window()->grab());
    painter.end();

    const QString path = QDir(m_folder).filePath(name);
    require(picture.save(path), "a picture cannot be written");
    std::puts(qPrintable(QDir::toNativeSeparators(path)));
}
