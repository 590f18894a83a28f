// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

class QWidget;

namespace Tessa {

enum class ErasureAnswer {
    WithEntities,
    EmptyLayers,
    Cancel,
};

/// Asks what to do about layers that are to be deleted and that entities lie on.
///
/// @param layers   how many have entities
/// @param entities how many those are
ErasureAnswer askAboutErasure(QWidget *parent, int layers, int entities);

} // namespace Tessa
