#pragma once

#include <QStandardItemModel>
#include <QStringList>
#include <QVector>

namespace OvCc {

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

    const QVector<QStringList> &rows() const { return m_rows; }

    /// Removes the rows at the given places, ascending and without repeats, all at once.
    void removeRowsAt(const QVector<int> &places);

    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;
    bool insertRows(int row, int count, const QModelIndex &parent = {}) override;
    bool removeRows(int row, int count, const QModelIndex &parent = {}) override;

private:
    friend class LayerCell;

    void addItems(int firstRow, int endRow);
    void reorder(const QVector<int> &order);

    QVector<QStringList> m_rows;
    bool m_isResetting = false;
};

} // namespace OvCc
