// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "GeometryReader.h"

#include "Drawing.h"
#include "EntityReader.h"

#include <KcHost/KcHost.h>

#include <QFile>

#include <dxflib/dl_dxf.h>

#include <stdexcept>

#include <sys/mman.h>

namespace Tessa {

namespace {

/// What dxflib reads of a line, with the newline, in bytes.
constexpr int longestLine = DL_DXF_MAXLINE - 1;

/// Copies lines for dxflib, which would take the rest of a longer line for the next one, and from
/// there on codes for values.
/// @return how many lines were cut, or -1 if the file has no room
int copyLines(const QByteArray &bytes, QFile &file)
{
    int cutLines = 0;
    int copied = 0;
    bool isWhole = true;
    const auto copyUpTo = [&](int end) {
        isWhole = isWhole && file.write(bytes.constData() + copied, end - copied) == end - copied;
    };
    for (int begin = 0; begin < bytes.size();) {
        const int newline = bytes.indexOf('\n', begin);
        const int end = newline < 0 ? bytes.size() : newline + 1;
        if (end - begin > longestLine) {
            ++cutLines;
            copyUpTo(begin + longestLine - 1);
            isWhole = isWhole && file.putChar('\n');
            copied = end;
        }
        begin = end;
    }
    copyUpTo(bytes.size());
    return isWhole && file.flush() ? cutLines : -1;
}

/// Has dxflib read a file in memory: from a stream it would not tell of the groups.
void readContent(const QByteArray &content, EntityReader &reader, QStringList &warnings)
{
    QFile file;
    const bool isOpen = file.open(memfd_create("drawing", MFD_CLOEXEC), QIODevice::WriteOnly,
                                  QFileDevice::AutoCloseHandle);
    const int cutLines = isOpen ? copyLines(content, file) : -1;
    if (cutLines < 0) {
        warnings += QStringLiteral("The drawing is not shown: there is no room for a copy of it.");
        return;
    }
    DL_Dxf().in("/proc/self/fd/" + std::to_string(file.handle()), &reader);
    if (cutLines > 0)
        warnings += QStringLiteral("Lines of the file read only in part, for their length: %1.")
                            .arg(cutLines);
}

} // namespace

Geometry readGeometry(const Drawing &drawing, QStringList &warnings)
{
    EntityReader reader(drawing);
    try {
        readContent(KcHost::fileContent(*drawing.database), reader, warnings);
    } catch (const std::length_error &) {
        warnings += QStringLiteral("The drawing is shown only in part: an entity is too large.");
    }
    Geometry geometry = reader.takeGeometry();
    warnings += reader.warnings() + measure(geometry);
    return geometry;
}

} // namespace Tessa
