// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LineTypeComboBox.h"

#include <OvCustomControl/Swatches.h>

#include <QListWidgetItem>

namespace OvCc {

LineTypeComboBox::LineTypeComboBox(QWidget *parent)
    : BaseComboBox(parent)
{
    setButtonText(tr("Others..."));
    setFixedSize(150, 20);
    setItemIconSize({48, 16});
    for (const QString &name : {tr("By Layer"), tr("By Block"), tr("Continuous")})
        addItem(drawLineType(Qt::SolidLine), name);
    fitListWidgetHeight(20);
    setCurrentIndex(LineTypeByLayerRow);

    connect(this, &BaseComboBox::rowChosen, this,
            [this](int row) { emit lineTypeChosen(item(row)->text()); });
}

LineTypeComboBox::~LineTypeComboBox() = default;

void LineTypeComboBox::openDialog() {}

} // namespace OvCc
