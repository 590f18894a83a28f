// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QStackedWidget>

#include <memory>

namespace OvCc {

class LayerControl;
class PropertyManager;

/// A frameless, translucent tool window that hangs on a LayerControl: it shows a PropertyManager
/// while the bar is unfolded, and an empty page while it is folded.
///
/// It is invisible until the bar is folded or unfolded for the first time, or until the host shows
/// it. It is placed anew whenever the bar sends geometryChanged(), and at no other time: a host whose
/// window was moved, or shown for the first time, calls adjustGeometry() to bring it along.
///
/// @ingroup layers
/// @image html StackWidget.png
class OVCC_EXPORT StackWidget : public QStackedWidget
{
    Q_OBJECT

public:
    /// @param control the bar, never null. It becomes the parent and deletes the stack, which may also
    ///     be deleted before it.
    /// @param parent has no effect beyond that of a parent that is replaced at once
    explicit StackWidget(LayerControl *control, QWidget *parent = nullptr);
    ~StackWidget() override;

    /// It belongs to the stack.
    PropertyManager *propertyManager() const;

    /// Without an argument the window is hidden, as any widget is.
    using QWidget::hide;

    /// Shows or hides the window. It never comes back minimised: window managers minimise it with
    /// the window of the bar, and a few would minimise that one again with it.
    void setVisible(bool visible) override;

public Q_SLOTS:
    /// Shows the empty page if @p bHide, the property panel otherwise, and makes the window visible
    /// if it is not. It never hides the window, but with the empty page the mouse goes through it.
    /// Where the compiler has to tell this slot from QWidget::hide(), write
    /// `QOverload<bool>::of(&StackWidget::hide)`.
    void hide(bool bHide);

    /// Moves the window to where the bar is on the screen: to the same left edge, and as far below
    /// the bar's top as the window is high, less 8 pixels.
    void adjustGeometry();

private:
    void maskEmptyPage(int page);

    struct Private;
    const std::unique_ptr<Private> m_d;
};

} // namespace OvCc
