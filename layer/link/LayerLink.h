// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QColor>
#include <QObject>
#include <QStringList>

#include <memory>

namespace OvCc {

class LayerComboBox;
class LayerManager;
class LayerState;
class LayerTableWidget;

/// Keeps any number of layer widgets in step with the working drawing, and tells in one place what the
/// user wants of it. With it a host needs no more than this:
///
///     OvCc::LayerLink link;
///     link.add(&panel);
///     link.add(&box);
///     connect(&link, &OvCc::LayerLink::currentLayerRequested, &host, &Host::setCurrentLayer);
///
/// and calls layerChanged(), layersChanged() or drawingChanged() when its database changes, whoever did
/// it, in any order and from inside any signal. What the user changes in the widgets themselves, the
/// link knows already. It collects all that, and puts each widget right once, before control is back
/// in the event loop, or at once in flush(): only what differs is touched, and selection, sort order,
/// search and scroll position stay.
///
/// The drawing is the truth. After each of the user's wishes the link looks at the drawing: a host that
/// refuses does nothing, and all widgets show again what the drawing says. One that acts later says so
/// then.
///
/// It may be destroyed in any of its signals, and so may its widgets as far as they allow it there. It
/// belongs to the GUI thread. Without a working drawing it shows none.
///
/// Costs, N being the number of layers: a few layers that changed are looked for among N, once for all
/// widgets after a click; all else is O(N) a widget.
///
/// @ingroup layers
class OVCC_EXPORT LayerLink : public QObject
{
    Q_OBJECT

public:
    /// A link that keeps nothing in step yet; see add().
    explicit LayerLink(QObject *parent = nullptr);
    ~LayerLink() override;

    /// Takes a widget in, which is put right with the next update. It stays the caller's, and is
    /// forgotten when it is destroyed. Null, and a widget that is in already, change nothing; the
    /// table() of a panel is in with its panel.
    /// @{
    void add(LayerComboBox *box);
    void add(LayerManager *panel);
    void add(LayerTableWidget *table);
    /// @}

    /// Whether a layer that the user chooses in a layer box is to become the current one, so that
    /// currentLayerRequested() follows layerChosen(). True to begin with.
    /// @{
    bool choiceMakesCurrent() const;
    void setChoiceMakesCurrent(bool makesCurrent);
    /// @}

    /// What LayerTableWidget::setLinetypes() is told, in all tables that are in and in those that
    /// come. Without a call of this each keeps its own.
    void setLinetypes(const QStringList &linetypes);

    /// Makes the working drawing as @p state says, as one gesture. Between changesBegin() and
    /// changesEnd() come currentLayerRequested(), if another layer is to be current than is, the flags, in
    /// one walk over the layer table, and colorRequested(), linetypeRequested() and lineWeightRequested(),
    /// for the layers that differ, once for each value, the lowest first. layersToggled() and
    /// ovSetLayerTableChanges() follow, as after a click.
    ///
    /// What changesEnd() tells is what the drawing says by then, whatever was changed: a layer that was
    /// made current counts as changed, and as refused one that is not as the state says. Layers that are
    /// not in the state stay as they are.
    /// @return the names of layers in it that are gone, or did not take their flags; all of them if the link
    ///         was destroyed before these were set
    QStringList restore(const LayerState &state);

public Q_SLOTS:
    /// A layer has other flags, another colour or the like, or it came, or it is gone.
    void layerChanged(const QString &name);

    /// Any layers may have changed, and which one is current. Out of ovSetLayerTableChanges() this
    /// means the layers of that click, and none for a click that changed nothing: a host may call it
    /// there each time. Of more that it changes there it tells by layerChanged(), or afterwards.
    void layersChanged();

    /// The working drawing is another one, or none any more. A name that is being typed was for the
    /// one before, and so was what a table may be asking the user: both are dropped.
    void drawingChanged();

    /// Does at once what is due, if anything is. A call that comes while the widgets are put right
    /// changes nothing; what has become due by then follows by itself.
    void flush();

Q_SIGNALS:
    /// Some widget shows something else than before; not sent where all was in step already.
    void updated();

    /// The user wants that layer to be the current one. It may be so already.
    void currentLayerRequested(const QString &name);

    /// The user made a new layer in a table and named it.
    void addRequested(const QString &name);

    /// The user took these layers out of a table.
    void removeRequested(const QStringList &names);

    /// The user gave a layer another name in a table.
    void renameRequested(const QString &from, const QString &to);

    /// The user wants these layers to have another colour, linetype, lineweight or description.
    /// @{
    void colorRequested(const QStringList &names, const QColor &color);
    void linetypeRequested(const QStringList &names, const QString &linetype);
    /// @param lineWeight hundredths of a millimetre, or LineWeightDefault
    void lineWeightRequested(const QStringList &names, int lineWeight);
    void descriptionRequested(const QStringList &names, const QString &description);
    /// @}

    /// The user wants the entities of these layers to lie on @p target, and the layers to go.
    void mergeRequested(const QStringList &names, const QString &target);

    /// The user changed a flag of these layers in the drawing, by one click in any of the widgets.
    void layersToggled(const QStringList &names);

    /// The user chose a layer in the drop-down of a layer box.
    void layerChosen(const QString &name);

    /// A click in one of the widgets is about to change the drawing: a host opens its transaction or
    /// undo step here.
    /// @param text what the user does, translated, such as "Lock layer"
    void changesBegin(const QString &text);

    /// The click has changed what it could: a host closes here what it opened. If it takes changes
    /// back, it tells by layerChanged().
    /// @param changed how many layers are different now
    /// @param refused how many the drawing did not change as asked
    void changesEnd(int changed, int refused);

private:
    struct Private;
    const std::unique_ptr<Private> m_d;
};

} // namespace OvCc
