// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "TextReader.h"

#include <dxflib/dl_entities.h>

#include <cmath>

namespace Tessa {

namespace {

enum TextFlag { IsBackward = 2, IsUpsideDown = 4 };

} // namespace

PlacedText placedText(const DL_TextData &data, const QString &text, const SpaceTransform &system,
                      const TextSetter &setter)
{
    const QPointF start(data.ipx, data.ipy);
    const QPointF end(data.apx, data.apy);
    const bool isSpread = data.hJustification == Aligned || data.hJustification == Fit;
    const bool isAtStart =
            isSpread || (data.hJustification == Left && data.vJustification == Baseline);
    const TextLines lines =
            setter.aligned(plainText(text), data.hJustification, data.vJustification);
    double yScale = data.height / setter.capHeight();
    double xScale = yScale * data.xScaleFactor;
    double angle = data.angle;
    if (isSpread) {
        const QPointF way = end - start;
        angle = std::atan2(way.y(), way.x());
        const double stretch = std::hypot(way.x(), way.y()) / lines.bounds.width() / xScale;
        xScale *= stretch;
        if (data.hJustification == Aligned)
            yScale *= stretch;
    }
    if (data.textGenerationFlags & IsBackward)
        xScale = -xScale;
    if (data.textGenerationFlags & IsUpsideDown)
        yScale = -yScale;
    const QPointF at = isAtStart ? start : end;
    return {lines, SpaceTransform::fromPlane(QTransform::fromScale(xScale, -yScale)
                                             * QTransform().rotateRadians(angle))
                           * SpaceTransform::fromTranslate({at.x(), at.y(), data.ipz}) * system};
}

PlacedText placedText(const DL_MTextData &data, const QString &text, double rotation,
                      const SpaceTransform &system, const TextSetter &setter)
{
    const double scale = data.height / setter.capHeight();
    const bool hasDirection = data.dirx != 0 || data.diry != 0 || data.dirz != 0;
    SpaceTransform frame = SpaceTransform::fromPlane(QTransform().rotate(rotation)) * system;
    if (hasDirection) {
        const SpacePoint direction{data.dirx, data.diry, data.dirz};
        const SpacePoint x = direction * (1 / length(direction));
        const SpacePoint z = system.map(SpacePoint{0, 0, 1});
        frame = SpaceTransform::fromAxes(x, cross(z, x), z);
    }
    return {setter.broken(paragraphs(text), data.width / scale, data.lineSpacingFactor,
                          data.attachmentPoint),
            SpaceTransform::fromPlane(QTransform::fromScale(scale, -scale)) * frame
                    * SpaceTransform::fromTranslate({data.ipx, data.ipy, data.ipz})};
}

} // namespace Tessa
