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
{
    if (!scope().organisation.isEmpty())
        m_settings.emplace(scope().organisation, scope().application);
}

void LayoutSettings::restore(QAction &action) const
{
    action.setCheckable(value(checkableKey(action), true));
    action.setChecked(value(checkedKey(action), true));
}

bool LayoutSettings::wasCheckable(const QAction &action) const
{
    return value(checkableKey(action), false);
}

void LayoutSettings::save(const QAction &action)
{
    if (!m_settings)
        return;
    m_settings->setValue(checkedKey(action), action.isChecked());
    m_settings->setValue(checkableKey(action), action.isCheckable());
    m_settings->setValue(action.objectName() + QLatin1String("/isEnabled"), action.isEnabled());
}

bool LayoutSettings::value(const QString &key, bool otherwise) const
{
    return m_settings ? m_settings->value(key, otherwise).toBool() : otherwise;
}

} // namespace OvCc
