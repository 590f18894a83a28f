// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

// Copies its argument into a small buffer, for hardened to see who notices that it is too long.

#include <cstdio>
#include <cstring>

int main(int argc, char **argv)
{
    char buffer[8];
    std::strcpy(buffer, argv[argc - 1]);
    return std::puts(buffer) == EOF;
}
