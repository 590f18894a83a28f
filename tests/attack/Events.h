// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QMap>
#include <QStringList>
#include <QVector>

#include <functional>
#include <memory>

/// Random events: lives of widgets that are played from lists of events, each in a process of its own.
/// What fails is shrunk to a short list, printed, and kept in a file that plays it again.
namespace Attack {

/// What may happen, by the name that stands in lists, and how often beside the others.
struct Kind
{
    const char *name;
    int weight;
};

/// Something that happens, of a kind of its world. The numbers are anything: the world takes them
/// modulo what is there, so that every list can be played, and part of one as well.
struct Event
{
    int kind;
    quint32 a;
    quint32 b;
    quint32 c;
};

/// One life: windows, drawings, and the host that answers.
class World
{
public:
    World() = default;
    virtual ~World();
    World(const World &) = delete;
    World &operator=(const World &) = delete;

    /// Called from the event loop, which goes on between two calls. An event that opens a dialog
    /// answers it. Chance is in the numbers of the event alone.
    virtual void play(const Event &event) = 0;

    /// Called after each hundred events and at the end of a life; closes first what the world itself
    /// has left open. No object of a drawing may be open after that, which is not asked here.
    /// @return what does not hold, with all that is by chance in it in single quotes; empty when all does
    virtual QString wrong() = 0;
};

/// How to make a world, and what may happen in it.
struct WorldKind
{
    QVector<Kind> kinds;
    std::function<std::unique_ptr<World>()> make;
};

/// The program. WORLD SECONDS [SEED] plays lives until the time is over, WORLD --events N --seeds K
/// [SEED] that many from as many seeds, --replay FILE a list. It needs a QApplication.
/// @return its exit code: 1 after a find, 2 for arguments that are none
int run(const QStringList &arguments, const QMap<QString, WorldKind> &worlds);

/// All public widgets on several drawings.
WorldKind widgets();

} // namespace Attack
