// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QTableView>

namespace OvCc {

/// The part of a layer table that does not scroll sideways: the current-layer marker and the names.
/// It takes the keyboard focus when it is clicked.
///
/// @ingroup layers
/// @image html FrozenTableWidget.png
class OVCC_EXPORT FrozenTableWidget : public QTableView
{
    Q_OBJECT

public:
    /// A view of nothing: the layer table gives it its model and its columns.
    explicit FrozenTableWidget(QWidget *parent = nullptr);
    ~FrozenTableWidget() override;

protected:
    void mousePressEvent(QMouseEvent *event) override;
};

} // namespace OvCc
