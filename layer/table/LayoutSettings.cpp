// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayoutSettings.h"

#include <QAction>

namespace OvCc {

namespace {

struct Scope
{
    QString organisation;
    QString application;
};

Scope &scope()
{
    static Scope scope{QStringLiteral("Brevik"), QStringLiteral("TessaViewer")};
    return scope;
}

QString checkableKey(const QAction &action)
{
    return action.objectName() + QLatin1String("/isCheckable");
}

QString checkedKey(const QAction &action)
{
    return action.objectName() + QLatin1String("/isChecked");
}

} // namespace

void LayoutSettings::setScope(const QString &organisation, const QString &application)
{
    scope() = {organisation, application};
}

LayoutSettings::LayoutSettings()
    : m_settings(scope().organisation, scope().application)
{
}

void LayoutSettings::restore(QAction &action) const
{
    action.setCheckable(m_settings.value(checkableKey(action), true).toBool());
    action.setChecked(m_settings.value(checkedKey(action), true).toBool());
}

bool LayoutSettings::wasCheckable(const QAction &action) const
{
    return m_settings.value(checkableKey(action), false).toBool();
}

void LayoutSettings::save(const QAction &action)
{
    m_settings.setValue(checkedKey(action), action.isChecked());
    m_settings.setValue(checkableKey(action), action.isCheckable());
    m_settings.setValue(action.objectName() + QLatin1String("/isEnabled"), action.isEnabled());
}

} // namespace OvCc
