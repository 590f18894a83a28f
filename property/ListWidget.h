// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QListWidget>

#include <memory>

namespace OvCc {

/// The list of rows in a picker's drop-down. A row is chosen by releasing the left button on it, not
/// by a click: the press may have been on another row.
///
/// @ingroup pickers
/// @image html ListWidget.png
class OVCC_EXPORT ListWidget : public QListWidget
{
    Q_OBJECT

public:
    /// A list without rows.
    explicit ListWidget(QWidget *parent = nullptr);
    ~ListWidget() override;

    /// Forgets a press whose release the list will not see, because it was hidden meanwhile.
    void forgetPress();

Q_SIGNALS:
    /// The user released the left button that was pressed in the list.
    /// @param row the current row, -1 when there is none
    void showItem(int row);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    struct Private;
    const std::unique_ptr<Private> m_d;
};

} // namespace OvCc
