// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Kernel32Paths.h"

#include "Kernel32Errors.h"

#include <QDir>

#include <cerrno>
#include <filesystem>
#include <string>

namespace fs = std::filesystem;
using OvCc::Kernel32::fail;
using OvCc::Kernel32::failErrno;

namespace {

/// The name in @p folder that differs from @p name in case at most, an exact match first. A folder that
/// may not be listed, or is none, has the name as it is.
/// @return null, with the last error set, if nobody knows
QString nameOnDisk(const QString &folder, const QString &name)
{
    std::error_code error;
    QString found;
    const std::string path = QFile::encodeName(folder.isEmpty() ? "." : folder).toStdString();
    for (fs::directory_iterator entry(path, error), end; !error && entry != end;
         entry.increment(error)) {
        const QString other = QFile::decodeName(entry->path().filename().native().c_str());
        if (other == name)
            return name;
        if (other.compare(name, Qt::CaseInsensitive) == 0 && (found.isNull() || other < found))
            found = other;
    }
    const int number = error.value();
    if (number != 0 && number != ENOENT && number != ENOTDIR && number != EACCES)
        return failErrno(number), QString();
    return found.isNull() ? name : found;
}

} // namespace

QString OvCc::Kernel32::mappedPath(const wchar_t *name)
{
    if (!name)
        return fail(OvKernel32::ErrorInvalidParameter, QString());
    if (!isWellFormed(name))
        return fail(OvKernel32::ErrorInvalidName, QString());

    QString text = QString::fromWCharArray(name);
    if (text.startsWith(QLatin1String(R"(\\?\)")))
        text.remove(0, 4);
    else if (text.startsWith(QLatin1String(R"(\\)")))
        return fail(OvKernel32::ErrorBadNetPath, QString());
    if (text.isEmpty())
        return fail(OvKernel32::ErrorPathNotFound, QString());
    text.replace('\\', '/');

    const char drive = text.at(0).toUpper().toLatin1();
    if (text.size() > 1 && text.at(1) == ':' && drive >= 'A' && drive <= 'Z') {
        text.remove(0, 2);
        if (drive != 'C') {
            const QByteArray variable = QByteArray("OVCC_DRIVE_").append(drive);
            const QString root = qEnvironmentVariable(variable.constData());
            if (root.isEmpty())
                return fail(OvKernel32::ErrorPathNotFound, QString());
            text.prepend(root + '/');
        }
    }
    return text.isEmpty() ? QStringLiteral(".") : text;
}

QString OvCc::Kernel32::spelledOnDisk(const QString &path)
{
    if (path.isEmpty() || QFileInfo::exists(path))
        return path;
    QStringList parts = path.split('/');
    QString folder;
    for (QString &part : parts) {
        if (!part.isEmpty() && (part = nameOnDisk(folder, part)).isNull())
            return {};
        folder += part + '/';
    }
    return parts.join('/');
}

QString OvCc::Kernel32::existingPath(const wchar_t *name)
{
    return spelledOnDisk(mappedPath(name));
}
