#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QAction>

namespace OvCc {

/// Shows or hides one column of a layer table. Its object name is the column's title in headerList, its
/// text is the title as it is shown.
class OVCC_EXPORT LayerAction : public QAction
{
    Q_OBJECT

public:
    LayerAction(const QString &text, QObject *parent);
    ~LayerAction() override;

public Q_SLOTS:
    /// Sends layerTriggered() with the column that has this action's object name as its title, if
    /// there is one.
    void actionProcess(bool checked);

Q_SIGNALS:
    void layerTriggered(int column, bool checked);
};

} // namespace OvCc
