#include "DrawingItem.h"

#include "EntityPainter.h"
#include "Picking.h"
#include "ShownEntities.h"

#include <QPainter>
#include <QStyleOptionGraphicsItem>

DrawingItem::DrawingItem()
{
    setFlag(ItemUsesExtendedStyleOption);
}

void DrawingItem::setDrawing(const Drawing *drawing)
{
    prepareGeometryChange();
    m_drawing = drawing;
    m_hasFaces = drawing && drawing->geometry.hasFaces();
    m_selection.clear();
    findBounds();
}

void DrawingItem::setProjection(const Projection &projection)
{
    prepareGeometryChange();
    m_projection = projection;
    findBounds();
}

void DrawingItem::setFaceStyle(FaceStyle style)
{
    m_faceStyle = style;
    update();
}

void DrawingItem::setGround(const QColor &color)
{
    m_ground = color;
    update();
}

void DrawingItem::setSelection(const QSet<int> &entities)
{
    m_selection = entities;
    update();
}

int DrawingItem::entityAt(QPointF position, double reach) const
{
    return m_drawing ? topmostEntity(*m_drawing, m_projection, shownStyle(), position, reach) : -1;
}

QVector<int> DrawingItem::entitiesIn(const QRectF &area, bool isCrossing) const
{
    return m_drawing ? entitiesInside(*m_drawing, m_projection, shownStyle(), area, isCrossing)
                     : QVector<int>();
}

QRectF DrawingItem::boundingRect() const
{
    return m_bounds;
}

void DrawingItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *)
{
    if (!m_drawing)
        return;
    EntityPainter entities(*painter, *m_drawing, m_projection, option->exposedRect);
    if (shownStyle() == FaceStyle::Wireframe)
        entities.paintAll();
    else
        entities.paintFilled(m_faceStyle, m_ground);
    entities.paintSelected(m_selection);
}

FaceStyle DrawingItem::shownStyle() const
{
    return m_hasFaces ? m_faceStyle : FaceStyle::Wireframe;
}

/// The box around the model space would do, but seen from a corner it is larger than what is in it.
void DrawingItem::findBounds()
{
    m_bounds = QRectF();
    if (!m_drawing)
        return;
    const BlockView view(m_projection.toPicture);
    const std::vector<Entity> &entities = m_drawing->geometry.modelSpace().entities;
    for (std::size_t i = 0; i < entities.size(); ++i) {
        const QRectF bounds = view.boundsOf(entities[i].bounds);
        m_bounds = i == 0 ? bounds : united(m_bounds, bounds);
    }
}
