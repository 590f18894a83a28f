// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

// Notes which places of the libraries each test function reaches, for mutate: those that were compiled
// with -fsanitize-coverage=trace-pc call this in each block.

#include <dlfcn.h>
#include <unistd.h>

#include <cstdint>
#include <fstream>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <utility>

static const char *const file = std::getenv("MUTATE_TRACE");
static std::mutex mutex;

/// The places by function.
static auto &reached()
{
    static auto &places =
            *new std::map<std::string, std::set<std::uintptr_t>>; // outlives what calls
    return places;
}

extern "C" void __sanitizer_cov_trace_pc()
{
    static const auto running = reinterpret_cast<const char *(*)()>(
            dlsym(RTLD_DEFAULT, "_ZN5QTest19currentTestFunctionEv"));
    static std::uintptr_t seen[1 << 20]; // for speed only
    if (!file)
        return;
    const char *const function = running && running() ? running() : "";
    const auto place = reinterpret_cast<std::uintptr_t>(__builtin_return_address(0));
    const std::uintptr_t both = place ^ reinterpret_cast<std::uintptr_t>(function);
    if (std::exchange(seen[(place ^ place >> 20) & 0xfffff], both) == both)
        return;
    const std::lock_guard lock(mutex);
    reached()[function].insert(place);
}

__attribute__((destructor)) static void write()
{
    if (!file)
        return;
    std::ofstream out(file + ('.' + std::to_string(getpid())));
    for (const auto &[function, places] : reached()) {
        for (const std::uintptr_t place : places) {
            Dl_info info;
            if (dladdr(reinterpret_cast<void *>(place), &info))
                out << info.dli_fname << ' '
                    << place - reinterpret_cast<std::uintptr_t>(info.dli_fbase) << ' ' << function
                    << '\n';
        }
    }
}
