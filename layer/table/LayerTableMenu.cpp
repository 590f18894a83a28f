// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "layer/table/LayerTablePrivate.h"

#include <QCoreApplication>
#include <QMenu>
#include <QPointer>

namespace OvCc {

namespace {

/// The flags as a menu says them, each with the column that shows it.
constexpr struct
{
    const char *text;
    LayerColumn column;
    bool isInverted; ///< it says the opposite of the column
} flagEntries[] = {
        {QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "&On"), OnColumn, false},
        {QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "&Frozen"), ThawedColumn, true},
        {QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "&Locked"), UnlockedColumn, true},
        {QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "&Plot"), PlotColumn, false},
};

constexpr struct
{
    const char *text;
    LayerColumn column;
} allEntries[] = {
        {QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "&All on"), OnColumn},
        {QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "All &thawed"), ThawedColumn},
        {QT_TRANSLATE_NOOP("OvCc::LayerTableWidget", "All &unlocked"), UnlockedColumn},
};

/// What there is to offer besides what can always be done with selected rows.
struct Offer
{
    int row; ///< the one that says how its flags are
    bool isOneRow;
    bool hasOtherRows;
    bool isPropertyEditing;
    bool isUsageKnown;
};

/// Fills a menu for a table. What is chosen is done when the menu is done with it: table and menu may
/// go on the way.
class MenuFiller
{
    Q_DECLARE_TR_FUNCTIONS(OvCc::LayerTableWidget)

public:
    MenuFiller(QMenu &menu, LayerTableWidget &table)
        : m_menu(menu)
        , m_table(table)
    {
    }

    void fill(const Offer &offer)
    {
        using Table = LayerTableWidget;
        add(tr("Make &current"), &Table::setCurrentLayer, offer.isOneRow)
                ->setIcon(flagImage(currentImages, true));
        m_menu.addSeparator();
        addFlags(offer.row);
        m_menu.addSeparator();
        if (offer.isPropertyEditing) {
            add(tr("Colo&r..."), &Table::editColor);
            add(tr("Linet&ype..."), &Table::editLinetype);
            add(tr("Line&weight..."), &Table::editLineWeight);
            add(tr("D&escription..."), &Table::editDescription);
            m_menu.addSeparator();
        }
        add(tr("Re&name"), &Table::renameLayer, offer.isOneRow);
        add(tr("&Delete"), &Table::remove);
        if (offer.isPropertyEditing)
            add(tr("&Merge into..."), &Table::mergeSelection, offer.hasOtherRows);
        m_menu.addSeparator();
        add(tr("&Isolate"), &Table::isolateSelection);
        add(tr("&Give back"), &Table::giveBack, m_table.canGiveBack());
        addForAll();
        m_menu.addSeparator();
        add(tr("Select all s&hown"), &Table::selectAllShown);
        add(tr("Select unu&sed"), &Table::selectUnused, offer.isUsageKnown);
        add(tr("In&vert selection"), &Table::invertSelection);
        m_menu.addSeparator();
        add(tr("Copy as te&xt"), &Table::copySelection);
    }

private:
    void addFlags(int row)
    {
        for (const auto &[text, flag, isTheOpposite] : flagEntries) {
            const auto set = [table = &m_table, column = flag, isInverted = isTheOpposite](
                                     bool on) { table->setSelectedFlag(column, on != isInverted); };
            QAction *entry = add(tr(text), set);
            entry->setCheckable(true);
            entry->setChecked(m_table.model()->index(row, flag).data().toBool() != isTheOpposite);
        }
    }

    void addForAll()
    {
        for (const auto &[text, flag] : allEntries)
            add(tr(text), [table = &m_table, column = flag] { table->setAllFlags(column, true); });
    }

    template <class Act>
    QAction *add(const QString &text, Act act, bool isOfUse = true)
    {
        QAction *entry = m_menu.addAction(text);
        entry->setEnabled(isOfUse);
        QObject::connect(entry, &QAction::triggered, &m_table, act, Qt::QueuedConnection);
        return entry;
    }

    QMenu &m_menu;
    LayerTableWidget &m_table;
};

} // namespace

bool LayerTableWidget::rowMenu() const
{
    return m_d->hasRowMenu;
}

void LayerTableWidget::setRowMenu(bool isOn)
{
    m_d->hasRowMenu = isOn;
}

bool LayerTableWidget::Private::opensRowMenu() const
{
    return hasRowMenu && q->contextMenuPolicy() == Qt::DefaultContextMenu;
}

/// Shows the menu when the views are done with what asks for it.
void LayerTableWidget::Private::showRowMenu(const QModelIndex &cell, QPoint place)
{
    const auto show = [this, clicked = QPersistentModelIndex(cell), place] {
        const QPointer<LayerTableWidget> self(q);
        editing->finish();
        if (self && clicked.isValid())
            openRowMenu(clicked, place);
    };
    QMetaObject::invokeMethod(q, show, Qt::QueuedConnection);
}

void LayerTableWidget::Private::openRowMenu(const QModelIndex &clicked, QPoint place)
{
    QItemSelectionModel &selection = *q->selectionModel();
    selection.setCurrentIndex(clicked, selection.isSelected(clicked)
                                               ? QItemSelectionModel::NoUpdate
                                               : QItemSelectionModel::ClearAndSelect
                                                         | QItemSelectionModel::Rows);
    const QPointer menu(new QMenu(q));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    rowMenuOpen = menu.data();
    MenuFiller(*menu, *q).fill({clicked.row(), selectedRows().size() == 1, rows->rowCount() > 1,
                                isPropertyEditing, filter.available().testFlag(UnusedFilter)});
    emit q->rowMenuAboutToShow(menu);
    if (menu)
        menu->popup(place);
}

} // namespace OvCc
