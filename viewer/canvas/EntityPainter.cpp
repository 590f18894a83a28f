// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "EntityPainter.h"

#include "DrawingText.h"
#include "HatchLines.h"

#include <QStyleOptionGraphicsItem>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Tessa {

namespace {

/// Texts of fewer pixels are shown as a bar.
constexpr double leastTextHeight = 3.0;
/// So are those that are thinner or flatter, of which fonts make nothing.
constexpr double leastTextWidth = 0.5;
/// How many pixels a line may reach beyond its path.
constexpr double widestPen = 10.0;
constexpr double dotWidth = 3.0;
/// A linetype whose pattern takes fewer pixels is shown solid.
constexpr double leastPeriod = 3.0;
/// How many dashes and lines of hatches a picture may have; what comes then is solid, or a tint.
constexpr double mostStrokes = 3e5;
/// Copies of blocks that are painted as one piece are filled if they take fewer pixels, else outlined.
constexpr double leastBox = 4.0;
/// How far chords of a dashed curve may be off it, in pixels.
constexpr double chordTolerance = 0.2;

/// What selected entities are underlaid with, and how far it reaches beyond them, in pixels.
const QColor haloColor(0x1f, 0x6f, 0xd0);
constexpr double haloReach = 2.0;

/// Faces are filled with so many pixels to one of the device, each way, unless that takes too many.
constexpr double oversampling = 2.0;
constexpr double mostSamples = 2e7;
/// How many pixels of a line are shown or hidden together.
constexpr double visibilityStep = 1.0;

/// The light comes over the viewer's left shoulder.
constexpr SpacePoint light{-0.20, 0.35, 0.915};
constexpr double darkest = 0.3;

/// The width on a screen of 96 dots per inch, where nothing is thinner than a pixel.
double penWidth(int lineWeight)
{
    constexpr int defaultWeight = 25;
    constexpr int heaviest = 211;
    const int weight = lineWeight < 0 ? defaultWeight : qMin(lineWeight, heaviest);
    return qMax(1.0, weight * 96 / 2540.0);
}

QRgb shaded(const QColor &color, const SpacePoint &normal)
{
    // A face has no inside: what counts is the side that is seen.
    const double facing = normal.z < 0 ? -1 : 1;
    const double cosine = facing * (normal.x * light.x + normal.y * light.y + normal.z * light.z)
                          / length(normal);
    const double brightness = darkest + (1 - darkest) * qBound(0.0, cosine, 1.0);
    return qRgb(int(color.red() * brightness), int(color.green() * brightness),
                int(color.blue() * brightness));
}

double scaleOf(const QPainter &painter)
{
    return QStyleOptionGraphicsItem::levelOfDetailFromTransform(painter.worldTransform());
}

} // namespace

