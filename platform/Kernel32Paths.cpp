#include "Kernel32Paths.h"

#include "Kernel32Errors.h"

#include <QString>

namespace fs = std::filesystem;
using OvCc::Kernel32::fail;
using OvPath = std::optional<fs::path>;

namespace {

bool isThere(const fs::path &path)
{
    std::error_code error;
    return fs::exists(fs::symlink_status(path, error));
}

/// The name in @p folder that differs from @p name in case only, the first of several.
fs::path nameOnDisk(const fs::path &folder, const fs::path &name)
{
    fs::path found;
    const QString wanted = QString::fromStdString(name.string());
    std::error_code error;
    for (fs::directory_iterator entry(folder.empty() ? fs::path(".") : folder, error), end;
         !error && entry != end; entry.increment(error)) {
        const fs::path other = entry->path().filename();
        if (wanted.compare(QString::fromStdString(other.string()), Qt::CaseInsensitive) == 0
            && (found.empty() || other < found))
            found = other;
    }
    return found.empty() ? name : found;
}

} // namespace

OvPath OvCc::Kernel32::mappedPath(const wchar_t *name)
{
    if (!name)
        return fail(OvKernel32::ErrorInvalidParameter, OvPath());
    if (!*name)
        return fail(OvKernel32::ErrorPathNotFound, OvPath());
    if (!isWellFormed(name))
        return fail(OvKernel32::ErrorInvalidName, OvPath());

    QString text = QString::fromWCharArray(name);
    if (text.startsWith(QLatin1String(R"(\\?\)")))
        text.remove(0, 4);
    else if (text.startsWith(QLatin1String(R"(\\)")))
        return fail(OvKernel32::ErrorBadNetPath, OvPath());
    text.replace('\\', '/');

    const char drive = text.at(0).toUpper().toLatin1();
    if (text.size() > 1 && text.at(1) == ':' && drive >= 'A' && drive <= 'Z') {
        text.remove(0, 2);
        if (drive != 'C') {
            const QString root =
                    QString::fromUtf8(qgetenv(QByteArray("OVCC_DRIVE_").append(drive).constData()));
            if (root.isEmpty())
                return fail(OvKernel32::ErrorPathNotFound, OvPath());
            text.prepend(root + '/');
        }
    }
    return fs::path(text.isEmpty() ? std::string(".") : text.toStdString());
}

fs::path OvCc::Kernel32::spelledOnDisk(const fs::path &path)
{
    if (isThere(path))
        return path;
    fs::path found;
    for (const fs::path &part : path)
        found /= part.empty() || isThere(found / part) ? part : nameOnDisk(found, part);
    return found;
}

OvPath OvCc::Kernel32::existingPath(const wchar_t *name)
{
    const OvPath path = mappedPath(name);
    return path ? spelledOnDisk(*path) : path;
}
