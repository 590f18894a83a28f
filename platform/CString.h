// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QString>

#include <string>

/// A text, just enough for the collections: CStringList, CStringArray, CMapStringToPtr and
/// CMapStringToString. Null pointers make an empty one; narrow text is UTF-8. `+` puts two texts
/// together, `==` and `!=` compare them. As the collections do, a text belongs to one thread at a time.
///
/// @ingroup platform
class OVCC_EXPORT CString
{
public:
    CString();

    /// A copy of @p text.
    /// @{
    CString(const wchar_t *text);
    CString(const char *text);
    CString(const QString &text);
    /// @}

    /// Texts share nothing. What one says that was moved from is not fixed.
    /// @{
    CString(const CString &other);
    CString(CString &&other) noexcept;
    /// @}
    ~CString();

    /// As the constructors.
    /// @{
    CString &operator=(const CString &other);
    CString &operator=(CString &&other) noexcept;
    /// @}

    /// Never null; good until the text is changed.
    operator const wchar_t *() const;

    /// The same text for Qt.
    QString toQString() const;

    /// In `wchar_t`, each a whole character.
    int GetLength() const;

    /// Whether there is no character in it.
    bool IsEmpty() const;

    /// Leaves no character in it.
    void Empty();

    /// Appends @p other, which may be this text.
    CString &operator+=(const CString &other);

private:
    friend OVCC_EXPORT CString operator+(CString one, const CString &other);
    friend OVCC_EXPORT bool operator==(const CString &one, const CString &other);
    friend OVCC_EXPORT bool operator!=(const CString &one, const CString &other);
    friend OVCC_EXPORT uint qHash(const CString &text, uint seed);

    std::wstring m_text;
};

/// Lets a text be the key of a QHash.
OVCC_EXPORT uint qHash(const CString &text, uint seed = 0);

/// A place in a collection; null is none. One that has gone is noticed and leads nowhere.
using POSITION = struct OvPosition *;
