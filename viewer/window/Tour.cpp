// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Tour.h"

#include "LayerDock.h"
#include "MainWindow.h"
#include "PropertyBar.h"
#include "ViewRibbon.h"
#include "WindowPicture.h"
#include "viewer/canvas/Canvas.h"
#include "viewer/canvas/CanvasPanes.h"
#include "viewer/canvas/ShownEntities.h"

#include <OvCustomControl/BaseGallery.h>
#include <OvCustomControl/FrozenTableWidget.h>
#include <OvCustomControl/LayerColumns.h>
#include <OvCustomControl/LayerComboBox.h>
#include <OvCustomControl/LayerControl.h>
#include <OvCustomControl/LayerItem.h>
#include <OvCustomControl/LayerManager.h>
#include <OvCustomControl/LayerTableWidget.h>
#include <OvCustomControl/OvLayerUtility.h>
#include <OvCustomControl/PropertyManager.h>
#include <OvCustomControl/QOvColorComboBox.h>
#include <OvCustomControl/SearchLayerEdit.h>
#include <OvCustomControl/StackWidget.h>
#include <OvCustomControl/ViewPortGallery.h>
#include <OvCustomControl/Views.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QHeaderView>
#include <QLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QWheelEvent>
#include <QtTest>

#include <algorithm>
#include <cstdio>
#include <stdexcept>

