// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <KcBase.h>
#include <KcHost/KcHost.h>

#include <QColor>
#include <QObject>

#include <functional>
#include <memory>

namespace OvCc {
class LayerLink;
class LayerManager;
} // namespace OvCc
class QWidget;

namespace Tessa {

struct Drawing;

/// What comes of the user's wishes for layers, in whatever widget: a change of the drawing, which is one
/// step to undo, or a refusal.
class LayerEditor : public QObject
{
    Q_OBJECT

public:
    /// @param link   tells of the wishes, and keeps the widgets in step with the drawing
    /// @param panel  must live as long as there is a drawing
    /// @param window questions come up over it; it owns this
    LayerEditor(const OvCc::LayerLink &link, const OvCc::LayerManager &panel, QWidget *window);
    ~LayerEditor() override;

    /// The drawing to change; null for none. It must live until it is replaced.
    void setDrawing(Drawing *drawing);

    void makeCurrent(const QString &name);

signals:
    /// The drawing did not take all that the user wanted.
    /// @param reason one sentence
    void refused(const QString &reason);

private:
    using Change = std::function<Kcore::ErrorStatus(KcDbDatabase &, const QString &name)>;

    void beginGesture(const QString &text);
    void endGesture(int changed, int refusedLayers);

    void add(const QString &name);
    void rename(const QString &from, const QString &to);
    void erase(const QStringList &names);
    void merge(const QStringList &names, const QString &into);
    void setColor(const QStringList &names, const QColor &color);
    void setLinetype(const QStringList &names, const QString &linetype);
    void setLineWeight(const QStringList &names, int lineWeight);
    void setDescription(const QStringList &names, const QString &description);

    void change(const QStringList &names, const QString &step, const KcHost::LayerChange &change);
    void changeEach(const QStringList &names, const QString &step, const QString &otherwise,
                    const Change &change);
    void tellRefusal(Kcore::ErrorStatus status, const QString &sentence);

    const OvCc::LayerManager &m_panel;
    QWidget *const m_window;
    Drawing *m_drawing = nullptr;
    QString m_gesture; ///< that is under way, as a user calls it
    std::unique_ptr<KcHost::UndoGroup> m_step;
};

} // namespace Tessa
