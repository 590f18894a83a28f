// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once
// clazy:excludeall=qproperty-without-notify

#include <OvCustomControl/LayerColumns.h>
#include <OvCustomControl/OvccExport.h>

#include <QByteArray>
#include <QColor>
#include <QHash>
#include <QStringList>
#include <QTableView>

#include <memory>

class QMenu;

namespace OvCc {

class FrozenTableWidget;

/// The table of the drawing's layers: one row per layer, in the columns of
/// OvLayerUtility::getAllLayerDate(). The marker of the current layer and the names stay in place
/// while the other columns scroll; they are a view of their own, the frozenView(). That one shows
/// names in their width also while "Name" is hidden here; the column of the marker is as wide as
/// both then, and is always shown. Set the width of hidden names in the frozen view.
///
/// Clicks on flag cells change the drawing at once (see LayerDelegate). Adding, removing, renaming
/// and making current change the table only: the host follows the signals, changes the drawing and
/// calls refresh() or InitLayerModel(), which it may do from inside any of them. To delete the table
/// there, use deleteLater(): with some events Qt is not done yet. While a dialog is up that a press
/// on a cell has opened, here or in the host, the table may go at any time.
///
/// A context menu on the column titles shows and hides columns. The choice is kept in the user's
/// settings, organisation "Brevik", application "TessaViewer" unless setSettingsScope() says
/// otherwise: it is read when a table is made and written when it is destroyed. Widths and the sort
/// order are not; a host that wants them kept has saveState() and restoreState().
///
/// Costs, N being the number of layers: loading and sorting are O(N log N), a click is O(N) for the
/// walk to the layer's record, everything else is O(N) or better.
///
/// @ingroup layers
/// @image html LayerTableWidget.png
class OVCC_EXPORT LayerTableWidget : public QTableView
{
    Q_OBJECT
    /// See setToggleSelection().
    Q_PROPERTY(bool toggleSelection READ toggleSelection WRITE setToggleSelection)
    /// See setVisibilityFollowsSelection().
    Q_PROPERTY(bool visibilityFollowsSelection READ visibilityFollowsSelection WRITE
                       setVisibilityFollowsSelection DESIGNABLE false)

    /// Whether names are sorted by the numbers in them; see setNaturalOrder().
    Q_PROPERTY(bool naturalOrder READ naturalOrder WRITE setNaturalOrder)

    /// What the rows are narrowed to.
    Q_PROPERTY(Filters filter READ filter WRITE setFilter NOTIFY filterChanged)

    /// What stands in the empty table where rows are there but none is shown; nothing at first.
    Q_PROPERTY(QString noMatchText READ noMatchText WRITE setNoMatchText)

    /// Whether a double click and Return open a dialog on cells with a property of layers.
    Q_PROPERTY(bool propertyEditing READ propertyEditing WRITE setPropertyEditing)

    /// Whether rows have a context menu.
    Q_PROPERTY(bool rowMenu READ rowMenu WRITE setRowMenu)

public:
    /// What the rows may be narrowed to beside the search, by the state of their layers: off, frozen,
    /// locked; with entities or without, once setUsage() has told of those; of the entities that
    /// setPicked() has told of, while there are any.
    enum Filter {
        NoFilter = 0x00,
        OffFilter = 0x01,
        FrozenFilter = 0x02,
        LockedFilter = 0x04,
        UsedFilter = 0x08,
        UnusedFilter = 0x10,
        PickedFilter = 0x20
    };
    Q_DECLARE_FLAGS(Filters, Filter)
    Q_FLAG(Filters)

    /// Where in the user's settings the shown columns are kept. To be called before the first table
    /// is made: each reads them there as it is made, and writes them there as it goes. With an empty
    /// @p organisation they are kept nowhere, for a host that goes by saveState() alone.
    static void setSettingsScope(const QString &organisation, const QString &application);

    /// A table of the working drawing's layers, as InitLayerModel() fills it. Nobody can hear of
    /// the current layer yet: a host asks currentLayer().
    explicit LayerTableWidget(QWidget *parent = nullptr);

    /// Saves the column layout.
    ~LayerTableWidget() override;

    /// Reloads all rows from the drawing, sorted by name, and selects the current layer, or the
    /// first row if there is none; then sends updateCurretnLayer(). There is no search any more,
    /// only the filter() leaves out rows, and the table stays scrolled where it was. Without layers
    /// the table is empty and nothing is sent. A call that comes while another one is running is
    /// ignored.
    void InitLayerModel();

