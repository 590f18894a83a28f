// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Curves.h"

#include <QLineF>
#include <QTransform>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace Tessa {

namespace {

/// Chords per knot span of a spline.
constexpr int spanSteps = 12;
/// Splines of a drawing have degree 3, seldom 5.
constexpr int highestDegree = 15;

SpacePoint onLine(const SpacePoint &from, const SpacePoint &to, double share)
{
    return from + (to - from) * share;
}

/// The spline's point at @p t, which lies in the knot span @p span, by de Boor's algorithm on
/// homogeneous coordinates.
SpacePoint splinePoint(int degree, const QVector<ControlPoint> &points,
                       const QVector<double> &knots, int span, double t)
{
    std::array<SpacePoint, highestDegree + 1> at;
    std::array<double, highestDegree + 1> weight;
    for (int i = 0; i <= degree; ++i) {
        const ControlPoint &point = points.at(span - degree + i);
        at[i] = point.at * point.weight;
        weight[i] = point.weight;
    }
    for (int level = 1; level <= degree; ++level) {
        for (int i = degree; i >= level; --i) {
            const double from = knots.at(span - degree + i);
            const double to = knots.at(span + 1 + i - level);
            const double share = to > from ? (t - from) / (to - from) : 0.0;
            at[i] = onLine(at[i - 1], at[i], share);
            weight[i] = weight[i - 1] + (weight[i] - weight[i - 1]) * share;
        }
    }
    return at[degree] * (1 / weight[degree]);
}

SpacePath polygon(const QVector<ControlPoint> &points)
{
    SpacePath path;
    for (const ControlPoint &point : points) {
        if (path.elements.empty())
            path.moveTo(point.at);
        else
            path.lineTo(point.at);
    }
    return path;
}

/// Adds an arc of the unit circle to a path that is at its start, both as seen through @p frame.
/// QPainterPath::arcTo() misses the ends of an arc by up to a thousandth of its radius.
void addUnitArc(QPainterPath &path, double start, double sweep, const QTransform &frame)
{
    // Written so that an angle that is not a number counts as one piece, which Qt leaves out.
    const int pieces = int(qBound(1.0, std::ceil(std::abs(sweep) / (M_PI / 4)), 8.0));
    const double step = sweep / pieces;
    const double reach = 4.0 / 3.0 * std::tan(step / 4);
    const auto at = [&frame](double angle, double ahead) {
        return frame.map(QPointF(std::cos(angle) - ahead * std::sin(angle),
                                 std::sin(angle) + ahead * std::cos(angle)));
    };
    for (int piece = 0; piece < pieces; ++piece) {
        const double from = start + piece * step;
        path.cubicTo(at(from, reach), at(from + step, -reach), at(from + step, 0));
    }
}

} // namespace

QPainterPath ellipseArc(QPointF center, QPointF major, double ratio, double start, double end)
{
    double sweep = std::fmod(end - start, 2 * M_PI);
    if (sweep <= 1e-9)
        sweep += 2 * M_PI;
    const QTransform frame(major.x(), major.y(), -major.y() * ratio, major.x() * ratio, center.x(),
                           center.y());
    QPainterPath path(frame.map(QPointF(std::cos(start), std::sin(start))));
    addUnitArc(path, start, sweep, frame);
    return path;
}

void addBulge(QPainterPath &path, QPointF to, double bulge)
{
    const QLineF chord(path.currentPosition(), to);
    const QPointF left(-chord.dy(), chord.dx());
    const QPointF center = chord.center() + left * ((1 - bulge * bulge) / (4 * bulge));
    const double radius = chord.length() * (1 + bulge * bulge) / (4 * std::abs(bulge));
    // An arc without a radius, or with one that is no number, is a line.
    if (std::abs(bulge) < 1e-9 || chord.isNull() || !std::isfinite(radius)) {
        path.lineTo(to);
        return;
    }
    const double start = std::atan2(chord.y1() - center.y(), chord.x1() - center.x());
    addUnitArc(path, start, 4 * std::atan(bulge),
               QTransform(radius, 0, 0, radius, center.x(), center.y()));
    path.setElementPositionAt(path.elementCount() - 1, to.x(), to.y());
}

SpacePath spline(int degree, const QVector<ControlPoint> &points, const QVector<double> &knots)
{
    const bool isSound = degree >= 1 && degree <= highestDegree && points.size() > degree
                         && knots.size() == points.size() + degree + 1
                         && std::is_sorted(knots.cbegin(), knots.cend())
                         && std::all_of(points.cbegin(), points.cend(),
                                        [](const ControlPoint &point) { return point.weight > 0; });
    if (!isSound)
        return polygon(points);

    SpacePath path;
    for (int span = degree; span < points.size(); ++span) {
        const double from = knots.at(span);
        const double to = knots.at(span + 1);
        if (to <= from)
            continue;
        if (path.elements.empty())
            path.moveTo(splinePoint(degree, points, knots, span, from));
        for (int step = 1; step <= spanSteps; ++step) {
            const double t = from + (to - from) * step / spanSteps;
            path.lineTo(splinePoint(degree, points, knots, span, t));
        }
    }
    return path;
}

SpacePath smoothCurve(const QVector<SpacePoint> &points)
{
    SpacePath path;
    if (points.isEmpty())
        return path;
    // The tangent in a point is parallel to the line between its neighbours.
    const auto tangent = [&points](int i) {
        return (points.at(qMin(i + 1, points.size() - 1)) - points.at(qMax(i - 1, 0))) * (1.0 / 6);
    };
    path.moveTo(points.first());
    for (int i = 1; i < points.size(); ++i)
        path.cubicTo(points.at(i - 1) + tangent(i - 1), points.at(i) - tangent(i), points.at(i));
    return path;
}

} // namespace Tessa
