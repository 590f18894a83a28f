#include "ViewPortGallery.h"

#include "layer/pictures/SmallImage.h"
#include "ribbon/GalleryEntries.h"

namespace OvCc {

ViewPortGallery::ViewPortGallery()
    : BaseGallery(nullptr)
{
    fillGallery(*this, arrangementEntries, smallImage);
}

ViewPortGallery::~ViewPortGallery() = default;

} // namespace OvCc
