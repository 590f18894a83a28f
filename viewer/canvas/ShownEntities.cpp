// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "ShownEntities.h"

#include "Outline.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Tessa {

namespace {

/// What a picture may take for copies of blocks, measured in short lines.
constexpr double mostStrokes = 5e5;
/// How many pixels of a line take as much as another stroke.
constexpr double strokeLength = 16;
/// How many pixels a picture has each way, at most.
constexpr double mostPixels = 4096;
/// How many rows of an array take as much as a stroke to be passed over.
constexpr double rowsPerStroke = 16;

} // namespace

ShownEntities::ShownEntities(const Drawing &drawing, const Projection &projection)
    : m_drawing(drawing)
    , m_zeroLayer(drawing.layers.indexOf(QStringLiteral("0")))
    , m_view(projection.toPicture)
    // An entity of the model space that leaves something to its block gets what a new one has.
    , m_outside{m_zeroLayer, Qt::white, KcDb::kLnWtByLwDefault, 0}
    , m_layerLinetypes(drawing.layers.count() + 1, -1)
{
}

void ShownEntities::setDetail(const QRectF &area, double pixel)
{
    const std::vector<Block> &blocks = m_drawing.geometry.blocks;
    m_pixel = pixel;
    // What the file holds may be drawn once.
    double allowed = mostStrokes;
    for (auto block = blocks.begin() + 1; block != blocks.end(); ++block)
        allowed += strokesOf(*block, area, area);

    constexpr double everything = std::numeric_limits<double>::infinity();
    m_detail = pixel;
    while (m_detail < everything) {
        double strokes = allowed;
        m_coarser = everything;
        if (spendOnInserts(blocks.front(), m_view, area, m_outside, strokes))
            break;
        m_detail = qMax(2 * m_detail, m_coarser);
        if (m_detail >= mostPixels * pixel) // which may be none in a drawing without extent
            m_detail = everything;
    }
    m_isSimplified = m_detail > pixel;
}

bool ShownEntities::findEndlessBounds(const Entity &entity, const BlockView &view,
                                      const QRectF &area, QRectF &bounds)
{
    bounds = area;
    if (entity.as<BlockInsert>())
        return true;
    const Outline line = endlessOutline(entity, view.toPicture, area);
    if (line.empty())
        return false;
    const auto at = [&line](std::size_t i) { return QPointF(line[i].at.x, line[i].at.y); };
    bounds = united({at(0), at(0)}, {at(1), at(1)});
    return true;
}

const Block &ShownEntities::blockOf(const BlockInsert &insert) const
{
    return m_drawing.geometry.blocks[std::size_t(insert.block)];
}

/// The rule of visibility: what is erased or on a frozen layer does not show, and beside that an insert
/// goes by what is in it, all else by whether its layer is on.
bool ShownEntities::mayShow(const Entity &entity, const LayerLook &layer)
{
    return !entity.isErased && !layer.isFrozen && (layer.isOn || entity.as<BlockInsert>());
}

/// In a block, layer "0" stands for the layer of the insert.
int ShownEntities::layerOf(const EntityStyle &style, int insertLayer) const
{
    return style.layer == m_zeroLayer ? insertLayer : style.layer;
}

/// What the entities of a block take that shows in these bounds, inserts aside.
double ShownEntities::strokesOf(const Block &block, const QRectF &bounds, const QRectF &area) const
{
    const double width = qMin(bounds.right(), area.right()) - qMax(bounds.left(), area.left());
    const double height = qMin(bounds.bottom(), area.bottom()) - qMax(bounds.top(), area.top());
    const double pixels = qBound(0.0, qMax(width, height) / m_pixel, mostPixels);
    const double across = 1 + pixels / strokeLength;
    return block.strokes * across + block.fillings * across * across;
}

