// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DepthPicture.h"
#include "FaceStyle.h"
#include "Outline.h"
#include "ShownEntities.h"

#include <QFont>
#include <QPainter>
#include <QSet>

#include <memory>

namespace Tessa {

/// Paints the entities of a drawing.
class EntityPainter
{
public:
    EntityPainter(QPainter &painter, const Drawing &drawing, const Projection &projection,
                  const QRectF &exposed);

    /// Whether copies of blocks are painted as boxes that can be told apart.
    bool isSimplified() const { return m_entities.isSimplified(); }

    /// Paints all entities in the drawing's order, of faces the edges.
    void paintAll();

    /// Paints all entities in a style that fills faces, so that what is nearer hides the rest.
    /// @param ground the colour of faces in the style Hidden
    void paintFilled(FaceStyle style, const QColor &ground);

    /// Paints these entities of the model space again, underlaid with a colour.
    void paintSelected(const QSet<int> &selection);

private:
    void paintShape(const Entity &entity, const QRectF &bounds, const BlockView &view,
                    const Look &look);
    void paintPiece(const QRectF &bounds, double size, const Look &look);
    void paintHatching(const Entity &entity, const Hatching &hatching, const BlockView &view,
                       const Look &look);
    void paintLines(const Entity &entity, const BlockView &view, const Look &look);
    SpacePath seenLines(const Entity &entity, const BlockView &view, const DashPattern *pattern);
    void drawLines(const SpacePath &lines);
    void setDepthPicture(FaceStyle style, const QColor &ground);
    void addFaces(const Faces &faces, const SpaceTransform &toPicture, const QColor &color,
                  bool isShaded);
    void addFilling(const Entity &entity, const SpaceTransform &toPicture, QRgb color);
    bool isVisible(const SpacePoint &point) const;
    QPainterPath visiblePart(const SpacePath &lines) const;
    void addVisiblePart(QPainterPath &path, const SpacePoint &start, const SpacePoint &end) const;
    void paintText(const PlacedText &text, const BlockView &view, const Look &look);
    void paintTextHalo(const PlacedText &text, const BlockView &view);
    const QPainterPath &enterShape(const Entity &entity, const BlockView &view);
    void enterPlane(const BlockView &view, double height);
    void enterPicture();
    void enter(const QTransform &toPicture);
    void setPen(const QColor &color, double width, Qt::PenCapStyle cap = Qt::RoundCap);

    QPainter &m_painter;
    const Drawing &m_drawing;
    ShownEntities m_entities;
    const QTransform m_base; ///< from the picture onto the device
    const double m_scale;
    QRectF m_area;    ///< of the picture, with all that may reach into what is exposed
    double m_strokes; ///< how many more dashes there may be
    bool m_isHalo = false;
    std::unique_ptr<DepthPicture> m_depths; ///< null while nothing is hidden
    SpaceTransform m_toDepths;              ///< from the picture
    QTransform m_entered;                   ///< from the painter's coordinates to the picture
    QPainterPath m_seen;                    ///< the last path that had to be mapped
    const QFont m_font = drawingFont();
    const double m_capHeight = TextSetter().capHeight();
};

} // namespace Tessa
