// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LeaderReader.h"

#include "Curves.h"

namespace Tessa {

namespace {

/// The width of an arrow in lengths of it, and how many of these the first line has at least: an
/// arrow without this room is left out.
constexpr double arrowWidth = 1.0 / 3;
constexpr double arrowRoom = 2;

QByteArray keyOf(const std::string &name)
{
    return QByteArray::fromStdString(name).toUpper();
}

QVector<SpacePoint> pointsOf(const DxfRecord &record)
{
    QVector<SpacePoint> points;
    for (const auto &[code, value] : record.groups) {
        if (code == 10)
            points += SpacePoint{dxfReal(value), 0, 0};
        else if (code == 20 && !points.isEmpty())
            points.last().y = dxfReal(value);
        else if (code == 30 && !points.isEmpty())
            points.last().z = dxfReal(value);
    }
    return points;
}

/// The value of a group; @p otherwise without one.
int flagOf(const DxfRecord &record, int code, int otherwise)
{
    for (const auto &[groupCode, value] : record.groups) {
        if (groupCode == code)
            return dxfInt(value);
    }
    return otherwise;
}

/// A path of lines; closed by a last one if it is to be filled.
Entity shapeOf(const QVector<SpacePoint> &points, bool isFilled)
{
    SpacePath path;
    path.moveTo(points.first());
    for (int i = 1; i < points.size(); ++i)
        path.lineTo(points.at(i));
    if (isFilled)
        path.close();
    Entity entity;
    entity.setPath(std::move(path));
    if (isFilled)
        entity.kind = Filling{};
    return entity;
}

} // namespace

void LeaderReader::ArrowStyle::set(int code, const std::string &value)
{
    if (code == 40)
        scale = dxfReal(value);
    else if (code == 41)
        size = dxfReal(value);
}

void LeaderReader::addStyle(const DxfRecord &record)
{
    ArrowStyle style;
    for (const auto &[code, value] : record.groups)
        style.set(code, value);
    m_styles[keyOf(record.name)] = style;
}

std::vector<Entity> LeaderReader::read(const DxfRecord &record, const SpacePoint &normal) const
{
    QVector<SpacePoint> points = pointsOf(record);
    if (points.size() < 2)
        return {};
    std::vector<Entity> parts;
    const SpacePoint tip = points.at(0);
    const SpacePoint way = points.at(1) - tip;
    const ArrowStyle style = styleOf(record);
    // A scale of 0 stands for one that depends on the sheet.
    const double size = style.size * (style.scale == 0 ? 1 : style.scale);
    if (flagOf(record, 71, 1) != 0 && size > 0 && length(way) >= arrowRoom * size) {
        const SpacePoint along = way * (size / length(way));
        const SpacePoint side = cross(normal, along) * (arrowWidth / 2);
        parts.push_back(shapeOf({tip, tip + along + side, tip + along - side}, true));
        points[0] = tip + along;
    }
    if (flagOf(record, 72, 0) == 0) {
        parts.push_back(shapeOf(points, false));
    } else {
        parts.emplace_back();
        parts.back().setPath(smoothCurve(points));
    }
    return parts;
}

/// What its dimension style says, or the leader itself, which does so in its extended data: a group
/// 1070 with the style's code, and behind it the value.
LeaderReader::ArrowStyle LeaderReader::styleOf(const DxfRecord &record) const
{
    ArrowStyle style;
    for (const auto &[code, value] : record.groups) {
        const auto known = code == 3 ? m_styles.find(keyOf(value)) : m_styles.end();
        if (known != m_styles.end())
            style = known->second;
    }
    int code = 0;
    for (const auto &[groupCode, value] : record.groups) {
        if (groupCode == 1070)
            code = dxfInt(value);
        else if (groupCode == 1040)
            style.set(code, value);
    }
    return style;
}

} // namespace Tessa
