#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QString>

#include <string>

/// A text, just enough for the collections: CStringList, CStringArray, CMapStringToPtr and
/// CMapStringToString. Null pointers make an empty one; narrow text is UTF-8.
class OVCC_EXPORT CString
{
public:
    CString();
    CString(const wchar_t *text);
    CString(const char *text);
    CString(const QString &text);
    CString(const CString &other);
    CString(CString &&other) noexcept;
    ~CString();
    CString &operator=(const CString &other);
    CString &operator=(CString &&other) noexcept;

    operator const wchar_t *() const;
    QString toQString() const;
    int GetLength() const;
    bool IsEmpty() const;
    void Empty();

    CString &operator+=(const CString &other);

private:
    friend OVCC_EXPORT CString operator+(CString one, const CString &other);
    friend OVCC_EXPORT bool operator==(const CString &one, const CString &other);
    friend OVCC_EXPORT bool operator!=(const CString &one, const CString &other);
    friend OVCC_EXPORT uint qHash(const CString &text, uint seed);

    std::wstring m_text;
};

OVCC_EXPORT uint qHash(const CString &text, uint seed = 0);

/// A place in a collection; null is none. One that has gone is noticed and leads nowhere.
using POSITION = struct OvPosition *;
