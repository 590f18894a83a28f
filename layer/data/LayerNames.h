// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QString>

namespace OvCc {

/// Whether every character of @p s, taken in Latin-1, is a digit from 0 to 9; true for an empty
/// text. It finds the number of names such as "Layer12".
OVCC_EXPORT bool isDigitStr(QString s);

} // namespace OvCc
