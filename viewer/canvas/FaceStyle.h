// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

namespace Tessa {

/// How the faces of a drawing are shown. The faces of a file are flat and tell of no smooth shape that
/// they stand for, so two styles look like two others.
enum class FaceStyle {
    Wireframe,   ///< by their edges
    Hidden,      ///< by their edges, which hide what is behind them
    Flat,        ///< filled, the darker the more they are turned from the light
    Gouraud,     ///< as Flat
    FlatEdges,   ///< filled, with their edges
    GouraudEdges ///< as FlatEdges
};

} // namespace Tessa
