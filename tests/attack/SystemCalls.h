// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

/// An attack on one of the system calls that this process makes on files. The kernel hands over every
/// call, by a filter, so that none gets past, no matter which function makes it; only what has nothing
/// to do with files goes through unseen. x86-64 only.
struct Attack
{
    char way; ///< 'k' kills before, 'K' after, 'h' halfway through a write; 'e' fails, 's' writes half
    int point;  ///< the number of the call, from 0; negative for none
    int error;  ///< its errno
    bool stays; ///< later calls of the same kind fail, too
};

/// Begins, once in a process.
bool beginAttack(const Attack &attack);

/// Lets every call through from now on.
/// @param[out] calls the numbers of those that there were, negative for one that may make a file
/// @return how many
int endAttack(const int *&calls);
