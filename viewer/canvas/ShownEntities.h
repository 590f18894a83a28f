// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "BlockView.h"
#include "Drawing.h"
#include "InsertCopies.h"
#include "Projection.h"

#include <QColor>

#include <map>
#include <optional>

namespace Tessa {

/// How an entity is drawn, with nothing left to its layer or its block.
struct Look
{
    int layer;
    QColor color;
    int lineWeight;
    int linetype;             ///< one of Geometry::linetypes
    double linetypeScale = 1; ///< what the dashes are multiplied by
};

/// Walks the entities that the layers let show, inserts resolved, in the drawing's order.
///
/// An insert shows its block if its own layer is thawed, be it on or off. In the block, an entity on
/// layer "0" lies on the insert's layer, and each one shows if its layer is on and thawed.
///
/// Copies of blocks that are too small are not resolved, but visited as one piece: as the insert,
/// with the bounds of all that the piece stands for, and with the look of something in it.
class ShownEntities
{
public:
    ShownEntities(const Drawing &drawing, const Projection &projection);

    /// Has copies of blocks count as one piece that are smaller than @p pixel in the picture. Where a
    /// walk over @p area still took too long, it is those that are twice as large, and so on: the
    /// number of visits is bounded by some hundred thousand and by some for each entity of the file,
    /// wherever they are. Without this, all copies are resolved.
    void setDetail(const QRectF &area, double pixel);

    /// Whether setDetail() had to go beyond the pixel.
    bool isSimplified() const { return m_isSimplified; }

    const BlockView &modelView() const { return m_view; }

    /// Whether the layers let show any of an entity of the model space. O(1) for most; linear in the
    /// number of all entities at worst.
    bool shows(const Entity &entity) { return shows(entity, m_zeroLayer); }

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
    bool visitInsert(const Entity &entity, const BlockInsert &insert, const BlockView &view,
                     const QRectF &area, const Look &look, Visitor &&visitor);

    bool findBounds(const Entity &entity, const BlockView &view, const QRectF &area,
                    QRectF &bounds) const;
    static bool findEndlessBounds(const Entity &entity, const BlockView &view, const QRectF &area,
                                  QRectF &bounds);
    const Block &blockOf(const BlockInsert &insert) const;
    static bool mayShow(const Entity &entity, const LayerLook &layer);
    int layerOf(const EntityStyle &style, int insertLayer) const;
    double strokesOf(const Block &block, const QRectF &bounds, const QRectF &area) const;
    bool spendOnInserts(const Block &block, const BlockView &view, const QRectF &area,
                        const Look &look, double &strokes);
    bool spendOnCopies(const Entity &entity, const BlockInsert &insert, const BlockView &view,
                       const QRectF &area, const Look &look, double &strokes);

    Look lookOf(const EntityStyle &style, const Look &insert);
    bool shows(const Entity &entity, int insertLayer);
    int firstShown(int block, int insertLayer);
    std::optional<Look> lookInside(const BlockInsert &insert, const Look &look);
    int linetypeOfLayer(int layer);

    const Drawing &m_drawing;
    const int m_zeroLayer;
    const BlockView m_view;
    const Look m_outside;
    double m_detail = 0;
    double m_pixel = 0;
    double m_coarser = 0; ///< with less than that, the last walk would have been as long
    bool m_isSimplified = false;
    std::vector<int> m_layerLinetypes; ///< the unknown layer's first; -1 where not known yet
    std::map<std::pair<int, int>, int> m_firstShown; ///< by block and layer of the insert
};

inline bool ShownEntities::findBounds(const Entity &entity, const BlockView &view,
                                      const QRectF &area, QRectF &bounds) const
{
    if (entity.isEndless)
        return findEndlessBounds(entity, view, area, bounds);
    bounds = view.boundsOf(entity.bounds);
    return overlap(bounds, area);
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
    QRectF bounds;
    if (!findBounds(entity, view, area, bounds))
        return true;
    const Look look = lookOf(entity.style, insert);
    if (!mayShow(entity, m_drawing.layers.at(look.layer)))
        return true;
    if (const BlockInsert *insert = entity.as<BlockInsert>())
        return visitInsert(entity, *insert, view, area, look, visitor);
    return visitor(entity, bounds, view, look);
}

template <class Visitor>
bool ShownEntities::visitInsert(const Entity &entity, const BlockInsert &insert,
                                const BlockView &view, const QRectF &area, const Look &look,
                                Visitor &&visitor)
{
    const InsertCopies copies(insert, blockOf(insert), view, area, m_detail);
    if (copies.areOnePiece()) {
        const std::optional<Look> inside = lookInside(insert, look);
        return !inside || copies.forEach([&](int, int, const QRectF &bounds) {
            return visitor(entity, bounds, view, *inside);
        });
    }
    return copies.forEach([&](int column, int row, const QRectF &) {
        const BlockView inner(insert.placementOf(column, row) * view.toPicture);
        return visitBlock(blockOf(insert), inner, area, look, visitor);
    });
}

} // namespace Tessa
