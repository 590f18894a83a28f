// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QLineEdit>

#include <memory>

namespace OvCc {

/// A search field, 20 pixels high, with a button inside its right end: a magnifier while there is
/// nothing to clear, and a cross that clears the text. The button never takes the focus.
///
/// @ingroup layers
/// @image html SearchLayerEdit.png
class OVCC_EXPORT SearchLayerEdit : public QLineEdit
{
    Q_OBJECT

public:
    /// A field that searches for nothing.
    explicit SearchLayerEdit(QWidget *parent = nullptr);
    ~SearchLayerEdit() override;

Q_SIGNALS:
    /// What to search for changed; it follows every keystroke. Empty: show everything. A text that
    /// searches for nothing, such as "*" alone, is cleared when the field is left.
    void searchTextChanged(QString text);

protected:
    void mousePressEvent(QMouseEvent *event) override;

private Q_SLOTS:
    void slotSearchButton();
    void slotTextChanged(QString text);
    void slotLoseFocus();

private:
    struct Private;
    const std::unique_ptr<Private> m_d;
};

} // namespace OvCc
