// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QMetaType>
#include <QString>

namespace OvCc {

/// The parts of a layer that the compact layer controls show, as LayerItem::statusChanged() and
/// LayerEdit::setLabelChange() number them.
enum StatusIndex { OnStatus, FreezeStatus, LockStatus, ColorStatus, NameStatus };

/// What the compact layer controls know of one layer. A plain value, passed around by copy.
///
/// In the strings of signals and slots it is plain `LayerItemData`; as a meta-type it goes by that name
/// and by the full one.
///
/// A default-constructed record is no layer yet: its flags mean nothing until somebody sets them.
///
/// @ingroup bridge
struct LayerItemData
{
    bool isOn = false;     ///< switched on
    bool isLocked = false; ///< shown, but not to be edited
    bool isFrozen = false; ///< neither shown nor regenerated
    QColor color;          ///< opaque; invalid until set
    QString name;          ///< as the drawing spells it
};

} // namespace OvCc

Q_DECLARE_METATYPE(OvCc::LayerItemData)
