#pragma once

#include "Drawing.h"
#include "Projection.h"

#include <QGraphicsItem>
#include <QSet>
#include <QVector>

/// How the faces of a drawing are shown.
enum class FaceStyle {
    Wireframe,   ///< by their edges
    Hidden,      ///< by the edges that no face hides
    Flat,        ///< filled, the darker the more they are turned away
    Gouraud,     ///< as Flat: the faces of a drawing tell of no smooth shape
    FlatEdges,   ///< filled, with their edges
    GouraudEdges ///< as FlatEdges
};

/// Paints a drawing, in its own coordinates and in the drawing's order. Any number of items may show
/// the same drawing, each from another side.
///
/// It looks up the layers while it paints, so a change of a layer costs one update(), however many
/// entities lie on it. What is outside the exposed part, or too small to be seen, is passed over.
///
/// The item's coordinates are those of the picture, y pointing up: those of the drawing as long as it
/// is seen from the top. N is the number of entities in model space.
class DrawingItem : public QGraphicsItem
{
public:
    DrawingItem();

    /// Shows another drawing, which must outlive the item or be replaced; null shows none. Nothing is
    /// selected then.
    void setDrawing(const Drawing *drawing);

    /// Turns the drawing; at first it is seen from the top. O(N).
    void setProjection(const Projection &projection);
    const Projection &projection() const { return m_projection; }

    /// A drawing without faces looks the same in all styles; at first it is Wireframe.
    void setFaceStyle(FaceStyle style);

    /// Marks these entities, numbers in the model space, on top of all others.
    void setSelection(const QSet<int> &entities);

    /// The topmost visible entity that is drawn within @p reach of that point, fillings and the boxes
    /// of texts included; -1 if there is none. O(N).
    int entityAt(QPointF position, double reach) const;

    /// The visible entities that lie in @p area: as a whole, or, with @p isCrossing, with any part.
    /// In the drawing's order; O(N).
    QVector<int> entitiesIn(const QRectF &area, bool isCrossing) const;

    QRectF boundingRect() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

private:
    void findBounds();

    const Drawing *m_drawing = nullptr;
    QRectF m_bounds;
    Projection m_projection;
    FaceStyle m_faceStyle = FaceStyle::Wireframe;
    QSet<int> m_selection;
};
