// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>
#include <OvCustomControl/QtVersions.h>

#include <QWidget>

#include <memory>

namespace OvCc {

/// A strip of 60 × 20 pixels with three buttons for a panel of the host, from left to right: minimise,
/// restore, close. What they do to the panel is up to the host. Their pictures are white, for dark
/// panels. The style's spacing between them moves the last one out of the strip by twice as much: a
/// host that wants all of it sets the spacing of layout() to 0.
///
/// @ingroup ribbon
/// @image html MinMaxButton.png
class OVCC_EXPORT MinMaxButton : public QWidget
{
    Q_OBJECT

public:
    /// A strip that stays on top where it is a window of its own, without a parent.
    explicit MinMaxButton(QWidget *parent = nullptr);
    ~MinMaxButton() override;

Q_SIGNALS:
    /// The mouse came over the strip (true) or left it (false).
    void enter(bool isInside);

    /// The close button was clicked.
    void clickedClosed();

    /// The minimise button was clicked.
    void clickedMin();

    /// The restore button was clicked.
    void clickedNormal();

protected:
    void enterEvent(EnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    struct Private;
    const std::unique_ptr<Private> m_d;
};

} // namespace OvCc
