#include "LineWeightRows.h"

#include <QCoreApplication>

QStringList OvCc::lineWeightLabels(std::initializer_list<LineWeightCode> first, LineWeightUnit unit,
                                   const char *context)
{
    QStringList labels;
    for (const LineWeightCode code : first)
        labels.append(fixedLineWeightLabel(code, unit));
    for (const int lineWeight : standardLineWeights)
        labels.append(fixedLineWeightLabel(lineWeight, unit));
    for (QString &label : labels) {
        if (context)
            label = QCoreApplication::translate(context, label.toUtf8().constData());
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
