// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Pictures.h"
#include "Stage.h"

#include <KcHost/RibbonBar.h>
#include <OvCustomControl/OvCustomControl.h>

#include <QAbstractButton>
#include <QAction>
#include <QtTest>

#include <memory>

using namespace OvCc;

namespace {

/// A gallery of the host's own.
class SheetGallery : public BaseGallery
{
public:
    SheetGallery()
    {
        const QStringList captions{QStringLiteral("Isometric"), QStringLiteral("Single"),
                                   QStringLiteral("Four")};
        createGalleryItems(captions, {loadImage(QStringLiteral(":/OVRC_VIENEI.png")),
                                      loadImage(QStringLiteral(":/OVRC_VPONE.png")),
                                      loadImage(QStringLiteral(":/OVRC_VPFOUREQ.png"))});
        creatBaseGallery();
    }
};

QPixmap opened(BaseGallery *gallery)
{
    Stage stage({gallery});
    NsRc::RibbonGallery &items = *gallery->popupGallery();
    items.setFixedWidth(qMax(items.width(), items.sizeHint().width()));
    QTest::mouseClick(
            gallery->findChildren<QAbstractButton *>(QString(), Qt::FindDirectChildrenOnly)
                    .constLast(),
            Qt::LeftButton);
    return stage.picture();
}

QPixmap viewButton()
{
    auto *button = new ViewButton;
    Stage stage({button});
    return stage.pictureDuring([button] { button->showMenu(); });
}

QPixmap minMaxButton()
{
    auto *buttons = new MinMaxButton;
    Stage stage({buttons});
    stage.darken();
    return stage.picture();
}

QPixmap ribbonBar()
{
    auto *bar = new KcHost::RibbonBar;
    KcHost::RibbonPage *page = bar->addPage(QStringLiteral("View"));
    bar->addPage(QStringLiteral("Insert"));
    auto *layers = new LayerControl;
    layers->layerComboBox()->slotUpdate();
    page->addGroup(QStringLiteral("Layers"))->addWidget(layers);
    KcHost::RibbonGroup *views = page->addGroup(QStringLiteral("Views"));
    views->addWidget(new ViewGallery);
    views->addWidget(new ViewButton);
    page->addGroup(QStringLiteral("Viewports"))->addWidget(new ViewPortGallery);
    bar->setFixedWidth(620);
    return Stage({bar}).picture();
}

QPixmap ribbonGallery()
{
    ViewGallery source;
    auto *gallery = new NsRc::RibbonGallery;
    gallery->setGalleryGroup(source.galleryGroup());
    gallery->setBorderVisible(true);
    gallery->setCheckedIndex(1);
    return Stage({gallery}).picture();
}

} // namespace

QVector<Picture> ribbonPictures()
{
    return {
            {QStringLiteral("images/BaseGallery.png"), [] { return opened(new SheetGallery); }},
            {QStringLiteral("images/ViewGallery.png"), [] { return opened(new ViewGallery); }},
            {QStringLiteral("images/ViewPortGallery.png"),
             [] { return opened(new ViewPortGallery); }},
            {QStringLiteral("images/ViewButton.png"), viewButton},
            {QStringLiteral("images/MinMaxButton.png"), minMaxButton},
            {QStringLiteral("images/RibbonGallery.png"), ribbonGallery},
            {QStringLiteral("images/RibbonBar.png"), ribbonBar},
    };
}
