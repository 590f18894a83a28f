// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "HelpBox.h"

#include <QCoreApplication>
#include <QMessageBox>

void OvCc::showHelp(QWidget *dialog, const char *context)
{
    QMessageBox::about(dialog, QCoreApplication::translate(context, "help"),
                       QCoreApplication::translate(context, "Tessa help  doc!"));
}
