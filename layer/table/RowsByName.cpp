// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "RowsByName.h"

#include <QtMath>

#include <algorithm>
#include <utility>

namespace OvCc {

RowsByName::RowsByName(const QVector<QStringList> &rows, const Renamed &renamed)
    : m_rows(rows)
    , m_places(size_t(qNextPowerOfTwo(quint32(2 * rows.size()))), none)
{
    QVector<int> later;
    for (auto cell = renamed.keyBegin(); cell != renamed.keyEnd(); ++cell) {
        if (cell->isValid())
            later.append(cell->row());
    }
    std::sort(later.begin(), later.end());
    for (int row = 0; row < rows.size(); ++row) {
        if (!std::binary_search(later.cbegin(), later.cend(), row))
            insert(row);
    }
    for (const int row : std::as_const(later))
        insert(row);
}

int RowsByName::take(const QString &name)
{
    for (size_t at = first(name); m_places[at] != none; at = next(at)) {
        const int row = m_places[at];
        if (row != taken && nameOf(row) == name) {
            m_places[at] = taken;
            return row;
        }
    }
    return -1;
}

void RowsByName::insert(int row)
{
    size_t place = first(nameOf(row));
    while (m_places[place] != none)
        place = next(place);
    m_places[place] = row;
}

} // namespace OvCc
