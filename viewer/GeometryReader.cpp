#include "GeometryReader.h"

#include "Curves.h"
#include "Drawing.h"

#include <KcHost/KcHost.h>

#include <QColor>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QTemporaryFile>
#include <QtMath>

#include <dxflib/dl_creationadapter.h>
#include <dxflib/dl_dxf.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <unordered_map>

namespace {

/// What the file may hold without the viewer being silent about something: the entities that are
/// drawn, and the records around them.
constexpr const char *knownRecords[] = {
        "3DFACE",  "ARC",    "ATTDEF", "ATTRIB", "BLOCK",      "CIRCLE", "DIMENSION", "ELLIPSE",
        "ENDBLK",  "ENDSEC", "INSERT", "LINE",   "LWPOLYLINE", "MTEXT",  "POINT",     "POLYLINE",
        "SECTION", "SEQEND", "SOLID",  "SPLINE", "TEXT",       "TRACE",  "VERTEX",    "VIEWPORT",
};

/// What dxflib reads of a line, with the newline, in bytes.
constexpr int longestLine = DL_DXF_MAXLINE - 1;

/// Flags of polylines, their vertices and splines.
enum PolylineFlag { IsClosed = 1, IsInSpace = 8, IsPolygonMesh = 16, IsPolyfaceMesh = 64 };
enum MeshFlag { IsClosedAcross = 32, IsSmoothed = 4 };
enum VertexFlag { IsSplineFrame = 16, IsMeshVertex = 64, IsFaceOrPoint = 128 };
enum SplineFlag { IsClosedSpline = 1 };
enum AttributeFlag { IsInvisible = 1 };

/// Flags of texts.
enum TextFlag { IsBackward = 2, IsUpsideDown = 4 };

/// Lines between points of faces.
using Edges = std::vector<std::array<int, 2>>;

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

/// Receives the entities from dxflib, which calls it after each one was read to its end.
class GeometryReader : public DL_CreationAdapter
{
public:
    explicit GeometryReader(const Drawing &drawing);

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
    void addCircle(const DL_CircleData &data) override;
    void addArc(const DL_ArcData &data) override;
    void addEllipse(const DL_EllipseData &data) override;
    void addSolid(const DL_SolidData &data) override;
    void addTrace(const DL_TraceData &data) override { addSolid(data); }
    void add3dFace(const DL_3dFaceData &data) override;

    void addPolyline(const DL_PolylineData &data) override;
    void addVertex(const DL_VertexData &data) override;
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
    /// What the callbacks do not tell of an entity.
    struct Record
    {
        int number = -1; ///< how many begin before it
        std::string kind;
        std::string name;    ///< of the section, or of a dimension's block
        double rotation = 0; ///< degrees
        bool isHidden = false;
        bool isInPaperSpace = false;
        int flags = 0;
        std::array<int, 4> counts{}; ///< of vertices in a mesh, or the corners of a face
        double height = 0;
        std::vector<double> dashes;
    };
    struct Polyline
    {
        Entity entity;
        bool isVisible;
        SpaceTransform system;
        double height;
        int flags;
        std::array<int, 4> counts;
        QPainterPath path;   ///< in the plane of the polyline
        SpacePath spacePath; ///< instead, if it is in no plane
        double bulge = 0;
        Faces faces; ///< instead, if it is a mesh
    };
    struct Spline
    {
        int degree;
        int flags;
        QVector<ControlPoint> points;
        QVector<double> knots;
        QVector<SpacePoint> fitPoints;
    };

    void checkSize(const std::string &count) const;
    void finishRecord();
    bool isVisible() const { return !m_finished.isHidden && !m_finished.isInPaperSpace; }
    EntityStyle style();
    SpaceTransform system() const;
    QString decoded(const std::string &bytes) const;
    int layerIndex(const std::string &name);
    int blockIndex(const std::string &name);
    int linetypeIndex(const std::string &name);

