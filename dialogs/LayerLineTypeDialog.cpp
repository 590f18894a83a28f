// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerLineTypeDialog.h"

#include "FormSetup.h"
#include "HelpBox.h"
#include "ui_LayerLineTypeDialog.h"

#include <OvCustomControl/Swatches.h>

namespace OvCc {

namespace {

constexpr const char *continuous = QT_TRANSLATE_NOOP("LayerLTypeDialog", "Continuous");
constexpr int linetypeRole = Qt::UserRole; // of the first column

QString linetypeIn(const QTableWidget &table, int row)
{
    return table.item(row, 0)->data(linetypeRole).toString();
}

} // namespace

LayerLineTypeDialog::LayerLineTypeDialog(QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui_LayerLTypeDialog>())
{
    setUpForm(this, *m_ui);

    setLinetypes({});
    connect(m_ui->okbtn, &QPushButton::clicked, this, &LayerLineTypeDialog::slotAccepted);
    connect(m_ui->cancelBtn, &QPushButton::clicked, this, &LayerLineTypeDialog::slotCancel);
    connect(m_ui->helpBtn, &QPushButton::clicked, this, &LayerLineTypeDialog::slotHelp);
}

LayerLineTypeDialog::~LayerLineTypeDialog() = default;

void LayerLineTypeDialog::setLinetypes(const QStringList &linetypes)
{
    QTableWidget *table = m_ui->tableWidget;
    const bool isChoice = !linetypes.isEmpty();
    table->setRowCount(0);
    if (!isChoice)
        appendRow(QCoreApplication::translate("LayerLTypeDialog", continuous), continuous);
    for (const QString &linetype : linetypes)
        appendRow(linetype, linetype);

    table->setSelectionMode(isChoice ? QTableWidget::SingleSelection
                                     : QTableWidget::ExtendedSelection);
    disconnect(table, &QTableWidget::cellDoubleClicked, this, nullptr);
    if (isChoice)
        connect(table, &QTableWidget::cellDoubleClicked, this, &LayerLineTypeDialog::slotAccepted);
}

void LayerLineTypeDialog::setCurrentLinetype(const QString &linetype)
{
    QTableWidget *table = m_ui->tableWidget;
    table->setCurrentItem(nullptr);
    table->clearSelection();
    for (int row = 0; row < table->rowCount(); ++row) {
        if (linetypeIn(*table, row).compare(linetype, Qt::CaseInsensitive) == 0) {
            table->setCurrentCell(row, 0);
            return;
        }
    }
}

QString LayerLineTypeDialog::currentLinetype() const
{
    const QModelIndexList selected = m_ui->tableWidget->selectionModel()->selectedRows();
    return selected.isEmpty() ? QString() : linetypeIn(*m_ui->tableWidget, selected.last().row());
}

/// Only the continuous line is known by its name.
void LayerLineTypeDialog::appendRow(const QString &text, const QString &linetype)
{
    QTableWidget *table = m_ui->tableWidget;
    const int row = table->rowCount();
    table->insertRow(row);
    auto *name = new QTableWidgetItem(text);
    name->setData(linetypeRole, linetype);
    table->setItem(row, 0, name);
    if (linetype.compare(QLatin1String(continuous), Qt::CaseInsensitive) != 0)
        return;
    table->setItem(row, 1, new QTableWidgetItem(drawLineType(Qt::SolidLine), QString()));
    table->setItem(
            row, 2,
            new QTableWidgetItem(QCoreApplication::translate("LayerLTypeDialog", "Solid Line")));
}

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
