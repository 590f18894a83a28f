// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerLineTypeDialog.h"

#include "FormSetup.h"
#include "HelpBox.h"
#include "ui_LayerLineTypeDialog.h"

#include <OvCustomControl/Swatches.h>

namespace OvCc {

LayerLineTypeDialog::LayerLineTypeDialog(QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui_LayerLTypeDialog>())
{
    setUpForm(this, *m_ui);

    QTableWidget *table = m_ui->tableWidget;
    table->insertRow(0);
    table->setItem(
            0, 0,
            new QTableWidgetItem(QCoreApplication::translate("LayerLTypeDialog", "Continuous")));
    table->setItem(0, 1, new QTableWidgetItem(drawLineType(Qt::SolidLine), QString()));
    table->setItem(
            0, 2,
            new QTableWidgetItem(QCoreApplication::translate("LayerLTypeDialog", "Solid Line")));

    connect(m_ui->okbtn, &QPushButton::clicked, this, &LayerLineTypeDialog::slotAccepted);
    connect(m_ui->cancelBtn, &QPushButton::clicked, this, &LayerLineTypeDialog::slotCancel);
    connect(m_ui->helpBtn, &QPushButton::clicked, this, &LayerLineTypeDialog::slotHelp);
}

LayerLineTypeDialog::~LayerLineTypeDialog() = default;

void LayerLineTypeDialog::slotAccepted()
{
    accept();
}

void LayerLineTypeDialog::slotCancel()
{
    reject();
}

void LayerLineTypeDialog::slotHelp()
{
    showHelp(this, "LayerLTypeDialog");
}

} // namespace OvCc
