#pragma once

#include "Projection.h"

#include <QImage>
#include <QRgb>

#include <vector>

/// A picture of faces that remembers for each of its pixels how near the face is, so that whatever
/// is nearer covers what is farther off, in whichever order it comes. Coordinates are in pixels.
class DepthPicture
{
public:
    /// A transparent picture.
    explicit DepthPicture(const QSize &size);

    void addTriangle(const SpacePoint &one, const SpacePoint &two, const SpacePoint &three,
                     QRgb color);

    /// Whether no face covers the point; one that lies in a face is not covered by it.
    bool isVisible(const SpacePoint &point) const;

    const QImage &image() const { return m_image; }

private:
    QImage m_image;
    std::vector<float> m_depths; ///< in rows
};
