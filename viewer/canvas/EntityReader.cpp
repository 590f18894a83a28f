// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "EntityReader.h"

#include "Drawing.h"
#include "HatchReader.h"
#include "TextReader.h"

#include <KcHost/KcHost.h>

#include <QtMath>

#include <dxflib/dl_dxf.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace Tessa {

namespace {

/// What the file may hold without the viewer being silent about something: the entities that are
/// drawn, and the records around them.
constexpr const char *knownRecords[] = {
        "3DFACE",     "ARC",    "ATTDEF", "ATTRIB",   "BLOCK",  "CIRCLE",   "DIMENSION",
        "ELLIPSE",    "ENDBLK", "ENDSEC", "HATCH",    "INSERT", "LEADER",   "LINE",
        "LWPOLYLINE", "MTEXT",  "POINT",  "POLYLINE", "RAY",    "SECTION",  "SEQEND",
        "SOLID",      "SPLINE", "TEXT",   "TRACE",    "VERTEX", "VIEWPORT", "XLINE",
};

enum SplineFlag { IsClosedSpline = 1 };
enum AttributeFlag { IsInvisible = 1 };

/// The counts of an array are numbers of 16 bits in the file.
constexpr int mostCopies = 32767;

} // namespace

EntityReader::EntityReader(const Drawing &drawing)
    : m_drawing(drawing)
    , m_fileSize(KcHost::fileContent(*drawing.database).size())
{
    m_geometry.blocks.emplace_back();
    m_bases.emplace_back();
}

Geometry EntityReader::takeGeometry()
{
    // An insert may come before its block, so only now the base points of all blocks are known.
    for (Block &block : m_geometry.blocks) {
        for (Entity &entity : block.entities) {
            auto *insert = std::get_if<std::unique_ptr<BlockInsert>>(&entity.kind);
            if (!insert)
                continue;
            const SpacePoint base = m_bases.at((*insert)->block);
            SpaceTransform &placement = (*insert)->placement;
            placement = SpaceTransform::fromTranslate(base * -1) * placement;
        }
    }
    return std::move(m_geometry);
}

QStringList EntityReader::warnings() const
{
    QStringList kinds;
    for (auto kind = m_unknown.cbegin(); kind != m_unknown.cend(); ++kind)
        kinds += QStringLiteral("%1 %2").arg(kind.value()).arg(kind.key());
    if (kinds.isEmpty())
        return {};
    return {QStringLiteral("Entities of these kinds are not drawn: %1.")
                    .arg(kinds.join(QStringLiteral(", ")))};
}

void EntityReader::processCodeValuePair(unsigned int code, const std::string &value)
{
    if (code == 0) {
        m_finished = std::move(m_record);
        m_record = {};
        m_record.number = m_recordCount++;
        m_record.kind = value;
        finishRecord();
    } else {
        if (code == 9)
            m_finished = m_record; // dxflib takes a variable for the record's end
        checkSize(code, value);
        m_record.addGroup(int(code), value);
    }
}

/// dxflib makes room for as many points or knots as an entity says that it has, and does not survive
/// it where there is not so much memory. The file itself tells how many there may be.
void EntityReader::checkSize(unsigned int code, const std::string &count) const
{
    constexpr int leastBytesPerPoint = 8;
    const std::string &kind = m_record.kind;
    const bool isSize = (kind == "LWPOLYLINE" && code == 90) || (kind == "LEADER" && code == 76)
                        || (kind == "SPLINE" && code >= 72 && code <= 74);
    // The least number of all becomes the largest one there.
    if (isSize && qAbs(qint64(dxfInt(count))) > m_fileSize / leastBytesPerPoint)
        throw std::length_error(kind);
}

void EntityReader::finishRecord()
{
    if (m_polyline && m_finished.kind == "VERTEX")
        m_polyline->addMeshFace(m_finished);
    m_hasEnded |= m_finished.kind == "EOF";
    if (m_finished.kind == "SECTION")
        m_isInDrawing =
                !m_hasEnded && (m_finished.name == "ENTITIES" || m_finished.name == "BLOCKS");
    else if (m_finished.kind == "ENDSEC")
        m_isInDrawing = false;
    else if (m_finished.kind == "DIMSTYLE")
        m_leaders.addStyle(m_finished);
    else if (m_isInDrawing && m_finished.isVisible()
             && !std::binary_search(std::begin(knownRecords), std::end(knownRecords),
                                    m_finished.kind))
        ++m_unknown[QString::fromLatin1(m_finished.kind.c_str())];
}

