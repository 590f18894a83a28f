// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <string_view>

class QTextCodec;

namespace Embedded {

/// Turns the bytes of a drawing's texts into characters and back.
///
/// Characters that the code page lacks stand in the file as `\U+XXXX`, one for each UTF-16 unit. A
/// decoded text has no NUL and no half of a surrogate pair, which other programs' strings cannot hold:
/// bytes of that kind become U+FFFD, and escapes stay as they are written.
class TextCodec
{
public:
    /// The code page of drawings that name none: Windows Latin 1.
    TextCodec();

    /// Uses a code page by the name it has in DXF, such as "ANSI_1251" or "dos850".
    /// @return false for one that is not known; this codec then stays as it was
    bool setCodePage(std::string_view name);

    void setUtf8();

    QString decode(std::string_view bytes) const;
    QByteArray encode(const QString &text) const;

private:
    QTextCodec *m_codec;
};

} // namespace Embedded
