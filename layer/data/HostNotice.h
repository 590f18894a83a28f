// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

#include <optional>

/// @file
/// What the host is told, and what it may do meanwhile.

namespace OvCc {

/// Calls ovSetLayerTableChanges().
/// @param layers those that the event behind it was about; none for one that changed nothing
void tellHost(const QStringList &layers);

/// What the host is being told at this moment, when it is this call out of which somebody asks; an event
/// loop that the host runs inside of it does not count.
std::optional<QStringList> layersBeingTold();

} // namespace OvCc
