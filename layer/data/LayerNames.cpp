// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerNames.h"

#include <algorithm>

bool OvCc::isDigitStr(QString s)
{
    const QByteArray characters = s.toLatin1();
    return std::all_of(characters.begin(), characters.end(),
                       [](char character) { return character >= '0' && character <= '9'; });
}
