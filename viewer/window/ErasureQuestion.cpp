// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "ErasureQuestion.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>

namespace Tessa {

ErasureAnswer askAboutErasure(QWidget *parent, int layers, int entities)
{
    const auto tr = [](const char *text) {
        return QCoreApplication::translate("ErasureQuestion", text);
    };
    const QLocale locale;
    QMessageBox box(parent);
    box.setIcon(QMessageBox::Question);
    box.setWindowTitle(tr("Tessa"));
    box.setText(tr("Layers to delete with entities on them: %1; entities: %2.")
                        .arg(locale.toString(layers), locale.toString(entities)));
    box.setInformativeText(tr("Those in blocks are among them."));
    const QAbstractButton *all =
            box.addButton(tr("Delete them, &too"), QMessageBox::DestructiveRole);
    QPushButton *empty = box.addButton(tr("Only &empty layers"), QMessageBox::AcceptRole);
    box.addButton(QMessageBox::Cancel);
    box.setDefaultButton(empty);
    box.exec();
    if (box.clickedButton() == all)
        return ErasureAnswer::WithEntities;
    return box.clickedButton() == empty ? ErasureAnswer::EmptyLayers : ErasureAnswer::Cancel;
}

} // namespace Tessa
