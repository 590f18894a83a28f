// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "FrozenTableWidget.h"

namespace OvCc {

FrozenTableWidget::FrozenTableWidget(QWidget *parent)
    : QTableView(parent)
{
}

FrozenTableWidget::~FrozenTableWidget() = default;

void FrozenTableWidget::mousePressEvent(QMouseEvent *event)
{
    setFocus();
    QTableView::mousePressEvent(event);
}

} // namespace OvCc
