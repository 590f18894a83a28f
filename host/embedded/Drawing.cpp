#include "Drawing.h"

#include <algorithm>

namespace Embedded {

bool LayerState::operator==(const LayerState &other) const
{
    return isOff == other.isOff && isFrozen == other.isFrozen && isLocked == other.isLocked
           && isPlottable == other.isPlottable;
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

int Drawing::addLayer(Layer layer)
{
    const int index = static_cast<int>(layers.size());
    layersByName.insert(symbolKey(QString::fromStdWString(layer.name)), index);
    layers.push_back(std::move(layer));
    return index;
}

void Drawing::eraseLayer(int index)
{
    Layer &layer = layers[index];
    layer.isErased = true;
    layersByName.remove(symbolKey(QString::fromStdWString(layer.name)));
}

void Drawing::renameLayer(int index, const QString &name)
{
    Layer &layer = layers[index];
    layersByName.remove(symbolKey(QString::fromStdWString(layer.name)));
    layersByName.insert(symbolKey(name), index);
    layer.name = name.toStdWString();
    layer.isRenamed = !layer.nameBytes.isNull() && storedName(layer) != name;
}

QString Drawing::storedName(const Layer &layer) const
{
    const ByteRange range = layer.nameBytes;
    return range.isNull() ? QString()
                          : text.decode({bytes.constData() + range.begin,
                                         static_cast<std::size_t>(range.end - range.begin)});
}

QString symbolKey(const QString &name)
{
    return name.toCaseFolded();
}

} // namespace Embedded
