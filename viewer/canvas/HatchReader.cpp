// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "HatchReader.h"

#include "Curves.h"

#include <QLineF>
#include <QtMath>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Tessa {

namespace {

enum LoopFlag { IsExternal = 1, IsPolyline = 2, IsOutermost = 16 };
enum IslandStyle { FillsOutermost = 1, FillsAll = 2 };
enum EdgeType { LineEdge = 1, ArcEdge, EllipseEdge, SplineEdge };

double gap(QPointF one, QPointF other)
{
    return QLineF(one, other).length();
}

QPointF startOf(const QPainterPath &path)
{
    return path.elementAt(0);
}

/// Part of an outline, or a whole one that is a polyline.
struct Edge
{
    int type = 0;
    QVector<QPointF> points;
    QVector<QPointF> otherPoints; ///< ends of lines, half axes, or fit points
    QVector<double> reals;        ///< a radius, a ratio, or knots
    QVector<double> weights;
    QVector<double> bulges; ///< as many as points
    double startAngle = 0;  ///< degrees
    double endAngle = 0;
    bool isCounterclockwise = true;
    int degree = 0;

    void addGroup(int code, const std::string &value);
    QPainterPath path() const;

private:
    QPainterPath polyline() const;
    QPainterPath arc() const;
    QPainterPath curve() const;
};

void Edge::addGroup(int code, const std::string &value)
{
    const double real = dxfReal(value);
    switch (code) {
    case 10:
        points += QPointF(real, 0);
        bulges += 0;
        break;
    case 20:
        if (!points.isEmpty())
            points.last().setY(real);
        break;
    case 11:
        otherPoints += QPointF(real, 0);
        break;
    case 21:
        if (!otherPoints.isEmpty())
            otherPoints.last().setY(real);
        break;
    case 40:
        reals += real;
        break;
    case 42:
        weights += real;
        if (!bulges.isEmpty())
            bulges.last() = real;
        break;
    case 50:
        startAngle = real;
        break;
    case 51:
        endAngle = real;
        break;
    case 73:
        isCounterclockwise = dxfInt(value) != 0;
        break;
    case 94:
        degree = dxfInt(value);
        break;
    default:
        break;
    }
}

QPainterPath Edge::path() const
{
    QPainterPath path;
    const bool isWhole = !points.isEmpty() && !otherPoints.isEmpty();
    if (type == 0) {
        path = polyline();
    } else if (type == LineEdge && isWhole) {
        path.moveTo(points.first());
        path.lineTo(otherPoints.first());
    } else if ((type == ArcEdge || (type == EllipseEdge && isWhole)) && !reals.isEmpty()) {
        path = arc();
    } else if (type == SplineEdge) {
        path = curve();
    }
    return path;
}

QPainterPath Edge::polyline() const
{
    QPainterPath path;
    for (int i = 0; i < points.size(); ++i) {
        if (i == 0)
            path.moveTo(points.first());
        else
            addBulge(path, points.at(i), bulges.at(i - 1));
    }
    if (path.elementCount() > 0)
        addBulge(path, points.first(), bulges.last());
    return path;
}

QPainterPath Edge::arc() const
{
    const QPointF center = points.value(0);
    const bool isCircular = type == ArcEdge;
    const QPointF major = isCircular ? QPointF(reals.first(), 0) : otherPoints.first();
    const double ratio = isCircular ? 1 : reals.first();
    const auto parameter = [ratio](double degrees) {
        const double angle = qDegreesToRadians(degrees);
        return std::atan2(std::sin(angle) / ratio, std::cos(angle));
    };
    // The angles of a clockwise arc are those of its mirror image.
    return ellipseArc(center, major, isCounterclockwise ? ratio : -ratio, parameter(startAngle),
                      parameter(endAngle));
}

QPainterPath Edge::curve() const
{
    if (points.isEmpty()) {
        QVector<SpacePoint> fitPoints;
        for (const QPointF &point : otherPoints)
            fitPoints += SpacePoint{point.x(), point.y(), 0};
        return smoothCurve(fitPoints).seen({});
    }
    QVector<ControlPoint> controls;
    for (int i = 0; i < points.size(); ++i)
        controls += ControlPoint{{points.at(i).x(), points.at(i).y(), 0}, weights.value(i, 1)};
    return spline(degree, controls, reals).seen({});
}

/// Goes through the groups of a record.
class HatchReader
{
public:
    void addGroup(int code, const std::string &value);
    Hatch takeHatch();

private:
    struct Loop
    {
        int flags = 0;
        int edgeCount = 0;
        QPainterPath path;
    };

