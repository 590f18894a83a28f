#include "Geometry.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int deepestNesting = 64;
constexpr double mostPieces = 5e6;
constexpr double farthestCoordinate = 1e12;

/// Unlike QRectF::united() this counts rectangles without width or height, too.
QRectF united(const QRectF &one, const QRectF &other)
{
    return {QPointF(qMin(one.left(), other.left()), qMin(one.top(), other.top())),
            QPointF(qMax(one.right(), other.right()), qMax(one.bottom(), other.bottom()))};
}

bool isNear(const QRectF &bounds)
{
    const double coordinates[] = {bounds.left(), bounds.right(), bounds.top(), bounds.bottom()};
    return std::all_of(std::begin(coordinates), std::end(coordinates),
                       [](double coordinate) { return std::abs(coordinate) < farthestCoordinate; });
}

QRectF boundsOf(const BlockInsert &insert, const QRectF &block)
{
    QRectF bounds = insert.placement.mapRect(block);
    for (const int column : {0, insert.columns - 1}) {
        for (const int row : {0, insert.rows - 1})
            bounds = united(bounds, insert.placementOf(column, row).mapRect(block));
    }
    return bounds;
}

/// Walks the blocks from the model space down, each block once.
class Measurer
{
public:
    explicit Measurer(std::vector<Block> &blocks)
        : m_blocks(blocks)
        , m_visits(blocks.size())
    {
    }

    QStringList run();

private:
    struct Visit
    {
        bool isOpen = false;
        bool isDone = false;
        int height = 0;
        double pieces = 0;
    };

    void visit(int block, int depth);
    bool keep(Entity &entity, Visit &parent, int depth);
    bool keepInsert(Entity &entity, Visit &parent, int depth);

    std::vector<Block> &m_blocks;
    std::vector<Visit> m_visits;
    int m_nested = 0;
    int m_framed = 0;
    int m_far = 0;
};

QStringList Measurer::run()
{
    visit(0, 0);

    QStringList changes;
    const auto tell = [&changes](int count, const QString &sentence) {
        if (count > 0)
            changes += sentence.arg(count);
    };
    tell(m_nested, QStringLiteral("Inserts not drawn, since they are nested too deeply: %1."));
    tell(m_framed, QStringLiteral("Inserts drawn as a frame, for their millions of pieces: %1."));
    tell(m_far, QStringLiteral("Entities not drawn, since they lie too far away: %1."));
    return changes;
}

void Measurer::visit(int block, int depth)
{
    Visit &visit = m_visits.at(block);
    visit.isOpen = true;
    std::vector<Entity> &entities = m_blocks.at(block).entities;
    const auto end =
            std::remove_if(entities.begin(), entities.end(), [this, &visit, depth](Entity &entity) {
                return !keep(entity, visit, depth);
            });
    entities.erase(end, entities.end());

    if (!entities.empty()) {
        QRectF bounds = entities.front().bounds;
        for (const Entity &entity : entities)
            bounds = united(bounds, entity.bounds);
        m_blocks.at(block).bounds = bounds;
    }
    visit.isOpen = false;
    visit.isDone = true;
}

bool Measurer::keep(Entity &entity, Visit &parent, int depth)
{
    if (entity.insert && !keepInsert(entity, parent, depth))
        return false;
    if (entity.text)
        entity.bounds = entity.text->placement.mapRect(entity.text->lines.bounds);
    else if (!entity.insert)
        entity.bounds = entity.path.boundingRect();
    parent.pieces += 1;
    if (isNear(entity.bounds))
        return true;
    ++m_far;
    return false;
}

bool Measurer::keepInsert(Entity &entity, Visit &parent, int depth)
{
    const int block = entity.insert->block;
    Visit &child = m_visits.at(block);
    if (!child.isDone && !child.isOpen && depth < deepestNesting)
        visit(block, depth + 1);
    if (!child.isDone || child.height >= deepestNesting) {
        ++m_nested;
        return false;
    }
    if (m_blocks.at(block).entities.empty())
        return false;

    entity.bounds = boundsOf(*entity.insert, m_blocks.at(block).bounds);
    const double pieces = child.pieces * entity.insert->columns * entity.insert->rows;
    if (parent.pieces + pieces > mostPieces) {
        entity.path.addRect(entity.bounds);
        entity.insert.reset();
        ++m_framed;
        return true;
    }
    parent.pieces += pieces;
    parent.height = qMax(parent.height, child.height + 1);
    return true;
}

} // namespace

QTransform BlockInsert::placementOf(int column, int row) const
{
    const QPointF offset = columnStep * column + rowStep * row;
    return placement * QTransform::fromTranslate(offset.x(), offset.y());
}

QStringList measure(Geometry &geometry)
{
    return Measurer(geometry.blocks).run();
}
