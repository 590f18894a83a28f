// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

// A module that calls the layer while it is being loaded and unloaded.

#include <OvCustomControl/OvKernel32.h>

using K = OvKernel32;

namespace {

struct Caller
{
    Caller() { call(L"loaded"); }
    ~Caller() { call(L"unloaded"); }

    static void call(const wchar_t *state)
    {
        wchar_t file[300];
        const K::Handle system = K::loadLibrary(L"libc.so.6");
        if (K::getProcAddress(system, "getpid") && K::getModuleFileName(system, file, 300)
            && K::freeLibrary(system))
            K::setEnvironmentVariable(L"OVCC_MODULE", state);
    }
};

Caller caller; // clazy:exclude=non-pod-global-static

} // namespace
