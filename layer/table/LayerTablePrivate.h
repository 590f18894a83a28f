#pragma once

#include "layer/table/ColumnTable.h"
#include "layer/table/LayerRows.h"
#include "layer/table/TableEditing.h"

#include <OvCustomControl/FrozenTableWidget.h>
#include <OvCustomControl/LayerTableWidget.h>

#include <QStringList>
#include <QVector>

#include <array>
#include <optional>

class QMenu;

/// @file
/// What the sources of the layer table share: LayerTableWidget.cpp with its rows and commands,
/// LayerTableRefresh.cpp with what follows changes of the drawing, LayerTableViews.cpp with the two
/// views, LayerTableLayout.cpp with the columns that are shown.

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

    void arrange(const QVector<int> &order, const QVector<QStringList> &added = {});
    void leaveRowsBeside(const QVector<int> &staying);
    std::optional<QString> followDrawing();
    void followEditor();

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
    QString currentLayer = QStringLiteral("0"); ///< as told last
    QString search;
    bool isLoading = false;    ///< till all have heard of it
    bool isChanging = false;   ///< the rows
    bool isRefreshDue = false; ///< when the editors are closed
};

} // namespace OvCc
