// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/FrozenTableWidget.h>
#include <OvCustomControl/LayerAction.h>
#include <OvCustomControl/LayerTableWidget.h>
#include <OvCustomControl/OvccExport.h>

#include <QStringList>

/// @file
/// @ingroup layers
/// The layer table with its parts.

namespace OvCc {

/// The column titles of all layer tables that were made in this process, thirteen of each. Entry 0
/// says "status" once a table has loaded its rows. They are not translated: settings go by them, and
/// a LayerAction finds its column here.
OVCC_EXPORT extern QStringList headerList; // clazy:exclude=non-pod-global-static

} // namespace OvCc
