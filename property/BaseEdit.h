// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QLineEdit>
#include <QPixmap>

#include <memory>

namespace OvCc {

/// The face of a picker: a read-only edit without text of its own that shows the swatch and the
/// label of the chosen row. There is no context menu: there is no text to act on.
///
/// @ingroup pickers
/// @image html BaseEdit.png
class OVCC_EXPORT BaseEdit : public QLineEdit
{
    Q_OBJECT

public:
    /// A face that shows nothing yet.
    explicit BaseEdit(QWidget *parent);
    ~BaseEdit() override;

    /// Leaves the label alone on the face.
    void hideIcon();

    /// Shows @p pixmap in its own size; a null one leaves none.
    void setCurrentIcon(QPixmap pixmap);

    /// Shows @p text as it is, but without blanks at its ends and with single ones inside.
    void setCurrentText(QString text);

private:
    struct Private;
    const std::unique_ptr<Private> m_d;
};

} // namespace OvCc
