// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Events.h"

#include <KcHost/KcHost.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTextStream>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace Attack {

World::~World() = default;

namespace {

constexpr int lifeLength = 3000;
constexpr int checkInterval = 100;
constexpr int hangLimit = 90000;    // without any event, in milliseconds
constexpr int shrinkLimit = 300000; // in milliseconds

/// What may stand on the console, and why.
struct Allowed
{
    const char *pattern;
    const char *reason;
};

constexpr Allowed allowedMessages[] = {
        {"^This plugin does not support ", "the off-screen platform"},
        {"^requestActivate\\(\\) called for .*StackWidget", "Qt, when a popup of it closes"},
};

bool isAllowed(const QString &message)
{
    return std::any_of(
            std::begin(allowedMessages), std::end(allowedMessages),
            [&message](const Allowed &allowed) {
                return QRegularExpression(QLatin1String(allowed.pattern)).match(message).hasMatch();
            });
}

// ---- In the process of a life ----

[[noreturn]] void find(const QString &text)
{
    std::fflush(stdout);
    std::fprintf(stderr, "find: %s\n", qPrintable(text));
    std::fflush(stderr);
    std::_Exit(1);
}

void onMessage(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type != QtDebugMsg && type != QtInfoMsg && !isAllowed(message))
        find(QStringLiteral("console: ") + message);
}

const char *nameOf(const WorldKind &world, const Event &event)
{
    return event.kind < int(world.kinds.size()) ? world.kinds[event.kind].name : "check";
}

QString line(const WorldKind &world, const Event &event)
{
    return QStringLiteral("%1 %2 %3 %4\n")
            .arg(QLatin1String(nameOf(world, event)))
            .arg(event.a)
            .arg(event.b)
            .arg(event.c);
}

void check(World &world)
{
    const QString wrong = world.wrong();
    if (!wrong.isEmpty())
        find(wrong);
    if (KcHost::openObjectCount() != 0)
        find(QStringLiteral("objects are open"));
}

int live(const WorldKind &kind, const QVector<Event> &events)
{
    qInstallMessageHandler(onMessage);
    std::unique_ptr<World> world = kind.make();
    QTimer timer;
    auto next = events.begin();
    QObject::connect(&timer, &QTimer::timeout, &timer, [&kind, &events, &world, &next] {
        if (next == events.end()) {
            check(*world);
            world = nullptr;
            QCoreApplication::quit();
            return;
        }
        const Event event = *next++;
        // Before it is played: the last one is the culprit.
        std::fputs(qPrintable(line(kind, event)), stdout);
        std::fflush(stdout);
        if (event.kind == int(kind.kinds.size()))
            check(*world);
        else
            world->play(event);
    }); // clazy:exclude=lambda-in-connect
    timer.start(0);
    QCoreApplication::exec();
    if (KcHost::openObjectCount() != 0)
        find(QStringLiteral("objects stay open"));
    qInstallMessageHandler(nullptr);
    return 0;
}

int replay(const QString &fileName, const QMap<QString, WorldKind> &worlds)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return 2;
    QTextStream in(&file);
    const auto world = worlds.find(in.readLine());
    if (world == worlds.end())
        return 2;
    QHash<QString, int> numbers{{QStringLiteral("check"), int(world->kinds.size())}};
    for (const Kind &kind : world->kinds)
        numbers.insert(QLatin1String(kind.name), int(numbers.size()) - 1);
    QVector<Event> events;
    for (QString name; !(in >> name).atEnd();) {
        Event event{numbers.value(name, -1), 0, 0, 0};
        in >> event.a >> event.b >> event.c >> Qt::ws;
        if (event.kind < 0)
            return 2;
        events.append(event);
    }
    return live(*world, events);
}

// ---- In the process that makes lives ----

/// How a life went.
struct Outcome
{
    QString find;   // empty if it went well
    QString report; // of its process
    int played;

    /// What is the same in all finds of one fault.
    QString signature() const
    {
        return QString(find).remove(
                QRegularExpression(QStringLiteral("'[^']*'|0x[0-9a-f]+|[0-9]+")));
    }
};

