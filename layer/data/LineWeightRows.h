#pragma once

#include <OvCustomControl/LineWeights.h>

#include <QStringList>

#include <initializer_list>

/// @file
/// What all fixed lists of lineweights have in common, whichever codes they begin with.

namespace OvCc {

/// The labels of a list: those of the codes in @p first, then the standard lineweights, thinnest
/// first.
/// @param context of the translation, the class's or the form's that shows the list; null for none
QStringList lineWeightLabels(std::initializer_list<LineWeightCode> first, LineWeightUnit unit,
                             const char *context);

/// The width of the swatch in @p row, in pixels. It goes by the row alone and not by the lineweight:
/// next to each other, true widths of thin lineweights could not be told apart, and those of thick
/// ones would not fit into a row.
double lineWeightSwatchWidth(int row);

} // namespace OvCc
