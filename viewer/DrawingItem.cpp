#include "DrawingItem.h"

#include "DrawingText.h"

#include <QPainter>
#include <QStyleOptionGraphicsItem>

namespace {

/// Texts of fewer pixels are shown as a bar.
constexpr double leastTextHeight = 3.0;
/// How many pixels a line may reach beyond its path.
constexpr double widestPen = 10.0;
constexpr double dotWidth = 3.0;

/// The width on a screen of 96 dots per inch, where nothing is thinner than a pixel.
double penWidth(int lineWeight)
{
    constexpr int defaultWeight = 25;
    constexpr int heaviest = 211;
    const int weight = lineWeight < 0 ? defaultWeight : qMin(lineWeight, heaviest);
    return qMax(1.0, weight * 96 / 2540.0);
}

/// Unlike QRectF::intersects() this counts lines that run straight along an axis, too.
bool overlap(const QRectF &one, const QRectF &other)
{
    return one.left() <= other.right() && other.left() <= one.right() && one.top() <= other.bottom()
           && other.top() <= one.bottom();
}

double scaleOf(const QPainter &painter)
{
    return QStyleOptionGraphicsItem::levelOfDetailFromTransform(painter.worldTransform());
}

/// Paints the entities of a block and of the blocks in it.
class EntityPainter
{
public:
    EntityPainter(QPainter &painter, const Drawing &drawing);

    void paintModelSpace(const QRectF &exposed);

private:
    /// An entity's style with nothing left to its layer or its block.
    struct Look
    {
        int layer;
        QColor color;
        int lineWeight;
    };

    void paintBlock(const Block &block, const QRectF &exposed, const Look &insert);
    void paintInsert(const BlockInsert &insert, const QRectF &exposed, const Look &look);
    void paintShape(const Entity &entity, double scale, const Look &look);
    void paintText(const PlacedText &text, const Look &look);
    Look lookOf(const EntityStyle &style, const Look &insert) const;
    void setPen(const QColor &color, double width);

    QPainter &m_painter;
    const Drawing &m_drawing;
    const int m_zeroLayer;
    const QFont m_font = drawingFont();
    const double m_capHeight = TextSetter().capHeight();
};

EntityPainter::EntityPainter(QPainter &painter, const Drawing &drawing)
    : m_painter(painter)
    , m_drawing(drawing)
    , m_zeroLayer(drawing.layers.indexOf(QStringLiteral("0")))
{
    m_painter.setFont(m_font);
    m_painter.setPen(QPen(Qt::white, 0));
}

void EntityPainter::paintModelSpace(const QRectF &exposed)
{
    // An entity of the model space that leaves something to its block gets what a new one has.
    const Look outside{m_zeroLayer, Qt::white, KcDb::kLnWtByLwDefault};
    paintBlock(m_drawing.geometry.modelSpace(), exposed, outside);
}

/// An insert shows its block if its own layer is thawed, be it on or off. In the block, an entity on
/// layer "0" lies on the insert's layer, and each one shows if its layer is on and thawed.
void EntityPainter::paintBlock(const Block &block, const QRectF &exposed, const Look &insert)
{
    const double scale = scaleOf(m_painter);
    const double margin = widestPen / scale;
    const QRectF reach = exposed.adjusted(-margin, -margin, margin, margin);
    for (const Entity &entity : block.entities) {
        if (!overlap(entity.bounds, reach))
            continue;
        const Look look = lookOf(entity.style, insert);
        const LayerLook &layer = m_drawing.layers.at(look.layer);
        if (layer.isFrozen)
            continue;
        if (entity.insert)
            paintInsert(*entity.insert, exposed, look);
        else if (layer.isOn)
            paintShape(entity, scale, look);
    }
}

void EntityPainter::paintInsert(const BlockInsert &insert, const QRectF &exposed, const Look &look)
{
    const Block &block = m_drawing.geometry.blocks.at(insert.block);
    for (int row = 0; row < insert.rows; ++row) {
        for (int column = 0; column < insert.columns; ++column) {
            const QTransform placement = insert.placementOf(column, row);
            const QTransform outer = m_painter.worldTransform();
            m_painter.setWorldTransform(placement, true);
            paintBlock(block, placement.inverted().mapRect(exposed), look);
            m_painter.setWorldTransform(outer);
        }
    }
}

void EntityPainter::paintShape(const Entity &entity, double scale, const Look &look)
{
    const double size = qMax(entity.bounds.width(), entity.bounds.height()) * scale;
    if (entity.text && size >= leastTextHeight) {
        paintText(*entity.text, look);
    } else if (size < 1) {
        setPen(look.color, entity.path.isEmpty() ? dotWidth : 1);
        m_painter.drawPoint(entity.bounds.topLeft());
    } else if (entity.isFilled) {
        m_painter.fillPath(entity.path, look.color);
    } else {
        setPen(look.color, penWidth(look.lineWeight));
        if (entity.path.elementCount() == 2)
            m_painter.drawLine(entity.path.elementAt(0), entity.path.elementAt(1));
        else
            m_painter.drawPath(entity.path);
    }
}

void EntityPainter::paintText(const PlacedText &text, const Look &look)
{
    const QTransform outer = m_painter.worldTransform();
    m_painter.setWorldTransform(text.placement, true);
    setPen(look.color, 1);
    const bool isLegible = m_capHeight * scaleOf(m_painter) >= leastTextHeight;
    for (const TextLines::Line &line : text.lines.lines) {
        if (isLegible)
            m_painter.drawText(line.at, line.text);
        else if (!line.text.isEmpty())
            m_painter.drawLine(line.at, QPointF(text.lines.bounds.right(), line.at.y()));
    }
    m_painter.setWorldTransform(outer);
}

EntityPainter::Look EntityPainter::lookOf(const EntityStyle &style, const Look &insert) const
{
    Look look{style.layer == m_zeroLayer ? insert.layer : style.layer, insert.color,
              insert.lineWeight};
    const LayerLook &layer = m_drawing.layers.at(look.layer);
    if (style.color == colorByLayer)
        look.color = layer.color;
    else if (style.color != colorByBlock)
        look.color = QColor(style.color);
    if (style.lineWeight == KcDb::kLnWtByLayer)
        look.lineWeight = layer.lineWeight;
    else if (style.lineWeight != KcDb::kLnWtByBlock)
        look.lineWeight = style.lineWeight;
    return look;
}

void EntityPainter::setPen(const QColor &color, double width)
{
    if (m_painter.pen().color() == color && m_painter.pen().widthF() == width)
        return;
    QPen pen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
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
}

QRectF DrawingItem::boundingRect() const
{
    return m_drawing ? m_drawing->geometry.modelSpace().bounds : QRectF();
}

void DrawingItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *)
{
    if (m_drawing)
        EntityPainter(*painter, *m_drawing).paintModelSpace(option->exposedRect);
}
