// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerNumbers.h"

#include <OvCustomControl/LayerColumns.h>
#include <OvCustomControl/LayerNames.h>

#include <algorithm>

QList<int> OvCc::layerNumbers(const QVector<QStringList> &rows)
{
    const QLatin1String stem("layer");
    QList<int> numbers;
    for (int row = 1; row < rows.size(); ++row) {
        const QString &name = rows.at(row).at(NameColumn);
        const QString digits = name.mid(stem.size());
        if (name.startsWith(stem, Qt::CaseInsensitive) && !digits.isEmpty() && isDigitStr(digits)
            && !digits.startsWith(QLatin1Char('0')))
            numbers.append(digits.toInt());
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

int OvCc::firstFreeNumber(const QList<int> &taken)
{
    for (int place = 0; place < taken.size(); ++place) {
        if (taken.at(place) != place + 1)
            return place + 1;
    }
    return taken.size() + 1;
}