    void add(Entity entity);
    void addPath(SpacePath &&path, bool isFilled = false);
    void addTextLines(const TextLines &lines, const SpaceTransform &placement);
    void addDimension();
    void addFaces(Entity &&entity, Faces &&faces, const Edges &edges);
    void addMeshFace();
    void finishPolyline();
    void finishMesh(Polyline &&mesh);
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

    int m_recordCount = 0;
    Record m_record;   ///< the one that is being read
    Record m_finished; ///< the one that dxflib tells of
    bool m_isInDrawing = false;
    QMap<QString, int> m_unknown;

    std::optional<Polyline> m_polyline;
    std::optional<Spline> m_spline;
    std::string m_textStart;
};

GeometryReader::GeometryReader(const Drawing &drawing)
    : m_drawing(drawing)
    , m_fileSize(QFileInfo(drawing.fileName).size())
{
    m_geometry.blocks.emplace_back();
    m_bases.emplace_back();
}

Geometry GeometryReader::takeGeometry()
{
    // An insert may come before its block, so only now the base points of all blocks are known.
    for (Block &block : m_geometry.blocks) {
        for (Entity &entity : block.entities) {
            if (!entity.insert)
                continue;
            const SpacePoint base = m_bases.at(entity.insert->block);
            SpaceTransform &placement = entity.insert->placement;
            placement = SpaceTransform::fromTranslate(base * -1) * placement;
        }
    }
    return std::move(m_geometry);
}

QStringList GeometryReader::warnings() const
{
    QStringList kinds;
    for (auto kind = m_unknown.cbegin(); kind != m_unknown.cend(); ++kind)
        kinds += QStringLiteral("%1 %2").arg(kind.value()).arg(kind.key());
    if (kinds.isEmpty())
        return {};
    return {QStringLiteral("Entities of these kinds are not drawn: %1.")
                    .arg(kinds.join(QStringLiteral(", ")))};
}

void GeometryReader::processCodeValuePair(unsigned int code, const std::string &value)
{
    switch (code) {
    case 0:
        m_finished = std::move(m_record);
        m_record = {};
        m_record.number = m_recordCount++;
        m_record.kind = value;
        finishRecord();
        break;
    case 2:
        m_record.name = value;
        break;
    case 30:
        m_record.height = QByteArray::fromStdString(value).toDouble();
        break;
    case 49:
        m_record.dashes.push_back(QByteArray::fromStdString(value).toDouble());
        break;
    case 50:
        m_record.rotation = QByteArray::fromStdString(value).toDouble();
        break;
    case 60:
        m_record.isHidden = std::atoi(value.c_str()) != 0;
        break;
    case 67:
        m_record.isInPaperSpace = std::atoi(value.c_str()) != 0;
        break;
    case 70:
        m_record.flags = std::atoi(value.c_str());
        break;
    case 71:
    case 72:
    case 73:
    case 74:
        m_record.counts[code - 71] = std::atoi(value.c_str());
        checkSize(value);
        break;
    case 76:
    case 90:
    case 91:
    case 93:
        checkSize(value);
        break;
    }
}

/// dxflib makes room for as many points, knots or edges as an entity says that it has, and does not
/// survive it where there is not so much memory. The file itself tells how many there may be.
void GeometryReader::checkSize(const std::string &count) const
{
    constexpr int leastBytesPerPoint = 8;
    const std::string &kind = m_record.kind;
    if ((kind == "LWPOLYLINE" || kind == "SPLINE" || kind == "LEADER" || kind == "HATCH")
        && std::atoll(count.c_str()) > m_fileSize / leastBytesPerPoint)
        throw std::length_error(kind);
}

void GeometryReader::finishRecord()
{
    if (m_polyline && m_finished.kind == "VERTEX")
        addMeshFace();
    if (m_finished.kind == "SECTION")
        m_isInDrawing = m_finished.name == "ENTITIES" || m_finished.name == "BLOCKS";
    else if (m_finished.kind == "ENDSEC")
        m_isInDrawing = false;
    else if (m_isInDrawing && isVisible()
             && !std::binary_search(std::begin(knownRecords), std::end(knownRecords),
                                    m_finished.kind))
        ++m_unknown[QString::fromLatin1(m_finished.kind.c_str())];
}

EntityStyle GeometryReader::style()
{
    const int color = attributes.getColor();
    const int trueColor = attributes.getColor24();
    EntityStyle style;
    style.layer = layerIndex(attributes.getLayer());
    style.lineWeight = attributes.getWidth();
    style.linetype = linetypeIndex(attributes.getLinetype());
    style.linetypeScale = attributes.getLinetypeScale();
    if (trueColor >= 0) {
        style.color = QRgb(trueColor) | 0xff000000;
    } else if (color == 0) {
        style.color = colorByBlock;
    } else if (color > 0 && color < 256) {
        const double *parts = dxfColors[color];
        style.color = QColor::fromRgbF(parts[0], parts[1], parts[2]).rgb();
    }
    return style;
}

/// Maps the coordinate system of the entity, whose z axis is its extrusion, to that of the drawing.
SpaceTransform GeometryReader::system() const
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

QString GeometryReader::decoded(const std::string &bytes) const
{
    return KcHost::decodeText(*m_drawing.database, QByteArray::fromStdString(bytes));
}

int GeometryReader::layerIndex(const std::string &name)
{
    const auto known = m_layerIndexes.find(name);
    if (known != m_layerIndexes.end())
        return known->second;
    const int index = m_drawing.layers.indexOf(name.empty() ? QStringLiteral("0") : decoded(name));
    m_layerIndexes.emplace(name, index);
    return index;
}

int GeometryReader::blockIndex(const std::string &name)
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

int GeometryReader::linetypeIndex(const std::string &name)
{
    const auto known = m_linetypeIndexes.find(name);
    if (known != m_linetypeIndexes.end())
        return known->second;
    const QString text = decoded(name);
    int index = lineTypeByLayer;
    if (text.compare(QLatin1String("BYBLOCK"), Qt::CaseInsensitive) == 0)
        index = lineTypeByBlock;
    else if (text.compare(QLatin1String("BYLAYER"), Qt::CaseInsensitive) != 0)
        index = m_geometry.linetypeOf(text);
    m_linetypeIndexes.emplace(name, index);
    return index;
}

void GeometryReader::setVariableDouble(const std::string &name, double value, int)
{
    if (name == "$LTSCALE")
        m_geometry.linetypeScale = value;
}

void GeometryReader::addLinetype(const DL_LinetypeData &data)
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

void GeometryReader::add(Entity entity)
{
    if (!isVisible())
        return;
    entity.style = style();
    entity.record = m_finished.number;
    m_geometry.blocks.at(m_block).entities.push_back(std::move(entity));
}

void GeometryReader::addPath(SpacePath &&path, bool isFilled)
{
    if (path.elements.empty())
        return;
    Entity entity;
    entity.setPath(std::move(path));
    entity.isFilled = isFilled;
    add(std::move(entity));
}

void GeometryReader::addBlock(const DL_BlockData &data)
{
    m_block = blockIndex(data.name);
    m_bases.at(m_block) = SpacePoint{data.bpx, data.bpy, data.bpz};
}

void GeometryReader::addInsert(const DL_InsertData &data)
{
    const SpaceTransform turn = SpaceTransform::fromPlane(QTransform().rotate(data.angle))
                                * SpaceTransform::fromTranslate({data.ipx, data.ipy, data.ipz})
                                * system();
    Entity entity;
    entity.insert = std::make_unique<BlockInsert>();
    entity.insert->block = blockIndex(data.name);
    entity.insert->placement =
            SpaceTransform::fromAxes({data.sx, 0, 0}, {0, data.sy, 0}, {0, 0, data.sz}) * turn;
    entity.insert->columns = qMax(1, data.cols);
    entity.insert->rows = qMax(1, data.rows);
    entity.insert->columnStep = turn.map(SpacePoint{data.colSp, 0, 0}) - turn.map(SpacePoint());
    entity.insert->rowStep = turn.map(SpacePoint{0, data.rowSp, 0}) - turn.map(SpacePoint());
    add(std::move(entity));
}

void GeometryReader::addDimension()
{
    Entity entity;
    entity.insert = std::make_unique<BlockInsert>();
    entity.insert->block = blockIndex(m_finished.name);
    add(std::move(entity));
}

void GeometryReader::addPoint(const DL_PointData &data)
{
    SpacePath path;
    path.moveTo({data.x, data.y, data.z});
    addPath(std::move(path));
}

void GeometryReader::addLine(const DL_LineData &data)
{
    SpacePath path;
    path.moveTo({data.x1, data.y1, data.z1});
    path.lineTo({data.x2, data.y2, data.z2});
    addPath(std::move(path));
}

void GeometryReader::addCircle(const DL_CircleData &data)
{
    const QPointF center(data.cx, data.cy);
    addPath(SpacePath::placed(ellipseArc(center, QPointF(data.radius, 0), 1, 0, 0), system(),
                              data.cz));
}

void GeometryReader::addArc(const DL_ArcData &data)
{
    const QPointF center(data.cx, data.cy);
    addPath(SpacePath::placed(ellipseArc(center, QPointF(data.radius, 0), 1,
                                         qDegreesToRadians(data.angle1),
                                         qDegreesToRadians(data.angle2)),
                              system(), data.cz));
}

void GeometryReader::addEllipse(const DL_EllipseData &data)
{
    // The unit circle, in a system of which the half axes are axes.
    const SpacePoint major{data.mx, data.my, data.mz};
    const SpacePoint normal = system().map(SpacePoint{0, 0, 1});
    const SpaceTransform frame =
            SpaceTransform::fromAxes(major, cross(normal, major) * data.ratio, normal)
            * SpaceTransform::fromTranslate({data.cx, data.cy, data.cz});
    addPath(SpacePath::placed(ellipseArc({}, {1, 0}, 1, data.angle1, data.angle2), frame, 0));
}

void GeometryReader::addSolid(const DL_SolidData &data)
{
    // The corners come in the order of the letter Z.
    QPolygonF corners;
    for (const int corner : {0, 1, 3, 2})
        corners += QPointF(data.x[corner], data.y[corner]);
    QPainterPath path;
    path.addPolygon(corners);
    addPath(SpacePath::placed(path, system(), data.z[0]), true);
}

void GeometryReader::add3dFace(const DL_3dFaceData &data)
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
    entity.style = style();
    entity.record = m_finished.number;
    if (isVisible())
        addFaces(std::move(entity), std::move(faces), edges);
}

