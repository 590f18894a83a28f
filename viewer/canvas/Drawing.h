// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DrawingLayers.h"
#include "Geometry.h"

#include <KcDb.h>

#include <QStringList>

#include <memory>

namespace Tessa {

/// A drawing that was read: the host's database, and what the canvas shows of it.
struct Drawing
{
    QString fileName;
    std::unique_ptr<KcDbDatabase> database;
    DrawingLayers layers;
    Geometry geometry;
    QStringList warnings;
};

} // namespace Tessa
