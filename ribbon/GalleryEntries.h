// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ribbon/ViewEntries.h"

#include <OvCustomControl/BaseGallery.h>
#include <OvCustomControl/ViewPortGallery.h>

#include <iterator>

/// @file
/// What the galleries offer, in the order of the public enums.

namespace OvCc {

constexpr GalleryEntry arrangementEntries[] = {
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
static_assert(std::size(arrangementEntries) == FourLeftViewports + 1);

/// Makes the items of @p gallery, which is empty, and its drop-down.
/// @param pictureAt what makes an icon of the path of a picture
template <class Entries, class PictureAt>
void fillGallery(BaseGallery &gallery, const Entries &entries, PictureAt pictureAt)
{
    QStringList captions;
    QList<QIcon> icons;
    for (const GalleryEntry &entry : entries) {
        captions.append(QLatin1String(entry.caption));
        icons.append(QIcon(pictureAt(QLatin1String(entry.picture))));
    }
    gallery.createGalleryItems(captions, icons);
    gallery.creatBaseGallery();
}

} // namespace OvCc
