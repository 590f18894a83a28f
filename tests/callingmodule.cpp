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
        const K::Handle qt = K::loadLibrary(L"libQt5Core.so.5");
        if (K::getProcAddress(qt, "qVersion") && K::getModuleFileName(qt, file, 300)
            && K::freeLibrary(qt))
            K::setEnvironmentVariable(L"OVCC_MODULE", state);
    }
};

Caller caller; // clazy:exclude=non-pod-global-static

} // namespace
