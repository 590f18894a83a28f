// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

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

const Notice *underWay = nullptr;

} // namespace

void tellHost(const QStringList &layers)
{
    const Notice notice{layers, QThread::currentThread()->loopLevel()};
    const QScopedValueRollback<const Notice *> rollback(underWay, &notice);
    ovSetLayerTableChanges();
}

std::optional<QStringList> layersBeingTold()
{
    if (!underWay || underWay->loopLevel != QThread::currentThread()->loopLevel())
        return std::nullopt;
    return underWay->layers;
}

} // namespace OvCc
