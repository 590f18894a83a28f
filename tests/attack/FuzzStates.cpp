// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "FuzzSupport.h"

#include "viewer/window/LayerStates.h"

#include <KcHost/KcHost.h>
#include <OvCustomControl/LayerLink.h>

#include <QJsonDocument>
#include <QTemporaryDir>
#include <QUndoStack>

#include <algorithm>

using OvCc::LayerLink;
using OvCc::LayerState;

namespace {

constexpr const char *names[] = {"0",          "Walls", "walls", "\xc3\x84",
                                 "Gone \"1\"", "Doors", "B\\|",  ""};
constexpr const char *linetypes[] = {"Continuous", "HIDDEN", ""};

/// A drawing with a host that does what the link asks for, each gesture as one step of undo.
struct World
{
    std::unique_ptr<KcDbDatabase> drawing = KcHost::newDrawing();
    std::unique_ptr<KcHost::UndoGroup> step;
    LayerLink link;

    template <typename Signal, typename Value>
    void answer(Signal signal, void (*set)(KcHost::LayerChange &, Value))
    {
        QObject::connect(&link, signal, &link, [this, set](const QStringList &layers, Value value) {
            KcHost::LayerChange change;
            set(change, value);
            for (const QString &name : layers)
                KcHost::changeLayer(*drawing, name, change);
        });
    }

    World()
    {
        for (const char *name : {"Walls", "\xc3\x84", "Doors"})
            KcHost::addLayer(*drawing, QString::fromUtf8(name));
        KcHost::setWorkingDatabase(drawing.get());
        QObject::connect(&link, &LayerLink::changesBegin, &link, [this](const QString &text) {
            step = std::make_unique<KcHost::UndoGroup>(*drawing, text);
        });
        QObject::connect(&link, &LayerLink::changesEnd, &link, [this] { step.reset(); });
        QObject::connect(&link, &LayerLink::currentLayerRequested, &link,
                         [this](const QString &name) { KcHost::setCurrentLayer(*drawing, name); });
        answer<decltype(&LayerLink::colorRequested), const QColor &>(
                &LayerLink::colorRequested,
                [](auto &it, auto &color) { it.trueColor = color.rgb(); });
        answer<decltype(&LayerLink::linetypeRequested), const QString &>(
                &LayerLink::linetypeRequested, [](auto &it, auto &name) { it.linetype = name; });
        answer<decltype(&LayerLink::lineWeightRequested), int>(
                &LayerLink::lineWeightRequested,
                [](auto &it, int weight) { it.lineWeight = weight; });
    }
};

/// The state that the bytes stand for, eight for a layer.
LayerState stateOf(const QByteArray &bytes)
{
    LayerState state;
    for (int at = 0; at + 7 < bytes.size(); at += 8) {
        const auto byte = [&](int place) { return uchar(bytes.at(at + place)); };
        const QString name = QString::fromUtf8(names[byte(6) % std::size(names)]);
        state.insert(name, {bool(byte(0) & 1), bool(byte(0) & 2), bool(byte(0) & 4),
                            bool(byte(0) & 8), QColor(byte(1), byte(2), byte(3)),
                            linetypes[byte(4) % std::size(linetypes)], byte(5) - 5});
        if (byte(7) & 1)
            state.setCurrentLayer(name);
    }
    return state;
}

/// By the flags alone, or as a link has the host make all of it.
void restore(World &world, const LayerState &state, bool isByLink)
{
    QUndoStack &undo = *KcHost::undoStack(*world.drawing);
    const LayerState before = LayerState::capture();
    const int steps = undo.index();
    const QStringList refused = isByLink ? world.link.restore(state) : state.restore();
    const LayerState after = LayerState::capture();
    const QStringList either = before.names() + state.names();
    for (const QString &name : either) {
        const LayerState::Layer was = before.layer(name);
        LayerState::Layer wanted = state.contains(name) ? state.layer(name) : was;
        const bool isFrozenCurrent = !wanted.isThawed && name == after.currentLayer();
        const bool isThere = before.contains(name);
        require(refused.contains(name) == (state.contains(name) && (!isThere || isFrozenCurrent)),
                "just what is refused is told");
        if (!isByLink)
            wanted.color = was.color;
        if (!isByLink || wanted.linetype != "Continuous")
            wanted.linetype = was.linetype;
        const auto &standard = OvCc::standardLineWeights;
        if (!isByLink
            || !(wanted.lineWeight == OvCc::LineWeightDefault
                 || std::binary_search(standard.begin(), standard.end(), wanted.lineWeight)))
            wanted.lineWeight = was.lineWeight;
        wanted.isThawed = wanted.isThawed || isFrozenCurrent;
        require(!isThere || after.layer(name) == wanted, "a layer is as the state says");
    }
    require(!isByLink || undo.index() - steps <= 1, "a gesture is one step");
    while (undo.index() > steps)
        undo.undo();
    require(LayerState::capture() == before && !KcHost::openObjectCount(), "undo gives all back");
}

void readJson(World &world, const QByteArray &json)
{
    QString error;
    const auto exact = exactly(json, size_t(json.size()));
    const LayerState state =
            LayerState::fromJson(QByteArray::fromRawData(exact.get(), json.size()), &error);
    require(error.isEmpty() || state == LayerState(), "what is refused is empty");
    require(!error.isEmpty() || LayerState::fromJson(state.toJson()) == state, "it comes back");
    if (error.isEmpty())
        restore(world, state, json.size() % 2);
}

/// A file of states with anything in it, beside a drawing's.
void readFile(const QByteArray &content)
{
    static const QTemporaryDir folder(quickFolder() + "/states-XXXXXX");
    QFile file(folder.filePath("a.states.json")), kept(file.fileName() + ".kept");
    require(file.open(QFile::WriteOnly) && file.write(content) == content.size(), "it is there");
    file.close();
    const QJsonDocument before = QJsonDocument::fromJson(content);
    QString error;
    Tessa::LayerStates states;
    states.open(folder.filePath("a.dxf"), &error);
    require(error.isEmpty() == before.isObject(), "garbage is told");
    const LayerState state = stateOf(content);
    require(states.save("new", state, &error) && states.state("new", &error) == state,
            "it is saved");
    require(states.remove("new", &error) && file.open(QFile::ReadOnly), "it is removed");
    QJsonObject others = before.object();
    others.remove("new");
    require(QJsonDocument::fromJson(file.readAll()).object() == others, "the others stay");
    require(kept.remove() != before.isObject(), "what is no file of states is kept");
}

QByteArray makeInput(QRandomGenerator &random)
{
    QByteArray bytes(8 * random.bounded(6), 0);
    std::generate(bytes.begin(), bytes.end(), [&] { return char(random.bounded(256)); });
    const QByteArray json = stateOf(bytes).toJson();
    const int kind = random.bounded(4);
    return char(kind) + (kind < 2 ? bytes : kind == 2 ? json : "{\"one\":" + json + ",\"new\":3}");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    return writeCorpus(*argc, *argv, makeInput);
}

/// The first byte says what is tried with the others.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static World world;
    if (size < 1 || size > 4096)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char *>(data) + 1, int(size) - 1);
    if (data[0] % 4 < 2)
        restore(world, stateOf(bytes), data[0] % 2);
    else if (data[0] % 4 == 2)
        readJson(world, bytes);
    else
        readFile(bytes);
    return 0;
}
