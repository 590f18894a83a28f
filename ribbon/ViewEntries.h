// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/Views.h>

#include <iterator>

/// @file
/// The views that a gallery and the view button offer, in the order of the public enum.

namespace OvCc {

struct GalleryEntry
{
    const char *caption;
    const char *picture;
};

/// "Northwest" stands for the view from the south-east, too: hosts go by these captions.
constexpr GalleryEntry viewEntries[] = {
        {"Top", ":/OVRC_VIETOP.png"},       {"Bottom", ":/OVRC_VIEBOT.png"},
        {"Left", ":/OVRC_VIELEF.png"},      {"Right", ":/OVRC_VIERIG.png"},
        {"Front", ":/OVRC_VIEFRO.png"},     {"Back", ":/OVRC_VIEBAC.png"},
        {"Southwest", ":/OVRC_VIESWI.png"}, {"Northwest", ":/OVRC_VIESEI.png"},
        {"Northeast", ":/OVRC_VIENEI.png"}, {"Northwest", ":/OVRC_VIENWI.png"},
};
static_assert(std::size(viewEntries) == NorthwestView + 1);

} // namespace OvCc
