// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "CanvasPanes.h"

#include "Canvas.h"
#include "ShownEntities.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Tessa {

namespace {

/// Around each canvas if there are several; it shows which one is the current one.
constexpr int border = 2;

/// All places are counted in twelfths of the width and of the height.
constexpr int whole = 12;
constexpr int mostCanvases = 4;

struct Place
{
    int x;
    int y;
    int width;
    int height;
};

struct Arrangement
{
    int count;
    Place places[mostCanvases];
};

constexpr Arrangement arrangements[] = {
        {1, {{0, 0, 12, 12}}},
        {2, {{0, 0, 6, 12}, {6, 0, 6, 12}}},
        {2, {{0, 0, 12, 6}, {0, 6, 12, 6}}},
        {3, {{6, 0, 6, 12}, {0, 0, 6, 6}, {0, 6, 6, 6}}},
        {3, {{0, 0, 6, 12}, {6, 0, 6, 6}, {6, 6, 6, 6}}},
        {3, {{0, 0, 12, 6}, {0, 6, 6, 6}, {6, 6, 6, 6}}},
        {3, {{0, 6, 12, 6}, {0, 0, 6, 6}, {6, 0, 6, 6}}},
        {3, {{0, 0, 4, 12}, {4, 0, 4, 12}, {8, 0, 4, 12}}},
        {3, {{0, 0, 12, 4}, {0, 4, 12, 4}, {0, 8, 12, 4}}},
        {4, {{0, 0, 6, 6}, {6, 0, 6, 6}, {0, 6, 6, 6}, {6, 6, 6, 6}}},
        {4, {{6, 0, 6, 12}, {0, 0, 6, 4}, {0, 4, 6, 4}, {0, 8, 6, 4}}},
        {4, {{0, 0, 6, 12}, {6, 0, 6, 4}, {6, 4, 6, 4}, {6, 8, 6, 4}}},
};

} // namespace

CanvasPanes::CanvasPanes(QWidget *parent)
    : QWidget(parent)
{
    for (int i = 0; i < mostCanvases; ++i)
        addCanvas();
    m_current = m_canvases.first();
    setFocusProxy(m_current);
}

QVector<Canvas *> CanvasPanes::shown() const
{
    return m_canvases.mid(0, arrangements[m_arrangement].count);
}

void CanvasPanes::setArrangement(int index)
{
    m_arrangement = index;
    std::swap(m_canvases.first(), m_canvases[m_canvases.indexOf(m_current)]);
    layOut();
}

void CanvasPanes::setDrawing(const Drawing *drawing)
{
    m_drawing = drawing;
    for (Canvas *canvas : std::as_const(m_canvases))
        canvas->setDrawing(drawing);
}

void CanvasPanes::setSelection(const QSet<int> &entities)
{
    for (Canvas *canvas : std::as_const(m_canvases))
        canvas->setSelection(entities);
}

void CanvasPanes::setHandMode(bool on)
{
    for (Canvas *canvas : std::as_const(m_canvases))
        canvas->setHandMode(on);
}

void CanvasPanes::selectAll()
{
    if (!m_drawing)
        return;
    ShownEntities shown(*m_drawing, {});
    QSet<int> all;
    int index = 0;
    for (const Entity &entity : m_drawing->geometry.modelSpace().entities) {
        if (shown.shows(entity))
            all.insert(index);
        ++index;
    }
    changeSelection(all);
}

void CanvasPanes::deselect()
{
    changeSelection({});
}

void CanvasPanes::refresh()
{
    for (Canvas *canvas : std::as_const(m_canvases))
        canvas->viewport()->update();
}

void CanvasPanes::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().window());
    const int margin = arrangements[m_arrangement].count > 1 ? border : 0;
    const QRect frame = m_current->geometry().adjusted(-margin, -margin, margin, margin);
    painter.fillRect(frame, palette().highlight());
}

void CanvasPanes::resizeEvent(QResizeEvent *)
{
    layOut();
}

void CanvasPanes::addCanvas()
{
    auto *canvas = new Canvas(this);
    m_canvases += canvas;
    connect(canvas, &Canvas::pressed, this, [this, canvas] { makeCurrent(canvas); });
    connect(canvas, &Canvas::pointerMoved, this, &CanvasPanes::pointerMoved);
    connect(canvas, &Canvas::selectionChanged, this, &CanvasPanes::changeSelection);
}

void CanvasPanes::changeSelection(const QSet<int> &entities)
{
    setSelection(entities);
    emit selectionChanged(entities);
}

void CanvasPanes::makeCurrent(Canvas *canvas)
{
    if (m_current == canvas)
        return;
    m_current = canvas;
    setFocusProxy(canvas);
    update();
    emit currentChanged();
}

void CanvasPanes::layOut()
{
    const Arrangement &arrangement = arrangements[m_arrangement];
    const int margin = arrangement.count > 1 ? border : 0;
    const auto at = [](int twelfths, int size) {
        return int(std::lround(double(twelfths) * size / whole));
    };
    for (int i = 0; i < m_canvases.size(); ++i) {
        Canvas *canvas = m_canvases.at(i);
        canvas->setVisible(i < arrangement.count);
        const Place &place = arrangement.places[i];
        const QRect area(QPoint(at(place.x, width()), at(place.y, height())),
                         QPoint(at(place.x + place.width, width()) - 1,
                                at(place.y + place.height, height()) - 1));
        if (i < arrangement.count)
            canvas->setGeometry(area.adjusted(margin, margin, -margin, -margin));
    }
    update();
}

} // namespace Tessa
