#include "DepthPicture.h"

#include <algorithm>
#include <cmath>
#include <limits>

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

} // namespace

DepthPicture::DepthPicture(const QSize &size)
    : m_image(size, QImage::Format_ARGB32_Premultiplied)
    , m_depths(std::size_t(size.width()) * size.height(), std::numeric_limits<float>::lowest())
{
    m_image.fill(Qt::transparent);
}

void DepthPicture::addTriangle(const SpacePoint &one, const SpacePoint &two,
                               const SpacePoint &three, QRgb color)
{
    const SpacePoint normal = cross(two - one, three - one);
    if (std::abs(normal.z) < 1e-9)
        return;
    const double slopeX = -normal.x / normal.z;
    const double slopeY = -normal.y / normal.z;
    // Faces are moved back a little, as far as they reach: so lines in them stay visible.
    const double back = looseness * (std::abs(slopeX) + std::abs(slopeY));
    const double farthest = std::min({one.z, two.z, three.z});
    const double scale = std::max({std::abs(one.z), std::abs(two.z), std::abs(three.z)});
    const double rounding = 1e-5 * scale;

    const int width = m_image.width();
    const int bottom = pixelFrom(std::max({one.y, two.y, three.y}), m_image.height());
    for (int row = pixelFrom(std::min({one.y, two.y, three.y}), bottom); row < bottom; ++row) {
        const double y = row + 0.5;
        Span span;
        span.addEdge(one, two, y);
        span.addEdge(two, three, y);
        span.addEdge(three, one, y);
        const int end = pixelFrom(span.to, width);
        auto *colors = reinterpret_cast<QRgb *>(m_image.scanLine(row));
        float *depths = m_depths.data() + std::size_t(row) * width;
        for (int column = pixelFrom(span.from, width); column < end; ++column) {
            const double depth = one.z + slopeX * (column + 0.5 - one.x) + slopeY * (y - one.y);
            const auto stored = float(qMax(depth - back, farthest) - rounding);
            if (stored < depths[column])
                continue;
            depths[column] = stored;
            colors[column] = color;
        }
    }
}

bool DepthPicture::isVisible(const SpacePoint &point) const
{
    const double column = std::floor(point.x);
    const double row = std::floor(point.y);
    if (!(column >= 0 && row >= 0 && column < m_image.width() && row < m_image.height()))
        return true;
    return float(point.z) >= m_depths[std::size_t(row) * m_image.width() + std::size_t(column)];
}
