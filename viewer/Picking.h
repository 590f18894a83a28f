#pragma once

#include "Drawing.h"

#include <QPointF>
#include <QRectF>
#include <QVector>

/// @file
/// Which entities of the model space lie where in the picture; what the layers hide is passed over.
/// O(N) in their number, and for those around the place also in what they consist of.

/// The last one in the drawing's order that is drawn within @p reach of that point, fillings and the
/// boxes of texts included; -1 if there is none.
int topmostEntity(const Drawing &drawing, const Projection &projection, QPointF position,
                  double reach);

/// All that lie in @p area: as a whole, or, with @p isCrossing, with any part.
QVector<int> entitiesInside(const Drawing &drawing, const Projection &projection,
                            const QRectF &area, bool isCrossing);
