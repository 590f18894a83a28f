// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <KcHost/KcHost.h>

#include <QColor>
#include <QObject>
#include <QSet>

#include <functional>
#include <vector>

namespace OvCc {
class LineTypeComboBox;
class PropertyManager;
} // namespace OvCc

namespace Tessa {

struct Drawing;
struct EntityStyle;

/// Lets panels of pickers change the entities that are selected: each pick goes into the drawing's
/// database and into what the canvas shows of it. All panels show what the selected entities have in
/// common, or "By Layer" when nothing is selected.
class PropertyEditor : public QObject
{
    Q_OBJECT

public:
    explicit PropertyEditor(QObject *parent = nullptr);

    /// Has another panel take part, which must live as long as this.
    void attach(OvCc::PropertyManager *panel);

    /// The drawing to change, with nothing selected; null for none. It must live until it is replaced.
    void setDrawing(Drawing *drawing);

    /// The entities to change, by their numbers in the model space.
    void setSelection(const QSet<int> &entities);

    /// Whether the user can pick.
    void setEnabled(bool enabled);

    /// Shows the properties again, where something else changed the entities.
    void refresh();

signals:
    /// Entities look different now.
    void changed();

    /// A pick had no effect, or not on all selected entities.
    /// @param reason one sentence
    void refused(const QString &reason);

private:
    void pickColor(int row, const QColor &color);
    void pickLineWeight(int lineWeight);
    void pickLineType(const QString &name);
    void offerLineTypes(OvCc::LineTypeComboBox *picker);
    void change(const KcHost::EntityChange &change,
                const std::function<void(EntityStyle &)> &restyle);
    void show(const OvCc::PropertyManager &panel) const;

    std::vector<OvCc::PropertyManager *> m_panels;
    Drawing *m_drawing = nullptr;
    QSet<int> m_selection;
};

} // namespace Tessa
