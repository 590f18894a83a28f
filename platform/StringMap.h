// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CString.h"

#include <QHash>
#include <QMap>
#include <QSharedData>

namespace OvCc {

/// What CMapStringToPtr and CMapStringToString have in common.
template <typename Value>
class StringMap : public QSharedData
{
public:
    int count() const { return m_entries.size(); }

    bool lookup(const CString &key, Value &value) const
    {
        const auto number = m_numbers.constFind(key);
        if (number == m_numbers.cend())
            return false;
        value = m_entries.constFind(*number)->value;
        return true;
    }

    Value &operator[](const CString &key)
    {
        quintptr &number = m_numbers[key];
        if (number == 0)
            m_entries.insert(number = ++m_last, {key, Value()});
        return m_entries[number].value;
    }

    bool remove(const CString &key) { return m_entries.remove(m_numbers.take(key)) > 0; }

    void clear()
    {
        m_numbers.clear();
        m_entries.clear();
    }

    POSITION start() const { return positionOf(m_entries.cbegin()); }

    void next(POSITION &position, CString &key, Value &value) const
    {
        auto entry = m_entries.lowerBound(reinterpret_cast<quintptr>(position));
        if (position && entry != m_entries.cend()) {
            key = entry->key;
            value = entry->value;
            ++entry;
        } else {
            entry = m_entries.cend();
        }
        position = positionOf(entry);
    }

private:
    struct Entry
    {
        CString key;
        Value value;
    };
    using Entries = QMap<quintptr, Entry>;

    POSITION positionOf(typename Entries::const_iterator entry) const
    {
        return entry == m_entries.cend() ? nullptr : reinterpret_cast<POSITION>(entry.key());
    }

    QHash<CString, quintptr> m_numbers;
    Entries m_entries; ///< by number, which is a key's place in the order
    quintptr m_last = 0;
};

} // namespace OvCc
