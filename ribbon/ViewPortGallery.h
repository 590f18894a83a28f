#pragma once

#include <OvCustomControl/BaseGallery.h>

namespace OvCc {

/// Twelve arrangements of one to four viewports as a gallery, with "Single" checked at first.
/// Arranging them is up to the host, which puts the gallery into its ribbon.
class OVCC_EXPORT ViewPortGallery : public BaseGallery
{
public:
    ViewPortGallery();
    ~ViewPortGallery() override;
};

} // namespace OvCc
