// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace OvCc {

/// A search for names, in which one "*" stands for any characters: at the beginning, or else at the
/// end, or else the first one inside. Without one the beginning of the name counts. Letter case does
/// not.
class NamePattern
{
public:
    explicit NamePattern(const QString &text);

    bool matches(const QString &name) const;

private:
    QString m_begin;
    QString m_end;
};

} // namespace OvCc
