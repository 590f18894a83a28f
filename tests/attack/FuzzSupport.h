// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <fuzzer/FuzzedDataProvider.h>

#include <array>

/// @file
/// What the fuzz programs share. An input is a line of bytes that choose what is done, and what it is
/// done with.

/// Ends the program where something does not hold, so that libFuzzer keeps the input.
inline void require(bool holds, const char *what)
{
    if (!holds)
        qFatal("It does not hold: %s.", what);
}

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

/// What is tried with an input; FuzzInput.cpp calls it.
void tryInput(Choices &choices, const QByteArray &content);
