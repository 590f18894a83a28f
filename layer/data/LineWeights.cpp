// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LineWeights.h"

#include <KcEd.h>

using namespace OvCc;

namespace {

/// Indexes of lineweights that are no position in the table of standard ones.
enum SpecialIndex { ByBlockIndex = 30, DefaultIndex = 31 };

struct CodeLabels
{
    LineWeightCode code;
    const char *ofDrawing;
    const char *ofFixedLists;
};

constexpr CodeLabels codeLabels[] = {
        {LineWeightByLayer, "Layer", "By Layer"},
        {LineWeightByBlock, "Block", "By Block"},
        {LineWeightDefault, "Default", "Default"},
};

/// Null if @p lineWeight is no code.
QString codeLabel(int lineWeight, const char *CodeLabels::*label)
{
    for (const CodeLabels &labels : codeLabels) {
        if (labels.code == lineWeight)
            return QLatin1String(labels.*label);
    }
    return {};
}

LineWeightUnit drawingUnit()
{
    resbuf units;
    const bool isKnown = kcedGetVar(L"LWUNITS", &units) == RTNORM;
    return isKnown && units.resval.rint != 1 ? LineWeightUnit::Inches : LineWeightUnit::Millimetres;
}

} // namespace

int lineWeightByIndex(char index)
{
    const auto position = static_cast<unsigned char>(index);
    if (position < standardLineWeights.size())
        return standardLineWeights[position];

    switch (position) {
    case ByBlockIndex:
        return LineWeightByBlock;
    case DefaultIndex:
        return LineWeightDefault;
    default:
        return LineWeightByLayer;
    }
}

QString StringByLineWeight(int value, bool isIndex)
{
    const int lineWeight = isIndex ? lineWeightByIndex(static_cast<char>(value)) : value;
    const QString label = codeLabel(lineWeight, &CodeLabels::ofDrawing);
    if (!label.isNull())
        return label;

    // Single precision, so that the last digit is rounded as users of the drawing's host see it.
    const auto figure = static_cast<float>(lineWeight);
    return drawingUnit() == LineWeightUnit::Millimetres
                   ? QString::asprintf("%1.2f mm", static_cast<double>(figure / 100.0F))
                   : QString::asprintf("%1.3f \"", static_cast<double>(figure / 2540.0F));
}

QString OvCc::fixedLineWeightLabel(int lineWeight, LineWeightUnit unit)
{
    const QString label = codeLabel(lineWeight, &CodeLabels::ofFixedLists);
    if (!label.isNull())
        return label;
    return unit == LineWeightUnit::Millimetres ? QString::asprintf("%.2f mm", lineWeight / 100.0)
                                               : QString::asprintf("%.2f\"", lineWeight / 254.0);
}
