// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DxfTokens.h"

#include <QHash>

#include <vector>

namespace Embedded {

/// What is known of the objects of a drawing's file: where each stands and which other one owns it.
class DxfObjects
{
public:
    /// Linear in the size of the sections.
    /// @param bytes must outlive this
    DxfObjects(const QByteArray &bytes, const std::vector<ByteRange> &sections);

    /// The extension dictionary of a record, if it is the record's own, and all that it owns in turn.
    /// Each object is given out once.
    std::vector<ByteRange> takeExtension(ByteRange record);

private:
    struct Object
    {
        ByteRange bytes;
        quint64 handle = 0;
        quint64 owner = 0;
        quint64 extension = 0; ///< its extension dictionary
        bool isTaken = false;
    };

    void addSection(ByteRange section);
    static void readGroup(Object &object, DxfRecordPlace &place, const DxfTokens &tokens);

    const QByteArray &m_bytes;
    std::vector<Object> m_objects;
    QHash<quint64, int> m_byHandle;
    QMultiHash<quint64, int> m_byOwner;
};

} // namespace Embedded
