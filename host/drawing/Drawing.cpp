// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Drawing.h"

#include <algorithm>
#include <array>

namespace Embedded {

namespace {

constexpr std::array<int, 27> kLineWeights = {-3, -2, -1,  0,   5,   9,   13,  15,  18,
                                              20, 25, 30,  35,  40,  50,  53,  60,  70,
                                              80, 90, 100, 106, 120, 140, 158, 200, 211};

} // namespace

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

ByteRange Drawing::entityRecord(int number) const
{
    const auto next = std::upper_bound(
            entities.begin(), entities.end(), number,
            [](int wanted, const EntitySection &section) { return wanted < section.firstNumber; });
    if (next == entities.begin())
        return {};
    const EntitySection &section = *(next - 1);
    const auto index = static_cast<std::size_t>(number - section.firstNumber);
    if (index >= section.records.size())
        return {};
    const bool isLast = index + 1 == section.records.size();
    const ByteRange record = {section.records[index],
                              isLast ? section.bytes.end : section.records[index + 1]};
    DxfTokens tokens(bytes, record);
    tokens.next();
    const std::string_view type = trimmed(tokens.view(tokens.group().value));
    return type == "BLOCK" || type == "ENDBLK" || type == "SEQEND" ? ByteRange() : record;
}

int Drawing::layerOf(ByteRange entityRecord) const
{
    DxfTokens tokens(bytes, entityRecord);
    DxfEntityPlace place;
    QString name;
    while (!place.hasLayer && tokens.next() == DxfTokens::Step::Group) {
        if (place.advance(tokens) == DxfEntityPlace::Names::OwnLayer)
            name = text.decode(tokens.view(tokens.group().value));
    }
    const int layer = name.trimmed().isEmpty() ? -1 : findStoredLayer(name);
    return layer < 0 ? findLayer(QStringLiteral("0")) : layer;
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
    renamedLayers.remove(symbolKey(storedName(layer)));
    layersByName.remove(symbolKey(QString::fromStdWString(layer.name)));
}

void Drawing::renameLayer(int index, const QString &name)
{
    Layer &layer = layers[index];
    layersByName.remove(symbolKey(QString::fromStdWString(layer.name)));
    layersByName.insert(symbolKey(name), index);
    layer.name = name.toStdWString();
    if (layer.nameBytes.isNull())
        return;
    const QString stored = storedName(layer);
    layer.isRenamed = stored != name;
    if (layer.isRenamed)
        renamedLayers.insert(symbolKey(stored), index);
    else
        renamedLayers.remove(symbolKey(stored));
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
