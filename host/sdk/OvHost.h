// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "KcBase.h"

/// @file
/// @ingroup sdk
/// What the widgets ask of the application that they run in.

/// Told by the widgets after the user changed a layer through one of them, when the drawing has the
/// change already. The host may reload any widget at once, from inside this call.
KCSDK_EXPORT void ovSetLayerTableChanges();
