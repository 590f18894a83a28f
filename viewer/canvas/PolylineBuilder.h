// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DxfRecord.h"
#include "Geometry.h"

#include <optional>

namespace Tessa {

/// @file
/// Polylines and the meshes of faces that a file keeps as polylines.

/// Lines between points of faces.
using Edges = std::vector<std::array<int, 2>>;

/// Gives an entity faces with some edges, each of which is a line between two of their points.
void setFaces(Entity &entity, Faces &&faces, const Edges &edges);

/// Makes a polyline of its vertices, which come one by one.
class PolylineBuilder
{
public:
    /// @param entity of no shape yet
    /// @param record of the polyline
    /// @param flags  of the polyline
    /// @param system the coordinate system of its plane, if it has one
    PolylineBuilder(Entity &&entity, const DxfRecord &record, int flags,
                    const SpaceTransform &system, double height);

    /// @param record of the vertex, or of the polyline that has it
    /// @param bulge  of the arc to the next vertex, as for addBulge()
    void addVertex(const DxfRecord &record, const SpacePoint &at, double bulge);

    /// A face of a mesh is a vertex without a place, of which dxflib does not tell.
    void addMeshFace(const DxfRecord &record);

    bool isMesh() const;

    /// The entity with its shape, to be taken once; nothing if the vertices make none.
    std::optional<Entity> takeEntity();

private:
    bool takeMesh();
    bool takePath();

    Entity m_entity;
    const int m_flags;
    const std::array<int, 4> m_counts;
    const SpaceTransform m_system;
    const double m_height;
    QPainterPath m_path;   ///< in the plane of the polyline
    SpacePath m_spacePath; ///< instead, if it is in no plane
    double m_bulge = 0;
    Faces m_faces; ///< instead, if it is a mesh
};

} // namespace Tessa
