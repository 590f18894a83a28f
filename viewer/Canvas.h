#pragma once

#include "DrawingItem.h"

#include <QGraphicsScene>
#include <QGraphicsView>

/// Shows a drawing. The wheel zooms to the pointer; the middle button pans, and shows the whole
/// drawing on a double click; the left button pans in hand mode and while the space bar is held.
class Canvas : public QGraphicsView
{
    Q_OBJECT

public:
    explicit Canvas(QWidget *parent = nullptr);

    /// Shows the whole of @p drawing, which must live until it is replaced; null shows none.
    void setDrawing(const Drawing *drawing);

public slots:
    /// Shows the whole drawing, until the user moves it also after a change of the window's size.
    void fit();
    void zoomIn();
    void zoomOut();
    void setHandMode(bool on);

signals:
    /// The pointer is at this point of the drawing.
    void pointerMoved(QPointF position);

protected:
    void drawForeground(QPainter *painter, const QRectF &rect) override;
    void enterEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void zoom(double factor, QPoint around);
    void scrollBy(QPoint distance);
    double fittingScale() const;
    void showMode();

    QGraphicsScene m_scene;
    DrawingItem m_item;
    QRectF m_area; ///< of the drawing, with a margin; null without one
    bool m_isFitted = false;
    bool m_isHandMode = false;
    bool m_isSpaceHeld = false;
    bool m_isPanning = false;
    QPoint m_panFrom;
};
