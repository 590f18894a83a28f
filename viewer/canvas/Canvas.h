// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DrawingItem.h"

#include <OvCustomControl/QtVersions.h>

#include <QGraphicsScene>
#include <QGraphicsView>
#include <QSet>

namespace Tessa {

class SelectionBand;

/// Shows a drawing, and lets the user select its entities.
///
/// The wheel zooms to the pointer; the middle button pans, and shows the whole drawing on a double
/// click; the left button pans in hand mode and while the space bar is held. Otherwise it selects: a
/// click the entity at the pointer, a band drawn to the right what lies in it wholly, a band drawn to
/// the left also what it touches. With Ctrl a click adds the entity or takes it out, and a band adds.
/// A click on nothing and Escape select nothing.
class Canvas : public QGraphicsView
{
    Q_OBJECT

public:
    explicit Canvas(QWidget *parent = nullptr);
    ~Canvas() override;

    /// Shows the whole of @p drawing, which must live until it is replaced; null shows none.
    void setDrawing(const Drawing *drawing);

    /// Shows the whole drawing from another side; from the top at first.
    void setView(ViewDirection view);
    ViewDirection view() const { return m_view; }

    /// Highlights entities of the model space, by their numbers.
    void setSelection(const QSet<int> &entities);
    const QSet<int> &selection() const { return m_selection; }

    void setFaceStyle(FaceStyle style);
    FaceStyle faceStyle() const { return m_faceStyle; }

    /// Between pixels of the viewport and the picture. The scene's coordinates are other ones: its
    /// origin follows the drawing, since scroll bars cannot count pixels from afar.
    QPointF toPicture(QPoint pixel) const;
    QPoint fromPicture(QPointF point) const;

public slots:
    /// Shows the whole drawing, until the user moves it also after a change of the window's size.
    void fit();
    void zoomIn();
    void zoomOut();
    void setHandMode(bool on);

signals:
    /// The user pressed a button of the mouse.
    void pressed();

    /// The pointer is at this point of the picture: of the drawing, when seen from the top.
    void pointerMoved(QPointF position);

    /// The user selected other entities than those highlighted; the canvas highlights them already.
    void selectionChanged(QSet<int> entities);

protected:
    void drawForeground(QPainter *painter, const QRectF &rect) override;
    void enterEvent(OvCc::EnterEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void showArea();
    void zoom(double factor, QPoint around);
    void scrollBy(QPoint distance);
    double fittingScale() const;
    void showMode();
    void drawBand(QPoint to);
    void select(const QMouseEvent &event);
    void changeSelection(const QSet<int> &entities);

    QGraphicsScene m_scene;
    DrawingItem m_item;
    ViewDirection m_view = ViewDirection::Top;
    FaceStyle m_faceStyle = FaceStyle::Wireframe;
    QRectF m_area; ///< of the drawing, with a margin; null without one
    bool m_hasDrawing = false;
    bool m_isFitted = false;
    bool m_isHandMode = false;
    bool m_isSpaceHeld = false;
    bool m_isPanning = false;
    QPoint m_panFrom;
    QSet<int> m_selection;
    bool m_isSelecting = false;
    QPoint m_selectFrom;
    std::unique_ptr<SelectionBand> m_band; ///< while one is drawn
};

} // namespace Tessa