EntityStyle EntityReader::style()
{
    EntityStyle style;
    style.layer = layerIndex(m_finished.layer);
    style.color = entityColor(attributes.getColor(), attributes.getColor24());
    style.lineWeight = attributes.getWidth();
    style.linetype = linetypeIndex(attributes.getLinetype());
    style.linetypeScale = attributes.getLinetypeScale();
    return style;
}

/// Maps the coordinate system of the entity, whose z axis is its extrusion, to that of the drawing.
SpaceTransform EntityReader::system() const
{
    const double *direction = extrusion->getDirection();
    const double reach = std::hypot(direction[0], direction[1], direction[2]);
    if (reach == 0 || direction[2] == reach)
        return {};
    const SpacePoint z{direction[0] / reach, direction[1] / reach, direction[2] / reach};
    // The x axis lies level, or, where the z axis is all but vertical, along the drawing's.
    const bool isUpright = std::abs(z.x) < 1.0 / 64 && std::abs(z.y) < 1.0 / 64;
    const SpacePoint along = cross(isUpright ? SpacePoint{0, 1, 0} : SpacePoint{0, 0, 1}, z);
    const SpacePoint x = along * (1 / length(along));
    return SpaceTransform::fromAxes(x, cross(z, x), z);
}

QString EntityReader::decoded(const std::string &bytes) const
{
    return KcHost::decodeText(*m_drawing.database, QByteArray::fromStdString(bytes));
}

int EntityReader::layerIndex(const std::string &name)
{
    const auto known = m_layerIndexes.find(name);
    if (known != m_layerIndexes.end())
        return known->second;
    const int index = m_drawing.layers.indexOf(name.empty() ? QStringLiteral("0") : decoded(name));
    m_layerIndexes.emplace(name, index);
    return index;
}

int EntityReader::blockIndex(const std::string &name)
{
    const std::string key = decoded(name).toCaseFolded().toStdString();
    const auto known = m_blockIndexes.find(key);
    if (known != m_blockIndexes.end())
        return known->second;
    const int index = int(m_geometry.blocks.size());
    m_geometry.blocks.emplace_back();
    m_bases.emplace_back();
    m_blockIndexes.emplace(key, index);
    return index;
}

int EntityReader::linetypeIndex(const std::string &name)
{
    const auto known = m_linetypeIndexes.find(name);
    if (known != m_linetypeIndexes.end())
        return known->second;
    const int index = m_geometry.entityLinetypeOf(decoded(name));
    m_linetypeIndexes.emplace(name, index);
    return index;
}

void EntityReader::setVariableDouble(const std::string &name, double value, int)
{
    if (name == "$LTSCALE")
        m_geometry.linetypeScale = value;
}

void EntityReader::addLinetype(const DL_LinetypeData &data)
{
    // The record tells of all dashes; dxflib leaves out those behind a text or a shape.
    const QString name = decoded(data.name);
    const bool isDashed = std::any_of(m_finished.dashes.begin(), m_finished.dashes.end(),
                                      [](double dash) { return dash != 0; });
    if (linetypeIndex(data.name) == 0
        && name.compare(m_geometry.linetypes.front().name, Qt::CaseInsensitive) != 0)
        m_geometry.linetypes.push_back(
                {name, isDashed ? m_finished.dashes : std::vector<double>()});
    m_linetypeIndexes.clear();
}

/// dxflib tells of entities wherever they stand; the database knows those of two sections.
bool EntityReader::isShown() const
{
    return m_isInDrawing && m_finished.isVisible();
}

void EntityReader::add(Entity entity)
{
    if (!isShown())
        return;
    entity.style = style();
    entity.record = m_finished.number;
    m_geometry.blocks.at(m_block).entities.push_back(std::move(entity));
}

void EntityReader::addPath(SpacePath &&path, Entity::Kind kind)
{
    if (path.elements.empty())
        return;
    Entity entity;
    entity.setPath(std::move(path));
    entity.kind = std::move(kind);
    add(std::move(entity));
}

void EntityReader::addBlock(const DL_BlockData &data)
{
    m_block = blockIndex(data.name);
    m_bases.at(m_block) = SpacePoint{data.bpx, data.bpy, data.bpz};
}

