#pragma once

#include <OvCustomControl/OvccExport.h>
#include <OvCustomControl/Views.h>

#include <QPushButton>

class QAction;
class QActionGroup;

namespace OvCc {

/// A flat button, 20 pixels high, that names the current view of a drawing and opens a menu of the
/// ten standard views. It is as wide as its text needs, plus 4 pixels.
///
/// To turn the drawing, a host connects to the triggered() signal of menu(), whose actions are in the
/// order of ::View and carry the names of the views as their object names. Two views are named "Northwest"; choosing either one
/// leaves the last one checked.
class OVCC_EXPORT ViewButton : public QPushButton
{
    Q_OBJECT

public:
    explicit ViewButton(QWidget *parent = nullptr);

    /// The menu belongs to the button and goes with it.
    ~ViewButton() override;

Q_SIGNALS:
    /// The user chose a view, which may be the one that was chosen before, and the button has its
    /// new text and width.
    void geometryChanged();

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

protected Q_SLOTS:
    /// Answers the choice of @p action in the menu.
    void options(QAction *action);

private:
    void fitWidth();

    QActionGroup *m_actions;
};

} // namespace OvCc
