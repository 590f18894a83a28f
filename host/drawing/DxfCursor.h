// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Drawing.h"

#include <QStringList>

#include <string_view>

namespace Embedded {

/// Goes through the groups of a drawing's file, comments aside, and collects what there is to say of
/// them to the user.
class DxfCursor
{
public:
    /// Where a walk is, to come back to.
    struct Place
    {
        DxfTokens::Place tokens;
        std::string_view section;
        int records = 0;
    };

    /// @param fileName only for the sentences
    /// @param drawing  whose bytes are read, and in whose code page; must outlive this
    /// @param begin    of the first group
    DxfCursor(const QString &fileName, const Drawing &drawing, int begin);

    /// Goes to the next group.
    /// @return false at the end of the file, and when reading has failed
    bool next();

    /// Goes to the next group of this section.
    /// @return false at its end, and when reading has failed
    bool nextInSection();

    /// Goes on to the name of the section that begins here, and takes it for this one.
    /// @return false when reading has failed, or the section has no groups
    bool enterSection();

    const DxfTokens &tokens() const { return m_tokens; }
    /// The last one there was.
    const DxfGroup &group() const { return m_group; }
    int code() const { return m_group.code; }
    std::string_view value() const { return trimmed(m_tokens.view(m_group.value)); }
    QString text() const { return text(m_group); }
    QString text(const DxfGroup &group) const;
    int line() const { return m_tokens.line(); }
    std::string_view section() const { return m_section; }

    /// Whether this group begins the record of that name.
    bool isAt(std::string_view record) const { return code() == 0 && value() == record; }

    /// How many groups of code 0 there are up to this one.
    int records() const { return m_records; }

    Place place() const { return {m_tokens.place(), m_section, m_records}; }
    void goTo(const Place &place);

    /// The highest of the handles in the sections that were gone through.
    quint64 highestHandle() const { return m_highestHandle; }

    /// Ends the walk, with a sentence of file, line and reason.
    void fail(int line, const QString &reason);
    bool hasFailed() const { return !m_error.isEmpty(); }
    const QString &error() const { return m_error; }

    /// Notes an oddity that was survived, likewise.
    void warn(int line, const QString &reason);
    const QStringList &warnings() const { return m_warnings; }

private:
    void noteHandle();
    QString sentence(int line, const QString &reason) const;

    const QString m_fileName;
    const Drawing &m_drawing;
    DxfTokens m_tokens;
    DxfGroup m_group;
    std::string_view m_section;
    std::string_view m_recordType;
    int m_records = 0;
    quint64 m_highestHandle = 0;
    QString m_error;
    QStringList m_warnings;
};

/// @p text in quotes, cut where it is long.
QString quoted(const QString &text);

} // namespace Embedded
