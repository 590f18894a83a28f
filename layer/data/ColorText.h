// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QColor>
#include <QString>

/// @file
/// @ingroup bridge
/// Colours as texts.

namespace OvCc {

/// A colour and its name.
///
/// @ingroup bridge
struct NamedColor
{
    QString name; ///< as it is shown
    QColor color; ///< as it is painted
};

/// The text of a colour in a layer row: `ll*red;255,0,0`.
OVCC_EXPORT QString colorText(const NamedColor &color);

/// What such a text says. The name is empty without "ll*", the colour is black without components.
OVCC_EXPORT NamedColor colorOfText(const QString &text);

/// The components of a colour, which stand for its name where it has none: `255,128,0`.
OVCC_EXPORT QString componentsOf(const QColor &color);

} // namespace OvCc
