// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QSet>
#include <QStringList>

namespace Tessa {

class CanvasPanes;
struct Drawing;

/// The entities that are selected on the canvases, and the layers that they lie on.
class Selection : public QObject
{
    Q_OBJECT

public:
    /// @param panes must live as long as this
    explicit Selection(CanvasPanes &panes, QObject *parent = nullptr);

    /// The drawing that the canvases show, with nothing selected; null for none. It must live until it
    /// is replaced.
    void setDrawing(const Drawing *drawing);

    /// Their numbers in the model space.
    const QSet<int> &entities() const;

    /// The layers of the entities, by the number of these, the most first.
    const QStringList &layers() const { return m_layers; }

    /// Deselects what does not show any more: that must not be changed unseen. Linear in what is selected.
    void update();

signals:
    /// Other entities are selected, or they may be on other layers, or look different.
    void changed();

private:
    void deselectHidden();
    void findLayers();

    CanvasPanes &m_panes;
    const Drawing *m_drawing = nullptr;
    QStringList m_layers;
};

} // namespace Tessa
