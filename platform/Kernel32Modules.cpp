#include "Kernel32Errors.h"
#include "Kernel32Handles.h"
#include "Kernel32Paths.h"

#include <QFile>
#include <QLibrary>

#include <cwchar>

#include <dlfcn.h>
#include <link.h>

namespace fs = std::filesystem;
using OvCc::Kernel32::fail;

namespace {

struct Module
{
    QLibrary library;
    fs::path path; ///< where it was found
    int uses = 0;
};

OvCc::Kernel32::HandleTable<Module> &modules()
{
    static OvCc::Kernel32::HandleTable<Module> table;
    return table;
}

/// Held while modules come and go.
std::mutex &moduleMutex()
{
    static std::mutex mutex;
    return mutex;
}

/// The file that was loaded under @p name: the loader may have looked for it in its own folders.
fs::path loadedPath(const QString &name)
{
    void *module = ::dlopen(QFile::encodeName(name).constData(), RTLD_LAZY | RTLD_NOLOAD);
    link_map *map = nullptr;
    const bool isKnown = module && ::dlinfo(module, RTLD_DI_LINKMAP, &map) == 0;
    const fs::path path = isKnown && *map->l_name ? map->l_name : name.toStdString();
    if (module)
        ::dlclose(module);
    return path;
}

/// The names to try for "folder/foo.dll", in this order.
std::vector<fs::path> candidates(const fs::path &path)
{
    const QString suffix = QString::fromStdString(path.extension().string());
    const bool isDll = suffix.compare(QLatin1String(".dll"), Qt::CaseInsensitive) == 0;
    const std::string stem = (isDll ? path.stem() : path.filename()).string();

    std::vector<fs::path> names{path.filename()};
    if (isDll || suffix.isEmpty())
        names = {"lib" + stem + ".so", stem + ".so", path.filename()};

    std::vector<fs::path> result;
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error).parent_path();
    for (const fs::path &folder : {path.has_parent_path() ? path.parent_path() : program}) {
        for (const fs::path &name : names)
            result.push_back(fs::absolute(OvCc::Kernel32::spelledOnDisk(folder / name), error));
    }
    if (!path.has_parent_path())
        result.insert(result.end(), names.begin(), names.end());
    return result;
}

} // namespace

OvKernel32::Handle OvKernel32::loadLibrary(const wchar_t *name)
{
    const auto path = OvCc::Kernel32::mappedPath(name);
    if (!path)
        return 0;
    const std::lock_guard<std::mutex> lock(moduleMutex());
    std::error_code error;
    for (const fs::path &candidate : candidates(*path)) {
        if (candidate.is_absolute() && !fs::is_regular_file(candidate, error))
            continue;
        const auto module = std::make_shared<Module>();
        module->library.setFileName(QString::fromStdString(candidate.string()));
        if (!module->library.load())
            continue;
        module->path = loadedPath(module->library.fileName());
        const Handle known = modules().findIf(
                [&module](const Module &other) { return other.path == module->path; });
        if (known)
            module->library.unload();
        const Handle handle = known ? known : modules().add(module);
        ++modules().find(handle)->uses;
        return handle;
    }
    return fail(ErrorModNotFound, Handle(0));
}

OvKernel32::Bool OvKernel32::freeLibrary(Handle handle)
{
    const std::lock_guard<std::mutex> lock(moduleMutex());
    const std::shared_ptr<Module> module = modules().find(handle);
    if (!module)
        return false;
    if (--module->uses > 0)
        return true;
    modules().remove(handle);
    module->library.unload();
    return true;
}

OvKernel32::Function OvKernel32::getProcAddress(Handle handle, const char *name)
{
    constexpr std::uintptr_t firstPointer = 0x10000; // what is less stands for an ordinal
    const std::shared_ptr<Module> module = modules().find(handle);
    if (!module)
        return nullptr;
    if (!name)
        return fail(ErrorInvalidParameter, nullptr);
    if (reinterpret_cast<std::uintptr_t>(name) < firstPointer)
        return fail(ErrorNotSupported, nullptr);
    const std::lock_guard<std::mutex> lock(moduleMutex());
    const Function function = module->library.resolve(name);
    return function ? function : fail(ErrorProcNotFound, nullptr);
}

OvKernel32::Dword OvKernel32::getModuleFileName(Handle handle, wchar_t *buffer, Dword size)
{
    std::error_code error;
    fs::path path = fs::read_symlink("/proc/self/exe", error);
    if (handle) {
        const std::shared_ptr<Module> module = modules().find(handle);
        if (!module)
            return 0;
        path = module->path;
    }
    if (!buffer || size == 0)
        return fail(ErrorInvalidParameter, 0U);
    const std::wstring text = QString::fromStdString(path.string()).toStdWString();
    if (text.size() < size)
        return fail(ErrorSuccess, OvCc::Kernel32::copyOut(text, buffer, size));
    text.copy(buffer, size - 1);
    buffer[size - 1] = 0;
    return fail(ErrorInsufficientBuffer, size);
}
