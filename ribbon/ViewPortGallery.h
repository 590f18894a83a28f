// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/BaseGallery.h>

namespace OvCc {

/// The arrangements of viewports: the rows of ViewPortGallery. Where the viewports differ in size, the
/// name says where the largest one is; otherwise, how they are divided.
///
/// @ingroup ribbon
enum ViewportArrangement {
    SingleViewport,
    TwoVerticalViewports,
    TwoHorizontalViewports,
    ThreeRightViewports,
    ThreeLeftViewports,
    ThreeAboveViewports,
    ThreeBelowViewports,
    ThreeVerticalViewports,
    ThreeHorizontalViewports,
    FourEqualViewports,
    FourRightViewports,
    FourLeftViewports
};

/// Twelve arrangements of one to four viewports as a gallery, with "Single" checked at first.
/// Arranging them is up to the host, which puts the gallery into its ribbon.
///
/// @ingroup ribbon
/// @image html ViewPortGallery.png
class OVCC_EXPORT ViewPortGallery : public BaseGallery
{
public:
    ViewPortGallery();

    /// A gallery that @p parent owns, as one on a form; null is no parent.
    explicit ViewPortGallery(QWidget *parent);
    ~ViewPortGallery() override;
};

} // namespace OvCc