void EntityReader::addInsert(const DL_InsertData &data)
{
    const SpaceTransform turn = SpaceTransform::fromPlane(QTransform().rotate(data.angle))
                                * SpaceTransform::fromTranslate({data.ipx, data.ipy, data.ipz})
                                * system();
    BlockInsert insert;
    insert.block = blockIndex(data.name);
    insert.placement =
            SpaceTransform::fromAxes({data.sx, 0, 0}, {0, data.sy, 0}, {0, 0, data.sz}) * turn;
    insert.columns = qBound(1, data.cols, mostCopies);
    insert.rows = qBound(1, data.rows, mostCopies);
    insert.columnStep = turn.map(SpacePoint{data.colSp, 0, 0}) - turn.map(SpacePoint());
    insert.rowStep = turn.map(SpacePoint{0, data.rowSp, 0}) - turn.map(SpacePoint());
    add(std::move(insert));
}

void EntityReader::addDimension()
{
    BlockInsert insert;
    insert.block = blockIndex(m_finished.name);
    add(std::move(insert));
}

void EntityReader::addPoint(const DL_PointData &data)
{
    SpacePath path;
    path.moveTo({data.x, data.y, data.z});
    addPath(std::move(path));
}

void EntityReader::addLine(const DL_LineData &data)
{
    SpacePath path;
    path.moveTo({data.x1, data.y1, data.z1});
    path.lineTo({data.x2, data.y2, data.z2});
    addPath(std::move(path));
}

void EntityReader::addRay(const DL_RayData &data)
{
    addEndless({data.bx, data.by, data.bz}, {data.dx, data.dy, data.dz}, Reach::Ray);
}

void EntityReader::addXLine(const DL_XLineData &data)
{
    addEndless({data.bx, data.by, data.bz}, {data.dx, data.dy, data.dz}, Reach::EndlessLine);
}

void EntityReader::addEndless(const SpacePoint &from, const SpacePoint &way, Reach reach)
{
    if (!std::isnormal(length(way))) {
        ++m_unknown[QString::fromLatin1(m_finished.kind.c_str())
                    + QStringLiteral(" without a direction")];
        return;
    }
    SpacePath path;
    path.moveTo(from);
    path.lineTo(from + way * (1 / length(way)));
    addPath(std::move(path), Line{reach});
}

void EntityReader::addCircle(const DL_CircleData &data)
{
    const QPointF center(data.cx, data.cy);
    addPath(SpacePath::placed(ellipseArc(center, QPointF(data.radius, 0), 1, 0, 0), system(),
                              data.cz));
}

void EntityReader::addArc(const DL_ArcData &data)
{
    const QPointF center(data.cx, data.cy);
    addPath(SpacePath::placed(ellipseArc(center, QPointF(data.radius, 0), 1,
                                         qDegreesToRadians(data.angle1),
                                         qDegreesToRadians(data.angle2)),
                              system(), data.cz));
}

void EntityReader::addEllipse(const DL_EllipseData &data)
{
    // The unit circle, in a system of which the half axes are axes.
    const SpacePoint major{data.mx, data.my, data.mz};
    const SpacePoint normal = system().map(SpacePoint{0, 0, 1});
    const SpaceTransform frame =
            SpaceTransform::fromAxes(major, cross(normal, major) * data.ratio, normal)
            * SpaceTransform::fromTranslate({data.cx, data.cy, data.cz});
    addPath(SpacePath::placed(ellipseArc({}, {1, 0}, 1, data.angle1, data.angle2), frame, 0));
}

void EntityReader::addSolid(const DL_SolidData &data)
{
    // The corners come in the order of the letter Z.
    QPolygonF corners;
    for (const int corner : {0, 1, 3, 2})
        corners += QPointF(data.x[corner], data.y[corner]);
    QPainterPath path;
    path.addPolygon(corners);
    path.closeSubpath();
    addPath(SpacePath::placed(path, system(), data.z[0]), Filling{});
}

void EntityReader::add3dFace(const DL_3dFaceData &data)
{
    Faces faces;
    for (int corner = 0; corner < 4; ++corner)
        faces.points.push_back({data.x[corner], data.y[corner], data.z[corner]});
    faces.corners.push_back({0, 1, 2, 3});
    Edges edges;
    for (int edge = 0; edge < 4; ++edge) {
        if (!(m_finished.flags & (1 << edge)))
            edges.push_back({edge, (edge + 1) % 4});
    }
    Entity entity;
    setFaces(entity, std::move(faces), edges);
    add(std::move(entity));
}

