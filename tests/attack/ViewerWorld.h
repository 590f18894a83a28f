// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Events.h"

namespace Attack {

/// The whole viewer, on drawings in a folder of its own that somebody else writes, too.
WorldKind viewer();

} // namespace Attack
