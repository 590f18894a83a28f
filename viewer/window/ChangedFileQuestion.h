// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

class QString;
class QWidget;

namespace Tessa {

enum class ChangedFileAnswer {
    Overwrite,
    SaveAs,
    Reload,
    Cancel,
};

/// Asks what to do about a file that is to be saved and that another program has written since it was
/// read or saved here.
///
/// @param fileName    as the user knows it
/// @param canReload   whether reading it again is among the answers
ChangedFileAnswer askAboutChangedFile(QWidget *parent, const QString &fileName, bool canReload);

} // namespace Tessa
