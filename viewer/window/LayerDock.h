// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <KcBase.h>

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

/// The layer manager with the commands that the host gives it, and what comes of the user's wishes
/// for layers in whatever widget: a change of the drawing, or a refusal.
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

    /// Takes over a name that is still being typed.
    void finishEditing();

signals:
    /// The drawing did not take all that the user wanted.
    /// @param reason one sentence
    void refused(const QString &reason);

private:
    void createCommands();
    void widenColumns();
    void fitNameColumn();
    void listenTo(const OvCc::LayerLink &link);
    void newLayer();
    void refresh();

    void addToDrawing(const QString &name);
    void makeCurrentInDrawing(const QString &name);
    void eraseFromDrawing(const QStringList &names);
    void renameInDrawing(const QString &from, const QString &to);
    void tellRefusal(Kcore::ErrorStatus status, const QString &sentence);

    OvCc::LayerLink &m_link;
    Drawing *m_drawing = nullptr;
    QToolBar *m_commands;
    OvCc::LayerManager *m_panel;
    OvCc::LayerTableWidget *m_table;
    OvCc::FrozenTableWidget *m_names; ///< the part of the table with the names
    OvCc::SearchLayerEdit *m_search;
    QString m_change; ///< that a click is about to make, as a user calls it
};

} // namespace Tessa