/// Adds faces with some edges, each of which is a line between two of their points.
void GeometryReader::addFaces(Entity &&entity, Faces &&faces, const Edges &edges)
{
    SpacePath path;
    int last = -1;
    for (const auto &[from, to] : edges) {
        if (from != last)
            path.moveTo(faces.points.at(from));
        path.lineTo(faces.points.at(to));
        last = to;
    }
    entity.setPath(std::move(path));
    entity.faces = std::make_unique<Faces>(std::move(faces));
    m_geometry.blocks.at(m_block).entities.push_back(std::move(entity));
}

void GeometryReader::addPolyline(const DL_PolylineData &data)
{
    // dxflib tells the height of one kind only.
    const double height = m_finished.kind == "POLYLINE" ? m_finished.height : data.elevation;
    m_polyline = Polyline{{}, isVisible(), system(), height, data.flags, m_finished.counts,
                          {}, {},          0,        {}};
    m_polyline->entity.style = style();
    m_polyline->entity.record = m_finished.number;
}

void GeometryReader::addVertex(const DL_VertexData &data)
{
    if (!m_polyline || (m_finished.kind == "VERTEX" && m_finished.flags & IsSplineFrame))
        return;
    if (m_polyline->flags & (IsPolygonMesh | IsPolyfaceMesh)) {
        m_polyline->faces.points.push_back({data.x, data.y, data.z});
        return;
    }
    if (m_polyline->flags & IsInSpace) {
        SpacePath &path = m_polyline->spacePath;
        if (path.elements.empty())
            path.moveTo({data.x, data.y, data.z});
        else
            path.lineTo({data.x, data.y, data.z});
        return;
    }
    QPainterPath &path = m_polyline->path;
    if (path.elementCount() == 0)
        path.moveTo(data.x, data.y);
    else
        addBulge(path, QPointF(data.x, data.y), m_polyline->bulge);
    m_polyline->bulge = data.bulge;
}