class Attacker
{
public:
    Attacker(const QString &name, const WorldKind &world, quint32 seed)
        : m_name(name)
        , m_world(world)
        , m_fileName(
                  QDir::temp().filePath(QStringLiteral("attack-events-%1-%2").arg(name).arg(seed)))
        , m_random(seed)
    {
    }

    /// Plays @p length events, and prints what is found, shrunk.
    /// @return how many events were played before that, and whether nothing was found
    std::pair<int, bool> attack(int length);

private:
    QVector<Event> makeEvents(int length);
    Outcome play(const QVector<Event> &events, bool withWholeStacks = false) const;
    QVector<Event> shrink(QVector<Event> events, const Outcome &outcome) const;

    const QString m_name;
    const WorldKind m_world;
    const QString m_fileName;
    QRandomGenerator m_random;
};

QVector<Event> Attacker::makeEvents(int length)
{
    QVector<int> kinds;
    for (int kind = 0; kind < int(m_world.kinds.size()); ++kind)
        kinds += QVector<int>(m_world.kinds[kind].weight, kind);
    QVector<Event> events;
    while (int(events.size()) < length) {
        const int kind = kinds[m_random.bounded(int(kinds.size()))];
        const quint32 a = m_random.generate();
        const quint32 b = m_random.generate();
        events.append({kind, a, b, m_random.generate()});
        if (events.size() % checkInterval == 0)
            events.append({int(m_world.kinds.size()), 0, 0, 0});
    }
    return events;
}

/// The line that says what is wrong in what a process wrote: its own, or one of a sanitizer.
QString findIn(const QString &report, const QProcess &process)
{
    for (const char *pattern : {"^find: (.*)$", "^SUMMARY: (.*)$", "^.*runtime error: .*$"}) {
        const QRegularExpression line(QLatin1String(pattern), QRegularExpression::MultilineOption);
        const QRegularExpressionMatch match = line.match(report);
        if (match.hasMatch())
            return match.captured(match.lastCapturedIndex());
    }
    return QStringLiteral("%1 %2")
            .arg(process.exitStatus() == QProcess::CrashExit ? QStringLiteral("signal")
                                                             : QStringLiteral("exit code"))
            .arg(process.exitCode());
}

/// Call stacks are short as a rule, which is five times as fast. A leak is looked at once more with
/// whole ones, which cmake/suppressions goes by.
Outcome Attacker::play(const QVector<Event> &events, bool withWholeStacks) const
{
    QFile file(m_fileName);
    if (!file.open(QIODevice::WriteOnly))
        return {QStringLiteral("cannot write ") + m_fileName, {}, 0};
    QString list = m_name + QLatin1Char('\n');
    for (const Event &event : events)
        list += line(m_world, event);
    file.write(list.toUtf8());
    file.close();

    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ASAN_OPTIONS"),
                       withWholeStacks
                               ? QStringLiteral("fast_unwind_on_malloc=0")
                               : QStringLiteral("malloc_context_size=3:quarantine_size_mb=32"));
    environment.insert(QStringLiteral("QT_HASH_SEED"),
                       QStringLiteral("0")); // one order of everything
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(),
                  {QStringLiteral("--replay"), m_fileName});
    int played = 0;
    while (process.waitForReadyRead(hangLimit))
        played += int(process.readAllStandardOutput().count('\n'));
    const bool hangs = process.state() != QProcess::NotRunning && !process.waitForFinished(1000);
    if (hangs) {
        process.kill();
        process.waitForFinished();
    }
    const QString report = QString::fromUtf8(process.readAllStandardError());
    if (hangs)
        return {QStringLiteral("hang"), report, played};
    if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
        return {{}, report, played};
    if (!withWholeStacks && report.contains(QLatin1String("LeakSanitizer")))
        return play(events, true);
    return {findIn(report, process), report, played};
}

