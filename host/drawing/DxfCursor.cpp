// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DxfCursor.h"

#include <algorithm>

namespace Embedded {

DxfCursor::DxfCursor(const QString &fileName, const Drawing &drawing, int begin)
    : m_fileName(fileName)
    , m_drawing(drawing)
    , m_tokens(drawing.bytes, {begin, int(drawing.bytes.size())})
{
}

bool DxfCursor::next()
{
    if (hasFailed())
        return false;
    DxfTokens::Step step;
    do {
        step = m_tokens.next();
    } while (step == DxfTokens::Step::Group && m_tokens.group().code == kComment);
    if (step == DxfTokens::Step::BadCode)
        fail(line(), QStringLiteral("%1 is no group code").arg(quoted(text(m_tokens.group()))));
    if (step != DxfTokens::Step::Group)
        return false;
    m_group = m_tokens.group();
    if (code() == 0) {
        ++m_records;
        m_recordType = value();
    }
    return true;
}

bool DxfCursor::nextInSection()
{
    const bool isGroup = next();
    if (hasFailed())
        return false;
    const bool hasNoEnd = isGroup && isAt("SECTION");
    if (!isGroup || hasNoEnd || isAt("EOF")) {
        const QString section = quoted(m_drawing.text.decode(m_section));
        fail(line(), hasNoEnd ? QStringLiteral("the section %1 has no end").arg(section)
                              : QStringLiteral("the file ends inside the section %1").arg(section));
        return false;
    }
    if (code() == 0)
        return m_recordType != "ENDSEC";
    noteHandle();
    return true;
}

bool DxfCursor::enterSection()
{
    m_section = {};
    if (!nextInSection())
        return false;
    if (code() == 2)
        m_section = value();
    return true;
}

QString DxfCursor::text(const DxfGroup &group) const
{
    return m_drawing.text.decode(m_tokens.view(group.value));
}

void DxfCursor::goTo(const Place &place)
{
    m_tokens.goTo(place.tokens);
    m_group = m_tokens.group();
    m_section = place.section;
    m_records = place.records;
}

void DxfCursor::fail(int line, const QString &reason)
{
    m_error = sentence(line, reason);
}

void DxfCursor::warn(int line, const QString &reason)
{
    m_warnings += sentence(line, reason);
}

void DxfCursor::noteHandle()
{
    const int handleCode = m_recordType == "DIMSTYLE" ? 105 : 5;
    if (code() == handleCode && m_section != "HEADER")
        m_highestHandle = std::max(m_highestHandle, toHandle(value()));
}

QString DxfCursor::sentence(int line, const QString &reason) const
{
    return QStringLiteral("%1, line %2: %3.").arg(m_fileName, QString::number(line), reason);
}

QString quoted(const QString &text)
{
    constexpr int longestQuote = 60;
    return QLatin1Char('"') + text.left(longestQuote) + QLatin1Char('"');
}

} // namespace Embedded
