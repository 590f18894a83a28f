// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

class QWidget;

namespace OvCc {

/// What the Help buttons of the dialogs show: a box over @p dialog that stands in for the host's
/// manual. Returns when the user has closed it.
/// @param context of the translation, the form's
void showHelp(QWidget *dialog, const char *context);

} // namespace OvCc
