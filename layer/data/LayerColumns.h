#pragma once

namespace OvCc {

/// The places of the texts in a layer row, which are the columns of the layer table, too.
enum LayerColumn {
    CurrentColumn,
    NameColumn,
    OnColumn,
    ThawedColumn,
    UnlockedColumn,
    ColorColumn,
    LinetypeColumn,
    LineWeightColumn,
    PlotStyleColumn,
    PlotColumn,
    NewViewportFreezeColumn,
    ViewportFreezeColumn,
    DescriptionColumn,
    LayerColumnCount
};

} // namespace OvCc
