// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "CString.h"

#include <QHash>

CString::CString() = default;

CString::CString(const wchar_t *text)
    : m_text(text ? text : L"")
{
}

CString::CString(const char *text)
    : CString(QString::fromUtf8(text))
{
}

CString::CString(const QString &text)
    : m_text(text.toStdWString())
{
}

CString::CString(const CString &other) = default;
CString::CString(CString &&other) noexcept = default;
CString::~CString() = default;
CString &CString::operator=(const CString &other) = default;
CString &CString::operator=(CString &&other) noexcept = default;

CString::operator const wchar_t *() const
{
    return m_text.c_str();
}

QString CString::toQString() const
{
    return QString::fromStdWString(m_text);
}

int CString::GetLength() const
{
    return static_cast<int>(m_text.size());
}

bool CString::IsEmpty() const
{
    return m_text.empty();
}

void CString::Empty()
{
    m_text.clear();
}

CString &CString::operator+=(const CString &other)
{
    m_text += other.m_text;
    return *this;
}

CString operator+(CString one, const CString &other)
{
    return one += other;
}

bool operator==(const CString &one, const CString &other)
{
    return one.m_text == other.m_text;
}

bool operator!=(const CString &one, const CString &other)
{
    return !(one == other);
}

uint qHash(const CString &text, uint seed)
{
    return qHashBits(text.m_text.data(), text.m_text.size() * sizeof(wchar_t), seed);
}
