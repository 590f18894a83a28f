// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QPixmap>
#include <QVector>

#include <functional>

/// A picture of the documentation: its file's name below the folder docs/, and what makes it.
struct Picture
{
    QString file;
    std::function<QPixmap()> make;
};

/// The layer widgets and their dialogs. A drawing is open.
QVector<Picture> layerPictures();

/// The pickers and what they consist of.
QVector<Picture> pickerPictures();

/// What goes into a ribbon or around a drawing.
QVector<Picture> ribbonPictures();

/// The viewer, on its tour and with three viewports. They change which drawing is open.
QVector<Picture> viewerPictures();
