// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string>

namespace Embedded {

/// The parts of a colour, 0 to 255.
struct Rgb
{
    std::uint8_t red;
    std::uint8_t green;
    std::uint8_t blue;
};

/// What the drawing's colour @p index, 1 to 255, looks like.
Rgb indexColor(int index);

/// What the user calls the colour @p index, 1 to 255: "red", or "Color 30".
std::wstring indexColorName(int index);

/// The digits of a number; std::to_wstring() prints, which takes several times as long.
std::wstring digits(int number);

/// The colour, 1 to 255, that looks most like the true colour 0xRRGGBB; of equals the lowest.
int nearestIndexColor(int number);

/// The colour of DXF's 24-bit number 0xRRGGBB.
Rgb trueColor(int number);

/// What the user calls a true colour: "r,g,b".
std::wstring trueColorName(Rgb color);

} // namespace Embedded
