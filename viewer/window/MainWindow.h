// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QMainWindow>

#include <array>
#include <memory>

namespace OvCc {
class LayerComboBox;
class LayerLink;
} // namespace OvCc

namespace Tessa {

class CanvasPanes;
class Document;
struct Drawing;
class DrawingFrame;
class EntityFollower;
enum class FaceStyle;
class LayerDock;
class LayerEditor;
class LayerMenu;
class PropertyBar;
class PropertyEditor;
class Remarks;
class Selection;
class StatusBar;
class UndoCommands;
class ViewRibbon;

/// A window around one drawing: its layers in the tool bar and in the layer manager, its entities on
/// one or more canvases, and pickers for the properties of those that are selected there.
///
/// It shows how a program takes the widgets in: it makes the drawing the host's working one, hears
/// from the host which layer or entity changed, whoever changed it, and tells the link between the
/// widgets and the canvases. What comes of many changes is put right once, before control is back in the
/// event loop.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent = nullptr);
    ~MainWindow() override;

    /// Document::open()
    void open(const QString &fileName);

    /// The drawing on the canvas; null without one.
    const Drawing *drawing() const;

    /// The parts of the window. They are its own, and go with it.
    CanvasPanes *panes() const { return m_panes; }
    OvCc::LayerComboBox *layers() const { return m_layers; }
    LayerDock *layerDock() const { return m_dock; }
    ViewRibbon *ribbon() const { return m_ribbon; }
    PropertyBar *pickers() const { return m_pickers; }

signals:
    /// The drawing given to open() is shown, or there was an error.
    void opened(const QString &error);

protected:
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void createFileMenu();
    void createEditMenu();
    void createViewMenu();
    void createToolBar(const QList<QAction *> &viewActions);
    void createPropertyBar();
    void createRibbon();
    void connectDocument();
    void connectHost();

    void followOpening(const QString &fileName);
    void finishOpening(const QString &error);
    void showDrawing();
    void followSaving(const QStringList &remarks);
    void followLayerChange(const QString &name);
    void followEntityChange(int record);
    void postUpdate();
    void updateAll();
    void followSelection();
    void followChoice(const QString &layer);
    void showInStyle(FaceStyle style);
    void followCanvas();
    void showState();
    void tellRefusal(const QString &reason);
    void showError(const QString &error);
    std::array<OvCc::LayerComboBox *, 3> layerBoxes() const;

    Document *m_document;
    CanvasPanes *m_panes;
    DrawingFrame *m_frame;
    OvCc::LayerLink *m_link;
    OvCc::LayerComboBox *m_layers;
    LayerDock *m_dock;
    ViewRibbon *m_ribbon;
    PropertyBar *m_pickers;
    PropertyEditor *m_properties;
    LayerEditor *m_layerEditor;
    LayerMenu *m_layerMenu;
    UndoCommands *m_undo;
    Selection *m_selection;
    std::unique_ptr<EntityFollower> m_follower; ///< null without a drawing
    bool m_isUpdateDue = false;
    QAction *m_open = nullptr;
    QAction *m_save = nullptr;
    QAction *m_saveAs = nullptr;
    QAction *m_close = nullptr;
    StatusBar *m_status;
    Remarks *m_remarks;
};

} // namespace Tessa
