// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LineWidthComboBox.h"

#include "layer/data/LineWeightRows.h"

#include <OvCustomControl/OvLineWeightDialog.h>
#include <OvCustomControl/Swatches.h>

#include <QListWidgetItem>
#include <QPointer>
#include <QWindow>

namespace OvCc {

namespace {

static_assert(lineWeightRowOf(LineWeightByLayer) == LineWeightByLayerRow
              && lineWeightRowOf(LineWeightByBlock) == LineWeightByBlockRow
              && lineWeightRowOf(LineWeightDefault) == LineWeightDefaultRow
              && firstNumericRow == FirstNumericLineWeightRow);

constexpr int earlyRowCount = 9;
constexpr int dropDownHeight = 210;

QStringList labelsIn(LineWeightUnit unit)
{
    return lineWeightLabels(LineWeightByLayer, unit,
                            LineWidthComboBox::staticMetaObject.className());
}

} // namespace

struct LineWidthComboBox::Private
{
    OvLineWeightDialog dialog{nullptr};
    bool isMillimetre = true; ///< what was accepted last; the labels need not follow
    LineWeightUnit labelUnit = LineWeightUnit::Millimetres;
    int chosenRow = 0;
};

LineWidthComboBox::LineWidthComboBox(QWidget *parent)
    : BaseComboBox(parent)
    , m_d(new Private)
{
    setItemIconSize({48, 16});
    setButtonText(tr("Lineweight settings..."));
    setFixedSize(150, 20);
    addRows(0, earlyRowCount);
    setListWidgetHeight(dropDownHeight);
    setCurrentIndex(LineWeightByLayerRow);

    connect(this, &BaseComboBox::addMoreItem, this, &LineWidthComboBox::slotAddMoreItem);
    connect(&m_d->dialog, &OvLineWeightDialog::lineWeightChanged, this,
            &LineWidthComboBox::slotSettingsChanged);
    connect(this, &BaseComboBox::rowChosen, this, [this](int row) {
        if (row < lineWeightRowCount)
            emit lineWeightChosen(lineWeightRows.at(row));
    });
}

LineWidthComboBox::~LineWidthComboBox() = default;

int LineWidthComboBox::rowOf(int lineWeight)
{
    return lineWeightRowOf(lineWeight);
}

void LineWidthComboBox::addRemainingRows()
{
    if (!item(earlyRowCount))
        addRows(earlyRowCount, lineWeightRowCount);
}

void LineWidthComboBox::openDialog()
{
    // The dialog has no parent, but belongs above the picker's window.
    m_d->dialog.winId();
    m_d->dialog.windowHandle()->setTransientParent(window()->windowHandle());
    m_d->dialog.setCurrentLineweight(currentRow());
    const QPointer<LineWidthComboBox> guard(this);
    if (m_d->dialog.exec() == QDialog::Accepted) {
        if (!m_d->isMillimetre)
            showInches();
        const bool isRowHere = item(m_d->chosenRow);
        setCurrentIndex(isRowHere ? m_d->chosenRow : currentRow());
        if (isRowHere)
            emit rowChosen(m_d->chosenRow);
    }
    if (guard)
        BaseComboBox::openDialog();
}

void LineWidthComboBox::slotAddMoreItem()
{
    static int count = 1;
    if (count == 1)
        addRemainingRows();
    ++count;
}

void LineWidthComboBox::slotSettingsChanged(bool isMM, int row)
{
    m_d->isMillimetre = isMM;
    m_d->chosenRow = row;
}

void LineWidthComboBox::addRows(int first, int end)
{
    const QStringList labels = labelsIn(m_d->labelUnit);
    for (int row = first; row < end; ++row)
        addItem(drawLineWeight(lineWeightSwatchWidth(row)), labels.at(row));
}

void LineWidthComboBox::showInches()
{
    m_d->labelUnit = LineWeightUnit::Inches;
    const QStringList labels = labelsIn(m_d->labelUnit);
    for (int row = 0; row < qMin(rowCount(), lineWeightRowCount); ++row)
        item(row)->setText(labels.at(row));
}

} // namespace OvCc
