// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#ifdef ATTACK_VIEWER
#    include "ViewerWorld.h"
#endif

#include "Events.h"

#include <QApplication>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QMap<QString, Attack::WorldKind> worlds{{QStringLiteral("widgets"), Attack::widgets()}};
#ifdef ATTACK_VIEWER
    worlds.insert(QStringLiteral("viewer"), Attack::viewer());
#endif
    return Attack::run(QApplication::arguments(), worlds);
}
