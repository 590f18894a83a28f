// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractButton>

namespace Embedded {

/// A small flat button beside the items of a gallery. It never takes the focus.
class GalleryButton : public QAbstractButton
{
public:
    enum Kind { ScrollUp, ScrollDown, OpenMenu };

    GalleryButton(Kind kind, const QString &name, QWidget *parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const Kind m_kind;
};

} // namespace Embedded
