// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

QT_BEGIN_NAMESPACE
class QEnterEvent;
class QEvent;
QT_END_NAMESPACE

namespace OvCc {

/// What QWidget::enterEvent() is told: Qt 5 declares a plain event, Qt 6 one with a position.
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
using EnterEvent = QEvent;
#else
using EnterEvent = QEnterEvent;
#endif

} // namespace OvCc
