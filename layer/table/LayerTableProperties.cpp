// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "layer/data/LineWeightRows.h"
#include "layer/table/LayerTablePrivate.h"

#include <OvCustomControl/ColorText.h>
#include <OvCustomControl/LayerLineTypeDialog.h>
#include <OvCustomControl/LayerLineWeightDialog.h>
#include <OvCustomControl/OvLayerUtility.h>

#include <QColorDialog>
#include <QInputDialog>
#include <QMenu>
#include <QPointer>

#include <algorithm>
#include <iterator>

namespace OvCc {

namespace {

using Command = void (LayerTableWidget::*)();

/// The cells that open a dialog, and what opens it.
constexpr struct
{
    LayerColumn column;
    Command edit;
} properties[] = {
        {ColorColumn, &LayerTableWidget::editColor},
        {LinetypeColumn, &LayerTableWidget::editLinetype},
        {LineWeightColumn, &LayerTableWidget::editLineWeight},
        {DescriptionColumn, &LayerTableWidget::editDescription},
};

/// Null if there is none.
Command openerOf(const QModelIndex &cell)
{
    for (const auto &[column, edit] : properties) {
        if (column == cell.column())
            return edit;
    }
    return nullptr;
}

/// The first row of LayerLineWeightDialog among all rows of lineweights.
constexpr int firstDialogRow = lineWeightRowOf(LineWeightDefault);

/// The row of LayerLineWeightDialog with the lineweight of a cell; -1 if none has it.
int dialogRowOf(const QString &label)
{
    for (int row = firstDialogRow; row < lineWeightRowCount; ++row) {
        if (StringByLineWeight(lineWeightRows.at(row), false) == label)
            return row - firstDialogRow;
    }
    return -1;
}

QStringList among(const QStringList &names, const QStringList &wanted)
{
    const QSet<QString> set(wanted.begin(), wanted.end());
    QStringList found;
    std::copy_if(names.begin(), names.end(), std::back_inserter(found),
                 [&set](const QString &name) { return set.contains(name); });
    return found;
}

} // namespace

bool LayerTableWidget::propertyEditing() const
{
    return m_d->isPropertyEditing;
}

void LayerTableWidget::setPropertyEditing(bool isOn)
{
    m_d->isPropertyEditing = isOn;
}

void LayerTableWidget::setLinetypes(const QStringList &linetypes)
{
    m_d->linetypes = linetypes;
}

void LayerTableWidget::editColor()
{
    m_d->ask(
            [this](const QStringList &texts, const QStringList &) {
                auto *dialog = new QColorDialog(colorOfText(texts.at(ColorColumn)).color, this);
                dialog->setWindowTitle(tr("Select Color"));
                return dialog;
            },
            [this](const QColorDialog &dialog, const QStringList &names) {
                emit colorRequested(names, dialog.selectedColor());
            });
}

void LayerTableWidget::editLinetype()
{
    m_d->ask(
            [this](const QStringList &texts, const QStringList &) {
                auto *dialog = new LayerLineTypeDialog(this);
                dialog->setLinetypes(m_d->linetypes);
                dialog->setCurrentLinetype(texts.at(LinetypeColumn));
                return dialog;
            },
            [this](const LayerLineTypeDialog &dialog, const QStringList &names) {
                const QString linetype = dialog.currentLinetype();
                if (!linetype.isEmpty())
                    emit linetypeRequested(names, linetype);
            });
}

void LayerTableWidget::editLineWeight()
{
    m_d->ask(
            [this](const QStringList &texts, const QStringList &) {
                auto *dialog = new LayerLineWeightDialog(this);
                dialog->setCurrentLineweight(dialogRowOf(texts.at(LineWeightColumn)));
                return dialog;
            },
            [this](const LayerLineWeightDialog &dialog, const QStringList &names) {
                const int row = dialog.currentLineweight();
                if (row >= 0)
                    emit lineWeightRequested(names, lineWeightRows.at(firstDialogRow + row));
            });
}

void LayerTableWidget::editDescription()
{
    m_d->ask(
            [this](const QStringList &texts, const QStringList &names) {
                auto *dialog = new QInputDialog(this);
                dialog->setWindowTitle(tr("Description"));
                dialog->setLabelText(names.size() == 1
                                             ? tr("Description of the layer:")
                                             : tr("Description of %1 layers:").arg(names.size()));
                dialog->setTextValue(texts.at(DescriptionColumn));
                return dialog;
            },
            [this](const QInputDialog &dialog, const QStringList &names) {
                emit descriptionRequested(names, dialog.textValue());
            });
}

void LayerTableWidget::mergeSelection()
{
    m_d->ask(
            [this](const QStringList &, const QStringList &names) -> QInputDialog * {
                QStringList targets = m_d->names();
                // Of several, one may take the others in.
                if (names.size() == 1)
                    targets.removeOne(names.first());
                if (targets.isEmpty())
                    return nullptr;
                auto *dialog = new QInputDialog(this);
                dialog->setWindowTitle(tr("Merge Layers"));
                dialog->setLabelText(tr("Merge into:"));
                dialog->setComboBoxItems(targets);
                dialog->setTextValue(m_d->currentLayer);
                return dialog;
            },
            [this](const QInputDialog &dialog, const QStringList &names) {
                const QString target = dialog.textValue();
                QStringList merged = names;
                merged.removeOne(target);
                if (!merged.isEmpty() && m_d->rowNamed(target) >= 0)
                    emit mergeRequested(merged, target);
            });
}

/// Asks the user about the selected layers that are shown. The table may be gone then.
/// @param make   makes a dialog over the table, or none, of the texts of the row that it starts at and
///               of the layers' names
/// @param answer gets the dialog that was accepted, and the layers that are still there
template <class Make, class Answer>
void LayerTableWidget::Private::ask(Make make, Answer answer)
{
    if (question)
        return;
    const QPointer<LayerTableWidget> self(q);
    editing->finish();
    const QVector<int> places = self ? selectedRows() : QVector<int>();
    if (places.isEmpty())
        return;
    const QStringList asked = q->selectedLayers();
    const int current = q->currentIndex().row();
    const bool startsAtCurrent = std::binary_search(places.begin(), places.end(), current);

    // The dialog goes with the table.
    const QPointer dialog(make(rows->rows().at(startsAtCurrent ? current : places.first()), asked));
    question = dialog.data();
    const KcDbDatabase *drawing = getCurrentDb();
    const bool isAccepted = dialog && dialog->exec() == QDialog::Accepted && dialog;
    if (isAccepted && getCurrentDb() == drawing) {
        const QStringList left = among(this->names(), asked);
        if (!left.isEmpty())
            answer(*dialog, left);
    }
    delete dialog.data();
}

/// Takes back what the user is being asked or offered: it was about another drawing.
void LayerTableWidget::Private::dropQuestion()
{
    if (rowMenuOpen)
        rowMenuOpen->close();
    if (question)
        question->reject();
}

/// Of all layers, top first.
QStringList LayerTableWidget::Private::names() const
{
    QStringList names;
    for (const QStringList &texts : rows->rows())
        names.append(texts.at(NameColumn));
    return names;
}

/// On a cell of a selected row: all selected rows are to be selected still when it comes.
bool LayerTableWidget::Private::awaitsDoubleClick(const QModelIndex &cell) const
{
    return isPropertyEditing && openerOf(cell) && q->selectionModel()->isSelected(cell);
}

/// Opens a dialog if @p cell has one. The views are to be done first with what asks for it.
/// @return false if there is none
bool LayerTableWidget::Private::open(const QModelIndex &cell)
{
    if (!isPropertyEditing || !openerOf(cell) || !editing->rows().isEmpty())
        return false;
    QMetaObject::invokeMethod(q, openerOf(cell), Qt::QueuedConnection);
    return true;
}

} // namespace OvCc
