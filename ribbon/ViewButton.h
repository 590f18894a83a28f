// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>
#include <OvCustomControl/Views.h>

#include <QPushButton>

#include <memory>

class QAction;

namespace OvCc {

/// A flat button, 20 pixels high, that names the current view of a drawing and opens a menu of the
/// ten standard views. It is as wide as its text needs, plus 4 pixels.
///
/// To turn the drawing, a host connects to the triggered() signal of menu(), whose actions are in the
/// order of ::View and carry the names of the views as their object names. Two views are named
/// "Northwest"; choosing either one leaves the last one checked.
///
/// @ingroup ribbon
/// @image html ViewButton.png
class OVCC_EXPORT ViewButton : public QPushButton
{
    Q_OBJECT

    /// The ::View that is shown as the chosen one.
    Q_PROPERTY(int view READ view WRITE setView NOTIFY geometryChanged USER true)

public:
    /// "Top" is chosen.
    explicit ViewButton(QWidget *parent = nullptr);

    /// The menu belongs to the button and goes with it.
    ~ViewButton() override;

    /// The ::View that was chosen last, also where two have the same name.
    int view() const;

public Q_SLOTS:
    /// Shows @p view as the chosen one and sends geometryChanged(). The menu reports nothing; a view
    /// that is shown already or that there is not changes nothing.
    void setView(int view);

Q_SIGNALS:
    /// The user chose a view, which may be the one that was chosen before, or a program another one by
    /// setView(), and the button has its new text and width.
    void geometryChanged();

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

protected Q_SLOTS:
    /// Answers the choice of @p action in the menu.
    void options(QAction *action);

private:
    void fitWidth();

    struct Private;
    const std::unique_ptr<Private> m_d;
};

} // namespace OvCc
