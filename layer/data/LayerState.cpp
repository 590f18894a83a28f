// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerState.h"

#include "layer/data/HostRecords.h"
#include "layer/data/LayerFlags.h"

#include <OvCustomControl/OvLayerUtility.h>

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QSharedData>

#include <limits>
#include <optional>

namespace OvCc {

namespace {

struct StateTexts
{
    Q_DECLARE_TR_FUNCTIONS(OvCc::LayerState)
};

constexpr int formatVersion = 1;

/// The flags by the places of flagColumns.
struct StateFlag
{
    bool LayerState::Layer::*value;
    const char *key;
};

constexpr std::array<StateFlag, flagColumns.size()> stateFlags{{
        {&LayerState::Layer::isOn, "on"},
        {&LayerState::Layer::isThawed, "thawed"},
        {&LayerState::Layer::isUnlocked, "unlocked"},
        {&LayerState::Layer::isPlotted, "plot"},
}};

LayerState::Layer layerOf(const KcDbLayerTableRecord &record)
{
    LayerState::Layer layer;
    const SomeFlags flags = shownFlags(record);
    for (size_t place = 0; place < stateFlags.size(); ++place)
        layer.*stateFlags.at(place).value = *flags.at(place);
    layer.color = rgbOf(record.color());
    layer.linetype = symbolName(record.linetypeObjectId());
    layer.lineWeight = record.lineWeight();
    return layer;
}

QJsonObject jsonOf(const QString &name, const LayerState::Layer &layer)
{
    QJsonObject json{{QStringLiteral("name"), name},
                     {QStringLiteral("color"), layer.color.name()},
                     {QStringLiteral("linetype"), layer.linetype},
                     {QStringLiteral("lineweight"), layer.lineWeight}};
    for (const StateFlag &flag : stateFlags)
        json.insert(QLatin1String(flag.key), layer.*flag.value);
    return json;
}

/// Takes values out of JSON until the first one is found that is not as it is to be.
class Reader
{
public:
    QString error; ///< a sentence; empty while all is well

    LayerState read(const QByteArray &json)
    {
        QJsonParseError parsing;
        const QJsonDocument document = QJsonDocument::fromJson(json, &parsing);
        if (parsing.error != QJsonParseError::NoError) {
            error = StateTexts::tr("This is no layer state: %1 at byte %2.")
                            .arg(parsing.errorString())
                            .arg(parsing.offset);
        } else if (!document.isObject()) {
            error = StateTexts::tr("This is no layer state: it is not an object.");
        }
        const LayerState state = stateOf(document.object());
        return error.isEmpty() ? state : LayerState();
    }

private:
    LayerState stateOf(const QJsonObject &json)
    {
        const int version = number(json, {}, QLatin1String("version"));
        if (error.isEmpty() && version != formatVersion)
            fail(QStringLiteral("version"),
                 StateTexts::tr("is %1, which is not known").arg(version));
        LayerState state;
        state.setCurrentLayer(text(json, {}, QLatin1String("current")));
        const QJsonArray layers = value(json, {}, QLatin1String("layers"), QJsonValue::Array,
                                        StateTexts::tr("is not a list"))
                                          .toArray();
        for (int place = 0; place < layers.size() && error.isEmpty(); ++place)
            readLayer(layers.at(place), QStringLiteral("layers[%1]").arg(place), state);
        return state;
    }

    void readLayer(const QJsonValue &json, const QString &place, LayerState &state)
    {
        if (!json.isObject()) {
            fail(place, StateTexts::tr("is not an object"));
            return;
        }
        const QJsonObject object = json.toObject();
        const QString within = place + QLatin1Char('.');
        const QString name = text(object, within, QLatin1String("name"));
        if (error.isEmpty() && state.contains(name))
            fail(within + QLatin1String("name"), StateTexts::tr("is there twice"));
        LayerState::Layer layer;
        for (const StateFlag &flag : stateFlags)
            layer.*flag.value = value(object, within, QLatin1String(flag.key), QJsonValue::Bool,
                                      StateTexts::tr("is not true or false"))
                                        .toBool();
        layer.color = color(object, within, QLatin1String("color"));
        layer.linetype = text(object, within, QLatin1String("linetype"));
        layer.lineWeight = number(object, within, QLatin1String("lineweight"));
        state.insert(name, layer);
    }

    QJsonValue value(const QJsonObject &json, const QString &within, QLatin1String key,
                     QJsonValue::Type type, const QString &complaint)
    {
        const QJsonValue found = json.value(key);
        if (found.isUndefined())
            fail(within + key, StateTexts::tr("is missing"));
        else if (found.type() != type)
            fail(within + key, complaint);
        return found;
    }

    QString text(const QJsonObject &json, const QString &within, QLatin1String key)
    {
        return value(json, within, key, QJsonValue::String, StateTexts::tr("is not a text"))
                .toString();
    }

