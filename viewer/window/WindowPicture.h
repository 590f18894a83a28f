// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QPixmap>
#include <QWidgetList>

namespace Tessa {

/// The other windows that are shown, as drop-downs, menus and dialogs of @p window.
QWidgetList windowsOver(const QWidget &window);

/// The window as it is, with the windows over it in their places. Where those stand out from it, there
/// is @p ground beside it.
QPixmap pictureOf(QWidget &window, const QColor &ground);

} // namespace Tessa
