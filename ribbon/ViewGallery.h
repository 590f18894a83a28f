// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/BaseGallery.h>
#include <OvCustomControl/Views.h>

namespace OvCc {

/// The ten standard views of a drawing as a gallery, in the order of ::View, with "Top" checked at
/// first. Two views are named "Northwest": only their pictures and places tell them apart. Turning
/// the drawing is up to the host, which puts the gallery into its ribbon.
///
/// @ingroup ribbon
/// @image html ViewGallery.png
class OVCC_EXPORT ViewGallery : public BaseGallery
{
public:
    ViewGallery();

    /// A gallery that @p parent owns, as one on a form; null is no parent.
    explicit ViewGallery(QWidget *parent);
    ~ViewGallery() override;
};

} // namespace OvCc
