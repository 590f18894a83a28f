#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QHash>
#include <QString>

#include <string>

/// A text, just enough for the collections: CStringList, CStringArray, CMapStringToPtr and
/// CMapStringToString. Null pointers make an empty one; narrow text is UTF-8.
class OVCC_EXPORT CString
{
public:
    CString() = default;
    CString(const wchar_t *text)
        : m_text(text ? text : L"")
    {
    }
    CString(const char *text)
        : CString(QString::fromUtf8(text))
    {
    }
    CString(const QString &text)
        : m_text(text.toStdWString())
    {
    }

    operator const wchar_t *() const { return m_text.c_str(); }
    QString toQString() const { return QString::fromStdWString(m_text); }
    int GetLength() const { return static_cast<int>(m_text.size()); }
    bool IsEmpty() const { return m_text.empty(); }
    void Empty() { m_text.clear(); }

    CString &operator+=(const CString &other)
    {
        m_text += other.m_text;
        return *this;
    }
    friend CString operator+(CString one, const CString &other) { return one += other; }

    friend bool operator==(const CString &one, const CString &other)
    {
        return one.m_text == other.m_text;
    }
    friend bool operator!=(const CString &one, const CString &other) { return !(one == other); }
    friend uint qHash(const CString &text, uint seed = 0)
    {
        return qHashBits(text.m_text.data(), text.m_text.size() * sizeof(wchar_t), seed);
    }

private:
    std::wstring m_text;
};

/// A place in a collection; null is none. One that has gone is noticed and leads nowhere.
using POSITION = struct OvPosition *;
