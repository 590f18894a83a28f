// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DepthPicture.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Tessa {

namespace {

/// By how many pixels the places of a point and of a face may differ.
constexpr double looseness = 1.5;

/// Where a line across the picture runs through a triangle.
struct Span
{
    double from = std::numeric_limits<double>::max();
    double to = std::numeric_limits<double>::lowest();

    void addEdge(const SpacePoint &start, const SpacePoint &end, double y)
    {
        if ((start.y <= y) == (end.y <= y))
            return;
        const double x = start.x + (end.x - start.x) * (y - start.y) / (end.y - start.y);
        from = qMin(from, x);
        to = qMax(to, x);
    }
};

/// The first pixel whose middle is not before @p place.
int pixelFrom(double place, int count)
{
    return int(qBound(0.0, std::ceil(place - 0.5), double(count)));
}

/// The depths of a face.
class FacePlane
{
public:
    FacePlane(const SpacePoint *points, std::size_t count, const SpacePoint &normal)
        : m_at(points[0])
        , m_isEdgeOn(!(std::abs(normal.z) >= 1e-9))
        , m_slopeX(-normal.x / normal.z)
        , m_slopeY(-normal.y / normal.z)
        , m_back(looseness * (std::abs(m_slopeX) + std::abs(m_slopeY)))
        , m_farthest(m_at.z)
    {
        double scale = 0;
        for (std::size_t i = 0; i < count; ++i) {
            m_farthest = qMin(m_farthest, points[i].z);
            scale = qMax(scale, std::abs(points[i].z));
        }
        m_rounding = 1e-5 * scale;
    }

    bool isEdgeOn() const { return m_isEdgeOn; }

    /// Moved back a little, as far as the face reaches: so lines in it stay visible.
    float depthAt(double x, double y) const
    {
        const double depth = m_at.z + m_slopeX * (x - m_at.x) + m_slopeY * (y - m_at.y);
        return float(qMax(depth - m_back, m_farthest) - m_rounding);
    }

private:
    const SpacePoint &m_at;
    const bool m_isEdgeOn;
    const double m_slopeX;
    const double m_slopeY;
    const double m_back;
    double m_farthest;
    double m_rounding;
};

/// The normal of a plane, from those of its points that span it best.
SpacePoint largestNormal(const std::vector<SpacePoint> &points)
{
    SpacePoint largest;
    for (std::size_t i = 2; i < points.size(); ++i) {
        const SpacePoint normal = cross(points[i - 1] - points[0], points[i] - points[0]);
        if (length(normal) > length(largest))
            largest = normal;
    }
    return largest;
}

} // namespace

DepthPicture::DepthPicture(const QSize &size)
    : m_image(size, QImage::Format_ARGB32_Premultiplied)
    , m_depths(std::size_t(size.width()) * size.height(), std::numeric_limits<float>::lowest())
{
    m_image.fill(Qt::transparent);
    m_colors = reinterpret_cast<QRgb *>(m_image.bits());
    m_stride = m_image.bytesPerLine() / int(sizeof(QRgb));
}

void DepthPicture::addTriangle(const SpacePoint &one, const SpacePoint &two,
                               const SpacePoint &three, QRgb color)
{
    const SpacePoint points[] = {one, two, three};
    const FacePlane plane(points, 3, cross(two - one, three - one));
    if (plane.isEdgeOn())
        return;
    const int bottom = pixelFrom(std::max({one.y, two.y, three.y}), m_image.height());
    for (int row = pixelFrom(std::min({one.y, two.y, three.y}), bottom); row < bottom; ++row) {
        const double y = row + 0.5;
        Span span;
        span.addEdge(one, two, y);
        span.addEdge(two, three, y);
        span.addEdge(three, one, y);
        const int end = pixelFrom(span.to, m_image.width());
        for (int column = pixelFrom(span.from, m_image.width()); column < end; ++column)
            addPixel(column, row, plane.depthAt(column + 0.5, y), color);
    }
}

void DepthPicture::addArea(const QPainterPath &outline, const std::vector<SpacePoint> &points,
                           QRgb color)
{
    const FacePlane plane(points.data(), points.size(), largestNormal(points));
    const QRect bounds = (outline.boundingRect() & QRectF(m_image.rect())).toAlignedRect();
    if (plane.isEdgeOn() || bounds.isEmpty())
        return;
    QImage mask(bounds.size(), QImage::Format_Alpha8);
    mask.fill(0);
    QPainter painter(&mask);
    painter.translate(-bounds.topLeft());
    painter.fillPath(outline, Qt::black);
    painter.end();
    for (int row = bounds.top(); row <= bounds.bottom(); ++row) {
        const uchar *isCovered = mask.constScanLine(row - bounds.top());
        for (int column = bounds.left(); column <= bounds.right(); ++column) {
            if (isCovered[column - bounds.left()])
                addPixel(column, row, plane.depthAt(column + 0.5, row + 0.5), color);
        }
    }
}

void DepthPicture::addPixel(int column, int row, float depth, QRgb color)
{
    float &nearest =
            m_depths[std::size_t(row) * std::size_t(m_image.width()) + std::size_t(column)];
    if (depth < nearest)
        return;
    nearest = depth;
    m_colors[std::size_t(row) * std::size_t(m_stride) + std::size_t(column)] = color;
}

bool DepthPicture::isVisible(const SpacePoint &point) const
{
    const double column = std::floor(point.x);
    const double row = std::floor(point.y);
    if (!(column >= 0 && row >= 0 && column < m_image.width() && row < m_image.height()))
        return true;
    return float(point.z) >= m_depths[std::size_t(row) * m_image.width() + std::size_t(column)];
}

} // namespace Tessa
