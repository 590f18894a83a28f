// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "KcBase.h"

/// @file
/// @ingroup sdk
/// The host's system variables.

/// What kcedGetVar() returns when it has the value.
constexpr int RTNORM = 5100;
/// What kcedGetVar() returns for an unknown variable or a null argument.
constexpr int RTERROR = -5001;
/// resbuf::restype of a whole number.
constexpr short RTSHORT = 5003;

/// Carries one value; `restype` says which member of `resval` holds it.
///
/// @ingroup sdk
struct resbuf
{
    short restype = 0; ///< RTSHORT: `rint` has the value
    union {
        double rreal; ///< a real number
        short rint;   ///< a whole number
    } resval = {0.0}; ///< the value
};

/// Reads a system variable, such as "TILEMODE" or "LWUNITS"; letter case does not matter.
/// @param[out] result the value; untouched on failure
/// @return RTNORM or RTERROR
KCSDK_EXPORT int kcedGetVar(const KTCHAR *name, resbuf *result);
