#pragma once

#include <QImage>
#include <QString>

class Canvas;
class MainWindow;
class QListWidget;
namespace OvCc {
class LayerComboBox;
}

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
    void openLayers();
    void closeLayers();
    int busiestLayer() const;
    void clickLight(int row);
    void zoomIn();
    void fit();

    QListWidget &list() const;
    QImage canvasImage() const;
    void save(const QString &name) const;

    MainWindow &m_window;
    Canvas &m_canvas;
    OvCc::LayerComboBox &m_layers;
    QString m_folder;
};
