#include "Picking.h"

#include "Outline.h"
#include "ShownEntities.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

/// What an entity draws in the picture.
struct Shape
{
    std::vector<Outline> lines;
    std::vector<Outline> fillings; ///< closed
};

Shape shapeOf(const Entity &entity, const BlockView &view, FaceStyle style, double tolerance)
{
    Shape shape;
    if (entity.text) {
        const SpaceTransform toPicture = entity.text->placement * view.toPicture;
        const QRectF box = entity.text->lines.bounds;
        shape.fillings.emplace_back();
        for (const QPointF corner :
             {box.topLeft(), box.topRight(), box.bottomRight(), box.bottomLeft(), box.topLeft()})
            shape.fillings.back().push_back({toPicture.map(SpacePoint{corner.x(), corner.y(), 0})});
        return shape;
    }
    shape.lines = outlinesOf(entity, view.toPicture, tolerance);
    if (entity.isFilled)
        shape.lines.swap(shape.fillings);
    if (!entity.faces || style == FaceStyle::Wireframe)
        return shape;
    for (const std::array<int, 4> &corners : entity.faces->corners) {
        shape.fillings.emplace_back();
        for (const int corner : {corners[0], corners[1], corners[2], corners[3], corners[0]})
            shape.fillings.back().push_back(
                    {view.toPicture.map(entity.faces->points[std::size_t(corner)])});
    }
    return shape;
}

/// The depth of a line where it is nearest to the position; nothing if that is not near enough.
std::optional<double> depthAlong(const Outline &line, QPointF position, double reach)
{
    std::optional<double> depth;
    double least = reach;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const SpacePoint &start = line[i == 0 ? 0 : i - 1].at;
        const SpacePoint way = line[i].at - start;
        const double square = way.x * way.x + way.y * way.y;
        const double along = (position.x() - start.x) * way.x + (position.y() - start.y) * way.y;
        const SpacePoint nearest =
                start + way * (square > 0 ? qBound(0.0, along / square, 1.0) : 0);
        const double distance = std::hypot(position.x() - nearest.x, position.y() - nearest.y);
        if (distance > least)
            continue;
        least = distance;
        depth = nearest.z;
    }
    return depth;
}

bool contains(const Outline &filling, QPointF position)
{
    bool isInside = false;
    for (std::size_t i = 1; i < filling.size(); ++i) {
        const SpacePoint &start = filling[i - 1].at;
        const SpacePoint &end = filling[i].at;
        if ((start.y <= position.y()) == (end.y <= position.y()))
            continue;
        const double share = (position.y() - start.y) / (end.y - start.y);
        isInside ^= start.x + (end.x - start.x) * share > position.x();
    }
    return isInside;
}

/// The depth of a flat filling at a position in it.
double depthIn(const Outline &filling, QPointF position)
{
    SpacePoint normal;
    for (std::size_t i = 2; i < filling.size(); ++i)
        normal = normal + cross(filling[i - 1].at - filling[0].at, filling[i].at - filling[0].at);
    const SpacePoint &at = filling[0].at;
    if (normal.z == 0)
        return at.z;
    return at.z - (normal.x * (position.x() - at.x) + normal.y * (position.y() - at.y)) / normal.z;
}

/// The depth of what the shape draws at a position; nothing if it is not there.
std::optional<double> depthAt(const Shape &shape, QPointF position, double reach)
{
    std::optional<double> depth;
    const auto note = [&depth](double found) { depth = qMax(found, depth.value_or(found)); };
    for (const std::vector<Outline> *outlines : {&shape.lines, &shape.fillings}) {
        for (const Outline &outline : *outlines) {
            // A line in a sloping face is to be found beside itself, too, where the face is nearer.
            if (const std::optional<double> found = depthAlong(outline, position, reach))
                note(*found + 2 * reach);
        }
    }
    for (const Outline &filling : shape.fillings) {
        if (contains(filling, position))
            note(depthIn(filling, position));
    }
    return depth;
}

