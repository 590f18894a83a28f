// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "RowFilter.h"

#include <OvCustomControl/LayerColumns.h>

namespace OvCc {

void RowFilter::setSearch(const QString &text)
{
    m_pattern = NamePattern(text);
    m_isSearching = !text.isEmpty();
}

void RowFilter::setPicked(const QStringList &names)
{
    m_picked = QSet<QString>(names.cbegin(), names.cend());
}

LayerTableWidget::Filters RowFilter::available() const
{
    LayerTableWidget::Filters filters = LayerTableWidget::OffFilter | LayerTableWidget::FrozenFilter
                                        | LayerTableWidget::LockedFilter;
    filters.setFlag(LayerTableWidget::UsedFilter, m_usage.has_value());
    filters.setFlag(LayerTableWidget::UnusedFilter, m_usage.has_value());
    filters.setFlag(LayerTableWidget::PickedFilter, !m_picked.isEmpty());
    return filters;
}

bool RowFilter::finds(const QStringList &row) const
{
    const QString &name = row.at(NameColumn);
    if (!m_pattern.matches(name))
        return false;
    const auto isFalse = [&row](LayerColumn column) {
        return row.at(column) == QLatin1String("false");
    };
    const LayerTableWidget::Filters filters = m_filters & available();
    const auto lets = [filters](LayerTableWidget::Filter filter, bool isSo) {
        return isSo || !filters.testFlag(filter);
    };
    return lets(LayerTableWidget::OffFilter, isFalse(OnColumn))
           && lets(LayerTableWidget::FrozenFilter, isFalse(ThawedColumn))
           && lets(LayerTableWidget::LockedFilter, isFalse(UnlockedColumn))
           && lets(LayerTableWidget::UsedFilter, !isUnused(name))
           && lets(LayerTableWidget::UnusedFilter, isUnused(name))
           && lets(LayerTableWidget::PickedFilter, m_picked.contains(name));
}

} // namespace OvCc
