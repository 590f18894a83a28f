#pragma once

#include "Drawing.h"
#include "Projection.h"

#include <QColor>

/// How an entity is drawn, with nothing left to its layer or its block.
struct Look
{
    int layer;
    QColor color;
    int lineWeight;
    int linetype;             ///< one of Geometry::linetypes
    double linetypeScale = 1; ///< what the dashes are multiplied by
};

/// Where the entities of a block show.
struct BlockView
{
    explicit BlockView(const SpaceTransform &toPicture);

    SpaceTransform toPicture; ///< from the block's space
    QTransform ground;        ///< the same for the block's own plane
    double scale;             ///< the length of what is one unit long and not foreshortened
    bool isEdgeOn;            ///< that plane is seen as a line
    bool hasHeights;          ///< the height of a point changes its place in the picture
    bool isUnchanged;         ///< points are in the picture where they are in the plane

    /// Where a box shows in the picture.
    QRectF boundsOf(const SpaceBox &box) const
    {
        if (isUnchanged)
            return {QPointF(box.least.x, box.least.y), QPointF(box.most.x, box.most.y)};
        return mappedBounds(box);
    }

private:
    QRectF mappedBounds(const SpaceBox &box) const;
};

/// Walks the entities that the layers let show, inserts resolved, in the drawing's order.
///
/// An insert shows its block if its own layer is thawed, be it on or off. In the block, an entity on
/// layer "0" lies on the insert's layer, and each one shows if its layer is on and thawed.
class ShownEntities
{
public:
    ShownEntities(const Drawing &drawing, const Projection &projection);

    const BlockView &modelView() const { return m_view; }

    /// The smallest rectangle around an entity of the model space.
    QRectF boundsOf(const Entity &entity) const;

    /// Calls @p visitor for all that an entity of the model space consists of and that overlaps
    /// @p area, as visitor(const Entity &, const QRectF &bounds, const BlockView &, const Look &)
    /// until it returns false.
    /// @return whether the walk came to its end
    template <class Visitor>
    bool visit(const Entity &entity, const QRectF &area, Visitor &&visitor)
    {
        return visit(entity, m_view, area, m_outside, visitor);
    }

    /// visit() for the whole model space.
    template <class Visitor>
    bool visitAll(const QRectF &area, Visitor &&visitor)
    {
        return visitBlock(m_drawing.geometry.modelSpace(), m_view, area, m_outside, visitor);
    }

private:
    template <class Visitor>
    bool visitBlock(const Block &block, const BlockView &view, const QRectF &area,
                    const Look &insert, Visitor &&visitor);
    template <class Visitor>
    bool visit(const Entity &entity, const BlockView &view, const QRectF &area, const Look &insert,
               Visitor &&visitor);
    template <class Visitor>
    bool visitInsert(const BlockInsert &insert, const BlockView &view, const QRectF &area,
                     const Look &look, Visitor &&visitor);

    Look lookOf(const EntityStyle &style, const Look &insert);
    int linetypeOfLayer(int layer);

    const Drawing &m_drawing;
    const int m_zeroLayer;
    const BlockView m_view;
    const Look m_outside;
    std::vector<int> m_layerLinetypes; ///< -1 where not known yet
};

/// Unlike QRectF::united() this counts rectangles without width or height, too.
QRectF united(const QRectF &one, const QRectF &other);

/// Unlike QRectF::intersects() this counts lines that run straight along an axis, too.
inline bool overlap(const QRectF &one, const QRectF &other)
{
    return one.left() <= other.right() && other.left() <= one.right() && one.top() <= other.bottom()
           && other.top() <= one.bottom();
}

template <class Visitor>
bool ShownEntities::visitBlock(const Block &block, const BlockView &view, const QRectF &area,
                               const Look &insert, Visitor &&visitor)
{
    for (const Entity &entity : block.entities) {
        if (!visit(entity, view, area, insert, visitor))
            return false;
    }
    return true;
}

template <class Visitor>
bool ShownEntities::visit(const Entity &entity, const BlockView &view, const QRectF &area,
                          const Look &insert, Visitor &&visitor)
{
    const QRectF bounds = view.boundsOf(entity.bounds);
    if (!overlap(bounds, area))
        return true;
    const Look look = lookOf(entity.style, insert);
    const LayerLook &layer = m_drawing.layers.at(look.layer);
    if (layer.isFrozen)
        return true;
    if (entity.insert)
        return visitInsert(*entity.insert, view, area, look, visitor);
    return !layer.isOn || visitor(entity, bounds, view, look);
}

template <class Visitor>
bool ShownEntities::visitInsert(const BlockInsert &insert, const BlockView &view,
                                const QRectF &area, const Look &look, Visitor &&visitor)
{
    const Block &block = m_drawing.geometry.blocks.at(insert.block);
    for (int row = 0; row < insert.rows; ++row) {
        for (int column = 0; column < insert.columns; ++column) {
            const BlockView inner(insert.placementOf(column, row) * view.toPicture);
            if (!visitBlock(block, inner, area, look, visitor))
                return false;
        }
    }
    return true;
}
