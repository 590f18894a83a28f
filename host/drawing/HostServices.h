// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <functional>
#include <string>

class KcDbDatabase;

/// What a host application offers to code that runs inside it, and what it hears from there; one for
/// the whole process.
namespace Embedded {

/// Null closes the working database.
void setWorkingDatabase(KcDbDatabase *database);

/// Closes a database that is about to go, if it is the working one.
void forgetDatabase(const KcDbDatabase *database);

void setVariable(const QString &name, int value);

/// Whether "TILEMODE" says so, or nothing.
bool isInModelSpace();

void setLayerTableChangesHandler(std::function<void()> handler);
void setLayerModifiedHandler(std::function<void(const QString &)> handler);

void setEntityModifiedHandler(std::function<void(int)> handler);

/// Tells whoever asked for it that a change of the entity has reached its drawing.
void announceEntity(int number);

/// Tells whoever asked for it that a change of the layer has reached its drawing.
void announceChange(const std::wstring &layerName);

} // namespace Embedded
