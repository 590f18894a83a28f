#include "ViewGallery.h"

#include "ribbon/GalleryEntries.h"

namespace OvCc {

ViewGallery::ViewGallery()
    : BaseGallery(nullptr)
{
    fillGallery(*this, viewEntries, [](const QString &path) { return path; });
}

ViewGallery::~ViewGallery() = default;

} // namespace OvCc
