// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

/// Told by the widgets when the user has changed a layer through one of them.
void ovSetLayerTableChanges();
