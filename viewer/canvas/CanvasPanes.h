// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DrawingItem.h"

#include <QSet>
#include <QWidget>

namespace Tessa {

class Canvas;

/// One to four canvases with the same drawing, each with its own view of it. One is the current one,
/// the first at the start, any other after a press on it: commands go there. What is selected is
/// selected in all of them.
class CanvasPanes : public QWidget
{
    Q_OBJECT

public:
    explicit CanvasPanes(QWidget *parent = nullptr);

    Canvas *current() const { return m_current; }

    /// The canvases that are shown.
    QVector<Canvas *> shown() const;

    /// Arranges canvases in one of the ways, in the order of the library's viewport gallery: one; two
    /// side by side, two above each other; three with a larger one at the right, at the left, above,
    /// below, three columns, three rows; four of the same size, with a larger one at the right, at the
    /// left. The current canvas becomes the first, which is the larger one.
    void setArrangement(int index);

    /// Shows the whole of @p drawing, which must live until it is replaced; null shows none. Each
    /// canvas keeps its view.
    void setDrawing(const Drawing *drawing);

    void setSelection(const QSet<int> &entities);
    void setHandMode(bool on);

    /// Commands of the user: all that shows, or nothing.
    /// @{
    void selectAll();
    void deselect();
    /// @}

    /// The drawing looks different now.
    void refresh();

signals:
    void currentChanged();

    /// As those of Canvas, from any of them.
    void pointerMoved(QPointF position);
    void selectionChanged(QSet<int> entities);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void addCanvas();
    void changeSelection(const QSet<int> &entities);
    void makeCurrent(Canvas *canvas);
    void layOut();

    QVector<Canvas *> m_canvases; ///< the shown ones first
    Canvas *m_current = nullptr;
    const Drawing *m_drawing = nullptr;
    int m_arrangement = 0;
};

} // namespace Tessa
