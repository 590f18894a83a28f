#pragma once

#include <string>

class KcDbDatabase;

namespace Embedded {

/// Tells whoever asked for it that a change of the layer has reached its drawing.
void announceChange(const std::wstring &layerName);

/// Closes a database that is about to go, if it is the working one.
void forgetDatabase(const KcDbDatabase *database);

} // namespace Embedded
