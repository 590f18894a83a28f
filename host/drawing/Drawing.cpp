// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Drawing.h"

#include <algorithm>
#include <array>
#include <tuple>

namespace Embedded {

namespace {

constexpr std::array<int, 27> kLineWeights = {-3, -2, -1,  0,   5,   9,   13,  15,  18,
                                              20, 25, 30,  35,  40,  50,  53,  60,  70,
                                              80, 90, 100, 106, 120, 140, 158, 200, 211};

} // namespace

bool LayerState::operator==(const LayerState &other) const
{
    const auto values = [](const LayerState &state) {
        return std::tie(state.isOff, state.isFrozen, state.isLocked, state.isPlottable, state.color,
                        state.trueColor, state.linetype, state.lineWeight, state.description);
    };
    return values(*this) == values(other);
}

bool EntityColor::operator==(const EntityColor &other) const
{
    return index == other.index && trueColor == other.trueColor;
}

bool EntityProperties::operator==(const EntityProperties &other) const
{
    const auto values = [](const EntityProperties &properties) {
        return std::tie(properties.color, properties.lineWeight, properties.linetype,
                        properties.layer, properties.isErased, properties.hasLostAttributes);
    };
    return values(*this) == values(other);
}

bool Viewport::freezes(int layer) const
{
    const auto found = std::lower_bound(
            frozenLayers.begin(), frozenLayers.end(), layer,
            [](const LayerMention &frozen, int wanted) { return frozen.layer < wanted; });
    return found != frozenLayers.end() && found->layer == layer;
}

int Drawing::findLayer(const QString &name) const
{
    return layersByName.value(symbolKey(name), -1);
}

int Drawing::findStoredLayer(const QString &name) const
{
    return renamedLayers.value(symbolKey(name), findLayer(name));
}

int Drawing::findLinetype(const QString &name) const
{
    const QString key = symbolKey(name);
    if (key == QLatin1String("bylayer"))
        return kLinetypeByLayer;
    if (key == QLatin1String("byblock"))
        return kLinetypeByBlock;
    return linetypesByName.value(key, kNoLinetype);
}

int Drawing::addLayer(Layer layer)
{
    const int index = static_cast<int>(layers.size());
    layersByName.insert(symbolKey(QString::fromStdWString(layer.name)), index);
    layers.push_back(std::move(layer));
    return index;
}

LayerValue Drawing::layerValue(int index) const
{
    const Layer &layer = layers[index];
    return {layer.name, layer.state, layer.isErased};
}

void Drawing::setLayerValue(int index, const LayerValue &value)
{
    Layer &layer = layers[index];
    const QString stored = storedName(layer);
    if (!layer.isErased) {
        layersByName.remove(symbolKey(QString::fromStdWString(layer.name)));
        if (layer.isRenamed)
            renamedLayers.remove(symbolKey(stored));
    }
    layer.name = value.name;
    layer.state = value.state;
    layer.isErased = value.isErased;
    layer.isRenamed = !layer.nameBytes.isNull() && layer.name != stored.toStdWString();
    if (!layer.isErased) {
        layersByName.insert(symbolKey(QString::fromStdWString(layer.name)), index);
        if (layer.isRenamed)
            renamedLayers.insert(symbolKey(stored), index);
    }
}

void Drawing::eraseLayer(int index)
{
    LayerValue value = layerValue(index);
    value.isErased = true;
    setLayerValue(index, value);
}

void Drawing::renameLayer(int index, const QString &name)
{
    LayerValue value = layerValue(index);
    value.name = name.toStdWString();
    setLayerValue(index, value);
}

QString Drawing::storedName(const Layer &layer) const
{
    return layer.nameBytes.isNull() ? QString() : text.decode(view(layer.nameBytes));
}

QByteArray Drawing::nameBytes(const Layer &layer) const
{
    if (layer.nameBytes.isNull() || layer.isRenamed)
        return text.encode(QString::fromStdWString(layer.name));
    return bytes.mid(layer.nameBytes.begin, layer.nameBytes.end - layer.nameBytes.begin);
}

std::string_view Drawing::view(ByteRange range) const
{
    return {bytes.constData() + range.begin, static_cast<std::size_t>(range.end - range.begin)};
}

bool isLineWeight(int lineWeight)
{
    return std::binary_search(kLineWeights.begin(), kLineWeights.end(), lineWeight);
}

QString symbolKey(const QString &name)
{
    return name.toCaseFolded();
}

} // namespace Embedded
