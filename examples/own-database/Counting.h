// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

/// Prints a table of what the widgets call of the SDK, and how often, for each operation.
/// @return 0, or 1 if there is no drawing
int printCalls();
