// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QAbstractTableModel>
#include <QStringList>

#include <memory>

namespace OvCc {

/// An editable model over rows of texts that belong to somebody else, for a host that shows the rows
/// of OvLayerUtility::getAllLayerDate() in a view of its own. The layer table does not use it.
///
/// Neither the rows nor the titles are copied on the way to the view: after changing them call
/// refrushModel().
///
/// @ingroup layers
class OVCC_EXPORT LayerModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// A model without rows and columns.
    explicit LayerModel(QObject *parent = nullptr);
    ~LayerModel() override;

    /// Sets the column titles; there are as many columns as titles.
    void setHorizontalHeader(const QStringList &headers);

    /// Sets the rows to show; null for none. They stay the caller's, must live as long as they are
    /// shown here, and are written to when the user edits. Rows that are shorter than the titles
    /// show empty cells.
    void setModalDatas(QList<QStringList> *rows);

    /// Resets the model, then sends updateCount().
    void refrushModel();

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;

    /// Only the display role has data.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    /// Accepts the display role only. A column beyond the end of its row is refused.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    /// Every cell can be edited.
    Qt::ItemFlags flags(const QModelIndex &index) const override;

Q_SIGNALS:
    /// The model was refreshed and has @p count rows.
    void updateCount(int count);

private:
    struct Private;
    const std::unique_ptr<Private> m_d;
};

} // namespace OvCc
