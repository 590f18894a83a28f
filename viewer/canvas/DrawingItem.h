// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Drawing.h"
#include "FaceStyle.h"
#include "Projection.h"

#include <QGraphicsItem>
#include <QSet>
#include <QVector>

namespace Tessa {

/// Paints a drawing, in its own coordinates and in the drawing's order. Any number of items may show
/// the same drawing, each from another side.
///
/// It looks up the layers while it paints, so a change of a layer costs one update(), however many
/// entities lie on it. What is outside the exposed part, or too small to be seen, is passed over.
/// Where blocks have too many copies for a picture, small copies are painted as boxes; the smaller
/// the part of the drawing in the picture, the more of them can be painted whole.
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

    /// What faces are filled with in the style Hidden: the colour behind the drawing.
    void setGround(const QColor &color);

    /// Marks these entities, numbers in the model space, on top of all others.
    void setSelection(const QSet<int> &entities);

    /// The topmost visible entity, which where faces are filled is the nearest one, that is
    /// drawn within @p reach of that point, fillings and the boxes of texts included; -1 if there is
    /// none. O(N).
    int entityAt(QPointF position, double reach) const;

    /// The visible entities that lie in @p area: as a whole, or, with @p isCrossing, with any part.
    /// In the drawing's order; O(N).
    QVector<int> entitiesIn(const QRectF &area, bool isCrossing) const;

    /// Whether copies were painted as boxes that are large enough to be told apart. How many there are
    /// then depends on all that is in the picture, and parts of two pictures do not match.
    bool isSimplified() const { return m_isSimplified; }

    /// Around the drawing, lines without ends aside.
    QRectF bounds() const { return m_bounds; }

    /// How far lines without ends are painted, at least; at first no farther than the bounds.
    void setRoom(const QRectF &room);

    QRectF boundingRect() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

private:
    void findBounds();
    FaceStyle shownStyle() const;

    const Drawing *m_drawing = nullptr;
    QRectF m_bounds;
    QRectF m_room;
    Projection m_projection;
    bool m_hasFaces = false;
    FaceStyle m_faceStyle = FaceStyle::Wireframe;
    QColor m_ground = Qt::black;
    QSet<int> m_selection;
    bool m_isSimplified = false; ///< the last time that it was painted
};

} // namespace Tessa
