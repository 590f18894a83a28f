#include "ViewPortGallery.h"

#include "layer/data/SmallImage.h"

namespace OvCc {

namespace {

struct Arrangement
{
    const char *name;
    const char *image;
};

constexpr Arrangement arrangements[] = {
        {"Single", ":/OVRC_VPONE.png"},
        {"Two:Vertical", ":/OVRC_VPDOUBLEV.png"},
        {"Two:Horizontal", ":/OVRC_VPDOUBLEH.png"},
        {"Three:Right", ":/OVRC_VPTHREER.png"},
        {"Three:Left", ":/OVRC_VPTHREEL.png"},
        {"Three:Above", ":/OVRC_VPTHREET.png"},
        {"Three:Below", ":/OVRC_VPTHREEB.png"},
        {"Three:Vertical", ":/OVRC_VPTHREEV.png"},
        {"Three:Horizontal", ":/OVRC_VPTHREEH.png"},
        {"Four:Equal", ":/OVRC_VPFOUREQ.png"},
        {"Four:Right", ":/OVRC_VPFOURR.png"},
        {"Four:Left", ":/OVRC_VPFOURL.png"},
};

} // namespace

ViewPortGallery::ViewPortGallery()
    : BaseGallery(nullptr)
{
    QStringList captions;
    QList<QIcon> icons;
    for (const Arrangement &arrangement : arrangements) {
        captions.append(QLatin1String(arrangement.name));
        icons.append(QIcon(smallImage(QLatin1String(arrangement.image))));
    }
    createGalleryItems(captions, icons);
    creatBaseGallery();
}

ViewPortGallery::~ViewPortGallery() = default;

} // namespace OvCc
