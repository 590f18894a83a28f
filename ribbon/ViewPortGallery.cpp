// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "ViewPortGallery.h"

#include "layer/pictures/SmallImage.h"
#include "ribbon/GalleryEntries.h"

namespace OvCc {

ViewPortGallery::ViewPortGallery()
    : ViewPortGallery(nullptr)
{
}

ViewPortGallery::ViewPortGallery(QWidget *parent)
    : BaseGallery(parent)
{
    fillGallery(*this, arrangementEntries, smallImage);
}

ViewPortGallery::~ViewPortGallery() = default;

} // namespace OvCc
