// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/LayerColumns.h>

#include <QHash>
#include <QPersistentModelIndex>
#include <QStringList>
#include <QVector>

#include <vector>

namespace OvCc {

/// Names in the drawing, by the cells of rows that have another one in the table.
using Renamed = QHash<QPersistentModelIndex, QString>;

/// Finds rows by their names. Each is found once: where two have one name, the one that had it before
/// the user renamed the other, and else the upper one first. A hash of Qt's takes an allocation for
/// each name, which shows in what a refresh costs beyond reading.
class RowsByName
{
public:
    /// @param rows they must not change while this is used
    RowsByName(const QVector<QStringList> &rows, const Renamed &renamed);

    /// -1 if there is none, or none any more.
    int take(const QString &name);

private:
    static constexpr int none = -1;
    static constexpr int taken = -2;

    const QString &nameOf(int row) const { return m_rows.at(row).at(NameColumn); }
    size_t first(const QString &name) const { return qHash(name) & (m_places.size() - 1); }
    size_t next(size_t place) const { return (place + 1) & (m_places.size() - 1); }

    void insert(int row);

    const QVector<QStringList> &m_rows;
    std::vector<int> m_places; ///< rows, each at the first free place from that of its name on
};

} // namespace OvCc
