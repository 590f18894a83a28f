// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Bench.h"

#include <KcHost/KcHost.h>
#include <OvCustomControl/OvCustomControl.h>

#include <QApplication>
#include <QHeaderView>
#include <QMouseEvent>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTableView>

#include <array>

namespace {

constexpr QSize windowSize(1200, 700);

/// The columns that show a picture instead of a text.
constexpr std::array<int, 7> imageColumns{OvCc::CurrentColumn,       OvCc::OnColumn,
                                          OvCc::ThawedColumn,        OvCc::UnlockedColumn,
                                          OvCc::PlotColumn,          OvCc::NewViewportFreezeColumn,
                                          OvCc::ViewportFreezeColumn};

/// A search text that leaves a tenth of the names of the measured drawings, or nearly so.
const char searchText[] = "Layer 1";

QList<QStringList> drawingRows()
{
    QList<QStringList> rows;
    OvLayerUtility().getAllLayerDate(rows);
    return rows;
}

void fill(QStandardItemModel &model, const QList<QStringList> &rows)
{
    for (const QStringList &row : rows) {
        QList<QStandardItem *> items;
        for (const QString &text : row)
            items.append(new QStandardItem(text));
        model.appendRow(items);
    }
}

void showAndPaint(QWidget &widget)
{
    widget.resize(windowSize);
    widget.show();
    QApplication::processEvents();
}

std::unique_ptr<QTableView> plainView(QAbstractItemModel &model)
{
    auto view = std::make_unique<QTableView>();
    view->verticalHeader()->setMinimumSectionSize(22);
    view->verticalHeader()->setDefaultSectionSize(22);
    view->setModel(&model);
    return view;
}

/// Two plain views of one model, as the layer table has.
struct PlainTable
{
    QStandardItemModel model;
    std::unique_ptr<QTableView> view = plainView(model);
    std::unique_ptr<QTableView> frozen = plainView(model);

    void fillSortAndPaint(const QList<QStringList> &rows)
    {
        fill(model, rows);
        model.sort(OvCc::NameColumn);
        showAndPaint(*view);
        showAndPaint(*frozen);
    }
};

std::unique_ptr<OvCc::LayerTableWidget> shownTable()
{
    auto table = std::make_unique<OvCc::LayerTableWidget>();
    showAndPaint(*table);
    return table;
}

/// Making and showing a layer table, against the same texts in two plain views.
Times tableLoad(int n)
{
    const auto drawing = openDrawing(n);
    std::unique_ptr<OvCc::LayerTableWidget> table;
    const double ours = medianTime([&] { table = shownTable(); }, [&] { table.reset(); });

    const QList<QStringList> rows = drawingRows();
    std::unique_ptr<PlainTable> plain;
    const double baseline = medianTime(
            [&] {
                plain = std::make_unique<PlainTable>();
                plain->fillSortAndPaint(rows);
            },
            // A sorted model takes minutes to destroy, so it is left to the end of the process.
            [&] { plain.release(); });
    plain.release();
    return {ours, baseline};
}

/// Reloading a table that is sorted by another column while a search is on, against filling the two
/// plain views that are there already.
Times tableReload(int n)
{
    const auto drawing = openDrawing(n);
    const auto table = shownTable();
    const double ours = medianTime(
            [&] {
                table->InitLayerModel();
                QApplication::processEvents();
            },
            [&] {
                table->sortByColumn(OvCc::ColorColumn, Qt::DescendingOrder);
                table->slotSearchLayer(QLatin1String(searchText));
                QApplication::processEvents();
            });

    const QList<QStringList> rows = drawingRows();
    std::unique_ptr<PlainTable> plain;
    const double baseline = medianTime([&] { plain->fillSortAndPaint(rows); },
                                       [&] {
                                           plain.release();
                                           plain = std::make_unique<PlainTable>();
                                           showAndPaint(*plain->view);
                                           showAndPaint(*plain->frozen);
                                       });
    plain.release();
    return {ours, baseline};
}

/// Refreshing a shown table after each @p change of the drawing, against reading the rows.
Times refreshAfter(int n, const std::function<void()> &change)
{
    const auto drawing = openDrawing(n);
    const auto table = shownTable();
    const double ours = medianTime(
            [&] {
                table->refresh();
                QApplication::processEvents();
            },
            change);
    QList<QStringList> rows;
    const double baseline =
            medianTime([&] { OvLayerUtility().getAllLayerDate(rows); }, [&] { rows.clear(); });
    return {ours, baseline};
}

Times tableRefresh(int n)
{
    return refreshAfter(n, [] {});
}

/// The layer is one in sight.
Times tableRefreshOne(int n)
{
    bool isLocked = false;
    return refreshAfter(n, [&isLocked] {
        isLocked = !isLocked;
        OvLayerUtility().setLayerLock(QStringLiteral("Layer 1"), isLocked);
    });
}

/// Destroying a table that is sorted by another column, against a plain model that never was.
Times tableClose(int n)
{
    const auto drawing = openDrawing(n);
    std::unique_ptr<OvCc::LayerTableWidget> table;
    const double ours = medianTime([&] { table.reset(); },
                                   [&] {
                                       table = shownTable();
                                       table->sortByColumn(OvCc::ColorColumn, Qt::DescendingOrder);
                                       QApplication::processEvents();
                                   });

    const QList<QStringList> rows = drawingRows();
    std::unique_ptr<QStandardItemModel> model;
    const double baseline = medianTime([&] { model.reset(); },
                                       [&] {
                                           model = std::make_unique<QStandardItemModel>();
                                           fill(*model, rows);
                                       });
    return {ours, baseline};
}

/// A search and clearing it, against the same in a filtering proxy under one plain view.
Times tableSearch(int n)
{
    const auto drawing = openDrawing(n);
    const auto table = shownTable();
    const double ours = medianTime([&] {
        for (const char *text : {searchText, ""}) {
            table->slotSearchLayer(QLatin1String(text));
            QApplication::processEvents();
        }
    });

    QStandardItemModel model;
    fill(model, drawingRows());
    QSortFilterProxyModel proxy;
    proxy.setSourceModel(&model);
    proxy.setFilterKeyColumn(OvCc::NameColumn);
    const auto view = plainView(proxy);
    showAndPaint(*view);
    const double baseline = medianTime([&] {
        for (const char *text : {searchText, ""}) {
            proxy.setFilterRegularExpression(
                    QRegularExpression(QLatin1Char('^') + QLatin1String(text),
                                       QRegularExpression::CaseInsensitiveOption));
            QApplication::processEvents();
        }
    });
    return {ours, baseline};
}

void click(QWidget &widget, const QPoint &place)
{
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, place, widget.mapToGlobal(place), Qt::LeftButton,
                          type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, {});
        QApplication::sendEvent(&widget, &event);
    }
}

