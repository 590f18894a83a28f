// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/LayerTableWidget.h>

#include <QPointer>
#include <QToolButton>

namespace OvCc {

/// The button whose menu narrows a layer table to some of its rows. It is checked while the table is
/// narrowed, and its tool tip says to what.
class FilterButton : public QToolButton
{
public:
    explicit FilterButton(LayerTableWidget *table, QWidget *parent = nullptr);

protected:
    void changeEvent(QEvent *event) override;

    /// Pressing it opens the menu only.
    void nextCheckState() override {}

private:
    void addFilters();
    void choose(LayerTableWidget::Filter filter, bool isOn);
    void enableActions();
    void showFilter();

    const QPointer<LayerTableWidget> m_table;
};

} // namespace OvCc
