// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

namespace OvCc {

/// Sets @p form up on @p dialog, without the title bar's button for context help: there is none.
template <class Form>
void setUpForm(QDialog *dialog, Form &form)
{
    dialog->setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    form.setupUi(dialog);
}

} // namespace OvCc
