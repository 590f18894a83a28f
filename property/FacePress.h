// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

class QComboBox;

namespace OvCc {

/// Opens a combo box by a press anywhere on its face. An editable combo box opens by its arrow only,
/// but a read-only edit is nothing to type into: users press it to see the list.
class FacePress : public QObject
{
public:
    /// Watches the line edit and the popup of @p combo, which must be installed. It belongs to the
    /// line edit.
    explicit FacePress(QComboBox *combo);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QComboBox *m_combo;
};

} // namespace OvCc
