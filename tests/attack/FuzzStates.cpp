// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "FuzzSupport.h"

#include "../Changes.h"

#include <QUndoStack>

using OvCc::LayerLink;
using OvCc::LayerState;

namespace {

constexpr const char *names[] = {"0", "Walls", "walls", u8"\u00c4", "Gone \"1\"", "Doors", ""};

/// A drawing with a host that does what the link asks for, each gesture as one step of undo.
struct World
{
    std::unique_ptr<KcDbDatabase> drawing = KcHost::newDrawing();
    std::unique_ptr<KcHost::UndoGroup> step;
    LayerLink link;

    World()
    {
        for (const char *name : {"Walls", u8"\u00c4", "Doors"})
            KcHost::addLayer(*drawing, QString::fromUtf8(name));
        KcHost::setWorkingDatabase(drawing.get());
        QObject::connect(&link, &LayerLink::changesBegin, &link, [this](const QString &text) {
            step = std::make_unique<KcHost::UndoGroup>(*drawing, text);
        });
        QObject::connect(&link, &LayerLink::changesEnd, &link, [this] { step.reset(); });
        QObject::connect(&link, &LayerLink::currentLayerRequested, &link, [](const QString &name) {
            change({"current", name});
        });
        const auto answer = [this](auto wish, const QString &word) {
            QObject::connect(&link, wish, &link, [word](const QStringList &all, const auto &value) {
                for (const QString &name : all)
                    change({"layer", name, word, QVariant(value).toString().remove('#')});
            });
        };
        answer(&LayerLink::colorRequested, "true");
        answer(&LayerLink::linetypeRequested, "type");
        answer(&LayerLink::lineWeightRequested, "weight");
    }
};

LayerState stateOf(Choices &choices)
{
    LayerState state;
    while (choices.remaining_bytes() > 0) {
        const QString name = choices.of(names);
        state.insert(name,
                     {choices.ConsumeBool(), choices.ConsumeBool(), choices.ConsumeBool(),
                      choices.ConsumeBool(), QColor(choices.ConsumeIntegral<QRgb>()),
                      choices.of(std::array{"Continuous", "HIDDEN", ""}), choices.below(256) - 5});
        state.setCurrentLayer(choices.ConsumeBool() ? name : state.currentLayer());
    }
    return state;
}

/// The drawing in that state as the host makes it layer by layer: the flags alone, or all of it.
/// @param[out] refused what is not there, or would not have its flags
LayerState made(const LayerState &state, bool isWhole, QStringList &refused)
{
    const LayerState before = LayerState::capture();
    if (isWhole && before.contains(state.currentLayer()))
        change({"current", state.currentLayer()});
    const QStringList all = state.names();
    for (const QString &name : all) {
        const LayerState::Layer layer = state.layer(name);
        const auto set = [&name](const QString &flag, bool isSet) {
            return change({isSet ? flag : "un" + flag, name}) == Kcore::eOk;
        };
        const bool isThere = before.contains(name);
        if (!isThere || !set("off", !layer.isOn) || !set("lock", !layer.isUnlocked)
            || !set("plot", layer.isPlotted) || !set("freeze", !layer.isThawed))
            refused += name;
        if (isThere && isWhole) {
            change({"layer", name, "true", layer.color.name().mid(1)});
            change({"layer", name, "type", layer.linetype});
            change({"layer", name, "weight", QString::number(layer.lineWeight)});
        }
    }
    return LayerState::capture();
}

/// By the flags alone, or as a link has the host make all of it.
void restore(World &world, const LayerState &state, bool isByLink)
{
    QUndoStack &undo = *KcHost::undoStack(*world.drawing);
    const LayerState before = LayerState::capture();
    const int steps = undo.index();
    QStringList refused;
    const LayerState wanted = made(state, isByLink, refused);
    undo.setIndex(steps);
    require(refused == (isByLink ? world.link.restore(state) : state.restore()),
            "just what is refused is told");
    require(LayerState::capture() == wanted, "the layers are as the state says");
    require(!isByLink || undo.index() - steps <= 1, "a gesture is one step");
    undo.setIndex(steps);
    require(LayerState::capture() == before && !KcHost::openObjectCount(), "undo gives all back");
}

} // namespace

void tryInput(Choices &choices, const QByteArray &content)
{
    static World world;
    const bool isByLink = choices.ConsumeBool();
    const std::vector<char> exact(content.begin(), content.end());
    const QByteArray json = QByteArray::fromRawData(exact.data(), content.size());
    QString error;
    const LayerState state =
            choices.below(3) > 0 ? stateOf(choices) : LayerState::fromJson(json, &error);
    require(error.isEmpty() || state == LayerState(), "what is refused is empty");
    require(LayerState::fromJson(state.toJson()) == state, "it comes back");
    restore(world, state, isByLink);
}
