// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "OvLayerTableWidget.h"

QStringList OvCc::headerList;
