// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Curves.h"
#include "DrawingText.h"
#include "DxfRecord.h"
#include "Geometry.h"
#include "LeaderReader.h"
#include "PolylineBuilder.h"

#include <QMap>

#include <dxflib/dl_creationadapter.h>

#include <optional>
#include <unordered_map>

namespace Tessa {

struct Drawing;

/// Receives the entities from dxflib, which calls it after each one was read to its end.
class EntityReader : public DL_CreationAdapter
{
public:
    explicit EntityReader(const Drawing &drawing);

    Geometry takeGeometry();
    QStringList warnings() const;

    void processCodeValuePair(unsigned int code, const std::string &value) override;

    void addLinetype(const DL_LinetypeData &data) override;
    void setVariableDouble(const std::string &name, double value, int code) override;

    void addBlock(const DL_BlockData &data) override;
    void endBlock() override { m_block = 0; }
    void addInsert(const DL_InsertData &data) override;

    void addPoint(const DL_PointData &data) override;
    void addLine(const DL_LineData &data) override;
    void addRay(const DL_RayData &data) override;
    void addXLine(const DL_XLineData &data) override;
    void addCircle(const DL_CircleData &data) override;
    void addArc(const DL_ArcData &data) override;
    void addEllipse(const DL_EllipseData &data) override;
    void addSolid(const DL_SolidData &data) override;
    void addTrace(const DL_TraceData &data) override { addSolid(data); }
    void add3dFace(const DL_3dFaceData &data) override;

    void addPolyline(const DL_PolylineData &data) override;
    void addVertex(const DL_VertexData &data) override;
    void addHatch(const DL_HatchData &) override;
    void addLeader(const DL_LeaderData &) override;
    void addSpline(const DL_SplineData &data) override;
    void addControlPoint(const DL_ControlPointData &data) override;
    void addKnot(const DL_KnotData &data) override { m_spline->knots += data.k; }
    void addFitPoint(const DL_FitPointData &data) override;
    void endEntity() override;
    void endSequence() override { finishPolyline(); }

    void addText(const DL_TextData &data) override;
    void addAttribute(const DL_AttributeData &data) override;
    void addMTextChunk(const std::string &text) override { m_textStart += text; }
    void addMText(const DL_MTextData &data) override;

    // A dimension is drawn by a block of its own, whatever its kind.
    using Dimension = DL_DimensionData;
    void addDimAlign(const Dimension &, const DL_DimAlignedData &) override { addDimension(); }
    void addDimLinear(const Dimension &, const DL_DimLinearData &) override { addDimension(); }
    void addDimRadial(const Dimension &, const DL_DimRadialData &) override { addDimension(); }
    void addDimDiametric(const Dimension &, const DL_DimDiametricData &) override
    {
        addDimension();
    }
    void addDimAngular(const Dimension &, const DL_DimAngular2LData &) override { addDimension(); }
    void addDimAngular3P(const Dimension &, const DL_DimAngular3PData &) override
    {
        addDimension();
    }
    void addDimOrdinate(const Dimension &, const DL_DimOrdinateData &) override { addDimension(); }

private:
    struct Spline
    {
        int degree;
        int flags;
        QVector<ControlPoint> points;
        QVector<double> knots;
        QVector<SpacePoint> fitPoints;
    };

    void checkSize(unsigned int code, const std::string &count) const;
    void finishRecord();
    EntityStyle style();
    SpaceTransform system() const;
    QString decoded(const std::string &bytes) const;
    int layerIndex(const std::string &name);
    int blockIndex(const std::string &name);
    int linetypeIndex(const std::string &name);

    bool isShown() const;
    void add(Entity entity);
    void addPath(SpacePath &&path, Entity::Kind kind = Line{});
    void add(PlacedText &&text);
    void add(BlockInsert &&insert);
    void addDimension();
    void addEndless(const SpacePoint &from, const SpacePoint &way, Reach reach);
    void addAsBlock(std::vector<Entity> &&parts);
    void finishPolyline();
    void finishSpline();

    const Drawing &m_drawing;
    const TextSetter m_setter;
    const qint64 m_fileSize;

    Geometry m_geometry;
    int m_block = 0;
    std::vector<SpacePoint> m_bases;
    std::unordered_map<std::string, int> m_blockIndexes;
    std::unordered_map<std::string, int> m_layerIndexes;
    std::unordered_map<std::string, int> m_linetypeIndexes;
    LeaderReader m_leaders;

    int m_recordCount = 0;
    DxfRecord m_record;   ///< the one that is being read
    DxfRecord m_finished; ///< the one that dxflib tells of
    bool m_isInDrawing = false;
    bool m_hasEnded = false; ///< dxflib reads on behind the end mark
    QMap<QString, int> m_unknown;

    std::optional<PolylineBuilder> m_polyline;
    std::optional<Spline> m_spline;
    std::string m_textStart;
};

} // namespace Tessa
