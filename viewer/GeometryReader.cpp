#include "GeometryReader.h"

#include "Curves.h"
#include "Drawing.h"

#include <KcHost/KcHost.h>

#include <QColor>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QtMath>

#include <dxflib/dl_creationadapter.h>
#include <dxflib/dl_dxf.h>

#include <algorithm>
#include <cmath>
#include <optional>
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

/// Flags of polylines, their vertices and splines.
enum PolylineFlag { IsClosed = 1, IsPolygonMesh = 16, IsPolyfaceMesh = 64 };
enum VertexFlag { IsSplineFrame = 16 };
enum SplineFlag { IsClosedSpline = 1 };
enum AttributeFlag { IsInvisible = 1 };

/// Flags of texts.
enum TextFlag { IsBackward = 2, IsUpsideDown = 4 };

/// Receives the entities from dxflib, which calls it after each one was read to its end.
class GeometryReader : public DL_CreationAdapter
{
public:
    explicit GeometryReader(const Drawing &drawing);

    Geometry takeGeometry();
    QStringList warnings() const;

    void processCodeValuePair(unsigned int code, const std::string &value) override;

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
        std::string kind;
        std::string name;    ///< of the section, or of a dimension's block
        double rotation = 0; ///< degrees
        bool isHidden = false;
        bool isInPaperSpace = false;
        int flags = 0;
    };
    struct Polyline
    {
        Entity entity;
        bool isVisible;
        QTransform plane;
        int flags;
        double bulge = 0;
    };
    struct Spline
    {
        int degree;
        int flags;
        QVector<ControlPoint> points;
        QVector<double> knots;
        QVector<QPointF> fitPoints;
    };

    void checkSize(const std::string &count) const;
    void finishRecord();
    bool isVisible() const { return !m_finished.isHidden && !m_finished.isInPaperSpace; }
    EntityStyle style();
    QTransform plane(double z = 0) const;
    QString decoded(const std::string &bytes) const;
    int layerIndex(const std::string &name);
    int blockIndex(const std::string &name);

    void add(Entity entity);
    void addPath(const QPainterPath &path, bool isFilled = false);
    void addTextLines(const TextLines &lines, const QTransform &placement);
    void addDimension();
    void finishPolyline();
    void finishSpline();

    const Drawing &m_drawing;
    const TextSetter m_setter;
    const qint64 m_fileSize;

    Geometry m_geometry;
    int m_block = 0;
    std::vector<QPointF> m_bases;
    std::unordered_map<std::string, int> m_blockIndexes;
    std::unordered_map<std::string, int> m_layerIndexes;

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
            const QPointF base = m_bases.at(entity.insert->block);
            entity.insert->placement.translate(-base.x(), -base.y());
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
        m_record.kind = value;
        finishRecord();
        break;
    case 2:
        m_record.name = value;
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
    case 72:
    case 73:
    case 74:
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

