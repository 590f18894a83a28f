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

bool LayerValue::operator==(const LayerValue &other) const
{
    return name == other.name && state == other.state && isErased == other.isErased;
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

int Drawing::addNewLayer(Layer layer)
{
    const int index = addLayer(std::move(layer));
    LayerValue before = layerValue(index);
    before.isErased = true;
    kept.layers.emplace(index, std::move(before));
    return index;
}

LayerValue Drawing::layerValue(int index) const
{
    const Layer &layer = layers[index];
    return {layer.name, layer.announced, layer.isErased};
}

void Drawing::setLayerValue(int index, const LayerValue &value)
{
    Layer &layer = layers[index];
    LayerValue before = layerValue(index);
    const bool isListedAnew = before.name != value.name || before.isErased != value.isErased;
    kept.layers.try_emplace(index, std::move(before));
    if (isListedAnew)
        unlistLayer(index);
    layer.name = value.name;
    layer.state = layer.announced = value.state;
    layer.isErased = value.isErased;
    if (isListedAnew)
        listLayer(index);
}

void Drawing::listLayer(int index)
{
    Layer &layer = layers[index];
    if (layer.isErased)
        return;
    const QString name = QString::fromStdWString(layer.name);
    const QString stored = storedName(layer);
    layersByName.insert(symbolKey(name), index);
    layer.isRenamed = !layer.nameBytes.isNull() && stored != name;
    if (layer.isRenamed)
        renamedLayers.insert(symbolKey(stored), index);
}

/// Another layer may have the name already, when several change at once.
void Drawing::unlistLayer(int index)
{
    const auto remove = [index](QHash<QString, int> &byName, const QString &name) {
        const auto entry = byName.find(symbolKey(name));
        if (entry != byName.end() && *entry == index)
            byName.erase(entry);
    };
    remove(layersByName, QString::fromStdWString(layers[index].name));
    remove(renamedLayers, storedName(layers[index]));
}

void Drawing::takeOverState(int index)
{
    kept.layers.try_emplace(index, layerValue(index));
    layers[index].announced = layers[index].state;
}

void Drawing::setCurrentLayer(int index)
{
    if (!kept.currentLayer)
        kept.currentLayer = currentLayer;
    currentLayer = index;
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
