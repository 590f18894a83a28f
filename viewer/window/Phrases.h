// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

namespace Tessa {

/// @file
/// How the user is told something.

/// A name in quotes, cut if it is very long.
QString quoted(const QString &name);

/// Some of the texts, and how many more there are: "A, B and 3 more".
/// @param most how many are named
QString listed(const QStringList &texts, int most = 5);

/// Prints a line on standard error.
void printLine(const QString &line);

} // namespace Tessa
