// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "layer/table/NamePattern.h"

#include <OvCustomControl/LayerTableWidget.h>

#include <QHash>
#include <QSet>
#include <QStringList>

#include <optional>

namespace OvCc {

/// Which rows a layer table shows: those that the search finds and that the filters let through.
class RowFilter
{
public:
    /// As LayerTableWidget::slotSearchLayer(), setFilter(), setUsage() and setPicked().
    /// @{
    void setSearch(const QString &text);
    void setFilters(LayerTableWidget::Filters filters) { m_filters = filters; }
    void setUsage(const QHash<QString, int> &usage) { m_usage = usage; }
    void setPicked(const QStringList &names);
    /// @}

    LayerTableWidget::Filters filters() const { return m_filters; }

    /// Those of which enough is known to leave out rows.
    LayerTableWidget::Filters available() const;

    /// Whether there may be rows that are not shown.
    bool isNarrowing() const { return m_isSearching || (m_filters & available()); }

    bool isUnused(const QString &name) const { return m_usage && m_usage->value(name) == 0; }

    /// Whether a row is shown. O(1).
    bool finds(const QStringList &row) const;

private:
    NamePattern m_pattern{QString()};
    bool m_isSearching = false;
    LayerTableWidget::Filters m_filters;
    std::optional<QHash<QString, int>> m_usage; ///< nothing until the host has told
    QSet<QString> m_picked;
};

} // namespace OvCc
