// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Events.h"

#include <QApplication>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    return Attack::run(QApplication::arguments(), {{QStringLiteral("widgets"), Attack::widgets()}});
}
