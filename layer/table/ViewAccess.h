// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QTableView>

namespace OvCc {

/// Names what a view keeps for those that derive from it: `(view.*&ViewAccess::commitData)(editor)`.
/// There are no objects of it.
struct ViewAccess : QTableView
{
    using QTableView::closeEditor;
    using QTableView::commitData;
    using QTableView::moveCursor;
};

} // namespace OvCc
