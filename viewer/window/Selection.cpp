// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Selection.h"

#include "viewer/canvas/Canvas.h"
#include "viewer/canvas/CanvasPanes.h"
#include "viewer/canvas/ShownEntities.h"

#include <algorithm>

namespace Tessa {

Selection::Selection(CanvasPanes &panes, QObject *parent)
    : QObject(parent)
    , m_panes(panes)
{
    connect(&panes, &CanvasPanes::selectionChanged, this, &Selection::update);
}

void Selection::setDrawing(const Drawing *drawing)
{
    m_drawing = drawing;
    update();
}

const QSet<int> &Selection::entities() const
{
    return m_panes.current()->selection();
}

void Selection::update()
{
    if (m_drawing)
        deselectHidden();
    findLayers();
    emit changed();
}

void Selection::deselectHidden()
{
    if (entities().isEmpty())
        return;
    ShownEntities shown(*m_drawing, {});
    QSet<int> stay;
    for (const int index : entities()) {
        if (shown.shows(m_drawing->geometry.modelSpace().entities.at(index)))
            stay.insert(index);
    }
    m_panes.setSelection(stay);
}

void Selection::findLayers()
{
    QHash<int, int> counts;
    for (const int index : entities())
        ++counts[m_drawing->geometry.modelSpace().entities.at(index).style.layer];
    QList<int> layers = counts.keys();
    std::sort(layers.begin(), layers.end(), [&counts](int one, int other) {
        return std::make_pair(-counts.value(one), one)
               < std::make_pair(-counts.value(other), other);
    });
    m_layers.clear();
    for (const int layer : layers)
        m_layers += m_drawing->layers.nameOf(layer);
}

} // namespace Tessa
