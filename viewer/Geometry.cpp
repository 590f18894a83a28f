#include "Geometry.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int deepestNesting = 64;
constexpr double mostPieces = 5e6;
constexpr double farthestCoordinate = 1e12;

bool isNear(const SpaceBox &bounds)
{
    const double coordinates[] = {bounds.least.x, bounds.least.y, bounds.least.z,
                                  bounds.most.x,  bounds.most.y,  bounds.most.z};
    return std::all_of(std::begin(coordinates), std::end(coordinates),
                       [](double coordinate) { return std::abs(coordinate) < farthestCoordinate; });
}

SpaceBox levelBox(const QRectF &bounds, double height)
{
    return {{bounds.left(), bounds.top(), height}, {bounds.right(), bounds.bottom(), height}};
}

SpaceBox boundsOf(const Entity &entity)
{
    SpaceBox bounds;
    if (entity.spacePath) {
        for (const SpacePath::Element &element : entity.spacePath->elements)
            bounds.add(element.at);
    } else if (entity.path.elementCount() > 0) {
        bounds = levelBox(entity.path.boundingRect(), entity.height);
    }
    if (entity.faces) {
        for (const SpacePoint &point : entity.faces->points)
            bounds.add(point);
    }
    return bounds;
}

SpaceBox boundsOf(const BlockInsert &insert, const SpaceBox &block)
{
    SpaceBox bounds;
    for (const int column : {0, insert.columns - 1}) {
        for (const int row : {0, insert.rows - 1})
            bounds.add(insert.placementOf(column, row).map(block));
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

    for (const Entity &entity : entities)
        m_blocks.at(block).bounds.add(entity.bounds);
    visit.isOpen = false;
    visit.isDone = true;
}

bool Measurer::keep(Entity &entity, Visit &parent, int depth)
{
    if (entity.insert && !keepInsert(entity, parent, depth))
        return false;
    if (entity.text)
        entity.bounds = entity.text->placement.map(levelBox(entity.text->lines.bounds, 0));
    else if (!entity.insert)
        entity.bounds = boundsOf(entity);
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
        entity.path.addRect(entity.bounds.least.x, entity.bounds.least.y,
                            entity.bounds.most.x - entity.bounds.least.x,
                            entity.bounds.most.y - entity.bounds.least.y);
        entity.height = entity.bounds.least.z;
        entity.insert.reset();
        ++m_framed;
        return true;
    }
    parent.pieces += pieces;
    parent.height = qMax(parent.height, child.height + 1);
    return true;
}

} // namespace

SpaceTransform BlockInsert::placementOf(int column, int row) const
{
    SpaceTransform result = placement;
    result.rows[0][3] += columnStep.x * column + rowStep.x * row;
    result.rows[1][3] += columnStep.y * column + rowStep.y * row;
    result.rows[2][3] += columnStep.z * column + rowStep.z * row;
    return result;
}

void Entity::setPath(SpacePath &&path)
{
    if (!path.isLevel()) {
        spacePath = std::make_unique<SpacePath>(std::move(path));
        return;
    }
    this->path = path.seen({});
    height = path.elements.empty() ? 0 : path.elements.front().at.z;
}

SpacePath Entity::pathInSpace() const
{
    return spacePath ? *spacePath : SpacePath::placed(path, {}, height);
}

bool Geometry::hasFaces() const
{
    return std::any_of(blocks.begin(), blocks.end(), [](const Block &block) {
        return std::any_of(block.entities.begin(), block.entities.end(),
                           [](const Entity &entity) { return entity.faces != nullptr; });
    });
}

int Geometry::linetypeOf(const QString &name) const
{
    const auto known =
            std::find_if(linetypes.begin(), linetypes.end(), [&name](const Linetype &linetype) {
                return linetype.name.compare(name, Qt::CaseInsensitive) == 0;
            });
    return known == linetypes.end() ? 0 : int(known - linetypes.begin());
}

QStringList measure(Geometry &geometry)
{
    return Measurer(geometry.blocks).run();
}