/// Leaves out halves, quarters and so on, down to single events, as long as the find stays the same.
QVector<Event> Attacker::shrink(QVector<Event> events, const Outcome &outcome) const
{
    QElapsedTimer timer;
    timer.start();
    const QString signature = outcome.signature();
    for (int piece = std::max(int(events.size()) / 2, 1); piece > 0;) {
        const int before = int(events.size());
        for (int at = 0; at < int(events.size());) {
            if (timer.hasExpired(shrinkLimit))
                return events;
            QVector<Event> fewer = events;
            fewer.erase(fewer.begin() + at,
                        fewer.begin() + std::min(at + piece, int(fewer.size())));
            const Outcome again = play(fewer);
            if (again.signature() == signature)
                events = fewer.mid(0, again.played);
            else
                at += piece;
        }
        if (piece > 1 || int(events.size()) == before)
            piece /= 2;
    }
    return events;
}

std::pair<int, bool> Attacker::attack(int length)
{
    QVector<Event> events = makeEvents(length);
    const Outcome outcome = play(events);
    if (outcome.find.isEmpty()) {
        QFile::remove(m_fileName);
        return {outcome.played, true};
    }
    QTextStream out(stdout);
    out << "find: " << outcome.find << ", after " << outcome.played << " events" << Qt::endl;
    events = shrink(events.mid(0, outcome.played), outcome);
    out << play(events, true).report << "It takes " << events.size() << " events:\n";
    for (const Event &event : std::as_const(events))
        out << "    " << line(m_world, event);
    out << "To play them again: tests/sandbox " << QCoreApplication::applicationFilePath()
        << " --replay " << m_fileName << Qt::endl;
    return {outcome.played, false};
}

} // namespace

int run(const QStringList &arguments, const QMap<QString, WorldKind> &worlds)
{
    QCommandLineParser parser;
    parser.addOptions(
            {{QStringLiteral("replay"), {}, QStringLiteral("file")},
             {QStringLiteral("events"), {}, QStringLiteral("number")},
             {QStringLiteral("seeds"), {}, QStringLiteral("number"), QStringLiteral("1")}});
    parser.process(arguments);
    if (parser.isSet(QStringLiteral("replay")))
        return replay(parser.value(QStringLiteral("replay")), worlds);

    QStringList words = parser.positionalArguments();
    const QString name = words.isEmpty() ? QString() : words.takeFirst();
    const QStringList names = worlds.keys();
    if (!names.contains(name)) {
        std::fprintf(stderr, "attack-events WORLD SECONDS [SEED], with one of the worlds %s\n",
                     qPrintable(names.join(QStringLiteral(", "))));
        return 2;
    }
    const int events = parser.value(QStringLiteral("events")).toInt();
    const int seeds = std::max(parser.value(QStringLiteral("seeds")).toInt(), 1);
    const int seconds = events > 0 || words.isEmpty() ? 20 : words.takeFirst().toInt();
    const quint32 first = words.isEmpty() ? quint32(QDateTime::currentMSecsSinceEpoch() % 1000000)
                                          : words.takeFirst().toUInt();

    QTextStream out(stdout);
    QElapsedTimer timer;
    timer.start();
    qint64 played = 0;
    int lives = 0;
    bool isWell = true;
    for (int number = 0; number < seeds && isWell; ++number) {
        const quint32 seed = first + quint32(number);
        out << "seed " << seed << Qt::endl;
        Attacker attacker(name, worlds[name], seed);
        for (int left = events / seeds; isWell; ++lives) {
            if (events > 0 ? left <= 0 : timer.hasExpired(seconds * 1000LL))
                break;
            const auto [count, went] =
                    attacker.attack(events > 0 ? std::min(left, lifeLength) : lifeLength);
            played += count;
            left -= count;
            isWell = went;
        }
    }
    out << "attack-events " << name << ": " << played << " events, " << lives << " lives, "
        << played * 1000 / std::max<qint64>(timer.elapsed(), 1) << " events a second, "
        << (isWell ? 0 : 1) << " finds" << Qt::endl;
    return isWell ? 0 : 1;
}

} // namespace Attack