/// Takes off what a walk through the inserts of a block needs.
/// @return whether that was enough
bool ShownEntities::spendOnInserts(const Block &block, const BlockView &view, const QRectF &area,
                                   const Look &look, double &strokes)
{
    return std::all_of(block.inserts.begin(), block.inserts.end(), [&](int index) {
        const Entity &entity = block.entities[std::size_t(index)];
        QRectF bounds;
        if (!findBounds(entity, view, area, bounds))
            return true;
        const Look inner = lookOf(entity.style, look);
        return !mayShow(entity, m_drawing.layers.at(inner.layer))
               || spendOnCopies(entity, *entity.as<BlockInsert>(), view, area, inner, strokes);
    });
}

bool ShownEntities::spendOnCopies(const Entity &entity, const BlockInsert &insert,
                                  const BlockView &view, const QRectF &area, const Look &look,
                                  double &strokes)
{
    const Block &block = blockOf(insert);
    const InsertCopies copies(insert, block, view, area, m_detail);
    strokes -= 1 + copies.rowCount() / rowsPerStroke;
    m_coarser = qMin(m_coarser, copies.coarserDetail());
    return copies.forEach([&](int column, int row, const QRectF &bounds) {
        strokes -= 1;
        if (strokes < 0 || copies.areOnePiece())
            return strokes >= 0;
        strokes -= strokesOf(block, entity.isEndless ? area : bounds, area);
        const BlockView inner(insert.placementOf(column, row) * view.toPicture);
        return strokes >= 0 && spendOnInserts(block, inner, area, look, strokes);
    });
}

Look ShownEntities::lookOf(const EntityStyle &style, const Look &insert)
{
    Look look = insert;
    look.layer = layerOf(style, insert.layer);
    const LayerLook &layer = m_drawing.layers.at(look.layer);
    if (style.color == colorByLayer)
        look.color = layer.color;
    else if (style.color != colorByBlock)
        look.color = QColor(style.color);
    if (style.lineWeight == KcDb::kLnWtByLayer)
        look.lineWeight = layer.lineWeight;
    else if (style.lineWeight != KcDb::kLnWtByBlock)
        look.lineWeight = style.lineWeight;
    if (style.linetype == lineTypeByLayer)
        look.linetype = linetypeOfLayer(look.layer);
    else if (style.linetype != lineTypeByBlock)
        look.linetype = style.linetype;
    look.linetypeScale = style.linetypeScale * m_drawing.geometry.linetypeScale;
    return look;
}

/// Whether an entity in an insert on that layer shows any of itself.
bool ShownEntities::shows(const Entity &entity, int insertLayer)
{
    const int layer = layerOf(entity.style, insertLayer);
    const BlockInsert *insert = entity.as<BlockInsert>();
    return mayShow(entity, m_drawing.layers.at(layer))
           && (!insert || firstShown(insert->block, layer) >= 0);
}

/// The number of the first entity that a block shows when its insert is on that layer; -1 if it shows
/// none.
int ShownEntities::firstShown(int block, int insertLayer)
{
    const std::pair<int, int> key(block, insertLayer);
    if (const auto known = m_firstShown.find(key); known != m_firstShown.end())
        return known->second;
    const std::vector<Entity> &entities = m_drawing.geometry.blocks.at(block).entities;
    const auto first = std::find_if(entities.begin(), entities.end(), [&](const Entity &entity) {
        return shows(entity, insertLayer);
    });
    const int index = first == entities.end() ? -1 : int(first - entities.begin());
    m_firstShown.emplace(key, index);
    return index;
}

/// The look of the first entity that an insert shows; nothing if it shows none.
std::optional<Look> ShownEntities::lookInside(const BlockInsert &insert, const Look &look)
{
    const int index = firstShown(insert.block, look.layer);
    if (index < 0)
        return std::nullopt;
    const Entity &entity = blockOf(insert).entities[std::size_t(index)];
    const Look inner = lookOf(entity.style, look);
    const BlockInsert *nested = entity.as<BlockInsert>();
    return nested ? lookInside(*nested, inner) : inner;
}

int ShownEntities::linetypeOfLayer(int layer)
{
    int &linetype = m_layerLinetypes.at(layer + 1);
    if (linetype < 0)
        linetype = m_drawing.geometry.linetypeOf(m_drawing.layers.at(layer).linetype);
    return linetype;
}

} // namespace Tessa