    /// The current layer as updateCurretnLayer() told it last; "0" before that.
    QString currentLayer() const;

    /// Inserts a row like the last one that was loaded or added.
    /// @param row the place; from 0 to the number of rows
    bool insertRowData(int row);

    /// Makes the column menu; the constructor calls it.
    void creatActions();

    /// Saves which columns are shown; the destructor calls it.
    void writeSettings();

    /// The widths of all columns, hidden ones included, which of those that the user may hide are
    /// hidden, and the sort order, for the host's own settings.
    QByteArray saveState() const;

    /// Lays the table out as it was when saveState() returned @p state; the column menu follows. The
    /// next reload sorts by name again, refresh() does not.
    /// @return false, and nothing is changed, if @p state is no such thing, or one of another version
    bool restoreState(const QByteArray &state);

    /// The view of the markers and names, the child "frozenTable"; never null. Names are edited there.
    FrozenTableWidget *frozenView() const;

    /// Whether runs of the digits 0 to 9 are compared as numbers where rows are sorted by name, so that
    /// "Layer2" is above "Layer10"; off at first. All else is compared as ever, letter case included,
    /// and the same in every locale. The rows are sorted anew at once, if they are by name. Sorting
    /// costs about as much as without.
    /// @{
    void setNaturalOrder(bool natural);
    bool naturalOrder() const;
    /// @}

    /// Tells how many entities lie on which layer, as the drawing spells its name; layers that are not in
    /// @p usage are unused. Until the first call nothing is known of that. The host calls it again
    /// when it may be otherwise, and for another drawing.
    void setUsage(const QHash<QString, int> &usage);

    /// Tells on which layers the entities lie that the user has selected in the drawing, spelled as
    /// there. A PickedFilter follows at once; with none it lets all rows through.
    void setPicked(const QStringList &names);

    /// Narrows the rows to those that each of the filters lets through, and the search as well; a
    /// UsedFilter and an UnusedFilter together leave none. filterChanged() follows. A reload, a refresh
    /// and another drawing keep the filter, and rows follow it whenever their layers are read: one
    /// whose flag the user has clicked stays till then. A row with an open editor stays until that is
    /// closed. O(N), and nothing while no filter is on.
    /// @{
    void setFilter(Filters filters);
    Filters filter() const;
    /// @}

    /// The filters of which enough is known: all but those that wait for setUsage() or setPicked().
    Filters availableFilters() const;

    /// How many rows are shown, of those that the model has. O(1).
    int shownRowCount() const;

    /// What stands in the empty table where rows are there but none is shown; nothing at first.
    /// @{
    void setNoMatchText(const QString &text);
    QString noMatchText() const;
    /// @}

    /// Takes over what is being edited; layerAdded() or layerRenamed() follows if that is a name.
    void finishEditing();

    /// The row that setCurrentLayer() takes: the last one that is selected and shown; -1 if there is
    /// none. Rows that search and filter hide stay selected, but no command reaches them.
    int selectedRow() const;

    /// Whether a double click, or Return, on a colour, linetype, lineweight or description opens the
    /// dialog for it, as editColor() and the like do; false to begin with. A click on such a cell of a
    /// selected row leaves all selected rows selected then.
    /// @{
    bool propertyEditing() const;
    void setPropertyEditing(bool isOn);
    /// @}

    /// Whether a right click on a row, or a key for it, opens a menu with the commands of this table;
    /// false to begin with. It is for the selected rows; a row that is not selected is first, alone.
    /// Properties of layers and merging are in it only with propertyEditing(). The host adds its own
    /// in rowMenuAboutToShow(). Nothing of it where the context menu policy is another one than the
    /// default.
    /// @{
    bool rowMenu() const;
    void setRowMenu(bool isOn);
    /// @}

    /// The linetypes that the user can choose from, as the drawing spells them. None, as in the
    /// beginning, leaves "Continuous" alone.
    void setLinetypes(const QStringList &linetypes);

    /// The names of all selected rows that are shown, the top one first.
    QStringList selectedLayers() const;

    /// Whether a click on a flag cell of a selected row is for all selected rows that are shown: they
    /// get the value that the clicked one gets, as by setSelectedFlag(), and selection and current
    /// cell stay as they are. A press with Ctrl or Shift on a flag cell selects then, and changes nothing.
    /// Any other click is as ever. False to begin with: a click is for its row alone.
    /// @{
    bool toggleSelection() const;
    void setToggleSelection(bool toggles);
    /// @}

