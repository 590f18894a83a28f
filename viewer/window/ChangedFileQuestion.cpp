// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "ChangedFileQuestion.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QMessageBox>
#include <QPushButton>

#include <array>

namespace Tessa {

ChangedFileAnswer askAboutChangedFile(QWidget *parent, const QString &fileName, bool canReload)
{
    const auto tr = [](const char *text) {
        return QCoreApplication::translate("ChangedFileQuestion", text);
    };
    QMessageBox box(parent);
    box.setIcon(QMessageBox::Warning);
    box.setWindowTitle(tr("Tessa"));
    box.setTextFormat(Qt::PlainText);
    box.setText(
            tr("Another program has written %1 since it was opened or saved here.").arg(fileName));
    box.setInformativeText(canReload
                                   ? tr("Overwriting the file loses what the other program wrote, "
                                        "reloading it loses your changes.")
                                   : tr("Overwriting it loses what the other program wrote."));
    const QAbstractButton *overwrite =
            box.addButton(tr("&Overwrite"), QMessageBox::DestructiveRole);
    QPushButton *saveAs = box.addButton(tr("Save &as..."), QMessageBox::AcceptRole);
    const QAbstractButton *reload =
            canReload ? box.addButton(tr("&Reload"), QMessageBox::DestructiveRole) : nullptr;
    box.addButton(QMessageBox::Cancel);
    box.setDefaultButton(saveAs);
    box.exec();

    const QAbstractButton *clicked = box.clickedButton();
    if (clicked == overwrite)
        return ChangedFileAnswer::Overwrite;
    if (clicked == saveAs)
        return ChangedFileAnswer::SaveAs;
    return clicked && clicked == reload ? ChangedFileAnswer::Reload : ChangedFileAnswer::Cancel;
}

} // namespace Tessa
