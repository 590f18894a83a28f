// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Kernel32Errors.h"
#include "Kernel32Paths.h"

#include <QFileInfo>
#include <QStringList>

#include <map>
#include <memory>
#include <mutex>
#include <utility>

#include <dlfcn.h>
#include <link.h>

using namespace OvCc::Kernel32;
using Handle = OvKernel32::Handle;

namespace {

/// A library of the system, which is closed when the last one lets go of it.
using Module = std::shared_ptr<void>;

/// What is loaded by the system's handle, once for each time.
///
/// A module may call this layer while it is being loaded or unloaded: nobody who has the system do
/// that holds the lock.
class Modules
{
public:
    Handle add(const Module &module)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_modules.emplace(reinterpret_cast<Handle>(module.get()), module)->first;
    }

    /// Null, and ErrorInvalidHandle, for an unknown handle.
    Module find(Handle handle) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = m_modules.find(handle);
        return found == m_modules.end() ? fail(OvKernel32::ErrorInvalidHandle, nullptr)
                                        : found->second;
    }

    /// find(), for the last time.
    Module take(Handle handle)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = m_modules.extract(handle);
        return found ? found.mapped() : fail(OvKernel32::ErrorInvalidHandle, nullptr);
    }

private:
    mutable std::mutex m_mutex;
    std::multimap<Handle, Module> m_modules;
};

Modules &modules()
{
    // Never destroyed: modules that stay loaded may call when the process ends.
    static auto &loaded = *new Modules;
    return loaded;
}

QString programPath()
{
    return QFileInfo(QStringLiteral("/proc/self/exe")).symLinkTarget();
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
    for (const QString &name : std::as_const(names)) {
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
    const QStringList names = candidates(path);
    for (const QString &candidate : names) {
        void *const opened = ::dlopen(QFile::encodeName(candidate).constData(), RTLD_LAZY);
        if (opened)
            return modules().add(Module(opened, ::dlclose));
    }
    return fail(ErrorModNotFound, Handle(0));
}

OvKernel32::Bool OvKernel32::freeLibrary(Handle handle)
{
    return modules().take(handle) != nullptr;
}

OvKernel32::Function OvKernel32::getProcAddress(Handle handle, const char *name)
{
    constexpr std::uintptr_t firstPointer = 0x10000; // what is less stands for an ordinal
    const Module module = modules().find(handle);
    if (!module)
        return nullptr;
    if (reinterpret_cast<std::uintptr_t>(name) < firstPointer)
        return fail(name ? ErrorNotSupported : ErrorInvalidParameter, nullptr);
    void *const function = ::dlsym(module.get(), name);
    return function ? reinterpret_cast<Function>(function) : fail(ErrorProcNotFound, nullptr);
}

OvKernel32::Dword OvKernel32::getModuleFileName(Handle handle, wchar_t *buffer, Dword size)
{
    const Module module = handle ? modules().find(handle) : nullptr;
    if (handle && !module)
        return 0;
    if (!buffer || size == 0)
        return fail(ErrorInvalidParameter, 0U);
    QString path = programPath();
    link_map *map = nullptr;
    if (module && ::dlinfo(module.get(), RTLD_DI_LINKMAP, &map) == 0)
        path = QFile::decodeName(map->l_name);
    const Dword length = copyOut(path, buffer, size);
    if (length < size)
        return fail(ErrorSuccess, length);
    path.toStdWString().copy(buffer, size - 1);
    buffer[size - 1] = 0;
    return fail(ErrorInsufficientBuffer, size);
}