    /// Gives a flag of all selected rows that are shown a value, as a click on one of them would: with
    /// one changesBegin() and changesEnd(), one layersToggled(), one ovSetLayerTableChanges(), in one walk
    /// over the layer table. The user is asked once before the current layer is switched off, and is told
    /// once that it can't be frozen; the other layers change in any case. Rows whose layers refuse stay
    /// as they are. O(N).
    /// @param column OnColumn, ThawedColumn, UnlockedColumn or PlotColumn; another one changes nothing
    /// @param value  as the cell has it: true is on, thawed, unlocked, plotted
    /// @return how many layers are different now
    int setSelectedFlag(LayerColumn column, bool value);

    /// As setSelectedFlag(), for all layers of the drawing, those that the search hides included.
    int setAllFlags(LayerColumn column, bool value);

    /// Whether giveBack() has anything to give back; false for another drawing.
    bool canGiveBack() const;

    /// While this is on, the selected layers that are shown are on in the drawing, and no others; with
    /// none selected all are as they were before. Frozen layers stay frozen, and nothing is asked, not even
    /// for the current layer. Each change of the selection is one gesture, whose changesBegin() has the
    /// same text each time; what changes before control is back in the event loop is one change.
    ///
    /// Switched off, and when the table goes, all is as it was, by one more such gesture, during which
    /// this still says that it is on. What somebody else switched on or off meanwhile, the user by a click
    /// or the host, stays as they wanted it then. For another drawing it is switched off, and the drawing
    /// before, which the table cannot reach any more, stays as it is: a host switches it off before, and
    /// for as long as it writes the drawing to a file. False to begin with. O(N) for each change.
    /// @{
    bool visibilityFollowsSelection() const;
    void setVisibilityFollowsSelection(bool follows);
    /// @}

    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;

public Q_SLOTS:
    /// Brings the rows in step with the drawing, as a reload would show them, and touches only what
    /// differs: selection, sort order, search, filter and scroll position stay, and nothing is
    /// painted that is as it was. Rows that came stand where the table is sorted to have them, and
    /// so do rows that changed in that column; hidden are those that search and filter() leave out.
    /// If the current row goes, the next one that stays is the current one.
    ///
    /// Sends updateCurretnLayer() if the current layer is another one than that signal told last. A
    /// row with an open editor stays in its place until that is closed, and is put right soon after,
    /// when the host had time to answer. What the user did here and the drawing did not follow is taken
    /// back: a row that was renamed has its old name, rows that were removed are selected again if
    /// nothing else is. O(N), in one walk over the layer table; O(N log N) where rows in many places
    /// change their order.
    /// @return whether anything in the table was different
    bool refresh();

    /// As refresh(), where no other layers than these have changed, and perhaps which one is current.
    /// A few layers are looked for among N and their rows put right; with many names, and with that of
    /// a layer that came or went, it is a refresh().
    bool refreshLayers(const QStringList &names);

    /// As refresh(), for another working drawing than before. What is being edited or asked is dropped: it
    /// was about the other drawing. Selected stays what bears a name that was selected; otherwise the
    /// current layer is selected and brought into sight.
    bool showOtherDrawing();

    /// Takes over what is being edited, appends a row with the first free name of the form "Layer1"
    /// and opens its editor. When that closes, layerAdded() follows.
    void addLayer();

    /// Takes over what is being edited and opens the editor of the selectedRow()'s name; layerRenamed()
    /// follows if the user makes another one of it. Nothing without such a row.
    void renameLayer();

    /// Removes the selected rows that are shown; layersRemoved() follows if there are any. What is
    /// being edited is taken over before, and told of before.
    void remove();

    /// Moves the marker of the current layer to the selectedRow(), if there is one, and sends
    /// updateCurretnLayer(). The row that carries the marker of an earlier call, or else the first
    /// row, counts as the old current one: choosing it again moves nothing and does not send that
    /// signal. currentLayerRequested() follows in any case. What is being edited is taken over, and
    /// told of, before.
    void setCurrentLayer();

    /// Select, of the rows that are shown, those that are not selected, all, or those whose layers are
    /// unused by setUsage(): none before that call. What is hidden is not selected then. If the current
    /// row is not selected, the next one that is becomes the current one, or else the last one before.
    /// One change of the selection each, O(N).
    /// @{
    void invertSelection();
    void selectAllShown();
    void selectUnused();
    /// @}

    /// Switches the selected layers that are shown on, thaws them, and switches all others off, in one
    /// gesture. The user is asked before the current layer is switched off, which stays on if the answer
    /// is no. Nothing where no row is selected, and where all is so already.
    void isolateSelection();

