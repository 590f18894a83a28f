#include "Kernel32Errors.h"
#include "Kernel32Paths.h"

#include <QFileInfo>
#include <QLibrary>

#include <map>
#include <memory>
#include <mutex>

#include <dlfcn.h>
#include <link.h>

using namespace OvCc::Kernel32;
using Handle = OvKernel32::Handle;

namespace {

/// What is loaded by the system's handle, once for each time.
struct Modules
{
    std::mutex mutex;
    std::multimap<Handle, std::shared_ptr<QLibrary>> libraries;

    /// Null, and ErrorInvalidHandle, for an unknown handle.
    std::shared_ptr<QLibrary> find(Handle handle) const
    {
        const auto found = libraries.find(handle);
        return found == libraries.end() ? fail(OvKernel32::ErrorInvalidHandle, nullptr)
                                        : found->second;
    }
};

Modules &modules()
{
    static Modules loaded;
    return loaded;
}

QString programPath()
{
    return QFileInfo(QStringLiteral("/proc/self/exe")).symLinkTarget();
}

/// The system's handle of a library that is loaded already.
Handle handleOf(const QString &name)
{
    void *module = ::dlopen(QFile::encodeName(name).constData(), RTLD_LAZY | RTLD_NOLOAD);
    if (module)
        ::dlclose(module);
    return reinterpret_cast<Handle>(module);
}

/// The names to try for "folder/foo.dll", in this order.
QStringList candidates(const QString &path)
{
    const QFileInfo file(path);
    const bool isDll = file.suffix().compare(QLatin1String("dll"), Qt::CaseInsensitive) == 0;
    const QString stem = isDll ? file.completeBaseName() : file.fileName();
    QStringList names{file.fileName()};
    if (isDll || file.suffix().isEmpty())
        names = QStringList{"lib" + stem + ".so", stem + ".so", file.fileName()};

    const bool hasFolder = path.contains('/');
    const QString folder = hasFolder ? file.absolutePath() : QFileInfo(programPath()).path();
    QStringList found;
    for (const QString &name : qAsConst(names)) {
        const QString candidate = spelledOnDisk(folder + '/' + name);
        if (QFileInfo(candidate).isFile())
            found.append(candidate);
    }
    return hasFolder ? found : found + names;
}

} // namespace

Handle OvKernel32::loadLibrary(const wchar_t *name)
{
    const QString path = mappedPath(name);
    if (path.isNull())
        return 0;
    const std::lock_guard<std::mutex> lock(modules().mutex);
    const QStringList names = candidates(path);
    for (const QString &candidate : names) {
        const auto library = std::make_shared<QLibrary>(candidate);
        const Handle handle = library->load() ? handleOf(library->fileName()) : 0;
        if (handle)
            return modules().libraries.emplace(handle, library)->first;
    }
    return fail(ErrorModNotFound, Handle(0));
}

OvKernel32::Bool OvKernel32::freeLibrary(Handle handle)
{
    const std::lock_guard<std::mutex> lock(modules().mutex);
    const std::shared_ptr<QLibrary> library = modules().find(handle);
    if (!library)
        return false;
    modules().libraries.erase(modules().libraries.find(handle));
    library->unload();
    return true;
}

OvKernel32::Function OvKernel32::getProcAddress(Handle handle, const char *name)
{
    constexpr std::uintptr_t firstPointer = 0x10000; // what is less stands for an ordinal
    const std::lock_guard<std::mutex> lock(modules().mutex);
    const std::shared_ptr<QLibrary> library = modules().find(handle);
    if (!library)
        return nullptr;
    if (reinterpret_cast<std::uintptr_t>(name) < firstPointer)
        return fail(name ? ErrorNotSupported : ErrorInvalidParameter, nullptr);
    const Function function = library->resolve(name);
    return function ? function : fail(ErrorProcNotFound, nullptr);
}

OvKernel32::Dword OvKernel32::getModuleFileName(Handle handle, wchar_t *buffer, Dword size)
{
    const std::lock_guard<std::mutex> lock(modules().mutex);
    if (handle && !modules().find(handle))
        return 0;
    if (!buffer || size == 0)
        return fail(ErrorInvalidParameter, 0U);
    QString path = programPath();
    link_map *map = nullptr;
    if (handle && ::dlinfo(reinterpret_cast<void *>(handle), RTLD_DI_LINKMAP, &map) == 0)
        path = QFile::decodeName(map->l_name);
    const Dword length = copyOut(path, buffer, size);
    if (length < size)
        return fail(ErrorSuccess, length);
    path.toStdWString().copy(buffer, size - 1);
    buffer[size - 1] = 0;
    return fail(ErrorInsufficientBuffer, size);
}
