// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "TextStyleComboBox.h"

#include <OvCustomControl/Swatches.h>

#include <QListView>

namespace OvCc {

TextStyleComboBox::TextStyleComboBox(QWidget *parent)
    : BaseComboBox(parent)
{
    setFixedSize(150, 20);
    setItemIconSize({48, 16});
    setViewMode(QListView::IconMode);
    setButtonText(tr("Manager Text Styles..."));
    hideShowIcon();
    addItem(creatTextStyleIcon(QStringLiteral("AaBbCc")), tr("Standard"));
    fitListWidgetHeight(80);
    setCurrentIndex(0);
}

TextStyleComboBox::~TextStyleComboBox() = default;

void TextStyleComboBox::openDialog() {}

} // namespace OvCc
