// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerModel.h"

namespace OvCc {

struct LayerModel::Private
{
    QStringList headers;
    QList<QStringList> *rows = nullptr;
};

LayerModel::LayerModel(QObject *parent)
    : QAbstractTableModel(parent)
    , m_d(new Private)
{
}

LayerModel::~LayerModel() = default;

void LayerModel::setHorizontalHeader(const QStringList &headers)
{
    m_d->headers = headers;
}

void LayerModel::setModalDatas(QList<QStringList> *rows)
{
    m_d->rows = rows;
}

void LayerModel::refrushModel()
{
    beginResetModel();
    endResetModel();
    emit updateCount(rowCount());
}

int LayerModel::rowCount(const QModelIndex &) const
{
    return m_d->rows ? m_d->rows->size() : 0;
}

int LayerModel::columnCount(const QModelIndex &) const
{
    return m_d->headers.size();
}

QVariant LayerModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || role != Qt::DisplayRole || index.row() >= rowCount())
        return {};
    const QStringList &row = m_d->rows->at(index.row());
    return index.column() < row.size() ? row.at(index.column()) : QVariant();
}

bool LayerModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || role != Qt::DisplayRole || index.row() >= rowCount())
        return false;
    QStringList &row = (*m_d->rows)[index.row()];
    if (index.column() >= row.size())
        return false;
    row[index.column()] = value.toString();
    emit dataChanged(index, index);
    return true;
}

QVariant LayerModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return m_d->headers.value(section);
    return QAbstractTableModel::headerData(section, orientation, role);
}

Qt::ItemFlags LayerModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    return QAbstractTableModel::flags(index) | Qt::ItemIsEditable;
}

} // namespace OvCc
