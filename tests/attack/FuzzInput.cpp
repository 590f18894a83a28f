// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "FuzzSupport.h"

#include <ctime>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::clock_t begin = std::clock();
    const QByteArray input(reinterpret_cast<const char *>(data), int(size));
    const int choices = input.indexOf('\n');
    Choices line(data, size_t(qMax(0, choices)));
    tryInput(line, input.mid(choices + 1));
    require(double(std::clock() - begin) / CLOCKS_PER_SEC < 0.2 + 1e-4 * double(size),
            "time goes with the size");
    return 0;
}
