// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

/// A program with a drawing database of its own: the layers of an SQLite file, which other programs
/// may change at the same time.
///
///     own-database DRAWING.sqlite    shows the layers; a file that is not there is made
///     own-database --count           prints how often the widgets call the database, and for what

#include "Counting.h"
#include "LayerWindow.h"
#include "OwnDatabase.h"

#include <OvCustomControl/LayerTableWidget.h>

#include <QApplication>
#include <QTextStream>

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    OvCc::LayerTableWidget::setSettingsScope("OvCustomControl", "own-database");

    const QString argument = application.arguments().value(1);
    if (argument == QLatin1String("--count"))
        return printCalls();

    QString error;
    const auto drawing = OwnDatabase::open(argument, &error);
    if (!drawing) {
        QTextStream(stderr) << error << '\n';
        return 1;
    }
    OwnDatabase::setWorkingDatabase(drawing.get());
    LayerWindow window(*drawing);
    window.show();
    return QApplication::exec();
}
