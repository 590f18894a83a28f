// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Bench.h"

#include <OvCustomControl/OvCustomControl.h>

#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

using Row = QPair<QPixmap, QString>;
using Rows = QList<Row>;

/// The rows of the pickers, in the order in which those are built.
struct AllRows
{
    Rows colors;
    Rows listedColors;
    Rows lineWeights;
    Rows lineTypes;
    Rows textStyles;
    Rows visualStyles;
    Rows settings;
};

Rows rowsOf(const QComboBox &combo)
{
    Rows rows;
    for (int row = 0; row < combo.count(); ++row)
        rows.append({combo.itemIcon(row).pixmap(combo.iconSize()), combo.itemText(row)});
    return rows;
}

Rows rowsOf(const QListWidget &list)
{
    Rows rows;
    for (int row = 0; row < list.count(); ++row)
        rows.append({list.item(row)->icon().pixmap(list.iconSize()), list.item(row)->text()});
    return rows;
}

Rows rowsOf(const OvCc::BaseComboBox &picker)
{
    return rowsOf(*picker.findChild<OvCc::ListWidget *>());
}

AllRows readRows()
{
    return {rowsOf(static_cast<const QComboBox &>(OvCc::ColorComboBox())),
            rowsOf(OvCc::QOvColorComboBox()),
            rowsOf(OvCc::LineWidthComboBox()),
            rowsOf(OvCc::LineTypeComboBox()),
            rowsOf(OvCc::TextStyleComboBox()),
            rowsOf(OvCc::VisualStyleComboBox()),
            rowsOf(*OvCc::OvLineWeightDialog(nullptr).findChild<QListWidget *>())};
}

void addPlainRows(QListWidget &list, const Rows &rows)
{
    for (const Row &row : rows)
        new QListWidgetItem(row.first, row.second, &list);
}

/// A combo box whose popup holds a list and a button, and nothing behind them.
void buildPlainPicker(QWidget &parent, const Rows &rows)
{
    auto *combo = new QComboBox(&parent);
    auto *popup = new QListWidget(combo);
    combo->setLineEdit(new QLineEdit);
    combo->setModel(popup->model());
    combo->setView(popup);
    auto *drop = new QWidget;
    auto *column = new QVBoxLayout(drop);
    auto *list = new QListWidget;
    column->addWidget(list);
    column->addWidget(new QPushButton(QStringLiteral("Others...")));
    addPlainRows(*list, rows);
    popup->setItemWidget(new QListWidgetItem(popup), drop);
}

void buildPlainDialog(QWidget &parent, const Rows &rows)
{
    auto *dialog = new QDialog(&parent);
    auto *column = new QVBoxLayout(dialog);
    auto *list = new QListWidget;
    auto *combo = new QComboBox;
    column->addWidget(list);
    column->addWidget(combo);
    addPlainRows(*list, rows);
    const Rows defaults = rows.mid(OvCc::FirstNumericLineWeightRow);
    for (const Row &row : defaults)
        combo->addItem(row.first, row.second);
}

/// Building one picker of each kind, against the same parts bare.
Times pickersBuild(int)
{
    const AllRows rows = readRows();
    const double baseline = medianTime([&] {
        QWidget parent;
        auto *colors = new QComboBox(&parent);
        for (const Row &row : rows.colors)
            colors->addItem(row.first, row.second);
        for (const Rows &list : {rows.listedColors, rows.lineWeights, rows.lineTypes,
                                 rows.textStyles, rows.visualStyles})
            buildPlainPicker(parent, list);
        buildPlainDialog(parent, rows.settings);
    });
    const double ours = medianTime([] {
        QWidget parent;
        new OvCc::ColorComboBox(&parent);
        new OvCc::QOvColorComboBox(&parent);
        new OvCc::LineWidthComboBox(&parent);
        new OvCc::LineTypeComboBox(&parent);
        new OvCc::TextStyleComboBox(&parent);
        new OvCc::VisualStyleComboBox(&parent);
    });
    return {ours, baseline};
}

} // namespace

QList<Work> pickerWorks()
{
    return {{QStringLiteral("pickers_build"), {1}, pickersBuild}};
}