    int number(const QJsonObject &json, const QString &within, QLatin1String key)
    {
        const QString complaint = StateTexts::tr("is not a whole number of usual size");
        const double found = value(json, within, key, QJsonValue::Double, complaint).toDouble();
        if (found < std::numeric_limits<int>::min() || found > std::numeric_limits<int>::max()
            || found != int(found)) {
            fail(within + key, complaint);
            return 0;
        }
        return int(found);
    }

    QColor color(const QJsonObject &json, const QString &within, QLatin1String key)
    {
        const QString name = text(json, within, key);
        const QColor color(name);
        if (name.size() != 7 || !name.startsWith(QLatin1Char('#')) || !color.isValid())
            fail(within + key, StateTexts::tr("is not a color such as \"#ff0000\""));
        return color;
    }

    /// The first complaint counts.
    void fail(const QString &place, const QString &complaint)
    {
        if (error.isEmpty())
            error = StateTexts::tr("This is no layer state: \"%1\" %2.").arg(place, complaint);
    }
};

} // namespace

bool LayerState::Layer::operator==(const Layer &other) const
{
    return isOn == other.isOn && isThawed == other.isThawed && isUnlocked == other.isUnlocked
           && isPlotted == other.isPlotted && color == other.color && linetype == other.linetype
           && lineWeight == other.lineWeight;
}

bool LayerState::Layer::operator!=(const Layer &other) const
{
    return !(*this == other);
}

struct LayerState::Data : QSharedData
{
    QMap<QString, Layer> layers;
    QString current;
};

LayerState::LayerState()
    : m_d(new Data)
{
}

LayerState::LayerState(const LayerState &other) = default;

LayerState &LayerState::operator=(const LayerState &other) = default;

LayerState::~LayerState() = default;

LayerState LayerState::capture()
{
    LayerState state;
    LayerItemData current;
    if (OvLayerUtility().getCurrentLayer(current))
        state.m_d->current = current.name;
    QMap<QString, Layer> &layers = state.m_d->layers;
    walkLayers(getCurrentDb(), [&layers](const KcDbLayerTableRecord &record) {
        const QString name = layerName(record);
        if (!layers.contains(name))
            layers.insert(name, layerOf(record));
        return true;
    });
    return state;
}

QStringList LayerState::restore() const
{
    FlagOrders orders = ordersOf(*this);
    setLayerFlags(orders);
    return refusedIn(orders);
}

bool LayerState::isEmpty() const
{
    return m_d->layers.isEmpty();
}

QStringList LayerState::names() const
{
    return m_d->layers.keys();
}

bool LayerState::contains(const QString &name) const
{
    return m_d->layers.contains(name);
}

LayerState::Layer LayerState::layer(const QString &name) const
{
    return m_d->layers.value(name);
}

void LayerState::insert(const QString &name, const Layer &layer)
{
    Layer &inserted = m_d->layers[name];
    inserted = layer;
    inserted.color = QColor(layer.color.red(), layer.color.green(), layer.color.blue());
}

void LayerState::remove(const QString &name)
{
    m_d->layers.remove(name);
}

QString LayerState::currentLayer() const
{
    return m_d->current;
}

void LayerState::setCurrentLayer(const QString &name)
{
    m_d->current = name;
}

bool LayerState::operator==(const LayerState &other) const
{
    return m_d->current == other.m_d->current && m_d->layers == other.m_d->layers;
}

bool LayerState::operator!=(const LayerState &other) const
{
    return !(*this == other);
}

QByteArray LayerState::toJson() const
{
    QJsonArray layers;
    for (auto layer = m_d->layers.cbegin(); layer != m_d->layers.cend(); ++layer)
        layers.append(jsonOf(layer.key(), *layer));
    return QJsonDocument(QJsonObject{{QStringLiteral("version"), formatVersion},
                                     {QStringLiteral("current"), m_d->current},
                                     {QStringLiteral("layers"), layers}})
            .toJson();
}

LayerState LayerState::fromJson(const QByteArray &json, QString *error)
{
    Reader reader;
    const LayerState state = reader.read(json);
    if (error)
        *error = reader.error;
    return state;
}

SomeFlags flagsOf(const LayerState::Layer &layer)
{
    SomeFlags flags;
    for (size_t place = 0; place < stateFlags.size(); ++place)
        flags.at(place) = layer.*stateFlags.at(place).value;
    return flags;
}

FlagOrders ordersOf(const LayerState &state)
{
    FlagOrders orders;
    const QStringList names = state.names();
    orders.reserve(size_t(names.size()));
    for (const QString &name : names)
        orders.push_back({name, flagsOf(state.layer(name))});
    return orders;
}

} // namespace OvCc
