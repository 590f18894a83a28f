// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SpacePath.h"

#include <QPainterPath>
#include <QVector>

namespace Tessa {

/// @file
/// The curves of a drawing. The y axis points up, angles are in radians and run
/// counter-clockwise.

/// An arc of the ellipse around @p center with the half axis @p major and another one, @p ratio as
/// long, at a right angle to it. The arc runs from the parameter @p start to @p end, and all the way
/// round where both are the same.
QPainterPath ellipseArc(QPointF center, QPointF major, double ratio, double start, double end);

/// Adds an arc to @p path that ends in exactly @p to. The bulge is the tangent of a quarter of the
/// arc's angle; it is positive for a turn to the left, and 0 makes a straight line.
void addBulge(QPainterPath &path, QPointF to, double bulge);

/// A control point of a spline.
struct ControlPoint
{
    SpacePoint at;
    double weight = 1.0;
};

/// The B-spline of that degree; where the knots do not fit it, the line through its control points.
SpacePath spline(int degree, const QVector<ControlPoint> &points, const QVector<double> &knots);

/// A smooth curve through all the points.
SpacePath smoothCurve(const QVector<SpacePoint> &points);

} // namespace Tessa
