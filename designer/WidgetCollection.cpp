// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "WidgetCollection.h"

#include "FormWidget.h"
#include "Galleries.h"

#include <OvCustomControl/OvCustomControl.h>

namespace {

template <class Widget>
QWidget *make(QWidget *parent)
{
    return new Widget(parent);
}

/// In the order of the widget box. Dialogs are not on offer, nor is what needs another widget.
constexpr Offer offers[] = {
        {"LayerManager",
         "Layer Manager",
         {300, 500},
         "The layers of the drawing, with a search field",
         "A panel that shows the current layer and a table of all layers, which is sorted, "
         "searched and edited in place. Have a LayerLink keep it in step with the drawing.",
         make<OvCc::LayerManager>},
        {"LayerTableWidget",
         "Layer Table",
         {400, 200},
         "A table of the layers of the drawing",
         "The table of the layer manager, alone. A click on a flag changes the drawing at once. "
         "Have a LayerLink keep it in step with the drawing.",
         make<OvCc::LayerTableWidget>},
        {"FrozenTableWidget",
         "Frozen Table",
         {200, 150},
         "A table view for columns that stay in place",
         "The part of the layer table that does not scroll sideways. Give it a model.",
         make<OvCc::FrozenTableWidget>},
        {"SearchLayerEdit",
         "Layer Search",
         {150, 20},
         "A search field with a button that clears it",
         "Connect searchTextChanged() to slotSearchLayer() of a layer table.",
         make<OvCc::SearchLayerEdit>},
        {"LayerComboBox",
         "Layer Combo Box",
         {150, 20},
         "Shows the current layer, drops down all of them with their switches",
         "Have a LayerLink keep it in step with the drawing, which fills it, too.",
         make<OvCc::LayerComboBox>},
        {"LayerControl",
         "Layer Bar",
         {190, 24},
         "A layer combo box and a fold button",
         "A slim bar. Property: folded. Signal: folded(bool), by which something else can be "
         "hidden. A StackWidget that is made with it hangs on it.",
         make<OvCc::LayerControl>},
        {"LayerEdit",
         "Layer Face",
         {150, 20},
         "One layer as the face of a layer combo box shows it",
         "It is read-only. Call setCurrentLayer().",
         make<OvCc::LayerEdit>},
        {"LayerItem",
         "Layer Row",
         {150, 24},
         "One layer with its switches",
         "A row of the layer combo box. Its buttons change the drawing at once. Call "
         "setCurrentLayer().",
         make<OvCc::LayerItem>},
        {"PropertyManager",
         "Property Manager",
         {200, 80},
         "Pickers of color, lineweight and linetype",
         "A panel with the three, one below the other. Signals: colorChosen(), "
         "lineWeightChosen(), lineTypeChosen().",
         make<OvCc::PropertyManager>},
        {"QOvColorComboBox",
         "Color Picker",
         {150, 20},
         "By layer, by block, standard colors, and more from a dialog",
         "Properties: currentRow, buttonText. Signals: rowChosen(), colorChosen().",
         make<OvCc::QOvColorComboBox>},
        {"LineWidthComboBox",
         "Lineweight Picker",
         {150, 20},
         "By layer, by block, the standard lineweights, and their settings",
         "Properties: currentRow, buttonText. Signals: rowChosen(), lineWeightChosen().",
         make<OvCc::LineWidthComboBox>},
        {"LineTypeComboBox",
         "Linetype Picker",
         {150, 20},
         "By layer, by block and continuous",
         "Properties: currentRow, buttonText. Signals: rowChosen(), lineTypeChosen(), and "
         "dialogRequested() for other linetypes.",
         make<OvCc::LineTypeComboBox>},
        {"TextStyleComboBox",
         "Text Style Picker",
         {150, 20},
         "The text style, with a sample",
         "Properties: currentRow, buttonText. Signals: rowChosen(), and dialogRequested() for "
         "the manager of text styles.",
         make<OvCc::TextStyleComboBox>},
        {"VisualStyleComboBox",
         "Visual Style Picker",
         {150, 20},
         "Seven visual styles, from wireframe to shaded",
         "Property: currentRow, a VisualStyle. Signal: rowChosen().",
         make<OvCc::VisualStyleComboBox>},
        {"ColorComboBox",
         "Color Combo Box",
         {170, 24},
         "Seven standard colors, and more from a dialog",
         "A plain combo box. Signal: currentColorChanged().",
         make<OvCc::ColorComboBox>},
        {"BaseComboBox",
         "Picker",
         {150, 20},
         "A picker without rows of its own",
         "Call addItem() for each row. Properties: currentRow, itemIconSize, viewMode, "
         "buttonText, listWidgetHeight. Signals: rowChosen(), dialogRequested().",
         make<OvCc::BaseComboBox>},
        {"BaseEdit",
         "Picker Face",
         {150, 20},
         "A swatch and a label, as the face of a picker shows them",
         "It is read-only. Call setCurrentIcon() and setCurrentText().",
         make<OvCc::BaseEdit>},
        {"ListView",
         "Picker List",
         {150, 150},
         "Rows with swatches, and a button below",
         "What drops down from a picker. Call addItem() for each row. Properties: itemIconSize, "
         "viewMode, itemHeight, buttonText. Signals: currentItemChanged(), triggerDialog().",
         make<OvCc::ListView>},
        {"ListWidget",
         "Picker Rows",
         {150, 150},
         "A list that tells on which row the mouse button was released",
         "The rows in the drop-down of a picker. Signal: showItem().",
         make<OvCc::ListWidget>},
        {"ViewGallery",
         "View Gallery",
         {120, 65},
         "The ten standard views",
         "Signal: itemPressed(), also that of popupGallery().",
         makeViewGallery},
        {"ViewPortGallery",
         "Viewport Gallery",
         {120, 65},
         "Twelve arrangements of viewports",
         "Signal: itemPressed(), also that of popupGallery().",
         makeViewPortGallery},
        {"BaseGallery",
         "Gallery",
         {120, 65},
         "A gallery without items of its own",
         "Call createGalleryItems(), then creatBaseGallery(). Signal: itemPressed(), also that "
         "of popupGallery().",
         make<OvCc::BaseGallery>},
        {"ViewButton",
         "View Button",
         {30, 20},
         "Names the current view, with a menu of the ten",
         "Property: view. Signals: triggered() of its menu(), geometryChanged().",
         make<OvCc::ViewButton>},
        {"CustomControl",
         "Layer Strip",
         {210, 20},
         "A layer combo box in a transparent strip",
         "It tells by enter(bool) when the mouse is over it. Have a LayerLink keep its "
         "layerComboBox() in step with the drawing.",
         make<OvCc::CustomControl>},
        {"MinMaxButton",
         "Window Buttons",
         {60, 20},
         "Minimise, restore and close, in white for a dark panel",
         "Signals: clickedMin(), clickedNormal(), clickedClosed(), and enter(bool).",
         make<OvCc::MinMaxButton>},
};

} // namespace

WidgetCollection::WidgetCollection(QObject *parent)
    : QObject(parent)
{
    for (const Offer &offer : offers)
        m_widgets.push_back(std::make_unique<FormWidget>(offer));
}

WidgetCollection::~WidgetCollection() = default;

QList<QDesignerCustomWidgetInterface *> WidgetCollection::customWidgets() const
{
    QList<QDesignerCustomWidgetInterface *> widgets;
    for (const auto &widget : m_widgets)
        widgets.append(widget.get());
    return widgets;
}
