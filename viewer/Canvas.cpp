#include "Canvas.h"

#include <QApplication>
#include <QLineEdit>
#include <QMouseEvent>
#include <QScrollBar>
#include <QWheelEvent>

#include <cmath>

namespace {

const QColor ground(0x21, 0x28, 0x30);
const QColor hintColor(0x8a, 0x94, 0xa0);

constexpr double zoomStep = 1.25;
constexpr double margin = 0.05;
/// The room around the drawing to pan in, in sizes of the drawing.
constexpr double room = 10.0;
/// The scroll bars of the view, hidden as they are, count pixels in an int.
constexpr double widestScene = 1e9;

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

Canvas::Canvas(QWidget *parent)
    : QGraphicsView(parent)
{
    m_scene.addItem(&m_item);
    setScene(&m_scene);
    setBackgroundBrush(ground);
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

void Canvas::setDrawing(const Drawing *drawing)
{
    m_item.setDrawing(drawing);
    m_area = drawing ? areaAround(drawing->geometry.modelSpace().bounds) : QRectF();
    const double width = room * m_area.width();
    const double height = room * m_area.height();
    setSceneRect(m_area.adjusted(-width, -height, width, height));
    fit();
    viewport()->update();
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
void Canvas::enterEvent(QEvent *event)
{
    // Who types a name goes on typing.
    const auto *edit = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    if (!edit || edit->isReadOnly())
        setFocus(Qt::MouseFocusReason);
    QGraphicsView::enterEvent(event);
}

void Canvas::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Space) {
        QGraphicsView::keyPressEvent(event);
        return;
    }
    m_isSpaceHeld = true;
    showMode();
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
    const bool isHand = m_isHandMode || m_isSpaceHeld;
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
    }
    emit pointerMoved(mapToScene(event->pos()));
}

void Canvas::mouseReleaseEvent(QMouseEvent *event)
{
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
}

void Canvas::wheelEvent(QWheelEvent *event)
{
    zoom(std::pow(zoomStep, event->angleDelta().y() / 120.0), event->position().toPoint());
    event->accept();
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
