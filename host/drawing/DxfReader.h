// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DxfCursor.h"
#include "DxfEntityReader.h"
#include "DxfTableReader.h"

#include <optional>

namespace Embedded {

/// Makes a drawing of the bytes of an ASCII DXF file, in one walk over them; linear.
class DxfReader
{
public:
    /// @param fileName only for the sentences
    DxfReader(const QString &fileName, const QByteArray &bytes);

    /// Reads the file, once.
    /// @return the drawing; nothing when error() says why there is none
    std::optional<Drawing> read();

    /// One sentence with file, line and reason.
    const QString &error() const { return m_cursor.error(); }

    /// One sentence with file, line and reason for each oddity that was survived.
    const QStringList &warnings() const { return m_cursor.warnings(); }

private:
    /// What the header refers to, to be looked up when the whole file is known.
    struct Reference
    {
        DxfGroup group;
        int line = 0;
    };

    bool checkSignature();
    bool checkFirstGroup();
    void readSections();
    void readSection();
    void readContent();
    void skipContent();
    void readHeader();
    void readVariable(std::string_view name);
    void readVersion();
    void chooseCodec();
    void readObjects();
    void finish();
    void resolveCurrentLayer();

    Drawing m_drawing;
    bool m_hasByteOrderMark;
    DxfCursor m_cursor;
    DxfTableReader m_tables;
    DxfEntityReader m_entities;
    bool m_hasBody = false;
    bool m_isHeaderAhead;                 ///< or may be; until it was read, no name can be
    std::vector<DxfCursor::Place> m_late; ///< sections that have to wait for it

    Reference m_codePage;
    Reference m_currentLayer;
    quint64 m_handleSeed = 0;
};

} // namespace Embedded