    void addPatternGroup(int code, const std::string &value);
    void finishEdge();
    bool isFilled(const Loop &loop) const;

    Hatch m_hatch;
    std::vector<Loop> m_loops;
    Edge m_edge;
    bool m_isBehindLoops = false;
    int m_islandStyle = 0;
};

void HatchReader::addGroup(int code, const std::string &value)
{
    if (code == 75 || code == 98) {
        m_isBehindLoops = true;
        m_islandStyle = code == 75 ? dxfInt(value) : m_islandStyle;
    } else if (m_isBehindLoops) {
        addPatternGroup(code, value);
    } else if (code == 92) {
        finishEdge();
        m_loops.emplace_back();
        m_loops.back().flags = dxfInt(value);
    } else if (m_loops.empty()) {
        if (code == 30)
            m_hatch.height = dxfReal(value);
        else if (code == 70)
            m_hatch.isSolid = dxfInt(value) != 0;
    } else if (code == 72 && !(m_loops.back().flags & IsPolyline)) {
        finishEdge();
        m_edge.type = dxfInt(value);
    } else {
        m_edge.addGroup(code, value);
    }
}

void HatchReader::addPatternGroup(int code, const std::string &value)
{
    if (code == 53) {
        const double angle = qDegreesToRadians(dxfReal(value));
        m_hatch.families.push_back({{}, {std::cos(angle), std::sin(angle)}, {}, {}});
    }
    if (m_hatch.families.empty())
        return;
    HatchLines &family = m_hatch.families.back();
    switch (code) {
    case 43:
        family.origin.setX(dxfReal(value));
        break;
    case 44:
        family.origin.setY(dxfReal(value));
        break;
    case 45:
        family.step.setX(dxfReal(value));
        break;
    case 46:
        family.step.setY(dxfReal(value));
        break;
    case 49:
        family.dashes.push_back(dxfReal(value));
        break;
    default:
        break;
    }
}

/// Joins the edge to its loop, whichever of its ends is next.
void HatchReader::finishEdge()
{
    QPainterPath edge = std::exchange(m_edge, {}).path();
    if (m_loops.empty() || edge.elementCount() == 0)
        return;
    Loop &loop = m_loops.back();
    if (loop.edgeCount++ == 0) {
        loop.path = edge;
        return;
    }
    const auto reach = [&edge](QPointF from) {
        return qMin(gap(from, startOf(edge)), gap(from, edge.currentPosition()));
    };
    if (loop.edgeCount == 2 && reach(startOf(loop.path)) < reach(loop.path.currentPosition()))
        loop.path = loop.path.toReversed();
    const QPointF end = loop.path.currentPosition();
    if (gap(end, edge.currentPosition()) < gap(end, startOf(edge)))
        edge = edge.toReversed();
    loop.path.connectPath(edge);
}

bool HatchReader::isFilled(const Loop &loop) const
{
    switch (m_islandStyle) {
    case FillsAll:
        return loop.flags & IsExternal;
    case FillsOutermost:
        return loop.flags & (IsExternal | IsOutermost);
    default:
        return true;
    }
}

Hatch HatchReader::takeHatch()
{
    finishEdge();
    // Where the flags do not tell the loops apart, all of them count.
    const bool hasFlags = std::any_of(m_loops.begin(), m_loops.end(),
                                      [this](const Loop &loop) { return isFilled(loop); });
    for (Loop &loop : m_loops) {
        if (hasFlags && !isFilled(loop))
            continue;
        loop.path.closeSubpath();
        m_hatch.area.addPath(loop.path);
    }
    const auto isNoFamily = [](const HatchLines &family) {
        const double distance = family.way.x() * family.step.y() - family.way.y() * family.step.x();
        return !(std::abs(distance) > 1e-9 * gap({}, family.step));
    };
    std::vector<HatchLines> &families = m_hatch.families;
    families.erase(std::remove_if(families.begin(), families.end(), isNoFamily), families.end());
    return std::move(m_hatch);
}

} // namespace

Hatch readHatch(const DxfRecord &record)
{
    HatchReader reader;
    for (const auto &[code, value] : record.groups)
        reader.addGroup(code, value);
    return reader.takeHatch();
}

} // namespace Tessa
