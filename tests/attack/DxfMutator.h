// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "FuzzSupport.h"

#include <QByteArray>

#include <fuzzer/FuzzedDataProvider.h>

#include <ctime>

/// @file
/// What the fuzz programs for drawings share. An input is a line of bytes that choose what is done, and
/// a DXF file. Inputs change by groups, records and sections, so that they stay near what readers take.

namespace Attack {

/// A line of choices; behind their end the first of what there is to choose from.
struct Choices : FuzzedDataProvider
{
    using FuzzedDataProvider::FuzzedDataProvider;

    int below(int end) { return ConsumeIntegralInRange(0, end - 1); }

    template <class Table>
    auto of(const Table &table)
    {
        return *(std::begin(table) + below(int(std::size(table))));
    }
};

struct Input
{
    Input(const std::uint8_t *data, std::size_t size)
        : bytes(reinterpret_cast<const char *>(data), int(size))
        , choices(data, std::size_t(qMax(0, bytes.indexOf('\n'))))
        , drawing(bytes.mid(bytes.indexOf('\n') + 1))
    {
    }

    const QByteArray bytes;
    Choices choices;
    const QByteArray drawing;
};

/// Requires that what happens while this lives takes no more time than goes with the size of the input.
struct Effort
{
    const std::size_t size;
    const std::clock_t begin = std::clock();

    ~Effort()
    {
        require(double(std::clock() - begin) / CLOCKS_PER_SEC < 0.2 + 1e-4 * double(size),
                "time goes with the size");
    }
};

} // namespace Attack
