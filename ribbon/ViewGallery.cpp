// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "ViewGallery.h"

#include "ribbon/GalleryEntries.h"

namespace OvCc {

ViewGallery::ViewGallery()
    : ViewGallery(nullptr)
{
}

ViewGallery::ViewGallery(QWidget *parent)
    : BaseGallery(parent)
{
    fillGallery(*this, viewEntries, [](const QString &path) { return path; });
}

ViewGallery::~ViewGallery() = default;

} // namespace OvCc