namespace Tessa {

namespace {

constexpr QSize windowSize(1280, 800); // in the pictures, whatever the screen
constexpr int loadingTime = 300000;
constexpr int wheelSteps = 5;
const char pictureFailure[] = "a picture cannot be written";

/// Ends the tour unless @p isDone.
void require(bool isDone, const char *otherwise)
{
    if (!isDone)
        throw std::runtime_error(otherwise);
}

/// Clicks on a widget through its window, as a user does: an open drop-down sees the click, too.
void click(const QWidget &widget, QPoint place, Qt::MouseButton button = Qt::LeftButton,
           Qt::KeyboardModifiers modifiers = {})
{
    QTest::mouseClick(widget.window()->windowHandle(), button, modifiers,
                      widget.mapTo(widget.window(), place));
}

void click(const QWidget &widget)
{
    click(widget, widget.rect().center());
}

void clickCell(const QTableView &view, int row, int column, Qt::KeyboardModifiers modifiers = {})
{
    const QRect cell = view.visualRect(view.model()->index(row, column));
    require(view.viewport()->rect().contains(cell.center()), "a cell of the panel is out of sight");
    click(*view.viewport(), cell.center(), Qt::LeftButton, modifiers);
}

QString nameAt(const QTableView &view, int row)
{
    return view.model()->index(row, OvCc::NameColumn).data().toString();
}

OvCc::LayerItemData currentLayer()
{
    OvCc::LayerItemData layer;
    require(OvLayerUtility().getCurrentLayer(layer), "the drawing has no current layer");
    return layer;
}

} // namespace

Tour::Tour(MainWindow &window, const QString &folder)
    : m_window(window)
    , m_canvas(*window.panes()->current())
    , m_layers(*window.layers())
    , m_dock(*window.layerDock())
    , m_table(*m_dock.panel()->table())
    , m_names(*m_table.frozenView())
    , m_search(*m_dock.panel()->searchEdit())
    , m_ribbon(*window.ribbon())
    , m_properties(*window.pickers()->panel())
    , m_folder(folder)
{
}

bool Tour::play(const QString &fileName)
{
    try {
        require(QDir().mkpath(m_folder), "the folder for the pictures cannot be made");
        openDrawing(fileName);
        save(QStringLiteral("01-drawing.png"));
        visitLayerBox();
        visitPanel();
        visitProperties();
        visitViews();
    } catch (const std::runtime_error &error) {
        std::fprintf(stderr, "tessa-viewer: the tour ended, since %s\n", error.what());
        return false;
    }
    return true;
}

void Tour::openDrawing(const QString &fileName)
{
    require(QTest::qWaitForWindowExposed(&m_window), "the window does not show");
    m_window.resize(windowSize);
    m_window.open(fileName);
    QSignalSpy opened(&m_window, &MainWindow::opened);
    require(QTest::qWaitFor([&opened] { return !opened.isEmpty(); }, loadingTime),
            "the drawing takes too long to read");
    require(m_window.drawing() != nullptr, "there is no drawing");
    const int count = m_window.drawing()->layers.count();
    require(list().count() == count, "the layer box does not show the layers of the drawing");
    require(m_dock.isVisible() && m_table.model()->rowCount() == count,
            "the layer manager does not show the layers of the drawing");
}

void Tour::visitLayerBox()
{
    const QImage whole = canvasImage();
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
}

void Tour::visitPanel()
{
    searchLayer();
    selectLayer();
    save(QStringLiteral("06-search.png"));
    openColumnMenu();
    addCurrentLayer();
    save(QStringLiteral("08-new-layer.png"));
    warnOfCurrentLayer();
    const QImage before = canvasImage();
    toggleSelection();
    require(canvasImage() != before, "the canvas still shows the layers that are off");
    openRowMenu();
    openFilter();
    undo();
    require(canvasImage() == before, "the layers are not all back by one step");
}

void Tour::visitProperties()
{
    const QImage before = canvasImage();
    selectAll();
    save(QStringLiteral("13-selection.png"));
    pickColor();
    QTest::keyClick(&m_canvas, Qt::Key_Escape);
    require(canvasImage() != before, "the selected entities do not get the colour that was picked");
    save(QStringLiteral("15-color.png"));
}

void Tour::visitViews()
{
    const QImage before = canvasImage();
    const OvCc::BaseGallery &views = *m_ribbon.views();
    openGallery(views);
    save(QStringLiteral("16-views.png"));
    pressItem(views, OvCc::SouthwestView);
    require(canvasImage() != before, "the canvas does not show the view that was chosen");

    const OvCc::BaseGallery &arrangements = *m_ribbon.arrangements();
    openGallery(arrangements);
    pressItem(arrangements, OvCc::TwoVerticalViewports);
    require(m_window.panes()->shown().size() == 2, "the window is not split as chosen");
    save(QStringLiteral("17-panes.png"));

    const QLayout &bar = *m_ribbon.layerBar()->layout();
    click(*bar.itemAt(bar.count() - 1)->widget());
    require(m_ribbon.pickers()->isVisible(), "the layer bar does not unfold its pickers");
    save(QStringLiteral("18-pickers.png"));
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
    ShownEntities shown(drawing, {});
    for (const Entity &entity : drawing.geometry.modelSpace().entities) {
        if (!entity.as<BlockInsert>() && shown.shows(entity))
            ++entities[entity.style.layer];
    }
    const auto busiest = std::max_element(entities.begin(), entities.end() - 1);
    require(*busiest > 0, "no layer shows anything");
    return int(busiest - entities.begin());
}

void Tour::clickLight(int row)
{
    list().scrollToItem(list().item(row));
    const OvCc::LayerItem *layer = m_layers.layerItem(row);
    const bool wasOn = layer->currentLayerData().isOn;
    click(*layer->layout()->itemAt(0)->widget());
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

/// Types the beginning of the last name.
void Tour::searchLayer()
{
    const QString text = nameAt(m_table, m_table.model()->rowCount() - 1).left(2);
    click(m_search);
    QTest::keyClicks(&m_search, text);
    for (int row = 0; row < m_table.model()->rowCount(); ++row) {
        const bool isFound = nameAt(m_table, row).startsWith(text, Qt::CaseInsensitive);
        require(m_table.isRowHidden(row) != isFound && m_names.isRowHidden(row) != isFound,
                "the search does not show what it is to find");
    }
}

void Tour::selectLayer()
{
    const int row = m_table.model()->rowCount() - 1;
    m_names.scrollTo(m_names.model()->index(row, OvCc::NameColumn));
    clickCell(m_names, row, OvCc::NameColumn);
    require(m_table.selectionModel()->isRowSelected(row, {}), "a click does not select its row");
}

void Tour::openColumnMenu()
{
    const QHeaderView &header = *m_table.horizontalHeader();
    const QPoint place(header.sectionViewportPosition(OvCc::OnColumn) + header.height(),
                       header.height() / 2);
    // The menu opens at the pointer, which the events of the tour do not move.
    QCursor::setPos(header.mapToGlobal(place));
    lookAt(QStringLiteral("07-column-menu.png"),
           [&] { click(*header.viewport(), place, Qt::RightButton); });
}

void Tour::addCurrentLayer()
{
    const QString name = QStringLiteral("Seen on tour");
    clickCommand(QStringLiteral("New"));
    require(QTest::qWaitFor([this] { return m_names.isAncestorOf(QApplication::focusWidget()); }),
            "a new layer cannot be named");
    QTest::keyClicks(QApplication::focusWidget(), name);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    clickCommand(QStringLiteral("Set current"));
    require(currentLayer().name == name, "the drawing's current layer is not the new one");
}

void Tour::warnOfCurrentLayer()
{
    lookAt(QStringLiteral("09-warning.png"),
           [this] { clickCell(m_table, m_table.currentIndex().row(), OvCc::OnColumn); });
    require(currentLayer().isOn, "the current layer is off, though the warning was heeded");
}

/// Switches the upper half of the layers in sight off by a click on one of them.
void Tour::toggleSelection()
{
    m_names.scrollToTop();
    const int last = m_names.rowAt(m_names.viewport()->height() / 2);
    clickCell(m_names, 0, OvCc::NameColumn);
    clickCell(m_names, last, OvCc::NameColumn, Qt::ShiftModifier);
    clickCell(m_table, last, OvCc::OnColumn);
    const DrawingLayers &layers = m_window.drawing()->layers;
    for (int row = 0; row <= last; ++row)
        require(!layers.at(layers.indexOf(nameAt(m_table, row))).isOn,
                "a click on a selected layer is not for all of them");
    save(QStringLiteral("10-many-layers.png"));
}

void Tour::openRowMenu()
{
    const QRect cell = m_table.visualRect(m_table.model()->index(1, OvCc::ColorColumn));
    lookAt(QStringLiteral("11-row-menu.png"),
           [&] { click(*m_table.viewport(), cell.center(), Qt::RightButton); });
}

void Tour::openFilter()
{
    const auto *button = m_dock.panel()->findChild<QToolButton *>(QStringLiteral("filterBtn"));
    lookAt(QStringLiteral("12-filter.png"), [&] { click(*button); });
}

void Tour::undo()
{
    const auto buttons = m_window.findChildren<QToolButton *>();
    const auto button = std::find_if(buttons.begin(), buttons.end(), [](const QToolButton *it) {
        return it->defaultAction() && it->defaultAction()->shortcut() == QKeySequence::Undo;
    });
    require(button != buttons.end(), "the tool bar has no button that undoes");
    click(**button);
}

/// Draws a band over the whole canvas.
void Tour::selectAll()
{
    QSignalSpy selected(&m_canvas, &Canvas::selectionChanged);
    QWindow *window = m_window.windowHandle();
    const auto place = [this](QPoint corner) {
        return m_canvas.viewport()->mapTo(&m_window, corner);
    };
    const QRect area = m_canvas.viewport()->rect();
    QTest::mousePress(window, Qt::LeftButton, {}, place(area.bottomRight()));
    QTest::mouseMove(window, place(area.topLeft()));
    QTest::mouseRelease(window, Qt::LeftButton, {}, place(area.topLeft()));
    require(!selected.isEmpty(), "a band over the whole drawing selects nothing");
}

void Tour::pickColor()
{
    OvCc::QOvColorComboBox &picker = *m_properties.colorPicker();
    click(*picker.lineEdit());
    require(QTest::qWaitFor([&] { return picker.view()->isVisible(); }),
            "the colour picker does not open");
    save(QStringLiteral("14-colors.png"));
    const QListWidget &rows = *picker.item(0)->listWidget();
    click(*rows.viewport(), rows.visualItemRect(rows.item(OvCc::CyanRow)).center());
    require(!picker.view()->isVisible(), "the colour picker stays open");
}

/// Clicks on the lowest button of a gallery.
void Tour::openGallery(const OvCc::BaseGallery &gallery)
{
    click(*gallery.findChildren<QAbstractButton *>(QString(), Qt::FindDirectChildrenOnly)
                   .constLast());
    require(QTest::qWaitFor([&] { return gallery.popupGallery()->isVisible(); }),
            "a gallery does not open");
}

void Tour::pressItem(const OvCc::BaseGallery &gallery, int index)
{
    const NsRc::RibbonGallery &items = *gallery.popupGallery();
    const int height = gallery.galleryGroup()->getSize().height();
    click(items, {items.width() / 2, index * height + height / 2 + 1});
    require(!items.isVisible(), "a gallery stays open");
    QCoreApplication::processEvents();
}

/// Clicks on one of the layer manager's commands, then lets the window follow.
void Tour::clickCommand(const QString &text) const
{
    const QToolBar *bar = m_dock.commands();
    const QList<QAction *> commands = bar->actions();
    const auto command = std::find_if(commands.begin(), commands.end(),
                                      [&](const QAction *it) { return it->text() == text; });
    require(command != commands.end(), "the layer manager lacks a command");
    click(*bar->widgetForAction(*command));
    QCoreApplication::processEvents();
}

/// Saves a picture of the dialog or menu that @p open opens and waits for, and closes it.
void Tour::lookAt(const QString &name, const std::function<void()> &open) const
{
    bool isOpened = false;
    bool isSaved = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        const QWidgetList others = windowsOver(m_window);
        if (others.isEmpty())
            return;
        timer.stop();
        isOpened = true;
        isSaved = savePicture(name);
        QTest::keyClick(others.first(), Qt::Key_Escape);
    });
    timer.start(0);
    open();
    require(QTest::qWaitFor([&] { return isOpened; }), "a dialog or menu does not open");
    require(isSaved, pictureFailure);
}

QListWidget &Tour::list() const
{
    return *static_cast<QListWidget *>(m_layers.view());
}

QImage Tour::canvasImage() const
{
    return m_canvas.viewport()->grab().toImage();
}

void Tour::save(const QString &name) const
{
    require(savePicture(name), pictureFailure);
}

/// Saves the window as it is, with the windows over it in their places.
bool Tour::savePicture(const QString &name) const
{
    QCoreApplication::processEvents();
    const QString path = QDir(m_folder).filePath(name);
    if (!pictureOf(m_window, Qt::white).save(path))
        return false;
    std::puts(qPrintable(QDir::toNativeSeparators(path)));
    return true;
}

} // namespace Tessa
