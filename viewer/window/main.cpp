#include "MainWindow.h"
#include "Tour.h"

#include <QApplication>
#include <QCommandLineParser>

#include <cstdio>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tessa-viewer"));
    QApplication::setApplicationVersion(QStringLiteral(TESSA_VERSION));
    QApplication::setDesktopFileName(QStringLiteral(TESSA_DESKTOP_ID));

    QCommandLineParser parser;
    parser.setApplicationDescription(
            QStringLiteral("Shows a DXF drawing and switches its layers."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("drawing"), QStringLiteral("A DXF file."),
                                 QStringLiteral("[drawing.dxf]"));
    const QCommandLineOption tourOption(
            QStringLiteral("tour"),
            QStringLiteral(
                    "Play a visit to the drawing, save pictures of it into <folder>, and end."),
            QStringLiteral("folder"));
    parser.addOption(tourOption);
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
