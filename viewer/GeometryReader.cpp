#include "GeometryReader.h"

#include "Drawing.h"
#include "EntityReader.h"

#include <QFile>
#include <QTemporaryFile>

#include <dxflib/dl_dxf.h>

#include <algorithm>
#include <stdexcept>

namespace {

/// What dxflib reads of a line, with the newline, in bytes.
constexpr int longestLine = DL_DXF_MAXLINE - 1;

/// dxflib would take the rest of a longer line for the next one, and from there on codes for values.
/// @return how many lines were cut
int cutLongLines(QByteArray &bytes)
{
    int count = 0;
    int to = 0;
    for (int begin = 0; begin < bytes.size();) {
        const int newline = bytes.indexOf('\n', begin);
        const int end = newline < 0 ? bytes.size() : newline + 1;
        const bool isLong = end - begin > longestLine;
        const int size = isLong ? longestLine : end - begin;
        std::copy_n(bytes.cbegin() + begin, size, bytes.begin() + to);
        to += size;
        if (isLong) {
            ++count;
            bytes[to - 1] = '\n';
        }
        begin = end;
    }
    bytes.truncate(to);
    return count;
}

void readFile(const QString &fileName, EntityReader &reader, QStringList &warnings)
{
    QFile file(fileName);
    QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    const int cutLines = cutLongLines(bytes);
    if (cutLines == 0) {
        DL_Dxf().in(QFile::encodeName(fileName).toStdString(), &reader);
        return;
    }
    // From a stream dxflib would read, too, but without telling of the groups.
    QTemporaryFile shortened;
    if (!shortened.open() || shortened.write(bytes) != bytes.size() || !shortened.flush()) {
        warnings += QStringLiteral("The drawing is not shown: there is no room for a copy of it.");
        return;
    }
    DL_Dxf().in(QFile::encodeName(shortened.fileName()).toStdString(), &reader);
    warnings += QStringLiteral("Lines of the file read only in part, for their length: %1.")
                        .arg(cutLines);
}

} // namespace

Geometry readGeometry(const Drawing &drawing, QStringList &warnings)
{
    EntityReader reader(drawing);
    try {
        readFile(drawing.fileName, reader, warnings);
    } catch (const std::length_error &) {
        warnings += QStringLiteral("The drawing is shown only in part: an entity is too large.");
    }
    Geometry geometry = reader.takeGeometry();
    warnings += reader.warnings() + measure(geometry);
    return geometry;
}
