// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "FuzzSupport.h"

#include "viewer/window/LayerStates.h"

#include <KcHost/KcHost.h>
#include <OvCustomControl/LayerLink.h>

#include <QJsonDocument>
#include <QUndoStack>

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

    template <typename Value, typename Member>
    void answer(void (LayerLink::*signal)(const QStringList &, Value), Member member)
    {
        QObject::connect(&link, signal, &link, [=](const QStringList &layers, Value value) {
            KcHost::LayerChange change;
            if constexpr (std::is_same_v<Value, const QColor &>)
                change.*member = value.rgb();
            else
                change.*member = value;
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
        answer(&LayerLink::colorRequested, &KcHost::LayerChange::trueColor);
        answer(&LayerLink::linetypeRequested, &KcHost::LayerChange::linetype);
        answer(&LayerLink::lineWeightRequested, &KcHost::LayerChange::lineWeight);
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
    static const QTemporaryDir folder;
    const QString file = folder.filePath("a.states.json"), kept = file + ".kept";
    writeFile(file, content);
    const QJsonDocument before = QJsonDocument::fromJson(content);
    QString error;
    Tessa::LayerStates states;
    states.open(folder.filePath("a.dxf"), &error);
    require(error.isEmpty() == before.isObject(), "garbage is told");
    const LayerState state = stateOf(content);
    require(states.save("new", state, &error) && states.state("new", &error) == state,
            "it is saved");
    require(states.remove("new", &error), "it is removed");
    QJsonObject others = before.object();
    others.remove("new");
    require(QJsonDocument::fromJson(contentOf(file)).object() == others, "the others stay");
    require(QFile::remove(kept) != before.isObject(), "what is no file of states is kept");
}

} // namespace

void tryInput(size_t choice, const QByteArray &input)
{
    static World world;
    if (choice % 4 < 2)
        restore(world, stateOf(input), choice % 2);
    else if (choice % 4 == 2)
        readJson(world, input);
    else
        readFile(input);
}