/// Maps the plane that the entity was drawn in, which its extrusion is at a right angle to, to the
/// drawing seen from above. @p z is the entity's height over that plane.
QTransform GeometryReader::plane(double z) const
{
    const double *normal = extrusion->getDirection();
    const double length = std::hypot(normal[0], normal[1], normal[2]);
    if (length == 0 || normal[2] == length)
        return {};
    const double n[] = {normal[0] / length, normal[1] / length, normal[2] / length};
    // The plane's x axis lies level, or, where the normal is all but vertical, along the drawing's.
    const bool isLevel = std::abs(n[0]) < 1.0 / 64 && std::abs(n[1]) < 1.0 / 64;
    const double across = isLevel ? std::hypot(n[2], n[0]) : std::hypot(n[0], n[1]);
    const double x[] = {(isLevel ? n[2] : -n[1]) / across, (isLevel ? 0 : n[0]) / across,
                        (isLevel ? -n[0] : 0) / across};
    return {x[0], x[1], n[1] * x[2] - n[2] * x[1], n[2] * x[0] - n[0] * x[2], z * n[0], z * n[1]};
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

void GeometryReader::add(Entity entity)
{
    if (!isVisible())
        return;
    entity.style = style();
    m_geometry.blocks.at(m_block).entities.push_back(std::move(entity));
}

void GeometryReader::addPath(const QPainterPath &path, bool isFilled)
{
    if (path.elementCount() == 0)
        return;
    Entity entity;
    entity.path = path;
    entity.isFilled = isFilled;
    add(std::move(entity));
}

void GeometryReader::addBlock(const DL_BlockData &data)
{
    m_block = blockIndex(data.name);
    m_bases.at(m_block) = QPointF(data.bpx, data.bpy);
}

void GeometryReader::addInsert(const DL_InsertData &data)
{
    const QTransform turn = QTransform().rotate(data.angle)
                            * QTransform::fromTranslate(data.ipx, data.ipy) * plane(data.ipz);
    Entity entity;
    entity.insert = std::make_unique<BlockInsert>();
    entity.insert->block = blockIndex(data.name);
    entity.insert->placement = QTransform::fromScale(data.sx, data.sy) * turn;
    entity.insert->columns = qMax(1, data.cols);
    entity.insert->rows = qMax(1, data.rows);
    entity.insert->columnStep = turn.map(QPointF(data.colSp, 0)) - turn.map(QPointF());
    entity.insert->rowStep = turn.map(QPointF(0, data.rowSp)) - turn.map(QPointF());
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
    addPath(QPainterPath(QPointF(data.x, data.y)));
}

void GeometryReader::addLine(const DL_LineData &data)
{
    QPainterPath path(QPointF(data.x1, data.y1));
    path.lineTo(data.x2, data.y2);
    addPath(path);
}

void GeometryReader::addCircle(const DL_CircleData &data)
{
    const QPointF center(data.cx, data.cy);
    addPath(plane(data.cz).map(ellipseArc(center, QPointF(data.radius, 0), 1, 0, 0)));
}

void GeometryReader::addArc(const DL_ArcData &data)
{
    const QPointF center(data.cx, data.cy);
    addPath(plane(data.cz).map(ellipseArc(center, QPointF(data.radius, 0), 1,
                                          qDegreesToRadians(data.angle1),
                                          qDegreesToRadians(data.angle2))));
}

void GeometryReader::addEllipse(const DL_EllipseData &data)
{
    const double ratio = extrusion->getDirection()[2] < 0 ? -data.ratio : data.ratio;
    addPath(ellipseArc(QPointF(data.cx, data.cy), QPointF(data.mx, data.my), ratio, data.angle1,
                       data.angle2));
}

void GeometryReader::addSolid(const DL_SolidData &data)
{
    // The corners come in the order of the letter Z.
    QPolygonF corners;
    for (const int corner : {0, 1, 3, 2})
        corners += QPointF(data.x[corner], data.y[corner]);
    QPainterPath path;
    path.addPolygon(corners);
    addPath(plane(data.z[0]).map(path), true);
}

void GeometryReader::add3dFace(const DL_3dFaceData &data)
{
    QPainterPath path(QPointF(data.x[0], data.y[0]));
    for (int corner = 1; corner < 4; ++corner)
        path.lineTo(data.x[corner], data.y[corner]);
    path.closeSubpath();
    addPath(path);
}

void GeometryReader::addPolyline(const DL_PolylineData &data)
{
    if (data.flags & (IsPolygonMesh | IsPolyfaceMesh)) {
        ++m_unknown[QStringLiteral("POLYLINE mesh")];
        return;
    }
    m_polyline = Polyline{{}, isVisible(), plane(data.elevation), data.flags, 0};
    m_polyline->entity.style = style();
}

void GeometryReader::addVertex(const DL_VertexData &data)
{
    if (!m_polyline || (m_finished.kind == "VERTEX" && m_finished.flags & IsSplineFrame))
        return;
    QPainterPath &path = m_polyline->entity.path;
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
    QPainterPath &path = polyline.entity.path;
    if (!polyline.isVisible || path.elementCount() == 0)
        return;
    if (polyline.flags & IsClosed) {
        addBulge(path, path.elementAt(0), polyline.bulge);
        path.closeSubpath();
    }
    path = polyline.plane.map(path);
    m_geometry.blocks.at(m_block).entities.push_back(std::move(polyline.entity));
}

void GeometryReader::addSpline(const DL_SplineData &data)
{
    m_spline = Spline{int(data.degree), data.flags, {}, {}, {}};
}

void GeometryReader::addControlPoint(const DL_ControlPointData &data)
{
    m_spline->points += ControlPoint{QPointF(data.x, data.y), data.w};
}

void GeometryReader::addFitPoint(const DL_FitPointData &data)
{
    m_spline->fitPoints += QPointF(data.x, data.y);
}

void GeometryReader::finishSpline()
{
    if (!m_spline)
        return;
    QPainterPath path = m_spline->points.isEmpty()
                                ? smoothCurve(m_spline->fitPoints)
                                : spline(m_spline->degree, m_spline->points, m_spline->knots);
    if (m_spline->flags & IsClosedSpline)
        path.closeSubpath();
    m_spline.reset();
    addPath(path);
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
    addTextLines(lines, QTransform::fromScale(xScale, -yScale) * QTransform().rotateRadians(angle)
                                * QTransform::fromTranslate(at.x(), at.y()) * plane(data.ipz));
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
    const bool hasDirection = data.dirx != 0 || data.diry != 0;
    const double angle = hasDirection ? std::atan2(data.diry, data.dirx)
                                      : qDegreesToRadians(m_finished.rotation);
    addTextLines(m_setter.broken(paragraphs(text), data.width / scale, data.lineSpacingFactor,
                                 data.attachmentPoint),
                 QTransform::fromScale(scale, -scale) * QTransform().rotateRadians(angle)
                         * QTransform::fromTranslate(data.ipx, data.ipy));
}

void GeometryReader::addTextLines(const TextLines &lines, const QTransform &placement)
{
    if (lines.bounds.isNull())
        return;
    Entity entity;
    entity.text = std::make_unique<PlacedText>(PlacedText{lines, placement});
    add(std::move(entity));
}

} // namespace

Geometry readGeometry(const Drawing &drawing, QStringList &warnings)
{
    GeometryReader reader(drawing);
    try {
        DL_Dxf().in(QFile::encodeName(drawing.fileName).toStdString(), &reader);
    } catch (const std::length_error &) {
        warnings += QStringLiteral("The drawing is shown only in part: an entity is too large.");
    }
    Geometry geometry = reader.takeGeometry();
    warnings += reader.warnings() + measure(geometry);
    return geometry;
}
