// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Outline.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Tessa {

namespace {

constexpr int mostChords = 400;
/// Of more periods than these, neither the numbers nor the places are exact.
constexpr double mostPeriods = 1e12;

/// Makes outlines of a path's elements.
class Flattener
{
public:
    Flattener(const SpaceTransform &toPicture, double tolerance)
        : m_toPicture(toPicture)
        , m_tolerance(tolerance)
    {
    }

    std::vector<Outline> run(const SpacePath &path);

private:
    void curveTo(const SpacePath::Element *controls);
    void addPoint(const SpacePoint &point);

    const SpaceTransform &m_toPicture;
    const double m_tolerance;
    std::vector<Outline> m_outlines;
    SpacePoint m_last;
};

std::vector<Outline> Flattener::run(const SpacePath &path)
{
    for (const SpacePath::Element &element : path.elements) {
        switch (element.type) {
        case QPainterPath::MoveToElement:
            m_outlines.emplace_back();
            addPoint(element.at);
            break;
        case QPainterPath::LineToElement:
            addPoint(element.at);
            break;
        case QPainterPath::CurveToElement:
            curveTo(&element);
            break;
        case QPainterPath::CurveToDataElement:
            break;
        }
    }
    return std::move(m_outlines);
}

/// The chords of a curve from the last point on, with three control points.
void Flattener::curveTo(const SpacePath::Element *controls)
{
    const SpacePoint points[] = {m_last, controls[0].at, controls[1].at, controls[2].at};
    SpacePoint seen[4];
    std::transform(std::begin(points), std::end(points), std::begin(seen),
                   [this](const SpacePoint &point) { return m_toPicture.map(point); });
    const auto bend = [&seen](int i) {
        return std::hypot(seen[i].x - 2 * seen[i + 1].x + seen[i + 2].x,
                          seen[i].y - 2 * seen[i + 1].y + seen[i + 2].y);
    };
    const double needed = std::sqrt(0.75 * qMax(bend(0), bend(1)) / m_tolerance);
    const int chords = int(qBound(1.0, std::ceil(needed), double(mostChords)));
    for (int chord = 1; chord < chords; ++chord) {
        const double t = double(chord) / chords;
        const double s = 1 - t;
        const double shares[] = {s * s * s, 3 * s * s * t, 3 * s * t * t, t * t * t};
        SpacePoint point;
        for (int i = 0; i < 4; ++i)
            point = point + points[i] * shares[i];
        addPoint(point);
    }
    addPoint(points[3]);
}

void Flattener::addPoint(const SpacePoint &point)
{
    Outline &outline = m_outlines.back();
    const SpacePoint seen = m_toPicture.map(point);
    const double along = outline.empty() ? 0 : outline.back().along + length(point - m_last);
    outline.push_back({seen, along});
    m_last = point;
}

/// Breaks one outline into dashes.
class Dasher
{
public:
    Dasher(SpacePath &path, const Outline &outline, const DashPattern &pattern);

    void run(const QRectF &area);

private:
    void addSegment(const OutlinePoint &start, const OutlinePoint &end, const QRectF &area);
    void addPeriod(double index, double from, double to);
    void addDash(double from, double to);
    void addDot(double along);
    SpacePoint at(double along) const;

