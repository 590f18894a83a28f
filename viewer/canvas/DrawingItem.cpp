// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DrawingItem.h"

#include "EntityPainter.h"
#include "Picking.h"
#include "ShownEntities.h"

#include <QPainter>
#include <QStyleOptionGraphicsItem>

namespace Tessa {

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

void DrawingItem::setRoom(const QRectF &room)
{
    prepareGeometryChange();
    m_room = room;
}

QRectF DrawingItem::boundingRect() const
{
    const bool isEndless = m_drawing && !m_drawing->geometry.modelSpace().endlessFrom.isEmpty();
    return isEndless ? united(m_bounds, m_room) : m_bounds;
}

void DrawingItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *)
{
    if (!m_drawing)
        return;
    EntityPainter entities(*painter, *m_drawing, m_projection, option->exposedRect);
    m_isSimplified = entities.isSimplified();
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
    m_bounds = m_room = QRectF();
    if (!m_drawing)
        return;
    const BlockView view(m_projection.toPicture);
    const Block &model = m_drawing->geometry.modelSpace();
    bool isFirst = true;
    for (const Entity &entity : model.entities) {
        if (entity.reach() != Reach::Finite || entity.bounds.isEmpty())
            continue;
        const QRectF bounds = view.boundsOf(entity.bounds);
        m_bounds = isFirst ? bounds : united(m_bounds, bounds);
        isFirst = false;
    }
    // Lines without ends are shown around where they begin, if there is nothing else.
    if (isFirst && !model.endlessFrom.isEmpty())
        m_bounds = view.boundsOf(model.endlessFrom);
}

} // namespace Tessa
