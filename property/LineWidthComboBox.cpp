#include "LineWidthComboBox.h"

#include "layer/data/LineWeightRows.h"

#include <OvCustomControl/OvLineWeightDialog.h>
#include <OvCustomControl/Swatches.h>

#include <QListWidgetItem>
#include <QWindow>

namespace OvCc {

namespace {

constexpr LineWeightCode firstRows[] = {LineWeightByLayer, LineWeightByBlock, LineWeightDefault};
constexpr int codeCount = std::size(firstRows);
static_assert(codeCount == FirstNumericLineWeightRow);
constexpr int allRowCount = codeCount + int(standardLineWeights.size());
constexpr int earlyRowCount = 9;
constexpr int dropDownHeight = 210;

QStringList labelsIn(LineWeightUnit unit)
{
    return lineWeightLabels({LineWeightByLayer, LineWeightByBlock, LineWeightDefault}, unit,
                            LineWidthComboBox::staticMetaObject.className());
}

int lineWeightOf(int row)
{
    return row < codeCount ? firstRows[row] : standardLineWeights.at(row - codeCount);
}

} // namespace

LineWidthComboBox::LineWidthComboBox(QWidget *parent)
    : BaseComboBox(parent)
    , m_dialog(std::make_unique<OvLineWeightDialog>(nullptr))
{
    setItemIconSize({48, 16});
    setButtonText(tr("Lineweight settings..."));
    setFixedSize(150, 20);
    addRows(0, earlyRowCount);
    setListWidgetHeight(dropDownHeight);
    setCurrentIndex(LineWeightByLayerRow);

    connect(this, &BaseComboBox::addMoreItem, this, &LineWidthComboBox::slotAddMoreItem);
    connect(m_dialog.get(), &OvLineWeightDialog::lineWeightChanged, this,
            &LineWidthComboBox::slotSettingsChanged);
    connect(this, &BaseComboBox::rowChosen, this, [this](int row) {
        if (row < allRowCount)
            emit lineWeightChosen(lineWeightOf(row));
    });
}

LineWidthComboBox::~LineWidthComboBox() = default;

int LineWidthComboBox::rowOf(int lineWeight)
{
    int row = allRowCount - 1;
    while (row >= 0 && lineWeightOf(row) != lineWeight)
        --row;
    return row;
}

void LineWidthComboBox::addRemainingRows()
{
    if (!item(earlyRowCount))
        addRows(earlyRowCount, allRowCount);
}

void LineWidthComboBox::openDialog()
{
    // The dialog has no parent, but belongs above the picker's window.
    m_dialog->winId();
    m_dialog->windowHandle()->setTransientParent(window()->windowHandle());
    m_dialog->setCurrentLineweight(currentRow());
    const QPointer<LineWidthComboBox> guard(this);
    if (m_dialog->exec() == QDialog::Accepted) {
        if (!m_isMillimetre)
            showInches();
        const bool isRowHere = item(m_chosenRow);
        setCurrentIndex(isRowHere ? m_chosenRow : currentRow());
        if (isRowHere)
            emit rowChosen(m_chosenRow);
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
    m_isMillimetre = isMM;
    m_chosenRow = row;
}

void LineWidthComboBox::addRows(int first, int end)
{
    const QStringList labels = labelsIn(m_labelUnit);
    for (int row = first; row < end; ++row)
        addItem(drawLineWeight(lineWeightSwatchWidth(row)), labels.at(row));
}

void LineWidthComboBox::showInches()
{
    m_labelUnit = LineWeightUnit::Inches;
    const QStringList labels = labelsIn(m_labelUnit);
    for (int row = 0; row < qMin(rowCount(), allRowCount); ++row)
        item(row)->setText(labels.at(row));
}

} // namespace OvCc
