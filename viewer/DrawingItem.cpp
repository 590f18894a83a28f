#include "DrawingItem.h"

#include "DrawingText.h"
#include "Outline.h"
#include "Picking.h"
#include "ShownEntities.h"

#include <QPainter>
#include <QStyleOptionGraphicsItem>

namespace {

/// Texts of fewer pixels are shown as a bar.
constexpr double leastTextHeight = 3.0;
/// How many pixels a line may reach beyond its path.
constexpr double widestPen = 10.0;
constexpr double dotWidth = 3.0;
/// A linetype whose pattern takes fewer pixels is shown solid.
constexpr double leastPeriod = 3.0;
/// How far chords of a dashed curve may be off it, in pixels.
constexpr double chordTolerance = 0.2;

/// What selected entities are underlaid with, and how far it reaches beyond them, in pixels.
const QColor haloColor(0x1f, 0x6f, 0xd0);
constexpr double haloReach = 3.0;

/// The width on a screen of 96 dots per inch, where nothing is thinner than a pixel.
double penWidth(int lineWeight)
{
    constexpr int defaultWeight = 25;
    constexpr int heaviest = 211;
    const int weight = lineWeight < 0 ? defaultWeight : qMin(lineWeight, heaviest);
    return qMax(1.0, weight * 96 / 2540.0);
}

double scaleOf(const QPainter &painter)
{
    return QStyleOptionGraphicsItem::levelOfDetailFromTransform(painter.worldTransform());
}

/// Paints the entities of a drawing.
class EntityPainter
{
public:
    EntityPainter(QPainter &painter, const Drawing &drawing, const Projection &projection,
                  const QRectF &exposed);

    void paintAll();
    void paintSelected(const QSet<int> &selection);

private:
    void paintShape(const Entity &entity, const QRectF &bounds, const BlockView &view,
                    const Look &look);
    void paintLines(const Entity &entity, const BlockView &view, const Look &look);
    void paintDashes(const Entity &entity, const BlockView &view, const DashPattern &pattern);
    void paintText(const PlacedText &text, const BlockView &view, const Look &look);
    void paintTextHalo(const PlacedText &text, const BlockView &view);
    const QPainterPath &enterShape(const Entity &entity, const BlockView &view);
    void enterPlane(const BlockView &view, double height);
    void enterPicture() { setWorld(m_base); }
    void setWorld(const QTransform &transform);
    void setPen(const QColor &color, double width, Qt::PenCapStyle cap = Qt::RoundCap);

