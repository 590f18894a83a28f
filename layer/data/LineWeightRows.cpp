// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LineWeightRows.h"

#include <QCoreApplication>

QStringList OvCc::lineWeightLabels(LineWeightCode first, LineWeightUnit unit, const char *context)
{
    QStringList labels;
    for (int row = lineWeightRowOf(first); row < lineWeightRowCount; ++row) {
        const QString label = fixedLineWeightLabel(lineWeightRows.at(row), unit);
        labels.append(context ? QCoreApplication::translate(context, label.toUtf8().constData())
                              : label);
    }
    return labels;
}

double OvCc::lineWeightSwatchWidth(int row)
{
    constexpr int lastThinRow = 10;
    constexpr int lastMiddleRow = 13;
    if (row <= lastThinRow)
        return 1.0;
    if (row <= lastMiddleRow)
        return 2.0;
    return row - lastThinRow - 0.5;
}
