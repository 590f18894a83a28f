// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Canvas.h"

#include <QApplication>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

#include <cmath>

namespace Tessa {

namespace {

const QColor ground(0x21, 0x28, 0x30);
const QColor hintColor(0x8a, 0x94, 0xa0);
const QColor windowColor(0x4a, 0x9e, 0xff);
const QColor crossingColor(0x57, 0xc7, 0x6b);

constexpr double zoomStep = 1.25;
/// How many pixels beside an entity a click still hits it.
constexpr double clickReach = 4.0;
constexpr double margin = 0.05;
/// The room around the drawing to pan in, in sizes of the drawing.
constexpr double room = 10.0;
/// The scroll bars of the view, hidden as they are, count pixels in an int.
constexpr double widestScene = 1e9;
/// How far the scene's origin may move at a time, in sizes of the drawing.
constexpr double originStep = 10.0;

/// Where in the picture the scene has its origin: near the drawing, since the scroll bars count pixels
/// from there. It is a whole number of steps away, so that it stays put for most drawings.
QPointF sceneOrigin(const QRectF &bounds)
{
    const double step = originStep * qMax(bounds.width(), bounds.height());
    if (qFuzzyIsNull(step))
        return bounds.center();
    return {std::round(bounds.center().x() / step) * step,
            std::round(bounds.center().y() / step) * step};
}

/// A rectangle of at least a size that can be fitted into a window.
QRectF areaAround(QRectF bounds)
{
    const double size = qMax(bounds.width(), bounds.height());
    const double least = size > 0 ? size * 0.01 : 1.0;
    bounds.setSize(bounds.size().expandedTo(QSizeF(least, least)));
    const double border = margin * qMax(bounds.width(), bounds.height());
    return bounds.adjusted(-border, -border, border, border);
}

} // namespace

/// The band that the user draws, over a picture of the canvas: a large drawing takes too long to
/// paint to do it at each move of the mouse.
class SelectionBand : public QWidget
{
public:
    SelectionBand(QWidget *viewport, QPoint from)
        : QWidget(viewport)
        , m_picture(viewport->grab())
        , m_from(from)
    {
        setAttribute(Qt::WA_OpaquePaintEvent);
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setGeometry(viewport->rect());
        show();
    }

    void drawTo(QPoint to)
    {
        m_to = to;
        update();
    }

    /// A band to the left touches.
    bool isCrossing() const { return m_to.x() < m_from.x(); }

    QRect area() const { return QRect(m_from, m_to).normalized(); }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.drawPixmap(0, 0, m_picture);
        QColor color = isCrossing() ? crossingColor : windowColor;
        painter.setPen(QPen(color, 1, isCrossing() ? Qt::DashLine : Qt::SolidLine));
        color.setAlpha(48);
        painter.setBrush(color);
        painter.drawRect(area().adjusted(0, 0, -1, -1));
    }

private:
    const QPixmap m_picture;
    const QPoint m_from;
    QPoint m_to = m_from;
};

Canvas::Canvas(QWidget *parent)
    : QGraphicsView(parent)
{
    m_scene.addItem(&m_item);
    setScene(&m_scene);
    setBackgroundBrush(ground);
    m_item.setGround(ground);
    setFrameShape(QFrame::NoFrame);
    setRenderHint(QPainter::Antialiasing);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTransformationAnchor(NoAnchor);
    setResizeAnchor(AnchorViewCenter);
    setMouseTracking(true);
    setAcceptDrops(false);
    showMode();
}

/// The view scrolls when its scene shrinks, and would ask the item that is going.
Canvas::~Canvas()
{
    setScene(nullptr);
}

void Canvas::setDrawing(const Drawing *drawing)
{
    m_band.reset();
    m_isSelecting = false;
    setSelection({});
    m_item.setDrawing(drawing);
    m_hasDrawing = drawing != nullptr;
    showArea();
}

void Canvas::setView(ViewDirection view)
{
    m_view = view;
    m_item.setProjection(projectionOf(view));
    showArea();
}

void Canvas::setSelection(const QSet<int> &entities)
{
    if (entities == m_selection)
        return;
    m_selection = entities;
    m_item.setSelection(entities);
    viewport()->update();
}

void Canvas::setFaceStyle(FaceStyle style)
{
    m_faceStyle = style;
    m_item.setFaceStyle(style);
    viewport()->update();
}

QPointF Canvas::toPicture(QPoint pixel) const
{
    return m_item.mapFromScene(mapToScene(pixel));
}

QPoint Canvas::fromPicture(QPointF point) const
{
    return mapFromScene(m_item.mapToScene(point));
}

void Canvas::fit()
{
    if (m_area.isNull())
        return;
    const double scale = fittingScale();
    setTransform(QTransform::fromScale(scale, -scale));
    centerOn(m_area.center());
    m_isFitted = true;
}

void Canvas::zoomIn()
{
    zoom(zoomStep, viewport()->rect().center());
}

void Canvas::zoomOut()
{
    zoom(1 / zoomStep, viewport()->rect().center());
}

void Canvas::setHandMode(bool on)
{
    m_isHandMode = on;
    showMode();
}

void Canvas::drawForeground(QPainter *painter, const QRectF &)
{
    if (!m_area.isNull())
        return;
    painter->resetTransform();
    painter->setPen(hintColor);
    painter->drawText(viewport()->rect(), Qt::AlignCenter, tr("Open a drawing, or drop one here"));
}

