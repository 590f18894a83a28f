// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "viewer/canvas/Projection.h"

#include <KcHost/RibbonBar.h>

#include <vector>

namespace OvCc {
class BaseGallery;
class LayerControl;
class StackWidget;
class ViewButton;
class ViewGallery;
class ViewPortGallery;
} // namespace OvCc

namespace Tessa {

/// The ribbon of the viewer: from where the drawing is seen, how the window is split, and the layer
/// bar with its floating pickers.
///
/// Views go by their places in the gallery and in the menus of the view buttons: the south-east has
/// its picture there, but shares a caption with the north-west. The gallery and all view buttons show
/// the same one.
class ViewRibbon : public KcHost::RibbonBar
{
    Q_OBJECT

public:
    explicit ViewRibbon(QWidget *parent = nullptr);

    /// The parts of the ribbon; they belong to it.
    OvCc::BaseGallery *views() const;
    OvCc::BaseGallery *arrangements() const;
    OvCc::LayerControl *layerBar() const { return m_layerBar; }
    OvCc::StackWidget *pickers() const { return m_pickers; }

    /// Has a view button elsewhere take part, which must live as long as the ribbon.
    void attach(OvCc::ViewButton *button);

    /// Shows which view the current canvas has.
    void showView(ViewDirection view);

    /// The pickers float in a window of their own: their place and their being shown follow that of
    /// the main window by these.
    void followWindow();
    void setPickersShown(bool shown);

signals:
    void viewChosen(Tessa::ViewDirection view);

    /// @param index for CanvasPanes::setArrangement()
    void arrangementChosen(int index);

private:
    void fold(bool isFolded);
    void chooseView(int index);

    OvCc::ViewGallery *m_views;
    OvCc::ViewPortGallery *m_arrangements;
    std::vector<OvCc::ViewButton *> m_buttons;
    OvCc::LayerControl *m_layerBar;
    OvCc::StackWidget *m_pickers;
    bool m_isFolded = true;
    bool m_isShowingView = false;
};

} // namespace Tessa
