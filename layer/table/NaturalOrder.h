// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace OvCc {

/// A text that compares to others of its kind, by QString::compare(), as the names do that they are
/// made of, with runs of the digits 0 to 9 as numbers: "Layer2" before "Layer10". Of names that
/// differ in leading zeros alone, the one with more is first. No two names have the same key, and a
/// locale makes no difference.
QString naturalKey(const QString &name);

} // namespace OvCc
