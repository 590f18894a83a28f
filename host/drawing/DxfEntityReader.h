// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DxfCursor.h"

#include <unordered_set>

namespace Embedded {

/// Reads what the entities of a drawing's file say of its layers: which are used, and which are frozen
/// in the viewports.
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

    void noteUse();
    void readViewportGroup();
    void finishViewport();
    void resolveViewports();
    void chooseViewport();

    Drawing &m_drawing;
    DxfCursor &m_cursor;
    std::unordered_set<std::string_view> m_usedNames;
    std::string_view m_lastUsedName;
    DxfEntityPlace m_entity;
    bool m_isInViewport = false;
    ViewportRecord m_viewport;
    std::vector<ViewportRecord> m_viewports;
};

} // namespace Embedded
