// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "LayerStates.h"

#include <QMenu>

namespace OvCc {
class LayerLink;
class LayerManager;
} // namespace OvCc

namespace Tessa {

struct Drawing;

/// What can be done with many layers at once: isolating those that are selected in the panel, and the
/// states that the user saves under names and restores.
class LayerMenu : public QMenu
{
    Q_OBJECT

public:
    /// @param link, panel must live as long as this
    LayerMenu(OvCc::LayerLink &link, OvCc::LayerManager &panel, QWidget *parent = nullptr);

    /// Offers the states that are kept beside that drawing's file; null for no drawing.
    void setDrawing(const Drawing *drawing);

    /// Takes the states along to the drawing's file of now.
    void followSaving();

signals:
    /// What the user has not ended to edit is to be in the drawing after this.
    void aboutToAct();

    /// A command was not carried out, or not wholly.
    /// @param reason one sentence
    void refused(const QString &reason);

private:
    void addTools(OvCc::LayerManager &panel);
    void showStates();
    void saveState();
    void restore(const QString &name);
    void remove(const QString &name);

    OvCc::LayerLink &m_link;
    const Drawing *m_drawing = nullptr;
    LayerStates m_states;
    QMenu *m_deletion;
    QList<QAction *> m_entries; ///< to restore the states
};

} // namespace Tessa