void GeometryReader::finishPolyline()
{
    if (!m_polyline)
        return;
    Polyline polyline = std::move(*m_polyline);
    m_polyline.reset();
    if (!polyline.isVisible)
        return;
    if (polyline.flags & (IsPolygonMesh | IsPolyfaceMesh)) {
        finishMesh(std::move(polyline));
        return;
    }
    QPainterPath &path = polyline.path;
    if (polyline.flags & IsClosed) {
        if (path.elementCount() > 0)
            addBulge(path, path.elementAt(0), polyline.bulge);
        path.closeSubpath();
        polyline.spacePath.close();
    }
    if (path.elementCount() > 0)
        polyline.spacePath = SpacePath::placed(path, polyline.system, polyline.height);
    if (polyline.spacePath.elements.empty())
        return;
    polyline.entity.setPath(std::move(polyline.spacePath));
    m_geometry.blocks.at(m_block).entities.push_back(std::move(polyline.entity));
}

/// A face of a mesh is a vertex without a place, of which dxflib does not tell. Its corners count
/// from 1, and are negative where an edge that does not show begins.
void GeometryReader::addMeshFace()
{
    const int kind = m_finished.flags & (IsMeshVertex | IsFaceOrPoint);
    if (m_polyline->flags & IsPolyfaceMesh && kind == IsFaceOrPoint)
        m_polyline->faces.corners.push_back(m_finished.counts);
}

