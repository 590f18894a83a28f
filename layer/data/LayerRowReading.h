// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

#include <functional>
#include <optional>

namespace OvCc {

/// Walks the layers of the working drawing once, in the order of its layer table, and hands each on as
/// the row of texts that LayerColumn describes. A layer is open meanwhile: @p visit only looks and
/// remembers.
void readLayerRows(const std::function<void(const QStringList &row)> &visit);

/// The row of one layer; nothing if it cannot be opened.
std::optional<QStringList> readLayerRow(const QString &name);

} // namespace OvCc