EntityPainter::EntityPainter(QPainter &painter, const Drawing &drawing,
                             const Projection &projection, const QRectF &exposed)
    : m_painter(painter)
    , m_drawing(drawing)
    , m_entities(drawing, projection)
    , m_base(painter.worldTransform())
    , m_scale(scaleOf(painter))
    , m_strokes(mostStrokes)
{
    const double margin = widestPen / m_scale;
    m_area = exposed.adjusted(-margin, -margin, margin, margin);
    // All parts of a picture, which may be painted one by one, are to be of the same detail.
    m_entities.setDetail(m_base.inverted().mapRect(QRectF(painter.viewport())), 1 / m_scale);
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

void EntityPainter::paintFilled(FaceStyle style, const QColor &ground)
{
    setDepthPicture(style, ground);
    const bool hasEdges = style != FaceStyle::Flat && style != FaceStyle::Gouraud;
    m_entities.visitAll(m_area, [this, hasEdges](const Entity &entity, const QRectF &bounds,
                                                 const BlockView &view, const Look &look) {
        if (!entity.as<Filling>() && (hasEdges || !entity.as<Faces>()))
            paintShape(entity, bounds, view, look);
        return true;
    });
    enterPicture();
    m_depths.reset();
}

void EntityPainter::setDepthPicture(FaceStyle style, const QColor &ground)
{
    const QRect target = m_base.mapRect(m_area).toAlignedRect() & m_painter.viewport();
    if (target.isEmpty())
        return;
    const double pixels = double(target.width()) * target.height();
    const double samples = qMin(oversampling, std::sqrt(mostSamples / pixels));
    m_toDepths =
            SpaceTransform::fromPlane(m_base * QTransform::fromTranslate(-target.x(), -target.y())
                                      * QTransform::fromScale(samples, samples));
    // Depths are small numbers around the middle of the drawing, wherever that is.
    const SpacePoint middle =
            m_entities.modelView().toPicture.map(m_drawing.geometry.modelSpace().bounds.center());
    m_toDepths.rows[2][2] = m_scale * samples;
    m_toDepths.rows[2][3] = -middle.z * m_toDepths.rows[2][2];
    m_depths = std::make_unique<DepthPicture>((QSizeF(target.size()) * samples).toSize());

    m_entities.visitAll(m_area, [&](const Entity &entity, const QRectF &, const BlockView &view,
                                    const Look &look) {
        const bool isShaded = style != FaceStyle::Hidden;
        if (entity.as<Filling>())
            addFilling(entity, view.toPicture, look.color.rgb());
        else if (const Faces *faces = entity.as<Faces>())
            addFaces(*faces, view.toPicture, isShaded ? look.color : ground, isShaded);
        return true;
    });
    m_painter.save();
    m_painter.resetTransform();
    m_painter.setRenderHint(QPainter::SmoothPixmapTransform);
    m_painter.drawImage(target, m_depths->image());
    m_painter.restore();
}

void EntityPainter::addFaces(const Faces &faces, const SpaceTransform &toPicture,
                             const QColor &color, bool isShaded)
{
    for (const std::array<int, 4> &corners : faces.corners) {
        std::array<SpacePoint, 4> at;
        std::transform(corners.begin(), corners.end(), at.begin(), [&](int corner) {
            return toPicture.map(faces.points[std::size_t(corner)]);
        });
        const SpacePoint normal = cross(at[2] - at[0], at[3] - at[1]);
        if (length(normal) == 0)
            continue;
        const QRgb shade = isShaded ? shaded(color, normal) : color.rgb();
        for (SpacePoint &point : at)
            point = m_toDepths.map(point);
        m_depths->addTriangle(at[0], at[1], at[2], shade);
        m_depths->addTriangle(at[0], at[2], at[3], shade);
    }
}

void EntityPainter::addFilling(const Entity &entity, const SpaceTransform &toPicture, QRgb color)
{
    const SpaceTransform toDepths = toPicture * m_toDepths;
    const SpacePath path = entity.pathInSpace();
    std::vector<SpacePoint> points;
    for (const SpacePath::Element &element : path.elements)
        points.push_back(toDepths.map(element.at));
    m_depths->addArea(path.seen(toDepths), points, color);
}

bool EntityPainter::isVisible(const SpacePoint &point) const
{
    return !m_depths || m_depths->isVisible(m_toDepths.map(point));
}

/// What of lines in the picture no face hides.
QPainterPath EntityPainter::visiblePart(const SpacePath &lines) const
{
    QPainterPath path;
    SpacePoint last;
    for (const SpacePath::Element &element : lines.elements) {
        if (element.type == QPainterPath::LineToElement)
            addVisiblePart(path, last, element.at);
        last = element.at;
    }
    return path;
}

void EntityPainter::addVisiblePart(QPainterPath &path, const SpacePoint &start,
                                   const SpacePoint &end) const
{
    double from = 0;
    double to = 1;
    if (!clip(start, end, m_area, from, to))
        return;
    const SpacePoint way = end - start;
    const double pixels = std::hypot(way.x, way.y) * (to - from) * m_scale;
    const int steps = int(qMax(1.0, std::ceil(pixels / visibilityStep)));
    const auto at = [&](double step) { return start + way * (from + (to - from) * step / steps); };
    const auto add = [&path, &at](int first, int end) {
        const SpacePoint from = at(first);
        const SpacePoint to = at(end);
        if (path.isEmpty() || path.currentPosition() != QPointF(from.x, from.y))
            path.moveTo(from.x, from.y);
        path.lineTo(to.x, to.y);
    };
    int first = 0;
    for (int step = 0; step < steps; ++step) {
        if (isVisible(at(step + 0.5)))
            continue;
        if (first < step)
            add(first, step);
        first = step + 1;
    }
    if (first < steps)
        add(first, steps);
}

void EntityPainter::paintSelected(const QSet<int> &selection)
{
    const std::vector<Entity> &entities = m_drawing.geometry.modelSpace().entities;
    QList<int> order = selection.values();
    std::sort(order.begin(), order.end());
    for (const bool isHalo : {true, false}) {
        m_isHalo = isHalo;
        for (const int index : std::as_const(order)) {
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
    if (entity.as<Faces>() && !entity.hasPath())
        return; // no edge is visible, so none is when the face is small
    const double size = qMax(bounds.width(), bounds.height()) * m_scale;
    const PlacedText *text = entity.as<PlacedText>();
    const bool isPiece = entity.as<BlockInsert>();
    SpacePoint middle = view.toPicture.map(entity.bounds.center());
    if (isPiece)
        middle = {bounds.center().x(), bounds.center().y(), middle.z};
    if ((size < 1 || text || isPiece) && !isVisible(middle))
        return;
    if (size < 1 && !(text && m_isHalo)) {
        const double width = entity.isDot() ? dotWidth : 1;
        setPen(look.color, width);
        if (m_isHalo)
            setPen(haloColor, width + 2 * haloReach);
        enterPicture();
        m_painter.drawPoint(bounds.center());
        return;
    }
    const auto paintOutline = [&] { paintLines(entity, view, look); };
    entity.visitKind(Overloaded{
            [&](const Line &) { paintOutline(); },
            [&](const Filling &) {
                if (m_isHalo)
                    paintOutline();
                else
                    m_painter.fillPath(enterShape(entity, view), look.color);
            },
            [&](const Hatching &hatching) {
                if (m_isHalo || view.isEdgeOn)
                    paintOutline();
                else
                    paintHatching(entity, hatching, view, look);
            },
            [&](const Faces &) { paintOutline(); },
            [&](const PlacedText &) {
                if (m_isHalo)
                    paintTextHalo(*text, view);
                else if (size >= leastTextHeight)
                    paintText(*text, view, look);
            },
            [&](const BlockInsert &) { paintPiece(bounds, size, look); },
    });
}

/// A copy of a block that is not resolved.
void EntityPainter::paintPiece(const QRectF &bounds, double size, const Look &look)
{
    const double reach = m_isHalo ? haloReach / m_scale : 0;
    const QColor color = m_isHalo ? haloColor : look.color;
    enterPicture();
    setPen(color, m_isHalo ? 1 + 2 * haloReach : 1);
    if (size < leastBox)
        m_painter.fillRect(bounds.adjusted(-reach, -reach, reach, reach), color);
    else
        m_painter.drawRect(bounds);
}

void EntityPainter::paintHatching(const Entity &entity, const Hatching &hatching,
                                  const BlockView &view, const Look &look)
{
    const SpaceTransform toPicture = hatching.placement * view.toPicture;
    const SeenHatch seen = seenHatch(hatching, toPicture, m_area, 1 / m_scale, m_strokes);
    if (seen.tint > 0 && isVisible(view.toPicture.map(entity.bounds.center()))) {
        QColor color = look.color;
        color.setAlphaF(seen.tint);
        m_painter.fillPath(enterShape(entity, view), color);
    }
    m_strokes -= double(seen.lines.elements.size()) / 2;
    setPen(look.color, penWidth(look.lineWeight), Qt::FlatCap);
    drawLines(seen.lines);
}

void EntityPainter::paintLines(const Entity &entity, const BlockView &view, const Look &look)
{
    const double width = penWidth(look.lineWeight);
    const DashPattern pattern{m_drawing.geometry.linetypes.at(look.linetype).dashes,
                              look.linetypeScale, width / m_scale, leastPeriod / m_scale};
    const bool isDashed = !m_isHalo && m_strokes > 0 && !pattern.dashes.empty()
                          && pattern.period() * view.scale >= pattern.leastPeriod;
    if (m_isHalo)
        setPen(haloColor, width + 2 * haloReach);
    else
        setPen(look.color, width, isDashed ? Qt::FlatCap : Qt::RoundCap);
    if (isDashed || m_depths || entity.reach() != Reach::Finite) {
        drawLines(seenLines(entity, view, isDashed ? &pattern : nullptr));
        return;
    }
    const QPainterPath &path = enterShape(entity, view);
    if (path.elementCount() == 2)
        m_painter.drawLine(path.elementAt(0), path.elementAt(1));
    else
        m_painter.drawPath(path);
}

/// The lines of an entity in the picture, made of chords or dashes.
SpacePath EntityPainter::seenLines(const Entity &entity, const BlockView &view,
                                   const DashPattern *pattern)
{
    SpacePath lines;
    const std::vector<Outline> outlines =
            entity.reach() == Reach::Finite
                    ? outlinesOf(entity, view.toPicture, chordTolerance / m_scale)
                    : std::vector<Outline>{endlessOutline(entity, view.toPicture, m_area, pattern)};
    for (const Outline &outline : outlines) {
        if (outline.empty())
            continue;
        if (pattern) {
            addDashes(lines, outline, *pattern, m_area);
            continue;
        }
        lines.moveTo(outline.front().at);
        for (std::size_t i = 1; i < outline.size(); ++i)
            lines.lineTo(outline[i].at);
    }
    if (pattern)
        m_strokes -= double(lines.elements.size()) / 2;
    return lines;
}

/// Strokes lines in the picture, as far as no face hides them.
void EntityPainter::drawLines(const SpacePath &lines)
{
    enterPicture();
    m_painter.drawPath(m_depths ? visiblePart(lines) : lines.seen({}));
}

void EntityPainter::paintText(const PlacedText &text, const BlockView &view, const Look &look)
{
    setPen(look.color, 1);
    const BlockView font(text.placement * view.toPicture);
    const double pixels = m_capHeight * m_scale;
    const double least = qMin(std::hypot(font.ground.m11(), font.ground.m12()),
                              std::hypot(font.ground.m21(), font.ground.m22()));
    const bool isLegible = !font.isEdgeOn && pixels * font.scale >= leastTextHeight
                           && pixels * least >= leastTextWidth;
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
    enter(isRaised ? view.toPicture.ofPlane(height) : view.ground);
}

void EntityPainter::enterPicture()
{
    enter({});
}

/// Gets into the coordinates that @p toPicture maps to the picture.
void EntityPainter::enter(const QTransform &toPicture)
{
    if (toPicture == m_entered)
        return;
    m_entered = toPicture;
    m_painter.setWorldTransform(toPicture * m_base);
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

} // namespace Tessa
