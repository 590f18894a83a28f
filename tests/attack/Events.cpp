// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "World.h"

#include <QRegularExpression>

#include <cstdio>

#include <unistd.h>

/// @file
/// Plays a life from a list of events: attack-events WORLD, with lines "KIND NUMBER NUMBER NUMBER" as
/// standard input, which come back as they are played. The script "events" makes them from what
/// attack-events WORLD --kinds says.

using namespace Attack;

namespace {

constexpr unsigned hangLimit = 90; // for one event, in seconds

/// What may stand on the console: what the off-screen platform says, and Qt when a popup closes.
constexpr char allowed[] = "^(This plugin does not support "
                           "|requestActivate\\(\\) called for .*StackWidget)";

[[noreturn]] void find(const QString &text)
{
    std::fflush(stdout);
    std::fprintf(stderr, "find: %s\n", qPrintable(text));
    std::fflush(stderr);
    std::_Exit(1);
}

void onMessage(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    static const QRegularExpression isAllowed(allowed);
    if (type != QtDebugMsg && type != QtInfoMsg && !isAllowed.match(message).hasMatch())
        find("console: " + message);
}

void check(World &world)
{
    const QString wrong = world.wrong();
    if (!wrong.isEmpty())
        find(wrong);
    if (KcHost::openObjectCount() != 0)
        find("objects are open");
}

/// Plays one event of standard input.
/// @return whether there was one
bool playNext(World &world)
{
    char kind[32];
    Event event{};
    if (std::scanf("%31s %u %u %u", kind, &event.a, &event.b, &event.c) != 4)
        return false;
    // Before it is played: the last one is the culprit.
    std::printf("%s %u %u %u\n", kind, event.a, event.b, event.c);
    std::fflush(stdout);
    alarm(hangLimit);
    const auto act = world.acts().find(kind);
    if (act != world.acts().end())
        world.play(*act, event);
    else
        check(world);
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QMap<QString, std::unique_ptr<World> (*)()> worlds{{"viewer", makeViewer},
                                                             {"widgets", makeWidgets}};
    const QStringList words = QApplication::arguments() << QString() << QString();
    if (!worlds.contains(words[1])) {
        std::fprintf(stderr, "attack-events WORLD [--kinds], which is widgets or viewer\n");
        return 2;
    }
    qInstallMessageHandler(onMessage);
    std::unique_ptr<World> world = worlds[words[1]]();
    if (words[2] == "--kinds") {
        for (auto act = world->acts().begin(); act != world->acts().end(); ++act)
            std::printf("%s %d\n", act.key().constData(), act->weight);
        return 0;
    }
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&world] {
        if (playNext(*world))
            return;
        check(*world);
        world = nullptr;
        QCoreApplication::quit();
    }); // clazy:exclude=lambda-in-connect
    timer.start(0);
    while (world)
        QCoreApplication::exec(); // which a window may end that is closed
    if (KcHost::openObjectCount() != 0)
        find("objects stay open");
    qInstallMessageHandler(nullptr);
    return 0;
}
