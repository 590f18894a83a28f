#include "LayerModel.h"

namespace OvCc {

LayerModel::LayerModel(QObject *parent)
    : QAbstractTableModel(parent)
{
}

LayerModel::~LayerModel() = default;

void LayerModel::setHorizontalHeader(const QStringList &headers)
{
    m_headers = headers;
}

void LayerModel::setModalDatas(QList<QStringList> *rows)
{
    m_rows = rows;
}

void LayerModel::refrushModel()
{
    beginResetModel();
    endResetModel();
    emit updateCount(rowCount());
}

int LayerModel::rowCount(const QModelIndex &) const
{
    return m_rows ? m_rows->size() : 0;
}

int LayerModel::columnCount(const QModelIndex &) const
{
    return m_headers.size();
}

QVariant LayerModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || role != Qt::DisplayRole || index.row() >= rowCount())
        return {};
    const QStringList &row = m_rows->at(index.row());
    return index.column() < row.size() ? row.at(index.column()) : QVariant();
}

bool LayerModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || role != Qt::DisplayRole || index.row() >= rowCount())
        return false;
    QStringList &row = (*m_rows)[index.row()];
    if (index.column() >= row.size())
        return false;
    row[index.column()] = value.toString();
    emit dataChanged(index, index);
    return true;
}

QVariant LayerModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return m_headers.value(section);
    return QAbstractTableModel::headerData(section, orientation, role);
}

Qt::ItemFlags LayerModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    return QAbstractTableModel::flags(index) | Qt::ItemIsEditable;
}

} // namespace OvCc
