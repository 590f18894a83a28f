// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Picking.h"

#include "Outline.h"
#include "ShownEntities.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace Tessa {

namespace {

constexpr double far = 1e15;
const QRectF everywhere(-far, -far, 2 * far, 2 * far);

/// An area with its islands: a point is in it if it is inside of an odd number of the outlines, which
/// are closed.
using Area = std::vector<Outline>;

/// What an entity draws in the picture.
struct Shape
{
    std::vector<Outline> lines;
    std::vector<Area> areas;
};

/// Where and how exactly shapes are looked for.
struct Probe
{
    FaceStyle style;
    QRectF area;
    double tolerance; ///< of chords
};

Outline seenPolygon(std::initializer_list<SpacePoint> corners, const SpaceTransform &toPicture)
{
    Outline outline;
    for (const SpacePoint &corner : corners)
        outline.push_back({toPicture.map(corner)});
    outline.push_back(outline.front());
    return outline;
}

Outline seenRect(const QRectF &rect, const SpaceTransform &toPicture)
{
    return seenPolygon({{rect.left(), rect.top()},
                        {rect.right(), rect.top()},
                        {rect.right(), rect.bottom()},
                        {rect.left(), rect.bottom()}},
                       toPicture);
}

/// A wireframe has none.
std::vector<Area> areasOf(const Faces &faces, const SpaceTransform &toPicture, FaceStyle style)
{
    std::vector<Area> areas;
    if (style == FaceStyle::Wireframe)
        return areas;
    for (const std::array<int, 4> &corners : faces.corners) {
        const auto at = [&](int i) { return toPicture.map(faces.points[std::size_t(corners[i])]); };
        areas.push_back({seenPolygon({at(0), at(1), at(2), at(3)}, {})});
        // Of a folded face the triangles that are painted lie above one another.
        const SpacePoint across = at(2) - at(0);
        if (cross(at(1) - at(0), across).z * cross(across, at(3) - at(0)).z < 0) {
            areas.push_back({seenPolygon({at(0), at(1), at(2)}, {})});
            areas.push_back({seenPolygon({at(0), at(2), at(3)}, {})});
        }
    }
    return areas;
}

Shape shapeOf(const Entity &entity, const QRectF &bounds, const BlockView &view, const Probe &probe)
{
    const auto outlines = [&] { return outlinesOf(entity, view.toPicture, probe.tolerance); };
    return entity.visitKind(Overloaded{
            [&](const Line &line) -> Shape {
                if (line.reach == Reach::Finite)
                    return {outlines(), {}};
                return {{endlessOutline(entity, view.toPicture, probe.area)}, {}};
            },
            [&](const Filling &) -> Shape {
                return {{}, {outlines()}};
            },
            [&](const Hatching &) -> Shape {
                return {{}, {outlines()}};
            },
            [&](const Faces &faces) -> Shape {
                return {outlines(), areasOf(faces, view.toPicture, probe.style)};
            },
            [&](const PlacedText &text) -> Shape {
                return {{}, {{seenRect(text.lines.bounds, text.placement * view.toPicture)}}};
            },
            [&](const BlockInsert &) -> Shape {
                const double depth = view.toPicture.map(entity.bounds.center()).z;
                return {{}, {{seenRect(bounds, SpaceTransform::fromTranslate({0, 0, depth}))}}};
            },
    });
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

bool contains(const Area &area, QPointF position)
{
    bool isInside = false;
    for (const Outline &outline : area) {
        for (std::size_t i = 1; i < outline.size(); ++i) {
            const SpacePoint &start = outline[i - 1].at;
            const SpacePoint &end = outline[i].at;
            if ((start.y <= position.y()) == (end.y <= position.y()))
                continue;
            const double share = (position.y() - start.y) / (end.y - start.y);
            isInside ^= start.x + (end.x - start.x) * share > position.x();
        }
    }
    return isInside;
}

/// The depth of a flat area at a position in it.
double depthIn(const Area &area, QPointF position)
{
    SpacePoint normal;
    for (const Outline &outline : area) {
        for (std::size_t i = 2; i < outline.size(); ++i)
            normal = normal
                     + cross(outline[i - 1].at - outline[0].at, outline[i].at - outline[0].at);
        if (normal.z != 0)
            break;
    }
    const SpacePoint &at = area[0][0].at;
    if (normal.z == 0)
        return at.z;
    return at.z - (normal.x * (position.x() - at.x) + normal.y * (position.y() - at.y)) / normal.z;
}

/// The depth of what the shape draws at a position; nothing if it is not there.
std::optional<double> depthAt(const Shape &shape, QPointF position, double reach)
{
    std::optional<double> depth;
    const auto note = [&depth](double found) { depth = qMax(found, depth.value_or(found)); };
    const auto noteLines = [&](const std::vector<Outline> &lines) {
        for (const Outline &line : lines) {
            // A line in a sloping face is to be found beside itself, too, where the face is nearer.
            if (const std::optional<double> found = depthAlong(line, position, reach))
                note(*found + 2 * reach);
        }
    };
    noteLines(shape.lines);
    for (const Area &area : shape.areas) {
        noteLines(area);
        if (contains(area, position))
            note(depthIn(area, position));
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

bool touches(const Shape &shape, const QRectF &rect)
{
    const auto crosses = [&rect](const Outline &line) { return touches(line, rect); };
    return std::any_of(shape.lines.begin(), shape.lines.end(), crosses)
           || std::any_of(shape.areas.begin(), shape.areas.end(), [&](const Area &area) {
                  return std::any_of(area.begin(), area.end(), crosses)
                         || contains(area, rect.center());
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
           && std::all_of(shape.areas.begin(), shape.areas.end(), [&isWithin](const Area &filled) {
                  return std::all_of(filled.begin(), filled.end(), isWithin);
              });
}

/// Whether any of an entity of the model space lies in the probe's area.
bool isTouched(const Entity &entity, ShownEntities &shown, const Probe &probe)
{
    return !shown.visit(entity, probe.area,
                        [&probe](const Entity &part, const QRectF &bounds, const BlockView &view,
                                 const Look &) {
                            return !isInside(bounds, probe.area)
                                   && !touches(shapeOf(part, bounds, view, probe), probe.area);
                        });
}

/// Whether an entity of the model space shows, and lies in the probe's area as a whole.
bool isEnclosed(const Entity &entity, ShownEntities &shown, const Probe &probe)
{
    if (entity.isEndless || !overlap(shown.modelView().boundsOf(entity.bounds), probe.area))
        return false;
    bool hasParts = false;
    return shown.visit(entity, everywhere,
                       [&](const Entity &part, const QRectF &bounds, const BlockView &view,
                           const Look &) {
                           hasParts = true;
                           return isInside(bounds, probe.area)
                                  || isInside(shapeOf(part, bounds, view, probe), probe.area);
                       })
           && hasParts;
}

} // namespace

int topmostEntity(const Drawing &drawing, const Projection &projection, FaceStyle style,
                  QPointF position, double reach)
{
    const QRectF area(position - QPointF(reach, reach), position + QPointF(reach, reach));
    const Probe probe{style, area, reach / 8};
    ShownEntities shown(drawing, projection);
    shown.setDetail(area, probe.tolerance);
    const std::vector<Entity> &entities = drawing.geometry.modelSpace().entities;
    int topmost = -1;
    std::optional<double> nearest;
    for (int index = int(entities.size()) - 1; index >= 0; --index) {
        shown.visit(entities[std::size_t(index)], area,
                    [&](const Entity &entity, const QRectF &bounds, const BlockView &view,
                        const Look &) {
                        const std::optional<double> depth =
                                depthAt(shapeOf(entity, bounds, view, probe), position, reach);
                        if (depth && (!nearest || *depth > *nearest)) {
                            nearest = depth;
                            topmost = index;
                        }
                        return style != FaceStyle::Wireframe || !nearest;
                    });
        if (nearest && style == FaceStyle::Wireframe)
            break;
    }
    return topmost;
}

QVector<int> entitiesInside(const Drawing &drawing, const Projection &projection, FaceStyle style,
                            const QRectF &area, bool isCrossing)
{
    const Probe probe{style, area, qMax(area.width(), area.height()) / 1000};
    ShownEntities shown(drawing, projection);
    shown.setDetail(isCrossing ? area : everywhere, probe.tolerance);
    const std::vector<Entity> &entities = drawing.geometry.modelSpace().entities;
    QVector<int> result;
    for (int index = 0; index < int(entities.size()); ++index) {
        const Entity &entity = entities[std::size_t(index)];
        if (isCrossing ? isTouched(entity, shown, probe) : isEnclosed(entity, shown, probe))
            result += index;
    }
    return result;
}

} // namespace Tessa
