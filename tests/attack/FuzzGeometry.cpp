// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "FuzzSupport.h"

#include "host/drawing/Database.h"
#include "viewer/canvas/BlockView.h"
#include "viewer/canvas/DrawingItem.h"
#include "viewer/canvas/GeometryReader.h"
#include "viewer/canvas/HatchLines.h"
#include "viewer/canvas/Outline.h"

#include <KcHost/KcHost.h>

#include <QLineF>
#include <QPainter>
#include <QStyleOptionGraphicsItem>
#include <QtMath>

#include <cmath>

using namespace Tessa;

namespace {

constexpr int kPixels = 48;

QRectF grown(const QRectF &area, double by)
{
    return area.adjusted(-by, -by, by, by);
}

/// Whether all points are numbers, and in that area.
template <class Points>
bool areIn(const QRectF &area, const Points &points)
{
    return std::all_of(points.begin(), points.end(), [&area](const auto &point) {
        const SpacePoint &at = point.at;
        return at.x >= area.left() && at.x <= area.right() && at.y >= area.top()
               && at.y <= area.bottom() && std::isfinite(at.z);
    });
}

/// @param rounding how far numbers of that size may be off
void checkHatch(const Hatching &hatch, const BlockView &view, const QRectF &area, double rounding)
{
    const double pixel = area.width() / kPixels;
    const SeenHatch seen =
            view.isEdgeOn ? SeenHatch() : seenHatch(hatch, view.toPicture, area, pixel, 1000);
    require(seen.tint >= 0 && seen.tint <= 1, "a tint is a part");
    double skew = 0; // lines are cut off where those of the area's corners end
    for (const HatchLines &lines : hatch.families) {
        const QLineF way = view.ground.map(QLineF({}, lines.way));
        const QLineF step = view.ground.map(QLineF({}, lines.step));
        skew = qMax(skew, std::abs(1 / std::tan(qDegreesToRadians(way.angleTo(step)))));
    }
    const QRectF near = grown(area, 1.5 * (1 + qMin(skew, 1e6)) * area.width() + 1e3 * rounding);
    require(areIn(near, seen.lines.elements), "the lines of a hatch are near what is seen");
    for (std::size_t i = 0; i + 1 < seen.lines.elements.size(); i += 2) {
        const SpacePoint &start = seen.lines.elements[i].at, &end = seen.lines.elements[i + 1].at;
        double from = -qInf(), to = qInf();
        require(length(end - start) < pixel
                        || clip(start, end, grown(area, pixel + 1e3 * rounding), from, to),
                "the lines of a hatch cross what is seen");
    }
}

void checkEntity(const Entity &entity, const Geometry &geometry, const SpaceTransform &toPicture,
                 const QRectF &area)
{
    const double pixel = area.width() / kPixels;
    const double rounding = 1e-9 * (1 + length(entity.bounds.least) + length(entity.bounds.most));
    if (entity.reach() != Reach::Finite)
        return require(
                areIn(grown(area, pixel + 1e3 * rounding), endlessOutline(entity, toPicture, area)),
                "a line without ends ends at the area");
    const QRectF bounds = grown(BlockView(toPicture).boundsOf(entity.bounds), rounding);
    for (const Outline &outline : outlinesOf(entity, toPicture, pixel)) {
        require(areIn(bounds, outline), "bounds contain the outline");
        for (const Linetype &linetype : geometry.linetypes) {
            SpacePath dashes;
            const DashPattern pattern{linetype.dashes, 1, pixel, 3 * pixel};
            if (linetype.dashes.empty() || !(pattern.period() >= pattern.leastPeriod))
                continue;
            addDashes(dashes, outline, pattern, area);
            require(areIn(grown(area, 4 * area.width() + rounding), dashes.elements),
                    "dashes are where they may show");
            require(dashes.elements.size() < 100 * outline.size() * linetype.dashes.size(),
                    "dashes are few");
        }
    }
    if (const auto *hatching = entity.as<Hatching>())
        checkHatch(*hatching, BlockView(hatching->placement * toPicture), area, rounding);
}

} // namespace

void tryInput(Choices &choices, const QByteArray &content)
{
    // One drawing for all: only what it shows is another one each time.
    static Drawing drawing{{}, KcHost::newDrawing(), {}, {}, {}};
    drawing.layers = DrawingLayers(*drawing.database);
    KcDbObjectAccess::drawing(*drawing.database).bytes = content;
    QStringList warnings;
    drawing.geometry = readGeometry(drawing, warnings);

    DrawingItem item;
    const Projection projection = projectionOf(ViewDirection(choices.below(10)));
    item.setDrawing(&drawing);
    item.setProjection(projection);
    item.setFaceStyle(FaceStyle(choices.below(3)));
    const QRectF whole = item.bounds();
    require(std::isfinite(whole.width()) && std::isfinite(whole.height()), "bounds are numbers");
    // The whole drawing, a part of it, or what lies around it.
    const double width = std::ldexp(std::max({whole.width(), whole.height(), 1e-3}),
                                    choices.of(std::array{0, 1, -1, -2, -4, -12, 6}));
    const QPointF middle(whole.left() + whole.width() * choices.below(9) / 8,
                         whole.top() + whole.height() * choices.below(9) / 8);
    const QRectF area = grown(QRectF(middle, middle), width / 2);
    item.setRoom(area);
    for (const Entity &entity : drawing.geometry.modelSpace().entities)
        checkEntity(entity, drawing.geometry, projection.toPicture, area);

    QImage image(kPixels, kPixels, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.scale(kPixels / area.width(), kPixels / area.height());
    painter.translate(-area.topLeft());
    QStyleOptionGraphicsItem option;
    option.exposedRect = area;
    item.paint(&painter, &option, nullptr);

    const QVector<int> crossing = item.entitiesIn(whole, true),
                       inside = item.entitiesIn(whole, false);
    require(std::includes(crossing.begin(), crossing.end(), inside.begin(), inside.end()),
            "what lies in a window touches it");
    for (int pixel = 0; pixel < kPixels * kPixels && !item.isSimplified(); ++pixel) {
        const QPoint at(pixel % kPixels, pixel / kPixels);
        if (image.pixel(at) == qRgb(0, 0, 0))
            continue;
        const QPointF place = area.topLeft() + QPointF(at) * area.width() / kPixels;
        // Six pixels are the reach of the widest pen and of a dot.
        return require(item.entityAt(place, 6 * area.width() / kPixels) >= 0,
                       "what is painted can be picked");
    }
}
