// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CString.h"

#include <QSharedDataPointer>

namespace OvCc {
template <typename Value>
class StringMap;
}

/// A map from texts to texts. It is walked in the order in which the keys
/// came; any element may be removed on the way, and what is added is still met. Looking up is O(1),
/// all else logarithmic.
///
/// @ingroup platform
class OVCC_EXPORT CMapStringToString
{
public:
    CMapStringToString();

    /// A copy: changes of one do not show in the other. A position belongs to its own map.
    CMapStringToString(const CMapStringToString &other);
    ~CMapStringToString();

    /// As the constructor.
    CMapStringToString &operator=(const CMapStringToString &other);

    /// The number of keys.
    /// @{
    int GetCount() const;
    int GetSize() const;
    /// @}

    /// Whether there is no key.
    bool IsEmpty() const;

    /// Leaves @p value alone if there is no such key.
    bool Lookup(const CString &key, CString &value) const;
    /// The value of @p key, which is added if it is new.
    CString &operator[](const CString &key);

    /// Gives @p key another value, and adds it if it is new.
    void SetAt(const CString &key, const CString &value);
    /// Whether there was such a key.
    bool RemoveKey(const CString &key);

    /// Leaves no key.
    void RemoveAll();

    /// Where the walk begins; null for an empty map.
    POSITION GetStartPosition() const;
    /// Gives the key and value at @p position, which moves on; null behind the last one. Where the
    /// rest was removed meanwhile, key and value are left alone.
    void GetNextAssoc(POSITION &position, CString &key, CString &value) const;

private:
    QSharedDataPointer<OvCc::StringMap<CString>> m_map;
};
