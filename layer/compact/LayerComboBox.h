// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/LayerItemData.h>
#include <OvCustomControl/OvccExport.h>

#include <QComboBox>
#include <QStringList>

#include <memory>

namespace OvCc {

class LayerItem;

/// A compact layer picker for a tool bar, 150 × 20 pixels: its face shows the current layer, its
/// drop-down has a LayerItem row for each layer, whose buttons change the layer in the drawing at
/// once. A press anywhere on the face opens the drop-down, which is as wide as its longest name
/// needs, up to 400 pixels, and shows the current layer highlighted, scrolled to where it is. A right
/// click on the face is the parent's to answer.
///
/// It is empty until the host calls slotUpdate(), which it does whenever the drawing or its layers
/// changed. Choosing a row does not make that layer current: the face always goes back to the
/// drawing's current layer, or to the shownLayers(). While the drop-down is closed, the wheel and
/// all keys but F4 and Alt with Down, which open it, are the parent's.
///
/// The host may delete the combo box inside layerComboBoxChanged(), ovSetLayerTableChanges() and the
/// signals of a click. Qt goes on with it after layerChosen() and the signals of QComboBox: use
/// deleteLater() there. A host that takes the face away, by setEditable() or setLineEdit(), gets a new
/// one by the next slotUpdate(); one that sets another view gets no rows any more.
///
/// Up to 200 layers every row has its LayerItem. With more of them a row gets it when it comes into
/// sight, or from layerItem(); at most 200 rows keep one, besides those in sight: the ones that got it
/// last. QListWidget::itemWidget() is null for the others, while all list items have their names and
/// heights. The first letters of a name, typed into the open drop-down, lead to its row.
///
/// Costs, N being the number of layers: slotUpdate() reads N layers, and touches only the rows that
/// differ. A click looks for its layer among N in the drawing. Opening costs what is in
/// sight; only where the current layer is another one than at the last update, it is looked for.
///
/// @ingroup layers
/// @image html LayerComboBox.png
class OVCC_EXPORT LayerComboBox : public QComboBox
{
    Q_OBJECT

public:
    /// A combo box without rows, until slotUpdate().
    explicit LayerComboBox(QWidget *parent = nullptr);
    ~LayerComboBox() override;

    /// The row of the drawing's current layer; 0 when there is none or it cannot be opened.
    int getDisplayItem();

    /// What shows the layer in @p row; null if there is no such row. It belongs to the list: beyond 200
    /// layers it goes when 200 others were seen or asked for, and comes back as it was.
    LayerItem *layerItem(int row);

    /// The layers that the face shows instead of the current one, such as those of the entities that are
    /// selected; none at first, and the face shows the current layer. One of them is shown with its
    /// flags and colour, kept up to date, and highlighted as the drop-down opens; of a layer that the
    /// drawing does not have there is the name alone. For several the face says "Varies". A name counts
    /// once however often it comes, empty ones not at all. The host names them anew when it renames
    /// one. What is current stays so, and getDisplayItem() tells of that in any case. O(N) for the look
    /// at the layer.
    /// @{
    void setShownLayers(const QStringList &names);
    QStringList shownLayers() const;
    /// @}

    /// Removes all rows.
    void clearListWidget();

    void hidePopup() override;

public Q_SLOTS:
    /// Brings rows and face in step with the drawing: one row per layer in the drawing's order, the
    /// list's current row on the current layer, the combo box's own current index on the first row.
    /// Rows whose layer is still there stay, and so does the scroll position of an open drop-down.
    /// Without layers there are no rows, and the face is not shown.
    ///
    /// A host may call it at once from inside layerComboBoxChanged() or ovSetLayerTableChanges(); a
    /// call that comes while another one is running is ignored.
    void slotUpdate();

    /// As slotUpdate(), but in an open drop-down the row that is highlighted stays so: it is what the
    /// user is about to choose. Only if its layer went, the current layer is highlighted.
    /// @return whether rows or face show anything else than before
    bool refresh();

    /// As refresh(), where no other layers than these have changed, and perhaps which one is current.
    /// A few layers are looked for among N, and their rows are painted; with many names, and with that
    /// of a layer that came or went, it is a refresh().
    bool refreshLayers(const QStringList &names);

    /// Shows the drawing's current layer on the face, whatever @p row is; or else the shownLayers().
    void slotRowChanged(int row);

    /// Answers a click in a row. If the row's layer is the current one the face follows, the host is
    /// told by ovSetLayerTableChanges(), and layerComboBoxChanged() is sent; so it is for the only one of
    /// the shownLayers(), which the face shows then instead. Any other layer changes only in the
    /// drawing.
    void slotLabelChange(int index, LayerItemData data); // clazy:exclude=fully-qualified-moc-types

Q_SIGNALS:
    /// The user changed the layer that the face shows, or the current one where the face shows others.
    void layerComboBoxChanged();

    /// The user chose the row of that layer in the open drop-down, by the mouse or by Return; it may
    /// be the current one. The drop-down is closed by now. A host may make the layer current here.
    void layerChosen(QString name);

    /// A click in the drop-down is about to change a layer in the drawing: a host opens its
    /// transaction or its undo step here. Rows may go here; if the combo box does, nothing is changed.
    /// @param text what the user does, for a list of undo steps, such as "Switch layer off"
    void changesBegin(const QString &text);

    /// The click has changed what it could; it comes once after each changesBegin(), unless the combo
    /// box was deleted meanwhile, and before the other signals of the click.
    /// @param changed the number of layers that are different now
    /// @param refused the number of layers that the drawing did not change as asked: it refused, or
    ///                somebody else has them open
    void changesEnd(int changed, int refused);

    /// A click in the drop-down has changed these layers in the drawing, the current one included. It
    /// comes once a click, and not where nothing is different.
    void layersToggled(QStringList names);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    struct Private;
    const std::unique_ptr<Private> m_d;
};

} // namespace OvCc
