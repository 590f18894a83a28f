// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDockWidget>

namespace OvCc {
class FrozenTableWidget;
class LayerLink;
class LayerManager;
class LayerTableWidget;
class SearchLayerEdit;
} // namespace OvCc
class QToolBar;

namespace Tessa {

struct Drawing;

/// The layer manager, with all that it can do switched on, and the commands that the host gives it.
class LayerDock : public QDockWidget
{
    Q_OBJECT

public:
    /// @param link keeps the widgets in step with the drawing; it must live as long as this
    explicit LayerDock(OvCc::LayerLink &link, QWidget *parent = nullptr);

    /// Shows all up to the linetypes.
    QSize sizeHint() const override;

    /// Shows the layers of another working drawing, the current one in sight, in a column that is
    /// as wide as their names need; null for none. It must live until it is replaced.
    void setDrawing(Drawing *drawing);

    OvCc::LayerManager *panel() const { return m_panel; }
    QToolBar *commands() const { return m_commands; }

    /// The layers of the drawing, as the panel shows them.
    int layerCount() const;

    /// Takes over a name that is still being typed, and has layers shown again that only the selection
    /// hides: what comes next is to find the drawing as it will stay.
    void finishEditing();

    /// Has the panel know how much lies on each layer now, and where the entities lie that the user has
    /// selected. O(N), the number of layers.
    void showUsage(const QStringList &pickedLayers);

private:
    void createCommands();
    void widenColumns();
    void fitNameColumn();
    void newLayer();
    void refresh();

    OvCc::LayerLink &m_link;
    Drawing *m_drawing = nullptr;
    QToolBar *m_commands;
    OvCc::LayerManager *m_panel;
    OvCc::LayerTableWidget *m_table;
    OvCc::FrozenTableWidget *m_names; ///< the part of the table with the names
    OvCc::SearchLayerEdit *m_search;
};

} // namespace Tessa
