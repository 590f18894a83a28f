// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/LayerItemData.h>
#include <OvCustomControl/OvccExport.h>

#include <QList>
#include <QStringList>

class KcDbDatabase;
class KcDbLayerTableRecord;

/// The bridge to the drawing: reads the layers of the working database and sets their flags.
///
/// No other code of the library touches the database. Each call opens what it needs and closes it
/// again; nothing is kept between calls. Failures are silent: without a working database, a layer
/// table or a layer of that name a query comes back empty and a setter does nothing. A record that
/// cannot be opened is passed over.
///
/// N is the number of layers. Setters and queries are O(N), getCurrentLayer() is O(1).
///
/// @ingroup bridge
class OVCC_EXPORT OvLayerUtility
{
public:
    OvLayerUtility();
    virtual ~OvLayerUtility();

    /// All layers in the order of the drawing's layer table.
    /// @return a new list that the caller owns; never null
    QList<OvCc::LayerItemData> *getAllLayer();

    /// Reads the current layer.
    /// @param[out] out untouched on failure
    /// @return false when there is no database or the layer cannot be opened
    bool getCurrentLayer(OvCc::LayerItemData &out);

    /// Does nothing; making a layer current is the host's work.
    void setCurrenLayer(OvCc::LayerItemData data);

    /// Does nothing; see the setters of single flags.
    void setLayerByData(OvCc::LayerItemData data);

    /// Switches a layer on or off: despite the name, @p on says whether it shall be on.
    /// Layer names are told apart to the letter, case included, here and below.
    void setLayerOff(QString name, bool on);

    /// Locks or unlocks a layer: what lies on a locked one is shown, but not to be edited.
    void setLayerLock(QString name, bool lock);

    /// Freezes or thaws a layer. The database refuses to freeze the current one.
    void setLayerFrozen(QString name, bool frozen);

    /// Says whether what lies on a layer is plotted; on the screen it makes no difference.
    void setLayerPlot(QString name, bool plot);

    /// Appends one row of 13 strings per layer to @p rows, in the order of the layer table.
    /// OvCc::LayerColumn says what they are.
    /// @return the number of rows appended
    int getAllLayerDate(QList<QStringList> &rows);

    /// Whether the user works in model space: the system variable "TILEMODE" is 1.
    bool isModelSpace();
};

/// The working database of the host, or null.
OVCC_EXPORT KcDbDatabase *getCurrentDb();

/// The first layer of exactly that name, open for read: the caller closes it. Null if there is none
/// that can be opened. O(N).
OVCC_EXPORT KcDbLayerTableRecord *getLayerByName(QString name);
