// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "InsertCopies.h"

#include <cmath>
#include <limits>

namespace Tessa {

namespace {

/// More than any picture reaches, and few enough to be multiplied.
constexpr double far = 1e100;

/// How many copies in a row are closer to each other than @p detail.
double copiesEach(int count, QPointF step, double detail)
{
    const double distance = std::hypot(step.x(), step.y());
    if (count <= 1 || distance >= detail)
        return 1;
    return distance > 0 ? qMin(std::ceil(detail / distance), double(count)) : count;
}

/// Leaves of the numbers @p first to @p last those by which @p step reaches from @p least to @p most.
void narrow(double &first, double &last, double step, double least, double most)
{
    if (step == 0) {
        if (least > 0 || most < 0)
            last = first - 1;
        return;
    }
    const double from = (step > 0 ? least : most) / step;
    const double to = (step > 0 ? most : least) / step;
    constexpr double rounding = 1e-9;
    first = qMax(first, std::ceil(from - rounding * qMax(1.0, std::abs(from))));
    last = qMin(last, std::floor(to + rounding * qMax(1.0, std::abs(to))));
}

QPointF seenWay(const SpaceTransform &toPicture, const SpacePoint &way)
{
    const SpacePoint seen = toPicture.map(way) - toPicture.map(SpacePoint());
    return {seen.x, seen.y};
}

} // namespace

InsertCopies::InsertCopies(const BlockInsert &insert, const Block &block, const BlockView &view,
                           const QRectF &area, double detail)
    : m_columnStep(seenWay(view.toPicture, insert.columnStep))
    , m_rowStep(seenWay(view.toPicture, insert.rowStep))
    , m_columnsEach(copiesEach(insert.columns, m_columnStep, detail))
    , m_rowsEach(copiesEach(insert.rows, m_rowStep, detail))
    , m_lastColumn(std::ceil(insert.columns / m_columnsEach) - 1)
    , m_lastRow(std::ceil(insert.rows / m_rowsEach) - 1)
{
    const bool isEndless = !block.endlessFrom.isEmpty();
    const SpaceBox &box = block.bounds.isEmpty() ? block.endlessFrom : block.bounds;
    m_first = BlockView(insert.placement * view.toPicture).boundsOf(box);
    m_size = qMax(m_first.width(), m_first.height());
    // What has no ends is larger than its bounds.
    m_areOnePiece = m_size < detail && (!isEndless || std::isinf(detail));
    m_first = united(m_first, m_first.translated(m_columnStep * (m_columnsEach - 1)));
    m_first = united(m_first, m_first.translated(m_rowStep * (m_rowsEach - 1)));
    m_columnStep *= m_columnsEach;
    m_rowStep *= m_rowsEach;
    m_ways = isEndless ? QRectF(-far, -far, 2 * far, 2 * far)
                       : QRectF(area.topLeft() - m_first.bottomRight(),
                                area.bottomRight() - m_first.topLeft());
    findRows();
}

double InsertCopies::coarserDetail() const
{
    double least = m_areOnePiece ? std::numeric_limits<double>::infinity() : m_size;
    if (m_lastColumn > 0)
        least = qMin(least, std::hypot(m_columnStep.x(), m_columnStep.y()));
    if (m_lastRow > 0)
        least = qMin(least, std::hypot(m_rowStep.x(), m_rowStep.y()));
    return least;
}

/// Leaves out rows that miss the area as a whole.
void InsertCopies::findRows()
{
    const QPointF whole = m_columnStep * m_lastColumn;
    narrow(m_firstRow, m_lastRow, m_rowStep.x(), m_ways.left() - qMax(0.0, whole.x()),
           m_ways.right() - qMin(0.0, whole.x()));
    narrow(m_firstRow, m_lastRow, m_rowStep.y(), m_ways.top() - qMax(0.0, whole.y()),
           m_ways.bottom() - qMin(0.0, whole.y()));
    // Measured across the rows, the column does not matter.
    const QPointF across(-m_columnStep.y(), m_columnStep.x());
    const auto span = [](double factor, double from, double to) {
        return factor > 0 ? QPointF(factor * from, factor * to)
                          : QPointF(factor * to, factor * from);
    };
    const QPointF reach = span(across.x(), m_ways.left(), m_ways.right())
                          + span(across.y(), m_ways.top(), m_ways.bottom());
    narrow(m_firstRow, m_lastRow, QPointF::dotProduct(across, m_rowStep), reach.x(), reach.y());
}

/// The columns of a row that overlap the area.
void InsertCopies::findColumns(double row, double &first, double &last) const
{
    first = 0;
    last = m_lastColumn;
    const QPointF moved = m_rowStep * row;
    narrow(first, last, m_columnStep.x(), m_ways.left() - moved.x(), m_ways.right() - moved.x());
    narrow(first, last, m_columnStep.y(), m_ways.top() - moved.y(), m_ways.bottom() - moved.y());
}

} // namespace Tessa
