// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "ViewRibbon.h"

#include <OvCustomControl/LayerComboBox.h>
#include <OvCustomControl/LayerControl.h>
#include <OvCustomControl/PropertyManager.h>
#include <OvCustomControl/StackWidget.h>
#include <OvCustomControl/ViewButton.h>
#include <OvCustomControl/ViewGallery.h>
#include <OvCustomControl/ViewPortGallery.h>

#include <QActionGroup>
#include <QMenu>
#include <QScopedValueRollback>

namespace Tessa {

namespace {

static_assert(int(ViewDirection::Northwest) == OvCc::NorthwestView);

int indexOf(const NsRc::RibbonGallery &gallery, const NsRc::RibbonGalleryItem *item)
{
    const NsRc::RibbonGalleryGroup &group = *gallery.galleryGroup();
    int index = 0;
    while (index < group.getItemCount() && group.item(index) != item)
        ++index;
    return index;
}

/// The galleries' own drop-downs are made for shorter captions than some of theirs.
void widenDropDown(OvCc::BaseGallery *gallery)
{
    NsRc::RibbonGallery *items = gallery->popupGallery();
    items->setFixedWidth(qMax(items->width(), items->sizeHint().width()));
}

} // namespace

ViewRibbon::ViewRibbon(QWidget *parent)
    : RibbonBar(parent)
    , m_views(new OvCc::ViewGallery)
    , m_arrangements(new OvCc::ViewPortGallery)
    , m_layerBar(new OvCc::LayerControl)
    , m_pickers(new OvCc::StackWidget(m_layerBar))
{
    KcHost::RibbonPage *page = addPage(tr("View"));
    page->addGroup(tr("Layers"))->addWidget(m_layerBar);
    KcHost::RibbonGroup *views = page->addGroup(tr("Views"));
    auto *button = new OvCc::ViewButton;
    views->addWidget(m_views);
    views->addWidget(button);
    page->addGroup(tr("Viewports"))->addWidget(m_arrangements);

    widenDropDown(m_views);
    widenDropDown(m_arrangements);
    // The copy of a gallery in its drop-down reports its presses itself.
    const auto followPresses = [this](const OvCc::BaseGallery *gallery, auto act) {
        for (const NsRc::RibbonGallery *it :
             {static_cast<const NsRc::RibbonGallery *>(gallery),
              static_cast<const NsRc::RibbonGallery *>(gallery->popupGallery())})
            connect(it, &NsRc::RibbonGallery::itemPressed, this,
                    [gallery, act](const NsRc::RibbonGalleryItem *item) {
                        act(indexOf(*gallery, item));
                    });
    };
    followPresses(m_views, [this](int index) { chooseView(index); });
    followPresses(m_arrangements, [this](int index) { emit arrangementChosen(index); });
    attach(button);
    // Where windows cannot be translucent, what nobody paints is black.
    m_pickers->propertyManager()->setAutoFillBackground(true);
    connect(m_layerBar, &OvCc::LayerControl::folded, this, &ViewRibbon::fold);
}

OvCc::BaseGallery *ViewRibbon::views() const
{
    return m_views;
}

OvCc::BaseGallery *ViewRibbon::arrangements() const
{
    return m_arrangements;
}

void ViewRibbon::attach(OvCc::ViewButton *button)
{
    m_buttons.push_back(button);
    // The button hears of a choice first, and goes by the entry's name.
    QActionGroup *entries = button->menu()->actions().first()->actionGroup();
    connect(entries, &QActionGroup::triggered, this, [this, button](QAction *entry) {
        if (!m_isShowingView)
            chooseView(button->menu()->actions().indexOf(entry));
    });
}

void ViewRibbon::showView(ViewDirection view)
{
    const QScopedValueRollback<bool> guard(m_isShowingView, true);
    const int index = int(view);
    m_views->setCheckedIndex(index);
    m_views->popupGallery()->setCheckedIndex(index);
    for (const OvCc::ViewButton *button : m_buttons) {
        QAction *entry = button->menu()->actions().at(index);
        if (button->text() != entry->text())
            entry->trigger();
        // Of two entries of the same name the button has checked the last one.
        entry->setChecked(true);
    }
}

void ViewRibbon::followWindow()
{
    m_pickers->adjustGeometry();
}

void ViewRibbon::setPickersShown(bool shown)
{
    m_pickers->setVisible(shown && !m_isFolded);
    followWindow();
}

void ViewRibbon::fold(bool isFolded)
{
    m_isFolded = isFolded;
    followWindow();
}

void ViewRibbon::chooseView(int index)
{
    const auto view = ViewDirection(index);
    showView(view);
    emit viewChosen(view);
}

} // namespace Tessa
