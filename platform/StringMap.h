#pragma once

#include "CString.h"

#include <QHash>
#include <QMap>

namespace OvCc {

/// A map from texts, what CMapStringToPtr and CMapStringToString have in common. It is walked in the
/// order in which the keys came; any element may be removed on the way, and what is added is still
/// met. Looking up is O(1), all else logarithmic.
template <typename Value>
class StringMap
{
public:
    int GetCount() const { return m_entries.size(); }
    int GetSize() const { return m_entries.size(); }
    bool IsEmpty() const { return m_entries.isEmpty(); }

    /// Leaves @p value alone if there is no such key.
    bool Lookup(const CString &key, Value &value) const
    {
        const auto number = m_numbers.constFind(key);
        if (number == m_numbers.cend())
            return false;
        value = m_entries.constFind(*number)->value;
        return true;
    }

    /// The value of @p key, which is added if it is new.
    Value &operator[](const CString &key)
    {
        quintptr &number = m_numbers[key];
        if (number == 0)
            m_entries.insert(number = ++m_last, {key, Value()});
        return m_entries[number].value;
    }

    void SetAt(const CString &key, const Value &value)
    {
        const Value copy = value; // it may lie in the map
        (*this)[key] = copy;
    }

    /// Whether there was such a key.
    bool RemoveKey(const CString &key) { return m_entries.remove(m_numbers.take(key)) > 0; }

    void RemoveAll()
    {
        m_numbers.clear();
        m_entries.clear();
    }

    POSITION GetStartPosition() const { return positionOf(m_entries.cbegin()); }

    /// Gives the key and value at @p position, which moves on; null behind the last one. Where the
    /// rest was removed meanwhile, key and value are left alone.
    void GetNextAssoc(POSITION &position, CString &key, Value &value) const
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
