// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <optional>

class KcDbLayerTableRecord;

/// @file
/// How a layer is found by its name, exactly so spelled, in the working drawing. O(N) in its layers, but
/// O(1) for the one that was found last while there is a LayerMemory.

namespace OvCc {

struct FoundLayer
{
    KcDbLayerTableRecord *record = nullptr; ///< open for read, to be closed by the caller
    int position = 0; ///< among the layers that could be opened when it was found
};

/// @return nothing if no such layer can be opened
std::optional<FoundLayer> findLayer(const QString &name);

/// As findLayer(), but looks through the drawing in any case.
std::optional<FoundLayer> searchLayer(const QString &name);

/// To look for more layers than these costs more than to read all of them.
constexpr int mostSearches = 8;

/// Between a click and what follows from it the same layer is asked for again and again. Whoever has
/// one of these sees to it that nothing is remembered of a drawing that is gone.
class LayerMemory
{
public:
    LayerMemory();
    ~LayerMemory();
    Q_DISABLE_COPY(LayerMemory)

    /// To be called when a drawing may go.
    static void clear();
};

} // namespace OvCc
