#pragma once

#include "layer/table/ColumnTable.h"
#include "layer/table/LayerRows.h"
#include "layer/table/TableEditing.h"

#include <OvCustomControl/FrozenTableWidget.h>
#include <OvCustomControl/LayerTableWidget.h>

#include <QStringList>
#include <QVector>

#include <array>

class QMenu;

/// @file
/// What the sources of the layer table share: LayerTableWidget.cpp with its rows and commands,
/// LayerTableViews.cpp with the two views, LayerTableLayout.cpp with the columns that are shown.

namespace OvCc {

struct LayerTableWidget::Private
{
    explicit Private(LayerTableWidget *table);

    std::array<QTableView *, 2> views() const { return {q, frozen}; }
    QVector<int> selectedRows() const;
    QString showRows(const QList<QStringList> &read);
    bool moveMarkerTo(int row);
    void editName(int row);

    /// As the user reads it; empty for the column of the marker.
    static QString shownTitle(const ColumnTraits &column);

    void setUp(QTableView &view);
    void setUpFrozenView();
    void placeFrozenView();
    void connectViews();

    LayerTableWidget *const q;
    FrozenTableWidget *const frozen;
    LayerRows *const rows;
    TableEditing *editing = nullptr;
    QMenu *menu = nullptr;
    QStringList rowTemplate;
    bool isLoading = false;
};

} // namespace OvCc
