#pragma once

#include "Drawing.h"

#include <QGraphicsItem>

/// Paints a drawing, in its own coordinates and in the drawing's order.
///
/// It looks up the layers while it paints, so a change of a layer costs one update(), however many
/// entities lie on it. What is outside the exposed part, or too small to be seen, is passed over.
class DrawingItem : public QGraphicsItem
{
public:
    DrawingItem();

    /// Shows another drawing, which must outlive the item or be replaced; null shows none.
    void setDrawing(const Drawing *drawing);

    QRectF boundingRect() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

private:
    const Drawing *m_drawing = nullptr;
};
