// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "HatchLines.h"

#include <QLineF>
#include <QPolygonF>

#include <algorithm>
#include <cmath>

namespace Tessa {

namespace {

/// Lines closer to each other are not told apart, in pixels.
constexpr double leastDistance = 2.5;
/// More lines do not fit on a screen, and numbers beyond that are not exact.
constexpr double mostLines = 1e4;
constexpr double largestNumber = 1e12;
/// A pattern of dashes that takes fewer pixels is shown solid.
constexpr double leastPeriod = 3.0;
/// Even where they cover all, something shines through.
constexpr double strongestTint = 0.8;

/// Where a line crosses an outline.
struct Crossing
{
    double line;
    double along;

    bool operator<(const Crossing &other) const
    {
        return line != other.line ? line < other.line : along < other.along;
    }
};

/// One family of lines, in the coordinates x = number of the line and y = pixels along it.
class Family
{
public:
    Family(const HatchLines &family, const SpaceTransform &toPicture, double pixel);

    /// Whether the lines are not told apart.
    bool isDense(const QRectF &area) const;

    /// The part of the area that the lines cover.
    double tint() const;

    /// Adds what of the lines lies inside of the outlines and may show in the area.
    /// @param outlines in pixels, as the area
    void add(SpacePath &path, const QVector<QPolygonF> &outlines, const QRectF &area,
             double &strokes) const;

private:
    std::vector<Crossing> crossings(const QVector<QPolygonF> &outlines, const QRectF &seen) const;
    void addPart(SpacePath &path, double line, double from, double to, double &strokes) const;
    void addDashes(SpacePath &path, double line, double from, double to) const;
    void addStroke(SpacePath &path, double line, double from, double to) const;

    const SpaceTransform &m_toPicture;
    QTransform m_toPlane;
    QTransform m_fromPixels;
    double m_distance;            ///< of neighbours, in pixels
    std::vector<double> m_dashes; ///< in pixels
    double m_period = 0;
};

Family::Family(const HatchLines &family, const SpaceTransform &toPicture, double pixel)
    : m_toPicture(toPicture)
    , m_dashes(family.dashes)
{
    const QTransform toPixels = toPicture.ofPlane(0) * QTransform::fromScale(1 / pixel, 1 / pixel);
    const QLineF way = toPixels.map(QLineF({}, family.way));
    const QPointF pixelAlong = family.way / way.length();
    m_toPlane = QTransform(family.step.x(), family.step.y(), pixelAlong.x(), pixelAlong.y(),
                           family.origin.x(), family.origin.y());
    const QTransform linesToPixels = m_toPlane * toPixels;
    m_distance = std::abs(linesToPixels.determinant());
    m_fromPixels = linesToPixels.inverted();
    for (double &dash : m_dashes) {
        dash *= way.length();
        m_period += std::abs(dash);
    }
}

bool Family::isDense(const QRectF &area) const
{
    const QRectF lines = m_fromPixels.mapRect(area);
    return !(m_distance >= leastDistance && lines.width() <= mostLines
             && std::max({std::abs(lines.left()), std::abs(lines.top()), std::abs(lines.bottom())})
                        <= largestNumber);
}

double Family::tint() const
{
    double ink = 0;
    for (const double dash : m_dashes)
        ink += dash == 0 ? 1 : qMax(dash, 0.0);
    const double part = m_period > 0 ? qMin(ink / m_period, 1.0) : 1;
    return part / qMax(m_distance, 1.0);
}

void Family::add(SpacePath &path, const QVector<QPolygonF> &outlines, const QRectF &area,
                 double &strokes) const
{
    const QRectF seen = m_fromPixels.mapRect(area);
    const std::vector<Crossing> all = crossings(outlines, seen);
    for (std::size_t i = 1; i < all.size(); i += 2) {
        const double from = qMax(all[i - 1].along, seen.top());
        const double to = qMin(all[i].along, seen.bottom());
        if (from < to)
            addPart(path, all[i].line, from, to, strokes);
    }
}

/// Where the lines cross the outlines, an even number of times each.
std::vector<Crossing> Family::crossings(const QVector<QPolygonF> &outlines,
                                        const QRectF &seen) const
{
    std::vector<Crossing> result;
    for (const QPolygonF &outline : outlines) {
        const QPolygonF points = m_fromPixels.map(outline);
        for (int i = 0; i < points.size(); ++i) {
            const QPointF one = points.at(i);
            const QPointF other = points.at(i + 1 < points.size() ? i + 1 : 0);
            const QPointF &start = one.x() < other.x() ? one : other;
            const QPointF &end = one.x() < other.x() ? other : one;
            const double slope = (end.y() - start.y()) / (end.x() - start.x());
            const double last = qMin(std::ceil(end.x()) - 1, seen.right());
            for (double line = std::ceil(qMax(start.x(), seen.left())); line <= last; ++line)
                result.push_back({line, start.y() + slope * (line - start.x())});
        }
    }
    std::sort(result.begin(), result.end());
    return result;
}

void Family::addPart(SpacePath &path, double line, double from, double to, double &strokes) const
{
    const double dashes = (to - from) / m_period * double(m_dashes.size());
    const bool isDashed = m_period >= leastPeriod && dashes <= strokes;
    strokes -= isDashed ? 1 + dashes : 1;
    if (isDashed)
        addDashes(path, line, from, to);
    else
        addStroke(path, line, from, to);
}

void Family::addDashes(SpacePath &path, double line, double from, double to) const
{
    constexpr double dot = 1;
    for (double begin = std::floor(from / m_period) * m_period; begin < to; begin += m_period) {
        double at = begin;
        for (const double dash : m_dashes) {
            const double end = at + std::abs(dash);
            const double inked = dash == 0 ? at + dot : end;
            if (dash >= 0 && at < to && inked > from)
                addStroke(path, line, qMax(at, from), qMin(inked, to));
            at = end;
        }
    }
}

void Family::addStroke(SpacePath &path, double line, double from, double to) const
{
    const auto at = [this, line](double along) {
        const QPointF place = m_toPlane.map(QPointF(line, along));
        return m_toPicture.map(SpacePoint{place.x(), place.y(), 0});
    };
    path.moveTo(at(from));
    path.lineTo(at(to));
}

} // namespace

SeenHatch seenHatch(const Hatching &hatching, const SpaceTransform &toPicture, const QRectF &area,
                    double pixel, double strokes)
{
    const QTransform pixels = QTransform::fromScale(1 / pixel, 1 / pixel);
    const QVector<QPolygonF> outlines =
            hatching.area.toSubpathPolygons(toPicture.ofPlane(0) * pixels).toVector();
    const QRectF areaInPixels = pixels.mapRect(area);
    SeenHatch seen;
    for (const HatchLines &lines : hatching.families) {
        const Family family(lines, toPicture, pixel);
        if (family.isDense(areaInPixels) || strokes <= 0)
            seen.tint += family.tint();
        else
            family.add(seen.lines, outlines, areaInPixels, strokes);
    }
    seen.tint = qMin(seen.tint, strongestTint);
    return seen;
}

} // namespace Tessa
