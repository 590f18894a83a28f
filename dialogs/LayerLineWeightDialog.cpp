// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerLineWeightDialog.h"

#include "FormSetup.h"
#include "HelpBox.h"
#include "layer/data/LineWeightRows.h"
#include "ui_LayerLineWeightDialog.h"

#include <OvCustomControl/Swatches.h>

namespace OvCc {

namespace {

constexpr const char *translationContext = "LayerLWidthDialog";

} // namespace

LayerLineWeightDialog::LayerLineWeightDialog(QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui_LayerLWidthDialog>())
{
    setUpForm(this, *m_ui);
    initListViewData();
    connect(m_ui->okBtn, &QPushButton::clicked, this, &LayerLineWeightDialog::slotAccepted);
    connect(m_ui->cancelBtn, &QPushButton::clicked, this, &LayerLineWeightDialog::slotCancel);
    connect(m_ui->helpBtn, &QPushButton::clicked, this, &LayerLineWeightDialog::slotHelp);
    connect(m_ui->listWidget, &QListWidget::currentRowChanged, this,
            &LayerLineWeightDialog::slotCurrentLabelChaged);
}

LayerLineWeightDialog::~LayerLineWeightDialog() = default;

void LayerLineWeightDialog::setCurrentLineweight(int row)
{
    const QListWidgetItem *item = m_ui->listWidget->item(row);
    if (!item)
        return;
    m_ui->listWidget->setCurrentRow(row);
    m_ui->oldLabel->setText(item->text());
}

int LayerLineWeightDialog::currentLineweight() const
{
    return m_ui->listWidget->currentRow();
}

void LayerLineWeightDialog::slotAccepted()
{
    emit layerLineWeightChanged(currentLineweight());
    accept();
}

void LayerLineWeightDialog::slotCancel()
{
    reject();
}

void LayerLineWeightDialog::slotHelp()
{
    showHelp(this, translationContext);
}

void LayerLineWeightDialog::slotCurrentLabelChaged(int row)
{
    if (const QListWidgetItem *item = m_ui->listWidget->item(row))
        m_ui->newLabel->setText(item->text());
}

void LayerLineWeightDialog::initListViewData()
{
    QListWidget *list = m_ui->listWidget;
    const QStringList labels =
            lineWeightLabels(LineWeightDefault, LineWeightUnit::Millimetres, translationContext);
    for (const QString &label : labels)
        new QListWidgetItem(drawLineWeight(lineWeightSwatchWidth(list->count())), label, list);
}

} // namespace OvCc
