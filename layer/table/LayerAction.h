// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QAction>

namespace OvCc {

/// Shows or hides one column of a layer table. Its object name is the column's title in headerList, its
/// text is the title as it is shown.
///
/// @ingroup layers
/// @image html LayerAction.png
class OVCC_EXPORT LayerAction : public QAction
{
    Q_OBJECT

public:
    /// An entry with @p text, the title as it is shown; the object name is for the caller to set.
    LayerAction(const QString &text, QObject *parent);
    ~LayerAction() override;

public Q_SLOTS:
    /// Sends layerTriggered() with the column that has this action's object name as its title, if
    /// there is one.
    void actionProcess(bool checked);

Q_SIGNALS:
    /// The user wants @p column, a LayerColumn, to be shown (@p checked) or hidden.
    void layerTriggered(int column, bool checked);
};

} // namespace OvCc
