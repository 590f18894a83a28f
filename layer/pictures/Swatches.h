// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QPixmap>

class QPushButton;

/// @file
/// @ingroup bridge
/// The small pictures beside the names of layers, colours, lineweights, linetypes and text styles,
/// and the loader of the pictures that come from the host's resources. All sizes are in pixels.

/// A 14 × 14 square of @p color with a thin black outline on a transparent ground.
OVCC_EXPORT QPixmap creatColorPix(QColor color);

/// A 48 × 16 piece of a black line of @p width pixels on a transparent ground.
OVCC_EXPORT QPixmap drawLineWeight(double width);

/// A 48 × 16 piece of a black line. It is solid for every @p style: the style's number is the width
/// of the line (1 for Qt::SolidLine, 2 for Qt::DashLine, ...).
OVCC_EXPORT QPixmap drawLineType(Qt::PenStyle style);

namespace OvCc {

/// @p text in a thin frame, 48 × 16 on white.
OVCC_EXPORT QPixmap creatTextStyleIcon(QString text);

/// The picture at @p path with its pure magenta (255, 0, 255) made transparent; null if there is
/// none. A path is looked for and decoded once, and what was found there, a picture or none, is
/// shared until the application ends: a host registers its resources before it makes widgets.
OVCC_EXPORT QPixmap loadImage(QString path);

/// A button as large as @p pixmap, which is its icon, so without room for a border. Its object name
/// "layerItemBtn" is for style sheets. It has no parent and belongs to the caller.
OVCC_EXPORT QPushButton *createLayerItemButton(QPixmap pixmap);

} // namespace OvCc
