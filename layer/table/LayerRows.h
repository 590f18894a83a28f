// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStandardItemModel>
#include <QStringList>
#include <QVector>

namespace OvCc {

/// How rows are sorted: by the texts of a column; by nothing, if they have no such column.
struct RowOrder
{
    int column;
    Qt::SortOrder order;
    bool isNatural; ///< see naturalKey()

    bool operator()(const QStringList &row, const QStringList &other) const;

    /// The places of @p rows in this order; rows that are alike in it stay as they are.
    QVector<int> sorted(const QVector<QStringList> &rows) const;

private:
    QString keyOf(const QStringList &row) const;
    bool precedes(const QString &key, const QString &other) const;
};

/// A text for one place in the table.
struct CellText
{
    int row;
    int column;
    QString text;
};

/// The rows of the layer table: texts, one item per cell.
///
/// An item never moves. Each is a window onto the text at its own place, and sorting and removing
/// move the rows of texts behind them. Items that move lose track of their own index in Qt 5: after
/// a plain sort, removing or destroying N rows takes a search per item, quadratic in N. Here sorting
/// is O(N log N), everything else O(N) or better.
class LayerRows : public QStandardItemModel
{
    Q_OBJECT

public:
    LayerRows(int columns, QObject *parent);

    int rowCount(const QModelIndex &parent = {}) const override;

    /// Replaces all rows; each has as many texts as there are columns. The views are reset, and rows
    /// that were hidden in them are not hidden any more.
    void setRows(const QVector<QStringList> &rows);

    /// Puts texts into cells: one change for the views, however many cells it is.
    void setTexts(const QVector<CellText> &cells);

    const QVector<QStringList> &rows() const { return m_rows; }

    /// Adds rows and puts all in @p order, which numbers the added ones behind those that are there:
    /// the row that is order[i] now stands at place i then, and rows that are not in it are removed.
    /// One change for the views, however many rows it moves.
    void arrange(QVector<int> order, const QVector<QStringList> &added = {});

    /// The column whose texts are compared naturally wherever rows are sorted; -1, the default, for none.
    void setNaturalColumn(int column) { m_naturalColumn = column; }
    int naturalColumn() const { return m_naturalColumn; }

    /// How rows are sorted by @p column.
    RowOrder sortedBy(int column, Qt::SortOrder order) const;

    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;
    bool insertRows(int row, int count, const QModelIndex &parent = {}) override;
    bool removeRows(int row, int count, const QModelIndex &parent = {}) override;

private:
    friend class LayerCell;

    void append(const QVector<QStringList> &added);
    void addItems(int firstRow, int endRow);
    void reorder(const QVector<int> &order);

    QVector<QStringList> m_rows;
    int m_naturalColumn = -1;
    bool m_isResetting = false;
};

} // namespace OvCc
