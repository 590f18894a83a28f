// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DxfCursor.h"

namespace Embedded {

/// Reads the layers and what new ones need from the tables of a drawing's file.
class DxfTableReader
{
public:
    /// Both must outlive this.
    DxfTableReader(Drawing &drawing, DxfCursor &cursor);

    /// Reads the section TABLES, of which the cursor is at the name.
    void read();

    /// Looks up what layers refer to, when the whole file is known.
    void finish();

private:
    struct Reference
    {
        DxfGroup group;
        int line = 0;
    };

    /// An oddity in the record that is being read, for when the layer's name is known.
    struct Oddity
    {
        int line;
        QString text;
    };

    struct LayerRecord
    {
        Layer layer;
        DxfRecordPlace place;
        Reference linetype;
        int line = 0; ///< 0 while no layer is being read
        int describingTexts = 0;
        std::vector<Oddity> oddities;
    };

    void beginTableRecord();
    void readTableHead();
    void closeTable();
    SymbolTable *keptTable();
    void readLayerGroup();
    void readLayerProperty();
    void readColor();
    void readLineWeight();
    int layerNumber(const char *property, int low, int high, int fallback, const char *taken);
    void noteOddity(const char *property, const QString &taken);
    void finishLayer();
    void keepLayer(Layer &&layer, const Reference &linetype);
    void noteLinetypes();
    void resolveLinetypes();

    Drawing &m_drawing;
    DxfCursor &m_cursor;
    std::string_view m_table;
    std::string_view m_recordType;
    LayerRecord m_record;
    std::vector<Reference> m_linetypes; ///< of the layers, by their index
};

} // namespace Embedded
