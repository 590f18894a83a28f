#pragma once

#include <QDockWidget>

namespace OvCc {
class FrozenTableWidget;
class LayerManager;
class LayerTableWidget;
class SearchLayerEdit;
} // namespace OvCc
class QToolBar;

namespace Tessa {

struct Drawing;

/// The layer manager with the commands that the host gives it. The panel changes its own table and
/// tells of it; here that becomes a change of the drawing, or a refusal. Either way the table shows
/// what the drawing has after the next refresh().
class LayerDock : public QDockWidget
{
    Q_OBJECT

public:
    explicit LayerDock(QWidget *parent = nullptr);

    /// Shows all up to the linetypes.
    QSize sizeHint() const override;

    /// Shows the layers of another working drawing, the current one in sight, in a column that is
    /// as wide as their names need; null for none. It must live until it is replaced.
    void setDrawing(Drawing *drawing);

    /// The layers of the drawing, as of the last refresh.
    int layerCount() const;

    /// Takes over a name that is still being typed.
    void finishEditing();

    /// A layer of the drawing is another one now; refresh() shows it.
    void noteChange();

    /// Shows what changed since the last refresh, whoever changed it.
    void refresh();

signals:
    /// A command was carried out, and a refresh() is due.
    /// @param refusal one sentence if the drawing did not take it all, or empty
    void commandDone(const QString &refusal);

private:
    void createCommands();
    void widenColumns();
    void fitNameColumn();
    void newLayer();
    void reloadAll();

    void addToDrawing(const QString &name);
    void makeCurrentInDrawing(const QString &name);
    void eraseFromDrawing(const QStringList &names);
    void renameInDrawing(const QString &from, const QString &to);
    void finishCommand(const QString &nextSelected, const QString &refusal);

    void reload();
    void selectNext();
    int rowOf(const QString &name) const;
    QString nameAt(int row) const;

    Drawing *m_drawing = nullptr;
    QToolBar *m_commands;
    OvCc::LayerManager *m_panel;
    OvCc::LayerTableWidget *m_table;
    OvCc::FrozenTableWidget *m_names; ///< the part of the table with the names
    OvCc::SearchLayerEdit *m_search;
    bool m_isRefreshDue = false;
    QString m_nextSelected; ///< once the panel is in step again; empty where nothing is to be
};

} // namespace Tessa