void GeometryReader::finishMesh(Polyline &&mesh)
{
    Faces &faces = mesh.faces;
    const Edges edges = mesh.flags & IsPolyfaceMesh ? resolveFaces(faces)
                                                    : netFaces(faces, mesh.flags, mesh.counts);
    if (faces.corners.empty())
        ++m_unknown[QStringLiteral("POLYLINE mesh")];
    else
        addFaces(std::move(mesh.entity), std::move(faces), edges);
}

void GeometryReader::addSpline(const DL_SplineData &data)
{
    m_spline = Spline{int(data.degree), data.flags, {}, {}, {}};
}

void GeometryReader::addControlPoint(const DL_ControlPointData &data)
{
    m_spline->points += ControlPoint{{data.x, data.y, data.z}, data.w};
}

void GeometryReader::addFitPoint(const DL_FitPointData &data)
{
    m_spline->fitPoints += SpacePoint{data.x, data.y, data.z};
}

void GeometryReader::finishSpline()
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

void GeometryReader::endEntity()
{
    finishPolyline();
    finishSpline();
}

void GeometryReader::addText(const DL_TextData &data)
{
    const QPointF start(data.ipx, data.ipy);
    const QPointF end(data.apx, data.apy);
    const bool isSpread = data.hJustification == Aligned || data.hJustification == Fit;
    const bool isAtStart =
            isSpread || (data.hJustification == Left && data.vJustification == Baseline);
    const TextLines lines = m_setter.aligned(plainText(decoded(data.text)), data.hJustification,
                                             data.vJustification);
    double yScale = data.height / m_setter.capHeight();
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
    addTextLines(lines, SpaceTransform::fromPlane(QTransform::fromScale(xScale, -yScale)
                                                  * QTransform().rotateRadians(angle))
                                * SpaceTransform::fromTranslate({at.x(), at.y(), data.ipz})
                                * system());
}

