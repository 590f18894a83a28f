// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Geometry.h"

#include <QColor>

#include <dxflib/dl_codes.h>

#include <algorithm>
#include <cmath>

namespace Tessa {

namespace {

constexpr int deepestNesting = 64;
constexpr double farthestCoordinate = 1e12;
/// How many elements of a path cost as much as a stroke of their own.
constexpr double elementsPerStroke = 8;
/// How many strokes cost as much as a line of text.
constexpr double strokesPerLine = 4;

bool isNear(const SpacePoint &point)
{
    const double coordinates[] = {point.x, point.y, point.z};
    return std::all_of(std::begin(coordinates), std::end(coordinates),
                       [](double coordinate) { return std::abs(coordinate) < farthestCoordinate; });
}

bool isNear(const SpaceBox &box)
{
    return isNear(box.least) && isNear(box.most);
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
    if (const Faces *faces = entity.as<Faces>()) {
        for (const SpacePoint &point : faces->points)
            bounds.add(point);
    }
    if (const PlacedText *text = entity.as<PlacedText>())
        bounds = text->placement.map(levelBox(text->lines.bounds, 0));
    return bounds;
}

/// Whether all points in space are at reasonable places: bounds do not tell of those that are no
/// numbers.
bool isNear(const Entity &entity)
{
    const auto isNearElement = [](const SpacePath::Element &element) { return isNear(element.at); };
    const auto isNearPoint = [](const SpacePoint &point) { return isNear(point); };
    const SpacePath *path = entity.spacePath.get();
    const Faces *faces = entity.as<Faces>();
    return (!path || std::all_of(path->elements.begin(), path->elements.end(), isNearElement))
           && (!faces || std::all_of(faces->points.begin(), faces->points.end(), isNearPoint));
}

/// About what it takes to paint the entity.
double strokesOf(const Entity &entity)
{
    double elements = entity.path.elementCount();
    if (entity.spacePath)
        elements += double(entity.spacePath->elements.size());
    if (const Faces *faces = entity.as<Faces>())
        elements += double(faces->corners.size());
    const PlacedText *text = entity.as<PlacedText>();
    const double lines = text ? text->lines.lines.size() : 0;
    return 1 + elements / elementsPerStroke + lines * strokesPerLine;
}

/// The same for its area. A line of text and the lines of a hatch take as much as some fillings.
double fillingsOf(const Entity &entity)
{
    constexpr double fillingsPerLine = 2;
    constexpr double fillingsPerFamily = 8;
    return entity.visitKind(Overloaded{
            [](const Line &) { return 0.0; },
            [](const Filling &) { return 1.0; },
            [](const Hatching &hatching) {
                return fillingsPerFamily * double(hatching.families.size());
            },
            [](const Faces &) { return 0.0; },
            [](const PlacedText &text) { return fillingsPerLine * text.lines.lines.size(); },
            [](const BlockInsert &) { return 0.0; },
    });
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
    };

    void visit(int block, int depth);
    bool keep(Entity &entity, Visit &parent, int depth);
    bool keepInsert(Entity &entity, const BlockInsert &insert, Visit &parent, int depth);
    void note(const Entity &entity, Block &block) const;

    std::vector<Block> &m_blocks;
    std::vector<Visit> m_visits;
    int m_nested = 0;
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
        note(entity, m_blocks.at(block));
    visit.isOpen = false;
    visit.isDone = true;
}

bool Measurer::keep(Entity &entity, Visit &parent, int depth)
{
    if (const BlockInsert *insert = entity.as<BlockInsert>())
        return keepInsert(entity, *insert, parent, depth);
    entity.isEndless = entity.reach() != Reach::Finite;
    entity.bounds = boundsOf(entity);
    // A QPainterPath leaves out what is far beyond.
    if (!entity.bounds.isEmpty() && isNear(entity) && isNear(entity.bounds))
        return true;
    ++m_far;
    return false;
}

bool Measurer::keepInsert(Entity &entity, const BlockInsert &insert, Visit &parent, int depth)
{
    const Block &block = m_blocks.at(insert.block);
    Visit &child = m_visits.at(insert.block);
    if (!child.isDone && !child.isOpen && depth < deepestNesting)
        visit(insert.block, depth + 1);
    if (!child.isDone || child.height >= deepestNesting) {
        ++m_nested;
        return false;
    }
    if (block.entities.empty())
        return false;
    entity.isEndless = !block.endlessFrom.isEmpty();
    entity.bounds = boundsOf(insert, block.bounds);
    if (!isNear(entity.bounds) || !isNear(boundsOf(insert, block.endlessFrom))) {
        ++m_far;
        return false;
    }
    parent.height = qMax(parent.height, child.height + 1);
    return true;
}

/// Counts an entity among those of its block.
void Measurer::note(const Entity &entity, Block &block) const
{
    if (const BlockInsert *insert = entity.as<BlockInsert>()) {
        block.inserts.push_back(int(&entity - block.entities.data()));
        block.bounds.add(entity.bounds);
        block.endlessFrom.add(boundsOf(*insert, m_blocks.at(insert->block).endlessFrom));
    } else {
        (entity.isEndless ? block.endlessFrom : block.bounds).add(entity.bounds);
    }
    block.strokes += strokesOf(entity);
    block.fillings += fillingsOf(entity);
}

} // namespace

QRgb entityColor(int index, int trueColor)
{
    if (trueColor >= 0)
        return QRgb(trueColor) | 0xff000000;
    if (index == 0)
        return colorByBlock;
    if (index < 0 || index > 255)
        return colorByLayer;
    const double *parts = dxfColors[index];
    return QColor::fromRgbF(parts[0], parts[1], parts[2]).rgb();
}

bool EntityStyle::operator==(const EntityStyle &other) const
{
    return layer == other.layer && color == other.color && lineWeight == other.lineWeight
           && linetype == other.linetype && linetypeScale == other.linetypeScale;
}

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
                           [](const Entity &entity) { return entity.as<Faces>() != nullptr; });
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

int Geometry::entityLinetypeOf(const QString &name) const
{
    if (name.compare(QLatin1String("BYLAYER"), Qt::CaseInsensitive) == 0)
        return lineTypeByLayer;
    if (name.compare(QLatin1String("BYBLOCK"), Qt::CaseInsensitive) == 0)
        return lineTypeByBlock;
    return linetypeOf(name);
}

QStringList measure(Geometry &geometry)
{
    return Measurer(geometry.blocks).run();
}

} // namespace Tessa
