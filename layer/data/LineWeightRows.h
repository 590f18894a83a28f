// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/LineWeights.h>

#include <QStringList>

/// @file
/// What all fixed lists of lineweights have in common. Each is the end of one list of rows: some
/// leave out codes at its beginning.

namespace OvCc {

/// The lineweights of the rows: the codes, then the standard lineweights, thinnest first.
constexpr auto lineWeightRows = [] {
    constexpr std::array<LineWeightCode, 3> codes{LineWeightByLayer, LineWeightByBlock,
                                                  LineWeightDefault};
    std::array<int, codes.size() + standardLineWeights.size()> rows{};
    std::size_t row = 0;
    for (const LineWeightCode code : codes)
        rows[row++] = code;
    for (const int lineWeight : standardLineWeights)
        rows[row++] = lineWeight;
    return rows;
}();

constexpr int lineWeightRowCount = int(lineWeightRows.size());

/// The row of a lineweight; -1 if it has none.
constexpr int lineWeightRowOf(int lineWeight)
{
    int row = lineWeightRowCount - 1;
    while (row >= 0 && lineWeightRows.at(row) != lineWeight)
        --row;
    return row;
}

/// The first row that is no code.
constexpr int firstNumericRow = lineWeightRowOf(standardLineWeights.front());

/// The labels of the rows from that of @p first on.
/// @param context of the translation, the class's or the form's that shows the list; null for none
QStringList lineWeightLabels(LineWeightCode first, LineWeightUnit unit, const char *context);

/// The width of the swatch in @p row of a list, in pixels. It goes by the row and not by the
/// lineweight: next to each other, true widths of thin lineweights could not be told apart, and
/// those of thick ones would not fit into a row.
double lineWeightSwatchWidth(int row);

} // namespace OvCc
