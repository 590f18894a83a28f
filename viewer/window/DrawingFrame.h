// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

namespace OvCc {
class CustomControl;
class LayerComboBox;
class MinMaxButton;
class ViewButton;
} // namespace OvCc
class QLabel;

namespace Tessa {

/// The frame of the drawing inside the main window. It fills its place, floats in it with a caption to
/// drag it by, or is minimised to that caption.
///
/// While the pointer is over the frame it shows what acts on it: a layer combo box with the view
/// button, and the buttons to minimise, to restore and to close. Restoring ends the minimised state;
/// otherwise it turns a filling frame into a floating one, and back.
class DrawingFrame : public QWidget
{
    Q_OBJECT

public:
    /// @param content what is framed, which belongs to the frame from now on
    explicit DrawingFrame(QWidget *content, QWidget *parent = nullptr);

    OvCc::LayerComboBox *layers() const;
    OvCc::ViewButton *views() const { return m_views; }

    /// The name of the drawing; without one there is nothing to act on, and the frame fills its place.
    void setTitle(const QString &title);

signals:
    /// The user wants to close the drawing.
    void closeWanted();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    enum class State { Filling, Floating, Minimized };

    void setState(State state);
    void minimize();
    void restore();
    void dragCaption(const QMouseEvent &event);
    void layOut();
    void showChrome();

    QWidget *m_window; ///< the caption, the content and what acts on them
    QWidget *m_content;
    QLabel *m_caption;
    OvCc::CustomControl *m_control;
    OvCc::ViewButton *m_views; ///< gives the control its width
    OvCc::MinMaxButton *m_buttons;
    State m_state = State::Filling;
    State m_beforeMinimized = State::Filling;
    QRect m_floating; ///< where the frame floats; null as long as it never did
    QPoint m_dragFrom;
    bool m_isHovered = false;
};

} // namespace Tessa