    QPainter &m_painter;
    const Drawing &m_drawing;
    ShownEntities m_entities;
    const QTransform m_base; ///< from the picture onto the device
    const double m_scale;
    QRectF m_area; ///< of the picture, with all that may reach into what is exposed
    bool m_isHalo = false;
    QTransform m_world;
    QPainterPath m_seen; ///< the last path that had to be mapped
    const QFont m_font = drawingFont();
    const double m_capHeight = TextSetter().capHeight();
};

EntityPainter::EntityPainter(QPainter &painter, const Drawing &drawing,
                             const Projection &projection, const QRectF &exposed)
    : m_painter(painter)
    , m_drawing(drawing)
    , m_entities(drawing, projection)
    , m_base(painter.worldTransform())
    , m_scale(scaleOf(painter))
    , m_world(m_base)
{
    const double margin = widestPen / m_scale;
    m_area = exposed.adjusted(-margin, -margin, margin, margin);
    m_painter.setFont(m_font);
    m_painter.setPen(QPen(Qt::white, 0));
}

void EntityPainter::paintAll()
{
    m_entities.visitAll(m_area, [this](const Entity &entity, const QRectF &bounds,
                                       const BlockView &view, const Look &look) {
        paintShape(entity, bounds, view, look);
        return true;
    });
    enterPicture();
}

void EntityPainter::paintSelected(const QSet<int> &selection)
{
    const std::vector<Entity> &entities = m_drawing.geometry.modelSpace().entities;
    QList<int> order = selection.values();
    std::sort(order.begin(), order.end());
    for (const bool isHalo : {true, false}) {
        m_isHalo = isHalo;
        for (const int index : qAsConst(order)) {
            m_entities.visit(entities.at(index), m_area,
                             [this](const Entity &entity, const QRectF &bounds,
                                    const BlockView &view, const Look &look) {
                                 paintShape(entity, bounds, view, look);
                                 return true;
                             });
        }
    }
    enterPicture();
}

void EntityPainter::paintShape(const Entity &entity, const QRectF &bounds, const BlockView &view,
                               const Look &look)
{
    const double size = qMax(bounds.width(), bounds.height()) * m_scale;
    if (entity.text && m_isHalo) {
        paintTextHalo(*entity.text, view);
    } else if (entity.text && size >= leastTextHeight) {
        paintText(*entity.text, view, look);
    } else if (size < 1) {
        const double width = entity.isDot() ? dotWidth : 1;
        setPen(look.color, width);
        if (m_isHalo)
            setPen(haloColor, width + 2 * haloReach);
        enterPicture();
        m_painter.drawPoint(bounds.center());
    } else if (entity.isFilled && !m_isHalo) {
        m_painter.fillPath(enterShape(entity, view), look.color);
    } else {
        paintLines(entity, view, look);
    }
}

void EntityPainter::paintLines(const Entity &entity, const BlockView &view, const Look &look)
{
    const std::vector<double> &dashes = m_drawing.geometry.linetypes.at(look.linetype).dashes;
    const double width = penWidth(look.lineWeight);
    if (m_isHalo) {
        setPen(haloColor, width + 2 * haloReach);
    } else if (!dashes.empty()) {
        const DashPattern pattern{dashes, look.linetypeScale, width / m_scale,
                                  leastPeriod / m_scale};
        if (pattern.period() * view.scale >= pattern.leastPeriod) {
            setPen(look.color, width, Qt::FlatCap);
            paintDashes(entity, view, pattern);
            return;
        }
    }
    if (!m_isHalo)
        setPen(look.color, width);
    const QPainterPath &path = enterShape(entity, view);
    if (path.elementCount() == 2)
        m_painter.drawLine(path.elementAt(0), path.elementAt(1));
    else
        m_painter.drawPath(path);
}

void EntityPainter::paintDashes(const Entity &entity, const BlockView &view,
                                const DashPattern &pattern)
{
    m_seen = QPainterPath();
    const std::vector<Outline> outlines =
            outlinesOf(entity, view.toPicture, chordTolerance / m_scale);
    for (const Outline &outline : outlines)
        addDashes(m_seen, outline, pattern, m_area);
    enterPicture();
    m_painter.drawPath(m_seen);
}

void EntityPainter::paintText(const PlacedText &text, const BlockView &view, const Look &look)
{
    setPen(look.color, 1);
    const BlockView font(text.placement * view.toPicture);
    const bool isLegible = !font.isEdgeOn && m_capHeight * font.scale * m_scale >= leastTextHeight;
    if (isLegible)
        enterPlane(font, 0);
    else
        enterPicture();
    for (const TextLines::Line &line : text.lines.lines) {
        if (isLegible)
            m_painter.drawText(line.at, line.text);
        else if (!line.text.isEmpty())
            m_painter.drawLine(font.ground.map(
                    QLineF(line.at, QPointF(text.lines.bounds.right(), line.at.y()))));
    }
}

void EntityPainter::paintTextHalo(const PlacedText &text, const BlockView &view)
{
    enterPicture();
    setPen(haloColor, 1);
    m_painter.setBrush(haloColor);
    m_painter.drawPolygon(
            (text.placement * view.toPicture).ofPlane(0).map(QPolygonF(text.lines.bounds)));
    m_painter.setBrush(Qt::NoBrush);
}

/// Gets into the coordinates of the path that it returns.
const QPainterPath &EntityPainter::enterShape(const Entity &entity, const BlockView &view)
{
    if (!entity.spacePath && !view.isEdgeOn) {
        enterPlane(view, entity.height);
        return entity.path;
    }
    enterPicture();
    m_seen = entity.spacePath ? entity.spacePath->seen(view.toPicture)
                              : view.toPicture.ofPlane(entity.height).map(entity.path);
    return m_seen;
}

void EntityPainter::enterPlane(const BlockView &view, double height)
{
    const bool isRaised = height != 0 && view.hasHeights;
    setWorld((isRaised ? view.toPicture.ofPlane(height) : view.ground) * m_base);
}

void EntityPainter::setWorld(const QTransform &transform)
{
    if (transform == m_world)
        return;
    m_world = transform;
    m_painter.setWorldTransform(transform);
}

void EntityPainter::setPen(const QColor &color, double width, Qt::PenCapStyle cap)
{
    const QPen &now = m_painter.pen();
    if (now.color() == color && now.widthF() == width && now.capStyle() == cap)
        return;
    QPen pen(color, width, Qt::SolidLine, cap, Qt::RoundJoin);
    pen.setCosmetic(true);
    m_painter.setPen(pen);
}

} // namespace

DrawingItem::DrawingItem()
{
    setFlag(ItemUsesExtendedStyleOption);
}

void DrawingItem::setDrawing(const Drawing *drawing)
{
    prepareGeometryChange();
    m_drawing = drawing;
    m_selection.clear();
    findBounds();
}

void DrawingItem::setProjection(const Projection &projection)
{
    prepareGeometryChange();
    m_projection = projection;
    findBounds();
}

void DrawingItem::setFaceStyle(FaceStyle style)
{
    m_faceStyle = style;
    update();
}

void DrawingItem::setSelection(const QSet<int> &entities)
{
    m_selection = entities;
    update();
}

int DrawingItem::entityAt(QPointF position, double reach) const
{
    return m_drawing ? topmostEntity(*m_drawing, m_projection, position, reach) : -1;
}

QVector<int> DrawingItem::entitiesIn(const QRectF &area, bool isCrossing) const
{
    return m_drawing ? entitiesInside(*m_drawing, m_projection, area, isCrossing) : QVector<int>();
}

QRectF DrawingItem::boundingRect() const
{
    return m_bounds;
}

void DrawingItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *)
{
    if (!m_drawing)
        return;
    EntityPainter entities(*painter, *m_drawing, m_projection, option->exposedRect);
    entities.paintAll();
    entities.paintSelected(m_selection);
}

/// The box around the model space would do, but seen from a corner it is larger than what is in it.
void DrawingItem::findBounds()
{
    m_bounds = QRectF();
    if (!m_drawing)
        return;
    const std::vector<Entity> &entities = m_drawing->geometry.modelSpace().entities;
    for (std::size_t i = 0; i < entities.size(); ++i) {
        const QRectF bounds = projected(entities[i].bounds, m_projection.toPicture);
        m_bounds = i == 0 ? bounds : united(m_bounds, bounds);
    }
}
