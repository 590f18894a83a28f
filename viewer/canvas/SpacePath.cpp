// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "SpacePath.h"

#include <algorithm>

namespace Tessa {

void SpacePath::moveTo(const SpacePoint &to)
{
    elements.push_back({QPainterPath::MoveToElement, to});
}

void SpacePath::lineTo(const SpacePoint &to)
{
    elements.push_back({QPainterPath::LineToElement, to});
}

void SpacePath::cubicTo(const SpacePoint &control, const SpacePoint &control2, const SpacePoint &to)
{
    elements.push_back({QPainterPath::CurveToElement, control});
    elements.push_back({QPainterPath::CurveToDataElement, control2});
    elements.push_back({QPainterPath::CurveToDataElement, to});
}

void SpacePath::close()
{
    if (!elements.empty() && !(elements.front().at == elements.back().at))
        lineTo(elements.front().at);
}

bool SpacePath::isLevel() const
{
    return std::all_of(elements.begin(), elements.end(), [this](const Element &element) {
        return element.at.z == elements.front().at.z;
    });
}

QPainterPath SpacePath::seen(const SpaceTransform &toPicture) const
{
    QPainterPath path;
    const auto at = [this, &toPicture](std::size_t i) {
        const SpacePoint point = toPicture.map(elements[i].at);
        return QPointF(point.x, point.y);
    };
    for (std::size_t i = 0; i < elements.size(); ++i) {
        switch (elements[i].type) {
        case QPainterPath::MoveToElement:
            path.moveTo(at(i));
            break;
        case QPainterPath::LineToElement:
            path.lineTo(at(i));
            break;
        case QPainterPath::CurveToElement:
            path.cubicTo(at(i), at(i + 1), at(i + 2));
            break;
        case QPainterPath::CurveToDataElement:
            break;
        }
    }
    return path;
}

SpacePath SpacePath::placed(const QPainterPath &path, const SpaceTransform &system, double height)
{
    SpacePath result;
    result.elements.reserve(path.elementCount());
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        result.elements.push_back(
                {element.type, system.map(SpacePoint{element.x, element.y, height})});
    }
    return result;
}

} // namespace Tessa
