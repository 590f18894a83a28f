// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DxfMutator.h"

#include "host/drawing/Database.h"
#include "viewer/canvas/BlockView.h"
#include "viewer/canvas/DrawingItem.h"
#include "viewer/canvas/GeometryReader.h"
#include "viewer/canvas/HatchLines.h"
#include "viewer/canvas/Outline.h"

#include <KcHost/KcHost.h>

#include <QPainter>
#include <QStyleOptionGraphicsItem>

#include <cmath>

using namespace Tessa;

namespace {

constexpr int kPixels = 48;
constexpr double kReach = 6; ///< of the widest pen and a dot, in pixels

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

void checkEntity(const Entity &entity, const Geometry &geometry, const SpaceTransform &toPicture,
                 const QRectF &area)
{
    const double pixel = area.width() / kPixels;
    const QRectF around = grown(area, 4 * area.width());
    const QRectF bounds = BlockView(toPicture).boundsOf(entity.bounds);
    const double rounding = 1e-9 * (1 + length(entity.bounds.least) + length(entity.bounds.most));
    if (entity.reach() != Reach::Finite) {
        require(areIn(grown(area, pixel + 1e3 * rounding), endlessOutline(entity, toPicture, area)),
                "a line without ends ends at the area");
        return;
    }
    for (const Outline &outline : outlinesOf(entity, toPicture, pixel)) {
        require(areIn(grown(bounds, rounding), outline), "bounds contain the outline");
        for (const Linetype &linetype : geometry.linetypes) {
            SpacePath dashes;
            const DashPattern pattern{linetype.dashes, 1, pixel, 3 * pixel};
            if (linetype.dashes.empty() || !(pattern.period() >= 3 * pixel))
                continue;
            addDashes(dashes, outline, pattern, area);
            require(areIn(grown(around, rounding), dashes.elements),
                    "dashes are where they may show");
            require(dashes.elements.size() < 100 * outline.size() * linetype.dashes.size(),
                    "dashes are few");
        }
    }
    const Hatching *hatching = entity.as<Hatching>();
    const SpaceTransform toHatch = hatching ? hatching->placement * toPicture : SpaceTransform();
    if (hatching && !BlockView(toHatch).isEdgeOn) {
        const SeenHatch seen = seenHatch(*hatching, toHatch, area, pixel, 1000);
        require(seen.tint >= 0 && seen.tint <= 1, "a tint is a part");
        const QTransform ground = toHatch.ofPlane(0);
        double skew = 0; // lines are cut off where those of the area's corners end
        for (const HatchLines &lines : hatching->families) {
            const double across = QPointF::dotProduct({-lines.way.y(), lines.way.x()}, lines.step);
            skew = qMax(skew, std::abs(QPointF::dotProduct(lines.way, lines.step) / across));
        }
        require(ground.m11() * ground.m12() + ground.m21() * ground.m22() != 0
                        || std::abs(ground.m11()) != std::abs(ground.m22())
                        || areIn(grown(area, (1 + 1.5 * skew) * area.width() + 1e3 * rounding),
                                 seen.lines.elements),
                "the lines of a hatch are near what is seen");
        for (std::size_t i = 0; i + 1 < seen.lines.elements.size(); i += 2) {
            const SpacePoint &start = seen.lines.elements[i].at;
            const SpacePoint &end = seen.lines.elements[i + 1].at;
            double from = -qInf();
            double to = qInf();
            require(length(end - start) < pixel
                            || clip(start, end, grown(area, pixel + 1e3 * rounding), from, to),
                    "the lines of a hatch cross what is seen");
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const Attack::Effort effort{size};
    Attack::Input input(data, size);
    Attack::Choices &choices = input.choices;
    // One drawing for all: only what it shows is another one each time.
    static KcDbDatabase *const database = KcHost::newDrawing().release();
    static Drawing drawing{
            {}, std::unique_ptr<KcDbDatabase>(database), DrawingLayers(*database), {}, {}};
    QStringList warnings;
    KcDbObjectAccess::drawing(*drawing.database).bytes = input.drawing;
    drawing.geometry = readGeometry(drawing, warnings);

    DrawingItem item;
    const Projection projection = projectionOf(ViewDirection(choices.below(10)));
    item.setDrawing(&drawing);
    item.setProjection(projection);
    item.setFaceStyle(
            choices.of(std::array{FaceStyle::Wireframe, FaceStyle::Hidden, FaceStyle::Gouraud}));
    const QRectF whole = item.bounds();
    require(std::isfinite(whole.width()) && std::isfinite(whole.height()), "bounds are numbers");
    // The whole drawing, a part of it, or what lies around it.
    const double width = qMax(qMax(whole.width(), whole.height()), 1e-3)
                         * std::pow(2.0, choices.of(std::array{0, 1, -1, -2, -4, -12, 6}));
    const QPointF middle = whole.center()
                           + QPointF(whole.width() * (choices.below(9) - 4) / 8,
                                     whole.height() * (choices.below(9) - 4) / 8);
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
    painter.end();

    const QVector<int> crossing = item.entitiesIn(whole, true);
    const QVector<int> inside = item.entitiesIn(whole, false);
    for (const int entity : inside)
        require(crossing.contains(entity), "what lies in a window touches it");
    for (int pixel = 0; pixel < kPixels * kPixels && !item.isSimplified(); ++pixel) {
        const QPoint at(pixel % kPixels, pixel / kPixels);
        if (image.pixel(at) == qRgb(0, 0, 0))
            continue;
        const QPointF place = area.topLeft() + QPointF(at) * area.width() / kPixels;
        require(item.entityAt(place, kReach * area.width() / kPixels) >= 0,
                "what is painted can be picked");
        break;
    }
    return 0;
}
