// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OwnDatabase.h>

#include <memory>

/// What the layer tests do to a drawing behind the widgets' backs, by the names that the embedded host
/// has for it, done to a drawing of the other host. It lies in memory.
namespace KcHost {

using namespace OwnDatabase;

inline std::unique_ptr<KcDbDatabase> newDrawing()
{
    return OwnDatabase::open(":memory:");
}

inline std::unique_ptr<KcDbDatabase> readDrawing(const QString &fileName, QString *error)
{
    return OwnDatabase::open(fileName, error);
}

} // namespace KcHost
