// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerRows.h"

#include "NaturalOrder.h"

#include <QSignalBlocker>

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace OvCc {

/// The item of one place in the table.
class LayerCell : public QStandardItem
{
public:
    QVariant data(int role) const override
    {
        if (role == Qt::DisplayRole || role == Qt::EditRole)
            return rows().m_rows.at(row()).at(column());
        return QStandardItem::data(role);
    }

    void setData(const QVariant &value, int role) override
    {
        if (role != Qt::DisplayRole && role != Qt::EditRole) {
            QStandardItem::setData(value, role);
            return;
        }
        QString &text = rows().m_rows[row()][column()];
        if (text == value.toString())
            return;
        text = value.toString();
        emitDataChanged();
    }

private:
    LayerRows &rows() const { return *static_cast<LayerRows *>(model()); }
};

bool RowOrder::operator()(const QStringList &row, const QStringList &other) const
{
    return precedes(keyOf(row), keyOf(other));
}

QVector<int> RowOrder::sorted(const QVector<QStringList> &rows) const
{
    std::vector<QString> keys;
    keys.reserve(size_t(rows.size()));
    for (const QStringList &row : rows)
        keys.push_back(keyOf(row));
    const auto isBefore = [this, &keys](int row, int other) {
        return precedes(keys[size_t(row)], keys[size_t(other)]);
    };
    QVector<int> places(rows.size());
    std::iota(places.begin(), places.end(), 0);
    if (!std::is_sorted(places.cbegin(), places.cend(), isBefore))
        std::stable_sort(places.begin(), places.end(), isBefore);
    return places;
}

QString RowOrder::keyOf(const QStringList &row) const
{
    const QString text = row.value(column);
    return isNatural ? naturalKey(text) : text;
}

bool RowOrder::precedes(const QString &key, const QString &other) const
{
    const int comparison = key.compare(other);
    return order == Qt::AscendingOrder ? comparison < 0 : comparison > 0;
}

LayerRows::LayerRows(int columns, QObject *parent)
    : QStandardItemModel(0, columns, parent)
{
}

int LayerRows::rowCount(const QModelIndex &parent) const
{
    return m_isResetting ? 0 : QStandardItemModel::rowCount(parent);
}

void LayerRows::setRows(const QVector<QStringList> &rows)
{
    // A header forgets which rows were hidden only when it is left without any.
    m_isResetting = true;
    beginResetModel();
    endResetModel();
    m_isResetting = false;

    beginResetModel();
    {
        const QSignalBlocker blocker(this);
        const int present = rowCount();
        if (rows.size() < present) {
            QStandardItemModel::removeRows(rows.size(), present - rows.size());
        } else {
            QStandardItemModel::insertRows(present, rows.size() - present);
            addItems(present, rows.size());
        }
        m_rows = rows;
    }
    endResetModel();
}

void LayerRows::setTexts(const QVector<CellText> &cells)
{
    int top = m_rows.size();
    int bottom = -1;
    int left = columnCount();
    int right = -1;
    for (const CellText &cell : cells) {
        QString &text = m_rows[cell.row][cell.column];
        if (text == cell.text)
            continue;
        text = cell.text;
        top = qMin(top, cell.row);
        bottom = qMax(bottom, cell.row);
        left = qMin(left, cell.column);
        right = qMax(right, cell.column);
    }
    if (bottom >= 0)
        emit dataChanged(index(top, left), index(bottom, right));
}

void LayerRows::arrange(QVector<int> order, const QVector<QStringList> &added)
{
    append(added);
    // The rows that go are brought to the end first: there no other item has to move up.
    const int kept = order.size();
    QVector<bool> isKept(m_rows.size(), false);
    for (const int row : std::as_const(order))
        isKept[row] = true;
    for (int row = 0; row < isKept.size(); ++row) {
        if (!isKept.at(row))
            order.append(row);
    }
    if (!std::is_sorted(order.cbegin(), order.cend()))
        reorder(order);
    if (kept < order.size()) {
        QStandardItemModel::removeRows(kept, order.size() - kept);
        m_rows.resize(kept);
    }
}

RowOrder LayerRows::sortedBy(int column, Qt::SortOrder order) const
{
    return {column, order, column == m_naturalColumn};
}

void LayerRows::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= columnCount())
        return;
    const QVector<int> places = sortedBy(column, order).sorted(m_rows);
    // Both views ask for every sort, as their headers follow each other.
    if (!std::is_sorted(places.cbegin(), places.cend()))
        reorder(places);
}

bool LayerRows::insertRows(int row, int count, const QModelIndex &parent)
{
    const int present = m_rows.size();
    if (parent.isValid() || row < 0 || row > present || count < 1)
        return false;

    QVector<int> order(present + count);
    std::iota(order.begin(), order.end(), 0);
    std::rotate(order.begin() + row, order.begin() + present, order.end());
    const QStringList blank = QVector<QString>(columnCount()).toList();
    arrange(order, QVector<QStringList>(count, blank));
    return true;
}

bool LayerRows::removeRows(int row, int count, const QModelIndex &parent)
{
    if (parent.isValid() || row < 0 || count < 1 || row + count > m_rows.size())
        return false;
    QVector<int> order(m_rows.size());
    std::iota(order.begin(), order.end(), 0);
    order.remove(row, count);
    arrange(order);
    return true;
}

void LayerRows::append(const QVector<QStringList> &added)
{
    if (added.isEmpty())
        return;
    const int present = m_rows.size();
    m_rows += added;
    QStandardItemModel::insertRows(present, added.size());
    {
        const QSignalBlocker blocker(this);
        addItems(present, m_rows.size());
    }
    emit dataChanged(index(present, 0), index(m_rows.size() - 1, columnCount() - 1));
}

void LayerRows::addItems(int firstRow, int endRow)
{
    for (int row = firstRow; row < endRow; ++row) {
        for (int column = 0; column < columnCount(); ++column)
            setItem(row, column, new LayerCell);
    }
}

/// Puts the row that is now at order[i] to place i, for every i.
void LayerRows::reorder(const QVector<int> &order)
{
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);

    QVector<QStringList> rows;
    rows.reserve(order.size());
    QVector<int> newPlaces(order.size());
    for (int place = 0; place < order.size(); ++place) {
        rows.append(std::move(m_rows[order.at(place)]));
        newPlaces[order.at(place)] = place;
    }
    m_rows = std::move(rows);

    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    after.reserve(before.size());
    for (const QModelIndex &old : before)
        after.append(index(newPlaces.at(old.row()), old.column()));
    changePersistentIndexList(before, after);

    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

} // namespace OvCc