void GeometryReader::addAttribute(const DL_AttributeData &data)
{
    if (!(m_finished.flags & IsInvisible))
        addText(data);
}

void GeometryReader::addMText(const DL_MTextData &data)
{
    const QString text = decoded(m_textStart + data.text);
    m_textStart.clear();
    const double scale = data.height / m_setter.capHeight();
    // dxflib gives the angle in degrees or in radians, depending on where it comes from.
    const bool hasDirection = data.dirx != 0 || data.diry != 0 || data.dirz != 0;
    const QTransform turn = QTransform().rotate(m_finished.rotation);
    SpaceTransform frame = SpaceTransform::fromPlane(turn) * system();
    if (hasDirection) {
        const SpacePoint direction{data.dirx, data.diry, data.dirz};
        const SpacePoint x = direction * (1 / length(direction));
        const SpacePoint z = system().map(SpacePoint{0, 0, 1});
        frame = SpaceTransform::fromAxes(x, cross(z, x), z);
    }
    addTextLines(m_setter.broken(paragraphs(text), data.width / scale, data.lineSpacingFactor,
                                 data.attachmentPoint),
                 SpaceTransform::fromPlane(QTransform::fromScale(scale, -scale)) * frame
                         * SpaceTransform::fromTranslate({data.ipx, data.ipy, data.ipz}));
}

void GeometryReader::addTextLines(const TextLines &lines, const SpaceTransform &placement)
{
    if (lines.bounds.isNull())
        return;
    Entity entity;
    entity.text = std::make_unique<PlacedText>(PlacedText{lines, placement});
    add(std::move(entity));
}

/// dxflib would take the rest of a longer line for the next one, and from there on codes for values.
/// @return how many lines were cut
int cutLongLines(QByteArray &bytes)
{
    int count = 0;
    int to = 0;
    for (int begin = 0; begin < bytes.size();) {
        const int newline = bytes.indexOf('\n', begin);
        const int end = newline < 0 ? bytes.size() : newline + 1;
        const bool isLong = end - begin > longestLine;
        const int size = isLong ? longestLine : end - begin;
        std::copy_n(bytes.cbegin() + begin, size, bytes.begin() + to);
        to += size;
        if (isLong) {
            ++count;
            bytes[to - 1] = '\n';
        }
        begin = end;
    }
    bytes.truncate(to);
    return count;
}

void readFile(const QString &fileName, GeometryReader &reader, QStringList &warnings)
{
    QFile file(fileName);
    QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    const int cutLines = cutLongLines(bytes);
    if (cutLines == 0) {
        DL_Dxf().in(QFile::encodeName(fileName).toStdString(), &reader);
        return;
    }
    // From a stream dxflib would read, too, but without telling of the groups.
    QTemporaryFile shortened;
    if (!shortened.open() || shortened.write(bytes) != bytes.size() || !shortened.flush()) {
        warnings += QStringLiteral("The drawing is not shown: there is no room for a copy of it.");
        return;
    }
    DL_Dxf().in(QFile::encodeName(shortened.fileName()).toStdString(), &reader);
    warnings += QStringLiteral("Lines of the file read only in part, for their length: %1.")
                        .arg(cutLines);
}

} // namespace

Geometry readGeometry(const Drawing &drawing, QStringList &warnings)
{
    GeometryReader reader(drawing);
    try {
        readFile(drawing.fileName, reader, warnings);
    } catch (const std::length_error &) {
        warnings += QStringLiteral("The drawing is shown only in part: an entity is too large.");
    }
    Geometry geometry = reader.takeGeometry();
    warnings += reader.warnings() + measure(geometry);
    return geometry;
}
