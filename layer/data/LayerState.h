// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/LineWeights.h>
#include <OvCustomControl/OvccExport.h>

#include <QByteArray>
#include <QColor>
#include <QMetaType>
#include <QSharedDataPointer>
#include <QString>
#include <QStringList>

namespace OvCc {

/// What the layers of a drawing are like: the flags, colour, linetype and lineweight of each, by its name,
/// and which one is current. A value, copied at no cost; a state of one drawing may be restored in another.
/// Each thread may have its copy; capture() and restore() belong to the GUI thread.
///
/// It knows layers by their names, told apart to the letter. In JSON it is an object for people to read:
///
///     { "version": 1, "current": "0", "layers": [
///         { "name": "0", "on": true, "thawed": true, "unlocked": true, "plot": true,
///           "color": "#ffffff", "linetype": "Continuous", "lineweight": -3 } ] }
///
/// @ingroup bridge
class OVCC_EXPORT LayerState
{
public:
    /// One layer.
    struct Layer
    {
        bool isOn = true;                              ///< switched on
        bool isThawed = true;                          ///< not frozen
        bool isUnlocked = true;                        ///< not locked
        bool isPlotted = true;                         ///< seen on paper, too
        QColor color = Qt::white;                      ///< as it is shown, opaque
        QString linetype{QLatin1String("Continuous")}; ///< its name, as the drawing spells it
        int lineWeight = LineWeightDefault; ///< hundredths of a millimetre, or a LineWeightCode

        /// Whether both are alike in all of it.
        /// @{
        bool operator==(const Layer &other) const;
        bool operator!=(const Layer &other) const;
        /// @}
    };

    /// A state of no layers.
    LayerState();

    /// A copy shares what is in it until one of them changes. O(1).
    /// @{
    LayerState(const LayerState &other);
    LayerState &operator=(const LayerState &other);
    /// @}
    ~LayerState();

    /// What the working drawing is like now; empty without one. Of layers with one name it is the first.
    /// O(N) in the number of layers, in one walk.
    static LayerState capture();

    /// Switches the layers of the working drawing on or off, freezes or thaws, locks or unlocks them, and
    /// has them plotted or not, as they are here, in one walk. Layers that are not in this state stay as
    /// they are. It sets the flags alone and tells nobody: LayerLink::restore() asks the host for the
    /// rest, and keeps the widgets in step. O(N).
    /// @return the names of the layers that are gone, or would not have it all
    QStringList restore() const;

    /// Whether there are no layers in it.
    bool isEmpty() const;

    /// The layers in it, sorted.
    QStringList names() const;

    /// Whether that layer is in it.
    bool contains(const QString &name) const;

    /// A layer of default flags if it is not in the state.
    Layer layer(const QString &name) const;

    /// Puts a layer in, or another one in its place. Its colour is taken as opaque.
    void insert(const QString &name, const Layer &layer);

    /// Takes a layer out; nothing if it is not in the state.
    void remove(const QString &name);

    /// The name of the layer that is current; empty if none is. It need not be one of names().
    /// @{
    QString currentLayer() const;
    void setCurrentLayer(const QString &name);
    /// @}

    /// Whether both have the same layers, alike, and the same one current.
    /// @{
    bool operator==(const LayerState &other) const;
    bool operator!=(const LayerState &other) const;
    /// @}

    /// The same bytes for the same state.
    QByteArray toJson() const;

    /// Reads what toJson() wrote. Keys that are not known are passed over.
    /// @param[out] error one sentence that says what is wrong, and where; empty if all is well
    /// @return an empty state if anything is wrong
    static LayerState fromJson(const QByteArray &json, QString *error = nullptr);

private:
    struct Data;
    QSharedDataPointer<Data> m_d;
};

} // namespace OvCc

Q_DECLARE_METATYPE(OvCc::LayerState)
