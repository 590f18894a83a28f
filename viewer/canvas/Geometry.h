// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DrawingText.h"
#include "SpacePath.h"

#include <KcDb.h>

#include <QPainterPath>
#include <QRgb>
#include <QStringList>
#include <QTransform>

#include <array>
#include <memory>
#include <type_traits>
#include <variant>
#include <vector>

namespace Tessa {

/// @file
/// What a drawing shows: plain values, independent of the state of its layers. The y axis points up.

/// Colours that the entity leaves to its layer, or to the insert of its block. They are transparent,
/// which no colour of a drawing is.
constexpr QRgb colorByLayer = 0;
constexpr QRgb colorByBlock = 1;

/// The colour of an entity.
/// @param index     0 by block, 1 to 255; all else is by layer
/// @param trueColor 0xRRGGBB, which goes before the index, or -1
QRgb entityColor(int index, int trueColor);

/// Linetypes that the entity leaves to its layer, or to the insert of its block.
constexpr int lineTypeByLayer = -1;
constexpr int lineTypeByBlock = -2;

/// A pattern along a line.
struct Linetype
{
    QString name;
    /// In turns: positive ones are dashes, negative ones gaps, 0 is a dot. None make a solid line.
    std::vector<double> dashes;
};

/// How an entity wants to be drawn.
struct EntityStyle
{
    int layer = 0; ///< a number of DrawingLayers
    QRgb color = colorByLayer;
    int lineWeight = KcDb::kLnWtByLayer; ///< hundredths of a millimetre, or a code
    int linetype = lineTypeByLayer;      ///< one of Geometry::linetypes, or a code
    double linetypeScale = 1;

    bool operator==(const EntityStyle &other) const;
};

/// Text with its place.
struct PlacedText
{
    TextLines lines;
    SpaceTransform placement; ///< from the font's pixels into the drawing
};

/// A family of parallel lines in a plane, without ends.
struct HatchLines
{
    QPointF origin;             ///< on the first line, where its dashes begin
    QPointF way;                ///< along the lines, of length 1
    QPointF step;               ///< from one line to the next, which begins its dashes there
    std::vector<double> dashes; ///< as in Linetype
};

/// Lines that fill an area of a plane.
struct Hatching
{
    QPainterPath area;
    std::vector<HatchLines> families;
    SpaceTransform placement; ///< of the plane in the drawing
};

/// One or more copies of a block.
struct BlockInsert
{
    int block = 0;
    SpaceTransform placement; ///< of the first copy
    int columns = 1;
    int rows = 1;
    SpacePoint columnStep;
    SpacePoint rowStep;

    SpaceTransform placementOf(int column, int row) const;
};

/// Faces of four corners; one of three repeats its last.
struct Faces
{
    std::vector<SpacePoint> points;
    std::vector<std::array<int, 4>> corners; ///< numbers of points
};

/// Where a line of two points ends.
enum class Reach { Finite, Ray, EndlessLine };

/// A path that is drawn as a line; one without length is a dot.
struct Line
{
    Reach reach = Reach::Finite;
};

/// A path that is filled.
struct Filling
{
};

/// One entity. A text and an insert have no path; that of faces are their edges, that of a hatching is
/// its outline. Kinds that few entities are of lie elsewhere.
struct Entity
{
    using Kind = std::variant<Line, Filling, std::unique_ptr<Hatching>, std::unique_ptr<Faces>,
                              std::unique_ptr<PlacedText>, std::unique_ptr<BlockInsert>>;

    SpaceBox bounds; ///< first, since most entities are looked at for them only; of what has ends
    EntityStyle style;
    bool isEndless = false; ///< something in it has no ends
    /// The number of its record in the file, which is how many begin before it; -1 without one.
    int record = -1;
    bool isErased = false; ///< from the drawing; it stays in its place, since it may come back
    QPainterPath path;
    double height = 0;                    ///< of the whole path
    std::unique_ptr<SpacePath> spacePath; ///< instead, if it is not level
    Kind kind;

    /// What it is if it is of that kind; else null.
    template <class T>
    const T *as() const;

    /// Calls the visitor with what it is. A visitor that forgets a kind does not compile.
    template <class Visitor>
    auto visitKind(Visitor &&visitor) const;

    Reach reach() const { return as<Line>() ? as<Line>()->reach : Reach::Finite; }
    void setPath(SpacePath &&path);
    SpacePath pathInSpace() const;
    bool hasPath() const { return spacePath || !path.isEmpty(); }
    bool isDot() const { return !spacePath && path.elementCount() == 1; }
};

/// Functions of one argument each as one visitor.
template <class... Functions>
struct Overloaded : Functions...
{
    using Functions::operator()...;
};
template <class... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

template <class T>
const T *Entity::as() const
{
    if constexpr (std::is_same_v<T, Line> || std::is_same_v<T, Filling>) {
        return std::get_if<T>(&kind);
    } else {
        const auto *owned = std::get_if<std::unique_ptr<T>>(&kind);
        return owned ? owned->get() : nullptr;
    }
}

template <class Visitor>
auto Entity::visitKind(Visitor &&visitor) const
{
    return std::visit(
            [&visitor](const auto &kind) {
                using Held = std::decay_t<decltype(kind)>;
                if constexpr (std::is_same_v<Held, Line> || std::is_same_v<Held, Filling>)
                    return visitor(kind);
                else
                    return visitor(*kind);
            },
            kind);
}

/// The entities of a block in their drawing order, and what measure() finds.
struct Block
{
    std::vector<Entity> entities;
    std::vector<int> inserts; ///< the numbers of those that are inserts
    SpaceBox bounds;          ///< of what has ends
    SpaceBox endlessFrom;     ///< around the points of what has none; empty if all has
    double strokes = 0;       ///< about what its own entities take to paint: so many short lines,
    double fillings = 0;      ///< and so many fillings
};

struct Geometry
{
    /// The first one is the model space. Inserts refer to blocks by number, never in a circle.
    std::vector<Block> blocks;

    /// The first one is "Continuous".
    std::vector<Linetype> linetypes{{QStringLiteral("Continuous"), {}}};
    double linetypeScale = 1; ///< of all linetypes

    /// The number of a linetype, 0 for a name that is not there. Letter case does not tell names
    /// apart.
    int linetypeOf(const QString &name) const;

    /// The same for an entity's linetype, which may be "ByLayer" or "ByBlock".
    int entityLinetypeOf(const QString &name) const;

    /// Whether there is anything that a FaceStyle changes.
    bool hasFaces() const;

    const Block &modelSpace() const { return blocks.front(); }
};

/// Finds the bounds of all that the model space shows. What cannot be drawn is taken out: inserts of
/// a block in itself or nested too deeply, and what lies beyond all reasonable coordinates. Linear
/// in the number of entities.
/// @return one sentence per kind of change
QStringList measure(Geometry &geometry);

} // namespace Tessa
