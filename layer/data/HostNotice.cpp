#include "HostNotice.h"

#include <OvHost.h>

#include <QScopedValueRollback>
#include <QThread>

namespace OvCc {

namespace {

struct Notice
{
    QStringList layers;
    int loopLevel;
};

std::optional<Notice> underWay;

} // namespace

void tellHost(const QStringList &layers)
{
    const QScopedValueRollback<std::optional<Notice>> rollback(
            underWay, Notice{layers, QThread::currentThread()->loopLevel()});
    ovSetLayerTableChanges();
}

std::optional<QStringList> layersBeingTold()
{
    if (!underWay || underWay->loopLevel != QThread::currentThread()->loopLevel())
        return std::nullopt;
    return underWay->layers;
}

} // namespace OvCc
