// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QImage>
#include <QString>

#include <functional>

class QListWidget;
namespace OvCc {
class BaseGallery;
class FrozenTableWidget;
class LayerComboBox;
class LayerTableWidget;
class PropertyManager;
class SearchLayerEdit;
} // namespace OvCc

namespace Tessa {

class Canvas;
class LayerDock;
class MainWindow;
class ViewRibbon;

/// A short visit to a drawing, played with the events that a user would send. After each step a
/// picture of the window is saved, and a step without its effect ends the visit. It leaves the
/// drawing's file alone.
class Tour
{
public:
    /// @param folder where the pictures go; it is made if need be
    Tour(MainWindow &window, const QString &folder);

    /// Prints the path of each picture, or on standard error what went wrong.
    /// @return whether all steps had their effect
    bool play(const QString &fileName);

private:
    void openDrawing(const QString &fileName);
    void visitLayerBox();
    void visitPanel();
    void visitProperties();
    void visitViews();
    void openLayers();
    void closeLayers();
    int busiestLayer() const;
    void clickLight(int row);
    void zoomIn();
    void fit();
    void searchLayer();
    void selectLayer();
    void toggleSelection();
    void openRowMenu();
    void openFilter();
    void undo();
    void openColumnMenu();
    void addCurrentLayer();
    void warnOfCurrentLayer();
    void selectAll();
    void pickColor();
    void openGallery(const OvCc::BaseGallery &gallery);
    void pressItem(const OvCc::BaseGallery &gallery, int index);

    void clickCommand(const QString &text) const;
    void lookAt(const QString &name, const std::function<void()> &open) const;
    QListWidget &list() const;
    QImage canvasImage() const;
    void save(const QString &name) const;
    bool savePicture(const QString &name) const;

    MainWindow &m_window;
    Canvas &m_canvas;
    OvCc::LayerComboBox &m_layers;
    LayerDock &m_dock;
    OvCc::LayerTableWidget &m_table;
    OvCc::FrozenTableWidget &m_names;
    OvCc::SearchLayerEdit &m_search;
    ViewRibbon &m_ribbon;
    OvCc::PropertyManager &m_properties;
    QString m_folder;
};

} // namespace Tessa
