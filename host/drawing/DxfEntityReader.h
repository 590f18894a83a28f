// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DxfCursor.h"

#include <unordered_map>
#include <vector>

namespace Embedded {

/// Reads what the entities of a drawing's file say of its layers: how much lies on each, and which are
/// frozen in the viewports.
class DxfEntityReader
{
public:
    /// Both must outlive this.
    DxfEntityReader(Drawing &drawing, DxfCursor &cursor);

    /// Reads a section with entities, of which the cursor is at the name.
    void read();

    /// Looks up the layers of viewports, when the whole file is known, and finds the one in use.
    void finish();

private:
    struct ViewportRecord
    {
        Viewport viewport;
        std::vector<DxfGroup> frozenHandles;
        std::vector<DxfGroup> frozenNames;
    };

    void noteLayer();
    int layerNamed(std::string_view bytes);
    void finishRecord();
    void readViewportGroup();
    void resolveViewports();
    void chooseViewport();

    Drawing &m_drawing;
    DxfCursor &m_cursor;
    std::unordered_map<std::string_view, int> m_layersByBytes;
    std::string_view m_lastName;
    int m_lastLayer = -1;
    std::vector<int> m_recordLayers; ///< those that the record has named
    int m_unnamed = 0;               ///< records that name none
    bool m_isInRecord = false;
    DxfEntityPlace m_entity;
    bool m_isInViewport = false;
    ViewportRecord m_viewport;
    std::vector<ViewportRecord> m_viewports;
};

} // namespace Embedded
