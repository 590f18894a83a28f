// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

/// Makes the pictures of the documentation; cmake/pictures calls it.
#include "Pictures.h"

#include <KcHost/KcHost.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFontInfo>
#include <QStyle>
#include <QStyleFactory>

#include <cstdio>
#include <stdexcept>

namespace {

constexpr int fontSize = 12;

/// How far a colour component of a pixel may be off: processors do not round alike.
constexpr int tolerance = 12;

/// What a user's environment says of looks: the pictures come out the same everywhere.
void forgetEnvironment()
{
    for (const char *name :
         {"QT_FONT_DPI", "QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_STYLE_OVERRIDE"})
        qunsetenv(name);
}

void setLook()
{
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(QApplication::style()->standardPalette());
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(fontSize);
    if (!QFontInfo(font).exactMatch())
        throw std::runtime_error("there is no font \"DejaVu Sans\"");
    QApplication::setFont(font);
}

bool isNear(QRgb one, QRgb other)
{
    const auto near = [](int a, int b) { return qAbs(a - b) <= tolerance; };
    return near(qRed(one), qRed(other)) && near(qGreen(one), qGreen(other))
           && near(qBlue(one), qBlue(other));
}

bool isSame(const QImage &one, const QImage &other)
{
    if (one.size() != other.size())
        return false;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            if (!isNear(one.pixel(x, y), other.pixel(x, y)))
                return false;
        }
    }
    return true;
}

/// Makes all pictures, and writes those into @p folder that are not there as they are now.
void writeStale(const QDir &docs, const QDir &folder)
{
    const auto drawing =
            KcHost::readDrawing(QStringLiteral(OVCC_SOURCE_DIR "/viewer/sample/floorplan.dxf"));
    if (!drawing)
        throw std::runtime_error("the sample drawing cannot be read");
    KcHost::setWorkingDatabase(drawing.get());
    KcHost::setCurrentLayer(*drawing, QStringLiteral("Doors")); // in sight without scrolling
    const QStringList present =
            QDir(docs.filePath(QStringLiteral("images"))).entryList(QDir::Files);
    QStringList unknown;
    for (const QString &name : present)
        unknown += QStringLiteral("images/") + name;
    const QVector<Picture> pictures =
            layerPictures() + pickerPictures() + ribbonPictures() + viewerPictures();
    for (const Picture &picture : pictures) {
        unknown.removeAll(picture.file);
        const QImage now = picture.make().toImage().convertToFormat(QImage::Format_RGB32);
        if (now.isNull())
            throw std::runtime_error(qPrintable(picture.file + " has nothing to show"));
        if (isSame(now, QImage(docs.filePath(picture.file))))
            continue;
        constexpr int smallest = 0;
        if (!now.save(folder.filePath(picture.file), "PNG", smallest))
            throw std::runtime_error(qPrintable(picture.file + " cannot be written"));
    }
    if (!unknown.isEmpty())
        throw std::runtime_error(qPrintable("nobody makes " + unknown.join(", ")));
}

/// Removes from @p folder those of the pictures which are there that are the same in @p docs.
void removeFresh(const QDir &docs, const QDir &folder, const QStringList &names)
{
    for (const QString &name : names) {
        if (isSame(QImage(folder.filePath(name)), QImage(docs.filePath(name))))
            QFile::remove(folder.filePath(name));
    }
}

} // namespace

int main(int argc, char *argv[])
{
    forgetEnvironment();
    const QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
            QStringLiteral("Makes the pictures of the documentation anew."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("docs"), QStringLiteral("Where the pictures are."));
    parser.addPositionalArgument(QStringLiteral("folder"),
                                 QStringLiteral("Where those are written that differ."));
    parser.addPositionalArgument(
            QStringLiteral("names"),
            QStringLiteral("Pictures in the folder that somebody else made: left if they differ."),
            QStringLiteral("[name...]"));
    parser.process(application);
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() < 2)
        parser.showHelp(1);
    const QDir docs(arguments.at(0));
    const QDir folder(arguments.at(1));
    try {
        setLook();
        folder.mkpath(QStringLiteral("images"));
        writeStale(docs, folder);
        removeFresh(docs, folder, arguments.mid(2));
    } catch (const std::runtime_error &error) {
        std::fprintf(stderr, "documentation-pictures: %s\n", error.what());
        return 1;
    }
    return 0;
}