void EntityReader::addPolyline(const DL_PolylineData &data)
{
    if (!isShown())
        return;
    // dxflib tells the height of one kind only.
    const double height = m_finished.kind == "POLYLINE" ? m_finished.height : data.elevation;
    Entity entity;
    entity.style = style();
    entity.record = m_finished.number;
    m_polyline.emplace(std::move(entity), m_finished, int(data.flags), system(), height);
}

void EntityReader::addVertex(const DL_VertexData &data)
{
    if (m_polyline)
        m_polyline->addVertex(m_finished, {data.x, data.y, data.z}, data.bulge);
}

void EntityReader::finishPolyline()
{
    if (!m_polyline)
        return;
    if (std::optional<Entity> entity = m_polyline->takeEntity())
        m_geometry.blocks.at(m_block).entities.push_back(std::move(*entity));
    else if (m_polyline->isMesh())
        ++m_unknown[QStringLiteral("POLYLINE mesh")];
    m_polyline.reset();
}

void EntityReader::addHatch(const DL_HatchData &)
{
    Hatch hatch = readHatch(m_finished);
    SpacePath path = SpacePath::placed(hatch.area, system(), hatch.height);
    if (path.elements.empty()) {
        ++m_unknown[QStringLiteral("HATCH without an area")];
        return;
    }
    Entity entity;
    entity.setPath(std::move(path));
    if (hatch.isSolid)
        entity.kind = Filling{};
    else if (!hatch.families.empty())
        entity.kind = std::make_unique<Hatching>(
                Hatching{hatch.area, std::move(hatch.families),
                         SpaceTransform::fromTranslate({0, 0, hatch.height}) * system()});
    add(std::move(entity));
}

void EntityReader::addLeader(const DL_LeaderData &)
{
    addAsBlock(m_leaders.read(m_finished, system().map(SpacePoint{0, 0, 1})));
}

/// Adds the parts of one entity, which look as the entity does.
void EntityReader::addAsBlock(std::vector<Entity> &&parts)
{
    if (parts.empty())
        return;
    EntityStyle inherited = style();
    inherited.layer = layerIndex({});
    inherited.color = colorByBlock;
    inherited.lineWeight = KcDb::kLnWtByBlock;
    inherited.linetype = lineTypeByBlock;
    for (Entity &part : parts)
        part.style = inherited;
    BlockInsert insert;
    insert.block = int(m_geometry.blocks.size());
    m_geometry.blocks.emplace_back();
    m_geometry.blocks.back().entities = std::move(parts);
    m_bases.emplace_back();
    add(std::move(insert));
}

void EntityReader::addSpline(const DL_SplineData &data)
{
    m_spline = Spline{int(data.degree), data.flags, {}, {}, {}};
}

void EntityReader::addControlPoint(const DL_ControlPointData &data)
{
    m_spline->points += ControlPoint{{data.x, data.y, data.z}, data.w};
}

void EntityReader::addFitPoint(const DL_FitPointData &data)
{
    m_spline->fitPoints += SpacePoint{data.x, data.y, data.z};
}

void EntityReader::finishSpline()
{
    if (!m_spline)
        return;
    SpacePath path = m_spline->points.isEmpty()
                             ? smoothCurve(m_spline->fitPoints)
                             : spline(m_spline->degree, m_spline->points, m_spline->knots);
    if (m_spline->flags & IsClosedSpline)
        path.close();
    m_spline.reset();
    addPath(std::move(path));
}

void EntityReader::endEntity()
{
    finishPolyline();
    finishSpline();
}

void EntityReader::addText(const DL_TextData &data)
{
    add(placedText(data, decoded(data.text), system(), m_setter));
}

void EntityReader::addAttribute(const DL_AttributeData &data)
{
    if (!(m_finished.flags & IsInvisible))
        addText(data);
}

void EntityReader::addMText(const DL_MTextData &data)
{
    const QString text = decoded(m_textStart + data.text);
    m_textStart.clear();
    add(placedText(data, text, m_finished.rotation, system(), m_setter));
}

void EntityReader::add(PlacedText &&text)
{
    if (text.lines.bounds.isNull())
        return;
    Entity entity;
    entity.kind = std::make_unique<PlacedText>(std::move(text));
    add(std::move(entity));
}

void EntityReader::add(BlockInsert &&insert)
{
    Entity entity;
    entity.kind = std::make_unique<BlockInsert>(insert);
    add(std::move(entity));
}

} // namespace Tessa