/// A click on a flag cell with all that follows, against one change of a plain model. The layer is
/// one of the first in the drawing: bridge_find measures the walk to one further back.
Times tableToggle(int n)
{
    constexpr int row = 2;
    const auto drawing = openDrawing(n);
    const auto table = shownTable();
    const QModelIndex cell = table->model()->index(row, OvCc::OnColumn);
    table->scrollTo(cell);
    QApplication::processEvents();
    const QPoint place = table->visualRect(cell).center();
    int clicks = 0;
    int changes = 0;
    KcHost::setLayerModifiedHandler([&changes](const QString &) { ++changes; });
    const double ours = medianTime([&] {
        click(*table->viewport(), place);
        QApplication::processEvents();
        ++clicks;
    });
    KcHost::setLayerModifiedHandler(nullptr);
    if (changes != clicks)
        qFatal("%d clicks made %d changes", clicks, changes);

    QStandardItemModel model;
    fill(model, drawingRows());
    const auto view = plainView(model);
    showAndPaint(*view);
    const QModelIndex plainCell = model.index(row, OvCc::OnColumn);
    view->scrollTo(plainCell);
    QApplication::processEvents();
    bool isOn = true;
    const double baseline = medianTime([&] {
        isOn = !isOn;
        model.setData(plainCell, QVariant(isOn).toString());
        QApplication::processEvents();
    });
    return {ours, baseline};
}

/// Toggling a flag of a thousand selected layers in drawing and table, against ten clicks on that of the
/// last layer in the drawing.
Times toggleMany(int n)
{
    const auto drawing = openDrawing(n);
    const auto table = shownTable();
    const QAbstractItemModel *model = table->model();
    const QString last = drawingRows().constLast().at(OvCc::NameColumn);
    int row = 0;
    while (model->index(row, OvCc::NameColumn).data() != last)
        ++row;
    const QModelIndex cell = model->index(row, OvCc::UnlockedColumn);
    table->scrollTo(cell);
    QApplication::processEvents();
    const QPoint place = table->visualRect(cell).center();
    const double baseline = 10 * medianTime([&] {
                                click(*table->viewport(), place);
                                QApplication::processEvents();
                            });

    const int count = qMin(1000, n / 2);
    const QItemSelection rows(model->index(n / 4, 0),
                              model->index(n / 4 + count - 1, OvCc::LayerColumnCount - 1));
    table->selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect);
    bool isUnlocked = true;
    table->setSelectedFlag(OvCc::UnlockedColumn, isUnlocked);
    const double ours = medianTime([&] {
        isUnlocked = !isUnlocked;
        if (table->setSelectedFlag(OvCc::UnlockedColumn, isUnlocked) != count)
            qFatal("Not all %d layers were toggled", count);
        QApplication::processEvents();
    });
    return {ours, baseline};
}

