// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "KcDb.h"

constexpr int RTNORM = 5100;
constexpr int RTERROR = -5001;

struct resbuf
{
    struct
    {
        short rint;
    } resval = {0};
};

/// Reads a system variable; the widgets ask for "TILEMODE" and "LWUNITS".
int kcedGetVar(const KTCHAR *name, resbuf *result);
