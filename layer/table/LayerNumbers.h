// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QStringList>
#include <QVector>

/// @file
/// How new layers are numbered: "Layer1", "Layer2" and so on.

namespace OvCc {

/// The numbers that the layers in @p rows have by such names, in whatever letter case; ascending. The
/// first row does not count.
QList<int> layerNumbers(const QVector<QStringList> &rows);

/// The first number from 1 on that is not in @p taken, which is ascending.
int firstFreeNumber(const QList<int> &taken);

} // namespace OvCc