bool touches(const Outline &line, const QRectF &area)
{
    for (std::size_t i = 0; i < line.size(); ++i) {
        double from = 0;
        double to = 1;
        if (clip(line[i == 0 ? 0 : i - 1].at, line[i].at, area, from, to))
            return true;
    }
    return false;
}

bool touches(const Shape &shape, const QRectF &area)
{
    const auto crosses = [&area](const Outline &line) { return touches(line, area); };
    return std::any_of(shape.lines.begin(), shape.lines.end(), crosses)
           || std::any_of(shape.fillings.begin(), shape.fillings.end(),
                          [&](const Outline &filling) {
                              return crosses(filling) || contains(filling, area.center());
                          });
}

bool isInside(const QRectF &bounds, const QRectF &area)
{
    return area.left() <= bounds.left() && bounds.right() <= area.right()
           && area.top() <= bounds.top() && bounds.bottom() <= area.bottom();
}

bool isInside(const Shape &shape, const QRectF &area)
{
    const auto isWithin = [&area](const Outline &line) {
        return std::all_of(line.begin(), line.end(), [&area](const OutlinePoint &point) {
            return isInside(QRectF(point.at.x, point.at.y, 0, 0), area);
        });
    };
    return std::all_of(shape.lines.begin(), shape.lines.end(), isWithin)
           && std::all_of(shape.fillings.begin(), shape.fillings.end(), isWithin);
}

/// Asks the entities of the model space whether they lie in an area.
struct AreaProbe
{
    ShownEntities &shown;
    const FaceStyle style;
    const QRectF area;
    const double tolerance = qMax(area.width(), area.height()) / 1000;

    bool isTouched(const Entity &entity) const
    {
        return !shown.visit(entity, area,
                            [this](const Entity &part, const QRectF &bounds, const BlockView &view,
                                   const Look &) {
                                return !isInside(bounds, area)
                                       && !touches(shapeOf(part, view, style, tolerance), area);
                            });
    }

    bool isEnclosed(const Entity &entity) const
    {
        if (!overlap(shown.boundsOf(entity), area))
            return false;
        constexpr double far = 1e15;
        const QRectF everywhere(-far, -far, 2 * far, 2 * far);
        bool hasParts = false;
        return shown.visit(entity, everywhere,
                           [&](const Entity &part, const QRectF &bounds, const BlockView &view,
                               const Look &) {
                               hasParts = true;
                               return isInside(bounds, area)
                                      || isInside(shapeOf(part, view, style, tolerance), area);
                           })
               && hasParts;
    }
};

} // namespace

int topmostEntity(const Drawing &drawing, const Projection &projection, FaceStyle style,
                  QPointF position, double reach)
{
    ShownEntities shown(drawing, projection);
    const QRectF area(position - QPointF(reach, reach), position + QPointF(reach, reach));
    const std::vector<Entity> &entities = drawing.geometry.modelSpace().entities;
    int topmost = -1;
    std::optional<double> nearest;
    for (int index = int(entities.size()) - 1; index >= 0; --index) {
        shown.visit(entities[std::size_t(index)], area,
                    [&](const Entity &entity, const QRectF &, const BlockView &view, const Look &) {
                        const std::optional<double> depth =
                                depthAt(shapeOf(entity, view, style, reach / 8), position, reach);
                        if (depth && (!nearest || *depth > *nearest)) {
                            nearest = depth;
                            topmost = index;
                        }
                        return true;
                    });
        if (nearest && style == FaceStyle::Wireframe)
            break;
    }
    return topmost;
}

QVector<int> entitiesInside(const Drawing &drawing, const Projection &projection, FaceStyle style,
                            const QRectF &area, bool isCrossing)
{
    ShownEntities shown(drawing, projection);
    const AreaProbe probe{shown, style, area};
    const std::vector<Entity> &entities = drawing.geometry.modelSpace().entities;
    QVector<int> result;
    for (int index = 0; index < int(entities.size()); ++index) {
        const Entity &entity = entities[std::size_t(index)];
        if (isCrossing ? probe.isTouched(entity) : probe.isEnclosed(entity))
            result += index;
    }
    return result;
}
