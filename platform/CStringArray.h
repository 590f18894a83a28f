// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CString.h"

#include <QVector>

/// An array of texts. An index that is not there reads as an empty text and writes nothing; a
/// negative size or count is 0.
///
/// @ingroup platform
class OVCC_EXPORT CStringArray
{
public:
    CStringArray();

    /// A copy: changes of one do not show in the other.
    CStringArray(const CStringArray &other);
    ~CStringArray();

    /// As the constructor.
    CStringArray &operator=(const CStringArray &other);

    /// The number of texts.
    /// @{
    int GetCount() const;
    int GetSize() const;
    /// @}

    /// The last index; -1 for an empty array.
    int GetUpperBound() const;

    /// Whether there is no text.
    bool IsEmpty() const;

    /// Drops the texts behind @p size, or adds empty ones.
    void SetSize(int size);

    /// Leaves no text.
    void RemoveAll();

    /// The text at @p index.
    CString GetAt(int index) const;

    /// Replaces the text at @p index.
    void SetAt(int index, const CString &text);

    /// The text at @p index.
    CString operator[](int index) const;

    /// The text at @p index, to be changed. The reference is good until the array changes.
    CString &operator[](int index);

    /// @return the index of the new text
    int Add(const CString &text);
    /// Makes the array longer where it has to be.
    void InsertAt(int index, const CString &text, int count = 1);

    /// Removes @p count texts from @p index on, or as many as there are.
    void RemoveAt(int index, int count = 1);

private:
    QVector<CString> m_texts;
    CString m_nowhere; ///< what may be written to where there is no element
};
