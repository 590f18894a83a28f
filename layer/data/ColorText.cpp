// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "ColorText.h"

QString OvCc::colorText(const NamedColor &color)
{
    return QLatin1String("ll*") + color.name + QLatin1Char(';') + componentsOf(color.color);
}

OvCc::NamedColor OvCc::colorOfText(const QString &text)
{
    const QString description = text.section(QLatin1Char('*'), 1);
    const QString components = description.section(QLatin1Char(';'), 1);
    const auto component = [&components](int place) {
        return components.section(QLatin1Char(','), place, place).toInt();
    };
    return {description.section(QLatin1Char(';'), 0, 0),
            QColor(component(0), component(1), component(2))};
}

QString OvCc::componentsOf(const QColor &color)
{
    return QString::asprintf("%d,%d,%d", color.red(), color.green(), color.blue());
}
