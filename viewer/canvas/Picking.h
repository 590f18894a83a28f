// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Drawing.h"
#include "FaceStyle.h"
#include "Projection.h"

#include <QPointF>
#include <QRectF>
#include <QVector>

namespace Tessa {

/// @file
/// Which entities of the model space lie where in the picture; what the layers hide is passed over.
/// O(N) in their number, and for those around the place also in what they consist of.

/// The topmost one that is drawn within @p reach of that point, fillings and the boxes of texts
/// included; -1 if there is none. That is the last one in the drawing's order, or the nearest one in
/// a style that fills faces.
int topmostEntity(const Drawing &drawing, const Projection &projection, FaceStyle style,
                  QPointF position, double reach);

/// All that lie in @p area: as a whole, or, with @p isCrossing, with any part.
QVector<int> entitiesInside(const Drawing &drawing, const Projection &projection, FaceStyle style,
                            const QRectF &area, bool isCrossing);

} // namespace Tessa
