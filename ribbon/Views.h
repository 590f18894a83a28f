// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

namespace OvCc {

/// The standard views of a drawing: the rows of ViewGallery and the entries of the menu of ViewButton.
/// The last four are isometric.
///
/// @ingroup ribbon
enum View {
    TopView,
    BottomView,
    LeftView,
    RightView,
    FrontView,
    BackView,
    SouthwestView,
    SoutheastView, ///< captioned "Northwest", as NorthwestView is
    NortheastView,
    NorthwestView
};

} // namespace OvCc
