// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once
// clazy:excludeall=qproperty-without-notify

#include <OvCustomControl/OvccExport.h>

#include <QColor>
#include <QHash>
#include <QPixmap>
#include <QStringList>
#include <QWidget>

#include <memory>

namespace OvCc {

class LayerTableWidget;
class SearchLayerEdit;

/// The panel with which a user manages the layers of a drawing: the name of the current layer and a
/// search field over a LayerTableWidget. It fills itself when it is made. A name that is too long for
/// the panel is cut, and has a tool tip; it never widens the panel.
///
/// The host calls refresh() or slotUpLayerModel() whenever layers changed elsewhere, and listens to
/// layerManagerChanged(). Its commands call newLayer(), deleteLayers(), makeCurrent() and
/// renameLayer(); these change the panel only. The signals that follow tell what to do to the
/// drawing; then the host refreshes the panel. To delete the panel from inside a signal, use
/// deleteLater().
///
/// @ingroup layers
/// @image html LayerManager.png
class OVCC_EXPORT LayerManager : public QWidget
{
    Q_OBJECT
    /// See setVisibilityFollowsSelection().
    Q_PROPERTY(bool visibilityFollowsSelection READ visibilityFollowsSelection WRITE
                       setVisibilityFollowsSelection DESIGNABLE false)

    /// Whether the user can narrow the table to some layers; see setFilterVisible().
    Q_PROPERTY(bool filterVisible READ isFilterVisible WRITE setFilterVisible)

public:
    /// The pictures of the host's commands, in the order of the strip ":/layertoolbar.bmp".
    enum LayerIcons { NewLayerIcon, DeleteLayerIcon, CurrentLayerIcon, RefreshIcon };

    /// A panel of the working drawing's layers; its label says "0" until the table tells of the
    /// current layer.
    explicit LayerManager(QWidget *parent = nullptr);

    /// Saves the column layout of the table.
    ~LayerManager() override;

    /// 300 × 500 pixels.
    QSize sizeHint() const override;

    /// The parts of the panel. They are its own, and go with it.
    /// @{
    LayerTableWidget *table() const;
    SearchLayerEdit *searchEdit() const;
    /// @}

    /// Whether a button beside the search field narrows the table to layers that are off, frozen or
    /// locked, in use or unused, or of the selected entities, and how many layers are shown of how
    /// many stands before it; off at first. Where none is shown the table says "No match". Several
    /// filters together narrow further. Switching it off takes the filters off.
    /// @{
    void setFilterVisible(bool visible);
    bool isFilterVisible() const;
    /// @}

    /// See LayerTableWidget::setUsage() and setPicked(), which the filters go by.
    /// @{
    void setUsage(const QHash<QString, int> &usage);
    void setPicked(const QStringList &names);
    /// @}

    /// A picture of @p size with the 16 × 16 tile of a command at its top left, transparent
    /// elsewhere.
    QPixmap drawIcon(LayerIcons icon, QSize size) const;

    /// See LayerTableWidget::setVisibilityFollowsSelection().
    /// @{
    bool visibilityFollowsSelection() const;
    void setVisibilityFollowsSelection(bool follows);
    /// @}

    /// See LayerTableWidget::setLinetypes().
    void setLinetypes(const QStringList &linetypes);

public Q_SLOTS:
    /// Reloads the table from the drawing and applies the search again. It may be called from
    /// inside any signal of the panel.
    void slotUpLayerModel();

    /// Shows what changed in the drawing and leaves everything else as it is; see
    /// LayerTableWidget::refresh(). It may be called from inside any signal of the panel.
    /// @return whether anything in the panel was different
    bool refresh();

    /// See LayerTableWidget::refreshLayers().
    bool refreshLayers(const QStringList &names);

    /// See LayerTableWidget::showOtherDrawing().
    bool showOtherDrawing();

    /// Sends layerManagerChanged().
    void slotLayerChanged();

    /// The command LayerTableWidget::addLayer() of the table().
    void newLayer();

    /// The command LayerTableWidget::remove() of the table().
    void deleteLayers();

    /// The command LayerTableWidget::setCurrentLayer() of the table().
    void makeCurrent();

    /// The command LayerTableWidget::renameLayer() of the table().
    void renameLayer();

Q_SIGNALS:
    /// The user changed layers in the drawing by clicks in the table.
    void layerManagerChanged();

    /// A click is about to change the drawing; see LayerDelegate::changesBegin().
    void changesBegin(QString text);

    /// A click has changed what it could; see LayerDelegate::changesEnd().
    void changesEnd(int changed, int refused);

    /// A click changed these layers; see LayerDelegate::layersToggled().
    void layersToggled(QStringList names);

    /// See LayerTableWidget::visibilityFollowsSelectionChanged().
    void visibilityFollowsSelectionChanged(bool follows);

    /// A new row's name was settled; see LayerTableWidget::layerAdded().
    void layerAdded(QString name);

    /// Rows were removed; see LayerTableWidget::layersRemoved().
    void layersRemoved(QStringList names);

    /// A row's name was changed; see LayerTableWidget::layerRenamed().
    void layerRenamed(QString from, QString to);

    /// The current layer, as the panel shows it; see LayerTableWidget::updateCurretnLayer().
    void updateCurretnLayer(QString name);

    /// The user made a layer the current one; see LayerTableWidget::currentLayerRequested().
    void currentLayerRequested(QString name);

    /// The user wants layers to be different, or merged; see LayerTableWidget::colorRequested() and
    /// those after it.
    /// @{
    void colorRequested(QStringList names, QColor color);
    void linetypeRequested(QStringList names, QString linetype);
    void lineWeightRequested(QStringList names, int lineWeight);
    void descriptionRequested(QStringList names, QString description);
    void mergeRequested(QStringList names, QString target);
    /// @}

private Q_SLOTS:
    void slotNewLayer();
    void slotDeleteLayer();
    void slotCurrentLayer();
    void slotUpdateLineEdit(QString name);

private:
    void loadPixmap();

    struct Private;
    const std::unique_ptr<Private> m_d;
};

} // namespace OvCc
