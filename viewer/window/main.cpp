// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "MainWindow.h"
#include "Tour.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDebug>

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace {

constexpr int noDisplay = 3; // the exit status where none answers

QtMessageHandler usualHandler;
QStringList saidBeforeDisplay;

/// Keeps what Qt says while it looks for a display. Where there is none Qt aborts; this ends the
/// program with a sentence instead, which has the first reason that Qt gave.
void awaitDisplay(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    saidBeforeDisplay += message;
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "tessa-viewer: no display answers: %s\n",
                     qPrintable(saidBeforeDisplay.first()));
        std::_Exit(noDisplay);
    }
}

/// Leaves out what Qt's off-screen platform says of each window.
void say(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (!message.startsWith(QLatin1String("This plugin does not support ")))
        usualHandler(type, context, message);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication::setApplicationName(QStringLiteral("tessa-viewer"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TESSA_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral(TESSA_DESKTOP_ID));

    QCommandLineParser parser;
    parser.setApplicationDescription(
            QStringLiteral("Shows a DXF drawing and switches its layers."));
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("drawing"), QStringLiteral("A DXF file."),
                                 QStringLiteral("[drawing.dxf]"));
    const QCommandLineOption tourOption(
            QStringLiteral("tour"),
            QStringLiteral(
                    "Play a visit to the drawing, save pictures of it into <folder>, and end."),
            QStringLiteral("folder"));
    parser.addOption(tourOption);

    // These need no display.
    if (parser.parse(QStringList(argv, argv + argc))
        && (parser.isSet(help) || parser.isSet(version))) {
        const QCoreApplication application(argc, argv);
        parser.process(application);
    }

    usualHandler = qInstallMessageHandler(awaitDisplay);
    const QApplication application(argc, argv);
    qInstallMessageHandler(say);
    for (const QString &message : std::as_const(saidBeforeDisplay))
        qWarning().noquote() << message;

    parser.process(application);
    const QStringList drawings = parser.positionalArguments();
    if (drawings.size() > 1 || (parser.isSet(tourOption) && drawings.isEmpty())) {
        std::fputs("tessa-viewer: give one drawing; --help tells more\n", stderr);
        return 1;
    }

    Tessa::MainWindow window;
    window.show();
    if (parser.isSet(tourOption))
        return Tessa::Tour(window, parser.value(tourOption)).play(drawings.first()) ? 0 : 1;
    if (!drawings.isEmpty())
        window.open(drawings.first());
    return QApplication::exec();
}
