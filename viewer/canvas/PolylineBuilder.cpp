// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "PolylineBuilder.h"

#include "Curves.h"

#include <algorithm>
#include <cstdlib>
#include <set>

namespace Tessa {

namespace {

/// Flags of polylines and their vertices.
enum PolylineFlag { IsClosed = 1, IsInSpace = 8, IsPolygonMesh = 16, IsPolyfaceMesh = 64 };
enum MeshFlag { IsClosedAcross = 32, IsSmoothed = 4 };
enum VertexFlag { IsSplineFrame = 16, IsMeshVertex = 64, IsFaceOrPoint = 128 };

/// Turns the corners of a polyface mesh as the file has them into numbers of points; faces with
/// fewer than three or with a corner that is not there are left out.
Edges resolveFaces(Faces &faces)
{
    Edges edges;
    std::set<std::array<int, 2>> known;
    std::vector<std::array<int, 4>> resolved;
    for (const std::array<int, 4> &corners : faces.corners) {
        std::vector<int> numbers;
        for (const int corner : corners) {
            if (corner != 0 && std::abs(qint64(corner)) <= qint64(faces.points.size()))
                numbers.push_back(std::abs(corner) - 1);
        }
        const auto wanted = 4 - std::count(corners.begin(), corners.end(), 0);
        if (numbers.size() < 3 || int(numbers.size()) != wanted)
            continue;
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            const int from = numbers[i];
            const int to = numbers[(i + 1) % numbers.size()];
            if (corners[i] > 0 && known.insert({qMin(from, to), qMax(from, to)}).second)
                edges.push_back({from, to});
        }
        resolved.push_back({numbers[0], numbers[1], numbers[2], numbers.back()});
    }
    faces.corners = std::move(resolved);
    return edges;
}

/// Makes the faces of a mesh whose vertices come in rows; none if there are too few or too many.
Edges netFaces(Faces &faces, int flags, const std::array<int, 4> &counts)
{
    const int firstCount = flags & IsSmoothed ? 2 : 0;
    const int rows = counts[firstCount];
    const int columns = counts[firstCount + 1];
    Edges edges;
    if (rows < 2 || columns < 2 || qint64(rows) * columns != qint64(faces.points.size()))
        return edges;
    const bool isRing = flags & IsClosed;
    const bool isTube = flags & IsClosedAcross;
    const auto point = [rows, columns](int row, int column) {
        return row % rows * columns + column % columns;
    };
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const bool hasNextRow = row + 1 < rows || isRing;
            const bool hasNextColumn = column + 1 < columns || isTube;
            if (hasNextRow)
                edges.push_back({point(row, column), point(row + 1, column)});
            if (hasNextColumn)
                edges.push_back({point(row, column), point(row, column + 1)});
            if (hasNextRow && hasNextColumn)
                faces.corners.push_back({point(row, column), point(row, column + 1),
                                         point(row + 1, column + 1), point(row + 1, column)});
        }
    }
    return edges;
}

} // namespace

void setFaces(Entity &entity, Faces &&faces, const Edges &edges)
{
    SpacePath path;
    int last = -1;
    for (const auto &[from, to] : edges) {
        if (from != last)
            path.moveTo(faces.points.at(std::size_t(from)));
        path.lineTo(faces.points.at(std::size_t(to)));
        last = to;
    }
    entity.setPath(std::move(path));
    entity.kind = std::make_unique<Faces>(std::move(faces));
}

PolylineBuilder::PolylineBuilder(Entity &&entity, const DxfRecord &record, int flags,
                                 const SpaceTransform &system, double height)
    : m_entity(std::move(entity))
    , m_flags(flags)
    , m_counts(record.counts)
    , m_system(system)
    , m_height(height)
{
}

void PolylineBuilder::addVertex(const DxfRecord &record, const SpacePoint &at, double bulge)
{
    if (record.kind == "VERTEX" && record.flags & IsSplineFrame)
        return;
    if (isMesh()) {
        m_faces.points.push_back(at);
    } else if (m_flags & IsInSpace) {
        if (m_spacePath.elements.empty())
            m_spacePath.moveTo(at);
        else
            m_spacePath.lineTo(at);
    } else {
        if (m_path.elementCount() == 0)
            m_path.moveTo(at.x, at.y);
        else
            addBulge(m_path, QPointF(at.x, at.y), m_bulge);
        m_bulge = bulge;
    }
}

/// Its corners count from 1, and are negative where an edge that does not show begins.
void PolylineBuilder::addMeshFace(const DxfRecord &record)
{
    const int kind = record.flags & (IsMeshVertex | IsFaceOrPoint);
    if (m_flags & IsPolyfaceMesh && kind == IsFaceOrPoint)
        m_faces.corners.push_back(record.counts);
}

bool PolylineBuilder::isMesh() const
{
    return m_flags & (IsPolygonMesh | IsPolyfaceMesh);
}

std::optional<Entity> PolylineBuilder::takeEntity()
{
    const bool hasShape = isMesh() ? takeMesh() : takePath();
    if (!hasShape)
        return std::nullopt;
    return std::move(m_entity);
}

bool PolylineBuilder::takeMesh()
{
    const Edges edges =
            m_flags & IsPolyfaceMesh ? resolveFaces(m_faces) : netFaces(m_faces, m_flags, m_counts);
    if (m_faces.corners.empty())
        return false;
    setFaces(m_entity, std::move(m_faces), edges);
    return true;
}

bool PolylineBuilder::takePath()
{
    if (m_flags & IsClosed) {
        if (m_path.elementCount() > 0)
            addBulge(m_path, m_path.elementAt(0), m_bulge);
        m_path.closeSubpath();
        m_spacePath.close();
    }
    if (m_path.elementCount() > 0)
        m_spacePath = SpacePath::placed(m_path, m_system, m_height);
    if (m_spacePath.elements.empty())
        return false;
    m_entity.setPath(std::move(m_spacePath));
    return true;
}

} // namespace Tessa