/// The keys of the canvas work wherever the user was before.
void Canvas::enterEvent(OvCc::EnterEvent *event)
{
    // Who types a name goes on typing.
    const auto *edit = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    if (!edit || edit->isReadOnly())
        setFocus(Qt::MouseFocusReason);
    QGraphicsView::enterEvent(event);
}

void Canvas::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        m_band.reset();
        m_isSelecting = false;
        changeSelection({});
    } else if (event->key() == Qt::Key_Space) {
        m_isSpaceHeld = true;
        showMode();
    } else {
        QGraphicsView::keyPressEvent(event);
    }
}

void Canvas::keyReleaseEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Space || event->isAutoRepeat()) {
        QGraphicsView::keyReleaseEvent(event);
        return;
    }
    m_isSpaceHeld = false;
    showMode();
}

void Canvas::mousePressEvent(QMouseEvent *event)
{
    emit pressed();
    const bool isHand = m_isHandMode || m_isSpaceHeld;
    if (event->button() == Qt::LeftButton && !isHand && !m_area.isNull()) {
        m_isSelecting = true;
        m_selectFrom = event->pos();
    }
    if (event->button() != Qt::MiddleButton && !(isHand && event->button() == Qt::LeftButton))
        return;
    m_isPanning = true;
    m_panFrom = event->pos();
    showMode();
}

void Canvas::mouseMoveEvent(QMouseEvent *event)
{
    if (m_isPanning) {
        scrollBy(m_panFrom - event->pos());
        m_panFrom = event->pos();
    } else if (m_isSelecting) {
        drawBand(event->pos());
    }
    emit pointerMoved(toPicture(event->pos()));
}

void Canvas::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && m_isSelecting)
        select(*event);
    if (event->buttons() != Qt::NoButton)
        return;
    m_isPanning = false;
    showMode();
}

void Canvas::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::MiddleButton)
        fit();
    else
        mousePressEvent(event);
}

void Canvas::resizeEvent(QResizeEvent *event)
{
    const bool wasFitted = m_isFitted;
    QGraphicsView::resizeEvent(event);
    if (wasFitted)
        fit();
}

void Canvas::scrollContentsBy(int dx, int dy)
{
    QGraphicsView::scrollContentsBy(dx, dy);
    m_isFitted = false;
    if (m_item.isSimplified())
        viewport()->update();
}

void Canvas::wheelEvent(QWheelEvent *event)
{
    zoom(std::pow(zoomStep, event->angleDelta().y() / 120.0), event->position().toPoint());
    event->accept();
}

/// Makes room for the drawing as it is seen now, and shows all of it.
void Canvas::showArea()
{
    m_item.setPos(-sceneOrigin(m_item.bounds()));
    m_area = m_hasDrawing ? areaAround(m_item.mapRectToScene(m_item.bounds())) : QRectF();
    const double width = room * m_area.width();
    const double height = room * m_area.height();
    setSceneRect(m_area.adjusted(-width, -height, width, height));
    // The whole view, however flat the drawing is in it.
    const double reach = qMax(sceneRect().width(), sceneRect().height());
    const QPointF corner(reach, reach);
    m_item.setRoom(m_item.mapRectFromScene(
            QRectF(sceneRect().center() - corner, sceneRect().center() + corner)));
    fit();
    viewport()->update();
}

void Canvas::zoom(double factor, QPoint around)
{
    if (m_area.isNull())
        return;
    const double largest = widestScene / qMax(sceneRect().width(), sceneRect().height());
    const double scale = qBound(fittingScale() / room, transform().m11() * factor, largest);
    const QPointF point = mapToScene(around);
    setTransform(QTransform::fromScale(scale, -scale));
    scrollBy(mapFromScene(point) - around);
    m_isFitted = false;
}

void Canvas::scrollBy(QPoint distance)
{
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() + distance.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() + distance.y());
}

double Canvas::fittingScale() const
{
    return qMin(viewport()->width() / m_area.width(), viewport()->height() / m_area.height());
}

void Canvas::showMode()
{
    if (m_isPanning)
        viewport()->setCursor(Qt::ClosedHandCursor);
    else
        viewport()->setCursor(m_isHandMode || m_isSpaceHeld ? Qt::OpenHandCursor : Qt::CrossCursor);
}

void Canvas::drawBand(QPoint to)
{
    const int distance = (to - m_selectFrom).manhattanLength();
    if (!m_band && distance >= QApplication::startDragDistance())
        m_band = std::make_unique<SelectionBand>(viewport(), m_selectFrom);
    if (m_band)
        m_band->drawTo(to);
}

void Canvas::select(const QMouseEvent &event)
{
    m_isSelecting = false;
    const bool isAdding = event.modifiers().testFlag(Qt::ControlModifier);
    QSet<int> entities = isAdding ? m_selection : QSet<int>();
    if (m_band) {
        const QRectF area = m_item.mapRectFromScene(mapToScene(m_band->area()).boundingRect());
        const QVector<int> found = m_item.entitiesIn(area, m_band->isCrossing());
        m_band.reset();
        entities.unite({found.begin(), found.end()});
    } else {
        const int entity = m_item.entityAt(toPicture(event.pos()), clickReach / transform().m11());
        if (entity >= 0 && !entities.remove(entity))
            entities.insert(entity);
    }
    changeSelection(entities);
}

void Canvas::changeSelection(const QSet<int> &entities)
{
    if (entities == m_selection)
        return;
    setSelection(entities);
    emit selectionChanged(entities);
}

} // namespace Tessa
