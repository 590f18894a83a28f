#include "ViewGallery.h"

#include "ribbon/Views.h"

namespace OvCc {

ViewGallery::ViewGallery()
    : BaseGallery(nullptr)
{
    QStringList captions;
    QList<QIcon> icons;
    for (const View &view : views) {
        captions.append(QLatin1String(view.name));
        icons.append(QIcon(QLatin1String(view.image)));
    }
    createGalleryItems(captions, icons);
    creatBaseGallery();
}

ViewGallery::~ViewGallery() = default;

} // namespace OvCc
