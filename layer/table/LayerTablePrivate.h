// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "layer/table/ColumnTable.h"
#include "layer/table/FlagGestures.h"
#include "layer/table/LayerRows.h"
#include "layer/table/RowEvents.h"
#include "layer/table/RowFilter.h"
#include "layer/table/TableEditing.h"

#include <OvCustomControl/FrozenTableWidget.h>
#include <OvCustomControl/LayerTableWidget.h>

#include <QDialog>
#include <QHash>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QSet>
#include <QStringList>
#include <QVector>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

class KcDbDatabase;
class QMenu;

/// @file
/// What the sources of the layer table share: LayerTableWidget.cpp with its rows and commands,
/// LayerTableFlags.cpp with the flags of many layers, LayerTableVisibility.cpp with what shows some layers
/// alone, LayerTableProperties.cpp with the dialogs about them, LayerTableMenu.cpp with the menu of the
/// rows, LayerTableText.cpp with rows as text, LayerTableRefresh.cpp with what follows changes of the
/// drawing, LayerTableFinding.cpp with which rows are shown and selected at once,
/// LayerTableViews.cpp with the two views, LayerTableLayout.cpp with the columns that are shown.

namespace OvCc {

struct LayerTableWidget::Private
{
    explicit Private(LayerTableWidget *table);

    std::array<QTableView *, 2> views() const { return {q, frozen}; }
    QVector<int> selectedRows() const;
    QString showRows(const QList<QStringList> &read);
    bool moveMarkerTo(int row);
    void takeOver(const QStringList &lastRead);
    void hideUnfound(const QVector<int> &exceptions = {});
    void hideIfUnfound(int row);
    void narrow();
    void tellShown();
    bool hasNoMatch() const;
    bool insertTemplate(int row);
    void selectShown(const std::function<bool(int row)> &isWanted);

    struct Followed
    {
        bool isAnyOther = false;        ///< in the table than before
        std::optional<QString> current; ///< layer, empty if none is; nothing without layers
    };
    bool follow(const std::function<Followed()> &bringInStep);
    Followed followDrawing();
    Followed followLayers(const QStringList &changedNames);
    void showTexts(int row, const QStringList &texts);
    RowOrder sortOrder() const;
    bool isInItsPlace(int row) const;
    int rowNamed(const QString &name) const;
    void selectAgain(const QSet<QString> &removed);
    void selectRow(int row);
    void arrange(const QVector<int> &order, const QVector<QStringList> &added = {});
    void leaveRowsBeside(const QVector<int> &staying);
    void followEditor();

    static int guardedPlace(const FlagOrders &orders, LayerColumn column, bool value);
    int setFlag(LayerColumn column, bool value, const QStringList &names);
    FlagGestures::Show showing();
    void showFlags(const FlagOrders &orders);
    static int tell(const QPointer<LayerDelegate> &delegate, const FlagOrders &orders);

    void editName(int row);

    void isolate(const QSet<QString> &selected);
    void selectionChanged();
    void postFollowing();
    void followSelection(const QStringList &selected);
    void stopFollowing();
    void forgetOtherDrawing(bool isOther = false);

    /// As the user reads it; empty for the column of the marker.
    static QString shownTitle(const ColumnTraits &column);
    static QString shownText(const ColumnTraits &column, const QString &text);

    template <class Make, class Answer>
    void ask(Make make, Answer answer);
    void dropQuestion();
    QStringList names() const;
    bool awaitsDoubleClick(const QModelIndex &cell) const;
    bool open(const QModelIndex &cell);
    bool opensRowMenu() const;
    void showRowMenu(const QModelIndex &cell, QPoint place);
    void openRowMenu(const QModelIndex &clicked, QPoint place);

    void setUp(QTableView &view);
    void setUpFrozenView();
    void placeFrozenView();
    void connectViews();

    LayerTableWidget *const q;
    FrozenTableWidget *const frozen;
    LayerRows *const rows;
    TableEditing *editing = nullptr;
    std::unique_ptr<RowEvents> rowEvents;
    QMenu *menu = nullptr;
    QStringList rowTemplate;
    QString currentLayer = QStringLiteral("0"); ///< as told last
    QString currentRow;                         ///< the name in the row that was read as current
    RowFilter filter;
    QString noMatchText;
    std::pair<int, int> shownAsTold; ///< how many rows, of how many
    QStringList linetypes;           ///< to choose from
    bool isLoading = false;          ///< till all have heard of it
    bool isChanging = false;         ///< the rows
    bool isRefreshDue = false;       ///< when the editors are closed
    bool isSelectionToggled = false;
    bool isPropertyEditing = false;
    bool hasRowMenu = false;
    QPointer<QMenu> rowMenuOpen;
    QPointer<QDialog> question; ///< about the selected layers

    /// What isolating has changed.
    struct Isolation
    {
        void note(const FlagOrders &outcome, const LayerState &state);

        KcDbDatabase *drawing = nullptr;
        QHash<QString, SomeFlags> before; ///< as these flags were, by the names of the layers
    };
    std::optional<Isolation> isolation;

    /// What is kept while the selected layers alone are on.
    struct Following
    {
        struct Layer
        {
            bool own;  ///< whether it is on but for the selection
            bool left; ///< whether it was left on here
        };

        FlagOrders ordersFor(const QSet<QString> &selected);
        void note(const FlagOrders &outcome);

        KcDbDatabase *drawing = nullptr;
        QHash<QString, Layer> layers{}; ///< by their names
        bool isDue = false;             ///< to look at what is selected
        bool isBusy = false;            ///< with a gesture
    };
    std::optional<Following> following; ///< while that is switched on

    /// What the user did here since the last refresh of all rows. The drawing need not follow.
    struct AheadOfDrawing
    {
        QHash<QPersistentModelIndex, QString> renamed; ///< names in the drawing, by their cells
        QSet<QString> removed;
        QStringList marked; ///< rows that got the marker of the current layer, or lost it
    };
    AheadOfDrawing aheadOfDrawing;
    QString nameInDrawing(int row) const;
    void noteRenamed(const QPersistentModelIndex &cell, const QString &from, const QString &to);
};

} // namespace OvCc
