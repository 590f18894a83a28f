// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "OvLineWeightDialog.h"

#include "FormSetup.h"
#include "HelpBox.h"
#include "layer/data/LineWeightRows.h"
#include "ui_OvLineWeightDialog.h"

#include <OvCustomControl/Swatches.h>

namespace OvCc {

namespace {

constexpr const char *translationContext = "LineWeightDialog";

QStringList labelsIn(LineWeightUnit unit)
{
    return lineWeightLabels(LineWeightByLayer, unit, translationContext);
}

} // namespace

OvLineWeightDialog::OvLineWeightDialog(QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui_LineWeightDialog>())
{
    setUpForm(this, *m_ui);
    const QPixmap frame(QStringLiteral(":/OVRC_subChildFrame.png"));
    for (QLabel *label : {m_ui->pixLabel, m_ui->pixLabel1}) {
        if (!frame.isNull())
            label->setPixmap(frame.scaled(20, 20, Qt::IgnoreAspectRatio, Qt::FastTransformation));
    }
    initListViewData();

    connect(m_ui->mmRadioBnt, &QRadioButton::clicked, this, &OvLineWeightDialog::millimeterConvert);
    connect(m_ui->inRadioBnt, &QRadioButton::clicked, this, &OvLineWeightDialog::InConvert);
    connect(m_ui->okBnt, &QPushButton::clicked, this, &OvLineWeightDialog::slotAccepted);
    connect(m_ui->cancelBnt, &QPushButton::clicked, this, &OvLineWeightDialog::slotCancel);
    connect(m_ui->helpBnt, &QPushButton::clicked, this, &OvLineWeightDialog::slotHelp);
    connect(m_ui->listWidget, &QListWidget::currentRowChanged, this,
            &OvLineWeightDialog::slotCurrentLabelChaged);
}

OvLineWeightDialog::~OvLineWeightDialog() = default;

void OvLineWeightDialog::setCurrentLineweight(int row)
{
    if (!m_ui->listWidget->item(row))
        return;
    m_ui->listWidget->setCurrentRow(row);
    slotCurrentLabelChaged(row);
}

void OvLineWeightDialog::millimeterConvert(bool checked)
{
    if (checked)
        showLabels(labelsIn(LineWeightUnit::Millimetres));
}

void OvLineWeightDialog::InConvert(bool checked)
{
    if (checked)
        showLabels(labelsIn(LineWeightUnit::Inches));
}

void OvLineWeightDialog::slotAccepted()
{
    emit lineWeightChanged(m_ui->mmRadioBnt->isChecked(), m_ui->listWidget->currentRow());
    accept();
}

void OvLineWeightDialog::slotCancel()
{
    reject();
}

void OvLineWeightDialog::slotHelp()
{
    showHelp(this, translationContext);
}

void OvLineWeightDialog::slotCurrentLabelChaged(int row)
{
    if (const QListWidgetItem *item = m_ui->listWidget->item(row))
        m_ui->nameLabel->setText(item->text());
}

void OvLineWeightDialog::initListViewData()
{
    const QStringList labels = labelsIn(LineWeightUnit::Millimetres);
    for (int row = 0; row < labels.size(); ++row) {
        const QIcon swatch = drawLineWeight(lineWeightSwatchWidth(row));
        new QListWidgetItem(swatch, labels.at(row), m_ui->listWidget);
        if (row >= firstNumericRow) // a default is a number
            m_ui->comboBox->addItem(swatch, labels.at(row));
    }
}

void OvLineWeightDialog::showLabels(const QStringList &labels)
{
    for (int row = 0; row < labels.size(); ++row) {
        m_ui->listWidget->item(row)->setText(labels.at(row));
        if (row >= firstNumericRow)
            m_ui->comboBox->setItemText(row - firstNumericRow, labels.at(row));
    }
    slotCurrentLabelChaged(m_ui->listWidget->currentRow());
}

} // namespace OvCc
