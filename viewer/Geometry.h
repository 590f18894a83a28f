#pragma once

#include "DrawingText.h"

#include <KcDb.h>

#include <QPainterPath>
#include <QRgb>
#include <QStringList>
#include <QTransform>

#include <memory>
#include <vector>

/// @file
/// What a drawing shows: plain values, independent of the state of its layers. The y axis points up.

/// Colours that the entity leaves to its layer, or to the insert of its block. They are transparent,
/// which no colour of a drawing is.
constexpr QRgb colorByLayer = 0;
constexpr QRgb colorByBlock = 1;

/// How an entity wants to be drawn.
struct EntityStyle
{
    int layer = 0; ///< a number of DrawingLayers
    QRgb color = colorByLayer;
    int lineWeight = KcDb::kLnWtByLayer; ///< hundredths of a millimetre, or a code
};

/// Text with its place.
struct PlacedText
{
    TextLines lines;
    QTransform placement; ///< from the font's pixels into the drawing
};

/// One or more copies of a block.
struct BlockInsert
{
    int block = 0;
    QTransform placement; ///< of the first copy
    int columns = 1;
    int rows = 1;
    QPointF columnStep;
    QPointF rowStep;

    QTransform placementOf(int column, int row) const;
};

/// One entity: a path to stroke or to fill, a text or an insert. A path without length is a dot.
struct Entity
{
    EntityStyle style;
    QPainterPath path;
    bool isFilled = false;
    std::unique_ptr<PlacedText> text;
    std::unique_ptr<BlockInsert> insert;
    QRectF bounds;
};

/// The entities of a block in their drawing order.
struct Block
{
    std::vector<Entity> entities;
    QRectF bounds;
};

struct Geometry
{
    /// The first one is the model space. Inserts refer to blocks by number, never in a circle.
    std::vector<Block> blocks;

    const Block &modelSpace() const { return blocks.front(); }
};

/// Finds the bounds of all that the model space shows. What cannot be drawn is taken out: inserts of
/// a block in itself or nested too deeply, and what lies beyond all reasonable coordinates; inserts
/// of millions of pieces become a frame. Linear in the number of entities.
/// @return one sentence per kind of change
QStringList measure(Geometry &geometry);