    SpacePath &m_path;
    const Outline &m_outline;
    const DashPattern &m_pattern;
    const double m_period;
    const double m_length;
    double m_count; ///< of whole periods
    double m_shift; ///< from the line's beginning to the first one
    double m_drawnTo = -1;
    const OutlinePoint *m_start = nullptr; ///< of the segment
    const OutlinePoint *m_end = nullptr;
};

Dasher::Dasher(SpacePath &path, const Outline &outline, const DashPattern &pattern)
    : m_path(path)
    , m_outline(outline)
    , m_pattern(pattern)
    , m_period(pattern.period())
    , m_length(outline.back().along)
{
    const double first = pattern.firstDash();
    // A line of just one period must not lose it to rounding.
    m_count = std::floor((m_length - first) / m_period + 1e-9);
    m_shift = (m_length - first - m_count * m_period) / 2;
}

void Dasher::run(const QRectF &area)
{
    for (std::size_t i = 1; i < m_outline.size(); ++i)
        addSegment(m_outline[i - 1], m_outline[i], area);
}

void Dasher::addSegment(const OutlinePoint &start, const OutlinePoint &end, const QRectF &area)
{
    const double length = end.along - start.along;
    double shareFrom = 0;
    double shareTo = 1;
    if (length <= 0 || !clip(start.at, end.at, area, shareFrom, shareTo))
        return;
    m_start = &start;
    m_end = &end;
    if (m_count > mostPeriods) {
        addDash(start.along, end.along);
        return;
    }
    // So that a dash around a corner stays in one piece, ends are exact where nothing is cut off.
    const double from = start.along + length * shareFrom;
    const double to = shareTo == 1 ? end.along : start.along + length * shareTo;

    const SpacePoint way = end.at - start.at;
    const double shown = m_period * std::hypot(way.x, way.y) / length;
    if (!(m_count >= 1 && shown >= m_pattern.leastPeriod)) {
        addDash(from, to);
        return;
    }
    const double last = qBound(0.0, std::floor((to - m_shift) / m_period), m_count);
    for (double index = qBound(0.0, std::floor((from - m_shift) / m_period), m_count);
         index <= last; ++index)
        addPeriod(index, from, to);
}

/// Adds what of a period lies between two places of the segment.
void Dasher::addPeriod(double index, double from, double to)
{
    double begin = m_shift + index * m_period;
    bool isFirst = true;
    for (const double dash : m_pattern.dashes) {
        const double length = std::abs(dash) * m_pattern.scale;
        const bool isAtStart = isFirst && index == 0;
        const bool isAtEnd = isFirst && index == m_count;
        if (dash > 0) {
            addDash(qMax(from, isAtStart ? 0.0 : begin),
                    qMin(to, isAtEnd ? m_length : begin + length));
        } else if (dash == 0 && begin >= from && begin <= to) {
            addDot(begin);
        }
        if (isAtEnd)
            return;
        begin += length;
        isFirst = false;
    }
}

void Dasher::addDash(double from, double to)
{
    if (from >= to)
        return;
    if (from != m_drawnTo)
        m_path.moveTo(at(from));
    m_path.lineTo(at(to));
    m_drawnTo = to;
}

void Dasher::addDot(double along)
{
    const SpacePoint way = m_end->at - m_start->at;
    const SpacePoint half = way * (m_pattern.dotLength / 2 / std::hypot(way.x, way.y));
    m_path.moveTo(at(along) - half);
    m_path.lineTo(at(along) + half);
    m_drawnTo = -1;
}

SpacePoint Dasher::at(double along) const
{
    const double share = (along - m_start->along) / (m_end->along - m_start->along);
    return m_start->at + (m_end->at - m_start->at) * share;
}

} // namespace

std::vector<Outline> outlinesOf(const Entity &entity, const SpaceTransform &toPicture,
                                double tolerance)
{
    return Flattener(toPicture, tolerance).run(entity.pathInSpace());
}

Outline endlessOutline(const Entity &entity, const SpaceTransform &toPicture, const QRectF &area,
                       const DashPattern *pattern)
{
    const SpacePath path = entity.pathInSpace();
    const SpacePoint start = path.elements.at(0).at;
    const SpacePoint end = path.elements.at(1).at;
    const SpacePoint seenStart = toPicture.map(start);
    const SpacePoint seenWay = toPicture.map(end) - seenStart;
    constexpr double endless = std::numeric_limits<double>::infinity();
    double from = entity.reach() == Reach::Ray ? 0 : -endless;
    double to = endless;
    if (!clip(seenStart, seenStart + seenWay, area, from, to))
        return {};
    if (std::isinf(to))
        from = to = 0; // it is seen from its end
    const double unit = length(end - start);
    if (pattern) {
        const double period = pattern->period() / unit;
        from = std::floor(from / period) * period;
        to = std::ceil(to / period) * period + pattern->firstDash() / unit;
    }
    return {{seenStart + seenWay * from, 0}, {seenStart + seenWay * to, (to - from) * unit}};
}

double DashPattern::period() const
{
    double sum = 0;
    for (const double dash : dashes)
        sum += std::abs(dash);
    return sum * scale;
}

double DashPattern::firstDash() const
{
    return qMax(0.0, dashes.front() * scale);
}

void addDashes(SpacePath &path, const Outline &outline, const DashPattern &pattern,
               const QRectF &area)
{
    Dasher(path, outline, pattern).run(area);
}

bool clip(const SpacePoint &start, const SpacePoint &end, const QRectF &area, double &from,
          double &to)
{
    const SpacePoint way = end - start;
    const auto cut = [&from, &to](double step, double room) {
        // The side is met where step * share == room; what goes beyond is outside.
        if (step == 0)
            return room >= 0;
        if (step > 0)
            to = qMin(to, room / step);
        else
            from = qMax(from, room / step);
        return from <= to;
    };
    return cut(-way.x, start.x - area.left()) && cut(way.x, area.right() - start.x)
           && cut(-way.y, start.y - area.top()) && cut(way.y, area.bottom() - start.y);
}

} // namespace Tessa
