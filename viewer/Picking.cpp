#include "Picking.h"

#include "Outline.h"
#include "ShownEntities.h"

#include <QLineF>
#include <QPolygonF>

#include <algorithm>

namespace {

/// The picture's outline of what one entity covers or draws.
struct Shape
{
    std::vector<QPolygonF> lines;
    bool isFilled;
};

Shape shapeOf(const Entity &entity, const BlockView &view, double tolerance)
{
    if (entity.text) {
        const QTransform placement = (entity.text->placement * view.toPicture).ofPlane(0);
        return {{placement.map(QPolygonF(entity.text->lines.bounds))}, true};
    }
    Shape shape{{}, entity.isFilled};
    const std::vector<Outline> outlines = outlinesOf(entity, view.toPicture, tolerance);
    for (const Outline &outline : outlines) {
        shape.lines.emplace_back();
        for (const OutlinePoint &point : outline)
            shape.lines.back() += point.at;
    }
    return shape;
}

double distance(QPointF point, QPointF start, QPointF end)
{
    const QPointF way = end - start;
    const double square = QPointF::dotProduct(way, way);
    const double share =
            square > 0 ? qBound(0.0, QPointF::dotProduct(point - start, way) / square, 1.0) : 0;
    return QLineF(point, start + way * share).length();
}

bool isNear(const Shape &shape, QPointF position, double reach)
{
    return std::any_of(shape.lines.begin(), shape.lines.end(), [&](const QPolygonF &line) {
        if (shape.isFilled && line.containsPoint(position, Qt::OddEvenFill))
            return true;
        for (int i = 0; i < line.size(); ++i) {
            if (distance(position, line.at(qMax(0, i - 1)), line.at(i)) <= reach)
                return true;
        }
        return false;
    });
}

bool touches(const Shape &shape, const QRectF &area)
{
    return std::any_of(shape.lines.begin(), shape.lines.end(), [&](const QPolygonF &line) {
        if (shape.isFilled && line.containsPoint(area.center(), Qt::OddEvenFill))
            return true;
        for (int i = 0; i < line.size(); ++i) {
            double from = 0;
            double to = 1;
            if (clip(line.at(qMax(0, i - 1)), line.at(i), area, from, to))
                return true;
        }
        return false;
    });
}

bool isInside(const QRectF &bounds, const QRectF &area)
{
    return area.left() <= bounds.left() && bounds.right() <= area.right()
           && area.top() <= bounds.top() && bounds.bottom() <= area.bottom();
}

bool isInside(const Shape &shape, const QRectF &area)
{
    return std::all_of(shape.lines.begin(), shape.lines.end(),
                       [&](const QPolygonF &line) { return isInside(line.boundingRect(), area); });
}

bool isTouched(ShownEntities &shown, const Entity &entity, const QRectF &area, double tolerance)
{
    return !shown.visit(
            entity, area,
            [&](const Entity &part, const QRectF &bounds, const BlockView &view, const Look &) {
                return !isInside(bounds, area) && !touches(shapeOf(part, view, tolerance), area);
            });
}

bool isEnclosed(ShownEntities &shown, const Entity &entity, const QRectF &area, double tolerance)
{
    if (!overlap(shown.boundsOf(entity), area))
        return false;
    constexpr double far = 1e15;
    const QRectF everywhere(-far, -far, 2 * far, 2 * far);
    bool isShown = false;
    return shown.visit(entity, everywhere,
                       [&](const Entity &part, const QRectF &bounds, const BlockView &view,
                           const Look &) {
                           isShown = true;
                           return isInside(bounds, area)
                                  || isInside(shapeOf(part, view, tolerance), area);
                       })
           && isShown;
}

} // namespace

int topmostEntity(const Drawing &drawing, const Projection &projection, QPointF position,
                  double reach)
{
    ShownEntities shown(drawing, projection);
    const QRectF area(position - QPointF(reach, reach), position + QPointF(reach, reach));
    const std::vector<Entity> &entities = drawing.geometry.modelSpace().entities;
    for (int index = int(entities.size()) - 1; index >= 0; --index) {
        const bool isMissed = shown.visit(
                entities[index], area,
                [&](const Entity &entity, const QRectF &, const BlockView &view, const Look &) {
                    return !isNear(shapeOf(entity, view, reach / 8), position, reach);
                });
        if (!isMissed)
            return index;
    }
    return -1;
}

QVector<int> entitiesInside(const Drawing &drawing, const Projection &projection,
                            const QRectF &area, bool isCrossing)
{
    ShownEntities shown(drawing, projection);
    const double tolerance = qMax(area.width(), area.height()) / 1000;
    const std::vector<Entity> &entities = drawing.geometry.modelSpace().entities;
    QVector<int> result;
    for (int index = 0; index < int(entities.size()); ++index) {
        const Entity &entity = entities[index];
        if (isCrossing ? isTouched(shown, entity, area, tolerance)
                       : isEnclosed(shown, entity, area, tolerance))
            result += index;
    }
    return result;
}
