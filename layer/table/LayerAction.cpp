// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerAction.h"

#include <OvCustomControl/OvLayerTableWidget.h>

namespace OvCc {

LayerAction::LayerAction(const QString &text, QObject *parent)
    : QAction(text, parent)
{
    connect(this, &QAction::triggered, this, &LayerAction::actionProcess);
}

LayerAction::~LayerAction() = default;

void LayerAction::actionProcess(bool checked)
{
    const int column = headerList.indexOf(objectName());
    if (column >= 0)
        emit layerTriggered(column, checked);
}

} // namespace OvCc
