// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Projection.h"

#include <QImage>
#include <QPainterPath>
#include <QRgb>

#include <vector>

namespace Tessa {

/// A picture of faces that remembers for each of its pixels how near the face is, so that whatever
/// is nearer covers what is farther off, in whichever order it comes. Coordinates are in pixels.
class DepthPicture
{
public:
    /// A transparent picture.
    explicit DepthPicture(const QSize &size);
    Q_DISABLE_COPY(DepthPicture)

    void addTriangle(const SpacePoint &one, const SpacePoint &two, const SpacePoint &three,
                     QRgb color);

    /// An area that is flat.
    /// @param outline its outline in the picture, by the odd-even rule
    /// @param points  those that make its outline in space, control points of curves included
    void addArea(const QPainterPath &outline, const std::vector<SpacePoint> &points, QRgb color);

    /// Whether no face covers the point; one that lies in a face is not covered by it.
    bool isVisible(const SpacePoint &point) const;

    const QImage &image() const { return m_image; }

private:
    void addPixel(int column, int row, float depth, QRgb color);

    QImage m_image;
    QRgb *m_colors;              ///< its pixels
    int m_stride;                ///< of its rows, in pixels
    std::vector<float> m_depths; ///< in rows
};

} // namespace Tessa
