// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

/// @file
/// @ingroup platform
/// The size of the screen.

/// The size in pixels of the default screen of the X display that DISPLAY names; 0 without one.
/// Each call asks anew. Without an X server on the other side, as under Wayland alone, it is 0, too.
/// @{
OVCC_EXPORT int getDisplayWidth();
OVCC_EXPORT int getDiaplayHeight();
/// @}
