// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <KcHost/KcHost.h>

#include <QColor>
#include <QObject>
#include <QSet>

#include <optional>
#include <tuple>
#include <vector>

namespace OvCc {
class LineTypeComboBox;
class PropertyManager;
} // namespace OvCc

namespace Tessa {

struct Drawing;

/// Lets panels of pickers change the entities that are selected: each pick goes into the drawing's
/// database, as one step to undo. All panels show what the selected entities have in common, or "By
/// Layer" when nothing is selected.
class PropertyEditor : public QObject
{
    Q_OBJECT

public:
    explicit PropertyEditor(QObject *parent = nullptr);

    /// Has another panel take part, which must live as long as this.
    void attach(OvCc::PropertyManager *panel);

    /// The drawing to change, with nothing selected; null for none. It must live until it is replaced.
    void setDrawing(const Drawing *drawing);

    /// The entities to change, by their numbers in the model space; the same ones where they may have
    /// been changed.
    void setSelection(const QSet<int> &entities);

    /// Has the entities lie on another layer.
    void moveToLayer(const QString &name);

    /// Whether the user can pick.
    void setEnabled(bool enabled);

signals:
    /// A pick had no effect, or not on all selected entities.
    /// @param reason one sentence
    void refused(const QString &reason);

private:
    /// In the order of the pickers; nothing where entities differ.
    using Properties = std::tuple<std::optional<QRgb>, std::optional<int>, std::optional<int>>;

    void pickColor(int row, const QColor &color);
    void pickLineWeight(int lineWeight);
    void pickLineType(const QString &name);
    void offerLineTypes(OvCc::LineTypeComboBox *picker);
    void change(const QString &step, const KcHost::EntityChange &change);
    void showAll() const;
    void show(const OvCc::PropertyManager &panel) const;

    std::vector<OvCc::PropertyManager *> m_panels;
    const Drawing *m_drawing = nullptr;
    QSet<int> m_selection;
    Properties m_properties; ///< that the selected entities have in common
};

} // namespace Tessa
