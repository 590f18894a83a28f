// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Colors.h"

#include <algorithm>
#include <array>
#include <limits>

namespace Embedded {

namespace {

constexpr std::array<const wchar_t *, 7> kNames = {L"red",  L"yellow",  L"green", L"cyan",
                                                   L"blue", L"magenta", L"white"};

constexpr std::array<Rgb, 9> kBasic = {{{255, 0, 0},
                                        {255, 255, 0},
                                        {0, 255, 0},
                                        {0, 255, 255},
                                        {0, 0, 255},
                                        {255, 0, 255},
                                        {255, 255, 255},
                                        {128, 128, 128},
                                        {192, 192, 192}}};

constexpr std::array<std::uint8_t, 6> kGreys = {51, 91, 132, 173, 214, 255};

// The wheel between: ten colours to each of the 24 hues, which are a pair of a pure and a half
// saturated colour for each of these brightnesses.
constexpr std::array<int, 5> kBrightness = {1000, 650, 500, 300, 150};
constexpr int kFirstOfWheel = 10;
constexpr int kFirstGrey = 250;
constexpr int kHues = 24;

/// The share of red, in quarters, at a hue; green and blue follow a third of the wheel later each.
constexpr int redQuarters(int hue)
{
    const int pastCyan = hue % kHues - kHues / 2;
    return std::clamp((pastCyan < 0 ? -pastCyan : pastCyan) - 4, 0, 4);
}

constexpr std::uint8_t wheelPart(int index, int quarters)
{
    const int brightness = kBrightness[index % 10 / 2];
    const bool isPure = index % 2 == 0;
    return static_cast<std::uint8_t>(isPure ? 255 * brightness * quarters / 4000
                                            : 255 * brightness * (4 + quarters) / 8000);
}

} // namespace

Rgb indexColor(int index)
{
    if (index < kFirstOfWheel)
        return kBasic[index - 1];
    if (index >= kFirstGrey) {
        const std::uint8_t grey = kGreys[index - kFirstGrey];
        return {grey, grey, grey};
    }
    const int hue = (index - kFirstOfWheel) / 10;
    return {wheelPart(index, redQuarters(hue)), wheelPart(index, redQuarters(hue + 16)),
            wheelPart(index, redQuarters(hue + 8))};
}

std::wstring digits(int number)
{
    const std::string text = std::to_string(number);
    return {text.begin(), text.end()};
}

std::wstring indexColorName(int index)
{
    return index <= static_cast<int>(kNames.size()) ? kNames[index - 1] : L"Color " + digits(index);
}

int nearestIndexColor(int number)
{
    const Rgb wanted = trueColor(number);
    const auto square = [](int one, int other) { return (one - other) * (one - other); };
    int nearest = 0;
    int least = std::numeric_limits<int>::max();
    for (int index = 1; index <= 255; ++index) {
        const Rgb color = indexColor(index);
        const int distance = square(color.red, wanted.red) + square(color.green, wanted.green)
                             + square(color.blue, wanted.blue);
        if (distance < least) {
            least = distance;
            nearest = index;
        }
    }
    return nearest;
}

Rgb trueColor(int number)
{
    return {static_cast<std::uint8_t>(number >> 16), static_cast<std::uint8_t>(number >> 8),
            static_cast<std::uint8_t>(number)};
}

std::wstring trueColorName(Rgb color)
{
    return digits(color.red) + L',' + digits(color.green) + L',' + digits(color.blue);
}

} // namespace Embedded
