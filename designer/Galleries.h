// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

class QWidget;

/// The galleries of the library, for Designer, which goes by the names in meta-objects: those classes
/// have none of their own, so these add one each, and nothing else.
QWidget *makeViewGallery(QWidget *parent);
QWidget *makeViewPortGallery(QWidget *parent);
