#pragma once

#include <array>

/// @file
/// The standard views of a drawing, as the view gallery and the view button offer them.

namespace OvCc {

struct View
{
    const char *name;
    const char *image;
};

/// "Northwest" stands for the view from the south-east, too: hosts go by these names.
constexpr std::array<View, 10> views{{
        {"Top", ":/OVRC_VIETOP.png"},
        {"Bottom", ":/OVRC_VIEBOT.png"},
        {"Left", ":/OVRC_VIELEF.png"},
        {"Right", ":/OVRC_VIERIG.png"},
        {"Front", ":/OVRC_VIEFRO.png"},
        {"Back", ":/OVRC_VIEBAC.png"},
        {"Southwest", ":/OVRC_VIESWI.png"},
        {"Northwest", ":/OVRC_VIESEI.png"},
        {"Northeast", ":/OVRC_VIENEI.png"},
        {"Northwest", ":/OVRC_VIENWI.png"},
}};

} // namespace OvCc
