// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Kernel32Paths.h"

#include "Kernel32Errors.h"

#include <QDir>

using OvCc::Kernel32::fail;

namespace {

/// The name in @p folder that differs from @p name in case at most, an exact match first.
QString nameOnDisk(const QString &folder, const QString &name)
{
    const QStringList names =
            QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System, QDir::Name);
    if (names.contains(name))
        return name;
    for (const QString &other : names) {
        if (other.compare(name, Qt::CaseInsensitive) == 0)
            return other;
    }
    return name;
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
        if (!part.isEmpty())
            part = nameOnDisk(folder, part);
        folder += part + '/';
    }
    return parts.join('/');
}

QString OvCc::Kernel32::existingPath(const wchar_t *name)
{
    return spelledOnDisk(mappedPath(name));
}
