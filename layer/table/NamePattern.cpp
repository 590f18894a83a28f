// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "NamePattern.h"

namespace OvCc {

NamePattern::NamePattern(const QString &text)
{
    const QLatin1Char star('*');
    const QString pattern = text.toLower();
    const bool isStarLast = !pattern.startsWith(star) && pattern.endsWith(star);
    const int place = isStarLast ? pattern.size() - 1 : pattern.indexOf(star);
    m_begin = pattern.left(place);
    m_end = place < 0 ? QString() : pattern.mid(place + 1);
}

bool NamePattern::matches(const QString &name) const
{
    const QString lower = name.toLower();
    return lower.startsWith(m_begin) && lower.endsWith(m_end);
}

} // namespace OvCc