/// A click on a flag of the layer in the middle of the drawing, where a link keeps a layer box in step
/// and is told of the change by the host, against the same click in the table alone.
Times linkClick(int n)
{
    const auto drawing = openDrawing(n);
    const auto table = shownTable();
    const QModelIndex cell = table->model()->index(n / 2, OvCc::OnColumn);
    table->scrollTo(cell);
    QApplication::processEvents();
    const QPoint place = table->visualRect(cell).center();
    const auto clickOnce = [&] {
        click(*table->viewport(), place);
        QApplication::processEvents();
    };
    const double baseline = medianTime(clickOnce);

    OvCc::LayerComboBox box;
    OvCc::LayerLink link;
    link.add(table.get());
    link.add(&box);
    link.flush();
    int updates = 0;
    int clicks = 0;
    QObject::connect(&link, &OvCc::LayerLink::updated, [&updates] { ++updates; });
    KcHost::setLayerModifiedHandler([&link](const QString &name) { link.layerChanged(name); });
    KcHost::setLayerTableChangesHandler([&link] { link.layersChanged(); });
    const double ours = medianTime([&] {
        clickOnce();
        ++clicks;
    });
    KcHost::setLayerTableChangesHandler(nullptr);
    KcHost::setLayerModifiedHandler(nullptr);
    if (updates != clicks)
        qFatal("%d clicks made %d updates", clicks, updates);
    return {ours, baseline};
}

/// Painting all visible rows, against the default delegate with a text or a picture in each cell.
Times tablePaint(int n)
{
    const auto drawing = openDrawing(n);
    const auto table = shownTable();
    const double ours = medianTime([&] { table->viewport()->repaint(); });

    QStandardItemModel model;
    fill(model, drawingRows());
    const QIcon icon(OvCc::loadImage(QLatin1String(layerPicture)));
    for (int row = 0; row < n; ++row) {
        for (const int column : imageColumns) {
            model.item(row, column)->setText(QString());
            model.item(row, column)->setIcon(icon);
        }
    }
    const auto view = plainView(model);
    for (int column = 0; column < OvCc::LayerColumnCount; ++column) {
        view->setColumnWidth(column, table->columnWidth(column));
        view->setColumnHidden(column, table->isColumnHidden(column));
    }
    showAndPaint(*view);
    const double baseline = medianTime([&] { view->viewport()->repaint(); });
    return {ours, baseline};
}

/// Removing a block of selected rows from a sorted table, against the same block of a plain model
/// that never was sorted.
Times tableRemove(int n)
{
    const int count = qMin(1000, n / 2);
    const auto drawing = openDrawing(n);
    const auto table = shownTable();
    const double ours = medianTime(
            [&] {
                table->remove();
                QApplication::processEvents();
            },
            [&] {
                table->InitLayerModel();
                table->sortByColumn(OvCc::ColorColumn, Qt::DescendingOrder);
                const QAbstractItemModel *model = table->model();
                table->selectionModel()->select(
                        QItemSelection(model->index(n / 4, 0),
                                       model->index(n / 4 + count - 1, OvCc::LayerColumnCount - 1)),
                        QItemSelectionModel::ClearAndSelect);
                QApplication::processEvents();
            });

    const QList<QStringList> rows = drawingRows();
    std::unique_ptr<QStandardItemModel> model;
    QTableView view;
    const double baseline = medianTime(
            [&] {
                model->removeRows(n / 4, count);
                QApplication::processEvents();
            },
            [&] {
                // Without its middle, this model, too, would take minutes to destroy.
                view.setModel(nullptr);
                model.release();
                model = std::make_unique<QStandardItemModel>();
                fill(*model, rows);
                view.setModel(model.get());
                showAndPaint(view);
            });
    view.setModel(nullptr);
    model.release();
    return {ours, baseline};
}

} // namespace

QList<Work> tableWorks()
{
    const QList<int> sizes{1000, 10000, 100000};
    return {
            {QStringLiteral("table_load"), sizes, tableLoad},
            {QStringLiteral("table_reload"), sizes, tableReload},
            {QStringLiteral("table_refresh"), sizes, tableRefresh},
            {QStringLiteral("table_refresh_one"), sizes, tableRefreshOne},
            {QStringLiteral("table_close"), sizes, tableClose},
            {QStringLiteral("table_search"), sizes, tableSearch},
            {QStringLiteral("table_toggle"), sizes, tableToggle},
            {QStringLiteral("toggle_many"), {10000, 100000}, toggleMany},
            {QStringLiteral("link_click"), sizes, linkClick},
            {QStringLiteral("table_paint"), sizes, tablePaint},
            {QStringLiteral("table_remove"), sizes, tableRemove},
    };
}
