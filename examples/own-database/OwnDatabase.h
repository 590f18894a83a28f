// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <KcDb.h>
#include <KcEd.h>
#include <OvHost.h>

#include <QString>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

/// What the program itself may do with its drawings, beside what the widgets may by the SDK.
/// Everything here belongs to the GUI thread. N is the number of layers.
namespace OwnDatabase {

/// Opens or makes a drawing; see LayerFile::open().
std::unique_ptr<KcDbDatabase> open(const QString &fileName, QString *error = nullptr);

/// Null closes. The caller keeps the drawing; one that is destroyed closes itself.
void setWorkingDatabase(KcDbDatabase *drawing);

/// Sets a system variable, for all drawings.
void setVariable(const QString &name, int value);

/// A change of a layer's properties: those without a value stay as they are.
struct LayerChange
{
    std::optional<std::uint32_t> trueColor; ///< 0xRRGGBB
    std::optional<int> lineWeight;          ///< hundredths of a millimetre, or a code
};

/// These change the file at once. Names are told apart without regard to letter case. O(N).
Kcore::ErrorStatus addLayer(KcDbDatabase &drawing, const QString &name);
Kcore::ErrorStatus eraseLayer(KcDbDatabase &drawing, const QString &name);
Kcore::ErrorStatus renameLayer(KcDbDatabase &drawing, const QString &name, const QString &newName);
Kcore::ErrorStatus setCurrentLayer(KcDbDatabase &drawing, const QString &name);
Kcore::ErrorStatus changeLayer(KcDbDatabase &drawing, const QString &name,
                               const LayerChange &change);

/// What ovSetLayerTableChanges() calls, and what is called with the layer's name when a change by the
/// SDK has reached the file and the record is closed.
void setLayerTableChangesHandler(std::function<void()> handler);
void setLayerModifiedHandler(std::function<void(const QString &name)> handler);

/// How many times objects were opened and not closed yet.
int openObjectCount();

/// How often each function of the SDK was called since this was asked last.
std::map<std::string, int> takeCalls();

} // namespace OwnDatabase
