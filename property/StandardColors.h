// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/ColorText.h>

#include <QList>

class QWidget;

/// @file
/// What the colour pickers have in common.

namespace OvCc {

/// The seven colours that every colour picker offers, from red to white.
/// @param context of the translation, the picker's class
QList<NamedColor> standardColors(const char *context);

/// Shows the colour dialog over @p picker, which may be deleted meanwhile: the dialog goes with it.
/// @param context of the translation, the picker's class
/// @return an invalid colour when the user cancelled it
QColor askForColor(QWidget *picker, const char *context);

} // namespace OvCc
