// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/LayerItemData.h>

#include <QListWidget>
#include <QPersistentModelIndex>

#include <functional>
#include <utility>

namespace OvCc {

class LayerComboBox;
class LayerItem;

inline bool isSame(const LayerItemData &one, const LayerItemData &other)
{
    return one.isOn == other.isOn && one.isLocked == other.isLocked
           && one.isFrozen == other.isFrozen && one.color == other.color && one.name == other.name;
}

/// The drop-down of a layer combo box: one row per layer, shown by a LayerItem.
///
/// Up to mostItems layers all rows have their items. Beyond, a row gets its item when it comes into
/// sight or when somebody asks for it, and at most mostItems rows have one: those in sight, and those
/// that got theirs last. A row that loses its item keeps what it showed.
///
/// Rows are as high as ever, whatever changes in them, and names stand on their items only.
class LayerList : public QListWidget
{
    Q_OBJECT

public:
    static constexpr int mostItems = 200;

    /// Sets a flag of a layer in the drawing, as the user asked for; see statusFlags.
    using Setter = std::function<void(int index, const QString &name, bool value)>;

    LayerList(LayerComboBox *combo, Setter setter);

    /// Shows @p layers. Rows whose layer is still there stay, with their items; the list becomes as
    /// wide as the longest name needs. O(N), but touches only the rows that differ.
    /// @return whether there are any
    bool setLayers(const QList<LayerItemData> &layers);

    /// Shows what became of the layer that stands in @p row.
    /// @return whether that is anything else than before
    bool setLayer(int row, const LayerItemData &layer);

    /// The row that opening the list leads to: that of the layer @p name, or of the current layer where
    /// there is none of that name, as at first.
    void setStart(const QString &name) { m_start = name; }
    int startRow();

    /// The row of the layer with that name; -1 if there is none above the first row that is none of
    /// this list's own. O(1) for the name that was asked for last.
    int rowOf(const QString &name);

    /// The name of the layer in @p row; a null text if there is none.
    QString nameAt(int row) const;

    /// The item in @p row, made if need be; null if there is no such row.
    LayerItem *layerItem(int row);

    void dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                     const QVector<int> &roles = {}) override;
    void doItemsLayout() override;

protected:
    void rowsInserted(const QModelIndex &parent, int start, int end) override;
    void scrollContentsBy(int dx, int dy) override;
    void showEvent(QShowEvent *event) override;
    void updateGeometries() override;

private:
    bool matchRows(const QList<LayerItemData> &layers);
    void insertRows(int begin, int end, const QList<LayerItemData> &layers);
    bool showChanges(const QList<LayerItemData> &layers);
    void fitWidth();
    int widestRow() const;

    void putItem(QListWidgetItem *place, LayerItem *item);
    std::pair<int, int> rowsInSight() const;
    void makeItemsInSight();
    void dropSpareItems();

    LayerComboBox *m_combo;
    const Setter m_setter;
    QList<QPersistentModelIndex> m_rowsWithItems; ///< in the order in which they got them
    QString m_start;
    int m_lastFound = -1;
    bool m_isInserting = false;
    bool m_isPuttingItem = false;
};

} // namespace OvCc
