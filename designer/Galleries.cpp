// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Galleries.h"

#include <OvCustomControl/ViewGallery.h>
#include <OvCustomControl/ViewPortGallery.h>

// Where moc reads the first name of a class, it is to write the second one into its meta-object.
#ifdef Q_MOC_RUN
#    define NamedViewGallery ViewGallery
#    define NamedViewPortGallery ViewPortGallery
#endif

namespace OvCc {

using Views = ViewGallery;
using Viewports = ViewPortGallery;

class NamedViewGallery : public Views
{
    Q_OBJECT

public:
    using Views::Views;
};

class NamedViewPortGallery : public Viewports
{
    Q_OBJECT

public:
    using Viewports::Viewports;
};

} // namespace OvCc

QWidget *makeViewGallery(QWidget *parent)
{
    return new OvCc::NamedViewGallery(parent);
}

QWidget *makeViewPortGallery(QWidget *parent)
{
    return new OvCc::NamedViewPortGallery(parent);
}

// And what moc defines for it is that of the first.
#define ViewGallery NamedViewGallery
#define ViewPortGallery NamedViewPortGallery
#include "Galleries.moc"