    /// Gives back what isolateSelection() has changed, several calls of it together, in one gesture: a
    /// flag that it changed is as it was before the first one; all else stays as it is by now, and
    /// layers that are gone are passed over. Nothing unless canGiveBack().
    void giveBack();

    /// Asks the user for another colour, linetype, lineweight or description of the selected rows that
    /// are shown, in a dialog that starts at that of the current one of them. What is being edited is
    /// taken over, and told of, before. If the user accepts, colorRequested() or the like follows.
    /// Nothing without such rows, and while another dialog of these is up. The table may be reloaded,
    /// or go, while the user is asked.
    /// @{
    void editColor();
    void editLinetype();
    void editLineWeight();
    void editDescription();
    /// @}

    /// Asks the user into which layer the selected rows that are shown are to be merged: any other one
    /// or, where they are several, one of them. As editColor() otherwise; mergeRequested() follows.
    void mergeSelection();

    /// Puts the selected rows that are shown on the clipboard: a line of the titles and one per row,
    /// with tabs between the columns that are shown, and words for the pictures. What is being edited
    /// is taken over, and told of, before. Nothing without such rows.
    void copySelection();

    /// Shows the rows whose names begin with @p text, in whatever letter case. One "*" stands for
    /// any characters: at the beginning, or else at the end, or else the first one inside.
    void slotSearchLayer(const QString &text);

    /// Sends updateLayerCombo().
    void slotLayerChanged();

Q_SIGNALS:
    /// A layer became the current one here, or is found to be after a reload; empty if none is.
    void updateCurretnLayer(QString name);

    /// The user made the layer of a row the current one; never sent by a reload. Other than
    /// updateCurretnLayer(), which comes before it, it tells of every choice, that of the first row
    /// and of the current layer included.
    void currentLayerRequested(QString name);

    /// The user changed layers through this table.
    void updateLayerCombo();

    /// The filter() is another one now.
    void filterChanged();

    /// There are more or fewer rows than before, or more or fewer of them are shown.
    void shownRowsChanged();

    /// A click is about to change the drawing; see LayerDelegate::changesBegin().
    void changesBegin(QString text);

    /// A click has changed what it could; see LayerDelegate::changesEnd().
    void changesEnd(int changed, int refused);

    /// A click changed these layers; see LayerDelegate::layersToggled().
    void layersToggled(QStringList names);

    /// What canGiveBack() says has changed.
    void giveBackChanged(bool canGiveBack);

    /// setVisibilityFollowsSelection() took effect, or another drawing switched it off.
    void visibilityFollowsSelectionChanged(bool follows);

    /// The editor that addLayer() opened was closed, whoever closed it. After a reload that took the
    /// row away there is nothing to tell.
    /// @param name what the user made of the proposed name
    void layerAdded(QString name);

    /// remove() took these layers out of the table.
    void layersRemoved(QStringList names);

    /// The editor of a name was closed, or a persistent one was left, and the name is another one now.
    void layerRenamed(QString from, QString to);

    /// The user wants these layers to have another colour, linetype, lineweight or description. The
    /// layers are those of the selected rows that were shown when they were asked for it, top first,
    /// without any that are gone by now. The table shows it once the drawing says so.
    /// @{
    void colorRequested(QStringList names, QColor color);
    void linetypeRequested(QStringList names, QString linetype);
    /// @param lineWeight hundredths of a millimetre, or LineWeightDefault
    void lineWeightRequested(QStringList names, int lineWeight);
    void descriptionRequested(QStringList names, QString description);
    /// @}

    /// The user wants the entities of these layers to lie on @p target, and the layers to go.
    void mergeRequested(QStringList names, QString target);

    /// The menu of setRowMenu() is about to be shown, for the rows that are selected now. The host may
    /// change it; it is deleted when it is closed.
    void rowMenuAboutToShow(QMenu *menu);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void updateGeometries() override;

    /// Names that are fitted to their texts leave room for a few columns beside them.
    int sizeHintForColumn(int column) const override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &index,
                                                         const QEvent *event) const override;

private Q_SLOTS:
    void slotSortIndexChanged(int column, Qt::SortOrder order);
    void updateSectionWidth(int logicalIndex, int oldSize, int newSize);
    void updateSectionHeight(int logicalIndex, int oldSize, int newSize);
    void show_contextMenu(const QPoint &pos);
    void layerColumnVisiable(int column, bool visible);

private:
    struct Private;
    const std::unique_ptr<Private> m_d;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(LayerTableWidget::Filters)

} // namespace OvCc
