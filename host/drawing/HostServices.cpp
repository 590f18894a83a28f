// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "HostServices.h"

#include <KcDb.h>
#include <KcEd.h>
#include <OvHost.h>

#include <QGlobalStatic>
#include <QHash>

namespace {

struct Host
{
    KcDbDatabase *workingDatabase = nullptr;
    QHash<QString, int> variables = {{QStringLiteral("TILEMODE"), 1},
                                     {QStringLiteral("LWUNITS"), 1}};
    std::function<void()> layerTableChanges;
    std::function<void(const QString &)> layerModified;
    std::function<void(int)> entityModified;
};

// A drawing that outlives main() may outlive this, too.
Q_GLOBAL_STATIC(Host, host)

} // namespace

namespace Embedded {

void setWorkingDatabase(KcDbDatabase *database)
{
    host->workingDatabase = database;
}

void forgetDatabase(const KcDbDatabase *database)
{
    if (!host.isDestroyed() && host->workingDatabase == database)
        host->workingDatabase = nullptr;
}

void setVariable(const QString &name, int value)
{
    host->variables.insert(name.toUpper(), value);
}

bool isInModelSpace()
{
    return host->variables.value(QStringLiteral("TILEMODE"), 1) != 0;
}

void setLayerTableChangesHandler(std::function<void()> handler)
{
    host->layerTableChanges = std::move(handler);
}

void setLayerModifiedHandler(std::function<void(const QString &)> handler)
{
    host->layerModified = std::move(handler);
}

/// Calls a copy, since the handler may set another one.
void announceChange(const std::wstring &layerName)
{
    const auto handler = host->layerModified;
    if (handler)
        handler(QString::fromStdWString(layerName));
}

void setEntityModifiedHandler(std::function<void(int)> handler)
{
    host->entityModified = std::move(handler);
}

void announceEntity(int number)
{
    const auto handler = host->entityModified;
    if (handler)
        handler(number);
}

} // namespace Embedded

KcDbDatabase *KcDbHostApplicationServices::workingDatabase() const
{
    return host->workingDatabase;
}

KcDbHostApplicationServices *kcdbHostApplicationServices()
{
    static KcDbHostApplicationServices services;
    return &services;
}

int kcedGetVar(const KTCHAR *name, resbuf *result)
{
    if (!name || !result)
        return RTERROR;
    const QHash<QString, int> &variables = host->variables;
    const auto variable = variables.constFind(QString::fromWCharArray(name).toUpper());
    if (variable == variables.constEnd())
        return RTERROR;
    result->restype = RTSHORT;
    result->resval.rint = static_cast<short>(*variable);
    return RTNORM;
}

void ovSetLayerTableChanges()
{
    const auto handler = host->layerTableChanges;
    if (handler)
        handler();
}
