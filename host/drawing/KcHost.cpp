// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "KcHost.h"

#include "Colors.h"
#include "Database.h"
#include "DxfReader.h"
#include "DxfWriter.h"
#include "HostServices.h"
#include "LayerContents.h"

#include <QCoreApplication>

#include <algorithm>
#include <new>
#include <utility>

using namespace Kcore;
using Embedded::Drawing;
using Embedded::DxfReader;
using Embedded::DxfWriter;
using Embedded::EntityColor;
using Embedded::EntityProperties;

namespace KcHost {

namespace {

/// Of a name or another text.
constexpr int kLongestText = 255;
const QLatin1String kForbidden("<>/\\\":;?*|=");

QString sentence(const QString &fileName, const QString &reason)
{
    return QStringLiteral("%1: %2.").arg(fileName, reason);
}

/// What is left when there is no room for a drawing or for its file.
QString outOfMemory()
{
    return QStringLiteral("there is not enough memory for it");
}

bool isControl(QChar character)
{
    return character.category() == QChar::Other_Control;
}

bool isValidName(const QString &name)
{
    const auto isForbidden = [](QChar character) {
        return isControl(character) || kForbidden.contains(character);
    };
    return !name.trimmed().isEmpty() && name.size() <= kLongestText && name.isValidUtf16()
           && std::none_of(name.begin(), name.end(), isForbidden);
}

/// Finds a layer that may go or take another name, which "0" may not.
ErrorStatus findOwnLayer(const Drawing &data, const QString &name, int &index)
{
    index = data.findLayer(name);
    if (index < 0)
        return eKeyNotFound;
    return data.layers[index].name == L"0" ? eCannotBeErasedByCaller : eOk;
}

/// Whether nobody has the layer's record open.
ErrorStatus checkUnopened(KcDbDatabase &drawing, int index)
{
    return KcDbObjectAccess::check(KcDbObjectAccess::layerRecord(drawing, index), KcDb::kForWrite);
}

/// Finds a layer that may go.
ErrorStatus findErasable(const Drawing &data, const QString &name, int &index)
{
    const ErrorStatus status = findOwnLayer(data, name, index);
    return status == eOk && index == data.currentLayer ? eLayerIsCurrent : status;
}

/// Makes known that a layer is gone, and what became of what lay on it. The drawing may go meanwhile.
void announceErased(KcDbDatabase &drawing, int layer, const std::vector<int> &records)
{
    const std::wstring name = KcDbObjectAccess::drawing(drawing).layers[layer].name;
    KcDbObjectAccess::announceEntities(drawing, records);
    Embedded::announceChange(name);
}

QString linetypeName(const Drawing &data, int linetype)
{
    if (linetype == Embedded::kLinetypeByLayer)
        return QStringLiteral("ByLayer");
    return linetype == Embedded::kLinetypeByBlock
                   ? QStringLiteral("ByBlock")
                   : QString::fromStdWString(data.linetypes[linetype]);
}

EntityColor trueColorOf(quint32 rgb)
{
    const int number = static_cast<int>(rgb & 0xFFFFFF);
    return {Embedded::nearestIndexColor(number), number};
}

bool isInRange(const LayerChange &change)
{
    const auto isColor = [](int index) { return index > 0 && index < Embedded::kColorByLayer; };
    const auto isWeight = [](int weight) {
        return Embedded::isLineWeight(weight)
               && (weight >= 0 || weight == Embedded::kDefaultLineWeight);
    };
    const auto isText = [](const QString &text) {
        return text.size() <= kLongestText && text.isValidUtf16()
               && std::none_of(text.begin(), text.end(), isControl);
    };
    return (!change.color || (isColor(*change.color) && !change.trueColor))
           && (!change.lineWeight || isWeight(*change.lineWeight))
           && (!change.description || isText(*change.description));
}

bool isInRange(const EntityChange &change)
{
    const auto isColor = [](int index) { return index >= 0 && index <= Embedded::kColorByLayer; };
    return (!change.color || (isColor(*change.color) && !change.trueColor))
           && (!change.lineWeight || Embedded::isLineWeight(*change.lineWeight));
}

} // namespace

std::unique_ptr<KcDbDatabase> newDrawing()
{
    return readDrawing(QStringLiteral(":/KcHost/new-drawing.dxf"));
}

std::unique_ptr<KcDbDatabase> readDrawing(const QString &fileName, QString *error,
                                          QStringList *warnings)
{
    QString reason;
    try {
        Embedded::DrawingFile file;
        const QByteArray bytes = file.read(fileName, reason);
        if (reason.isNull()) {
            DxfReader reader(fileName, bytes);
            std::optional<Drawing> drawing = reader.read();
            if (error)
                *error = reader.error();
            if (warnings)
                *warnings = reader.warnings();
            if (!drawing)
                return nullptr;
            drawing->file = std::move(file);
            return KcDbObjectAccess::makeDatabase(std::move(*drawing));
        }
    } catch (const std::bad_alloc &) {
        reason = outOfMemory();
    }
    if (error)
        *error = sentence(fileName, reason);
    return nullptr;
}

bool writeDrawing(KcDbDatabase &drawing, const QString &fileName, QString *error,
                  QStringList *warnings)
{
    Drawing &data = KcDbObjectAccess::drawing(drawing);
    QString reason;
    QStringList losses;
    try {
        DxfWriter writer(data);
        const QByteArray bytes = writer.write();
        losses = writer.losses();
        if (bytes.isNull())
            reason = QStringLiteral("the file would be larger than 2 GB");
        else
            data.file.write(fileName, bytes, reason);
    } catch (const std::bad_alloc &) {
        reason = outOfMemory();
    }
    if (error)
        *error = reason.isNull() ? QString() : sentence(fileName, reason);
    if (warnings) {
        warnings->clear();
        for (const QString &loss : std::as_const(losses))
            *warnings += sentence(fileName, loss);
    }
    if (reason.isNull())
        KcDbObjectAccess::journal(drawing).noteSaved();
    return reason.isNull();
}

bool isFileChanged(const KcDbDatabase &drawing)
{
    return KcDbObjectAccess::drawing(drawing).file.isChanged();
}

QByteArray fileContent(const KcDbDatabase &drawing)
{
    return KcDbObjectAccess::drawing(drawing).bytes;
}

void setWorkingDatabase(KcDbDatabase *drawing)
{
    Embedded::setWorkingDatabase(drawing);
    if (drawing) {
        setVariable(QStringLiteral("TILEMODE"),
                    KcDbObjectAccess::drawing(*drawing).isInModelSpace ? 1 : 0);
    }
}

void setVariable(const QString &name, int value)
{
    Embedded::setVariable(name, value);
}

void setLayerTableChangesHandler(std::function<void()> handler)
{
    Embedded::setLayerTableChangesHandler(std::move(handler));
}

void setLayerModifiedHandler(std::function<void(const QString &)> handler)
{
    Embedded::setLayerModifiedHandler(std::move(handler));
}

void setEntityModifiedHandler(std::function<void(int)> handler)
{
    Embedded::setEntityModifiedHandler(std::move(handler));
}

int openObjectCount()
{
    return KcDbObjectAccess::openCount;
}

ErrorStatus addLayer(KcDbDatabase &drawing, const QString &name)
{
    if (!isValidName(name))
        return eInvalidInput;
    if (KcDbObjectAccess::drawing(drawing).findLayer(name) >= 0)
        return eDuplicateKey;
    const ErrorStatus status =
            KcDbObjectAccess::check(KcDbObjectAccess::layerTable(drawing), KcDb::kForWrite);
    if (status != eOk)
        return status;
    {
        const UndoGroup step(drawing, QCoreApplication::translate("KcHost", "Add layer"));
        KcDbObjectAccess::addLayer(drawing, name);
    }
    Embedded::announceChange(name.toStdWString());
    return eOk;
}

ErrorStatus eraseLayer(KcDbDatabase &drawing, const QString &name)
{
    Drawing &data = KcDbObjectAccess::drawing(drawing);
    int index = -1;
    if (const ErrorStatus status = findErasable(data, name, index); status != eOk)
        return status;
    if (data.layers[index].records > 0)
        return eLayerInUse;
    if (const ErrorStatus status = checkUnopened(drawing, index); status != eOk)
        return status;
    {
        const UndoGroup step(drawing, QCoreApplication::translate("KcHost", "Erase layer"));
        data.eraseLayer(index);
    }
    KcDbObjectAccess::announceLayer(drawing, index);
    return eOk;
}

ErrorStatus mergeLayer(KcDbDatabase &drawing, const QString &name, const QString &into)
{
    Drawing &data = KcDbObjectAccess::drawing(drawing);
    const int target = data.findLayer(into);
    int index = -1;
    if (const ErrorStatus status = findErasable(data, name, index); status != eOk)
        return status;
    if (target < 0)
        return eKeyNotFound;
    if (target == index)
        return eInvalidInput;
    if (const ErrorStatus status = checkUnopened(drawing, index); status != eOk)
        return status;
    std::vector<int> moved;
    {
        const UndoGroup step(drawing, QCoreApplication::translate("KcHost", "Merge layer"));
        moved = Embedded::moveContents(data, index, target);
        data.eraseLayer(index);
    }
    announceErased(drawing, index, moved);
    return eOk;
}

ErrorStatus eraseLayerWithEntities(KcDbDatabase &drawing, const QString &name)
{
    Drawing &data = KcDbObjectAccess::drawing(drawing);
    int index = -1;
    if (const ErrorStatus status = findErasable(data, name, index); status != eOk)
        return status;
    if (const ErrorStatus status = checkUnopened(drawing, index); status != eOk)
        return status;
    std::vector<int> changed;
    {
        const UndoGroup step(drawing, QCoreApplication::translate("KcHost", "Erase layer"));
        changed = Embedded::eraseContents(data, index);
        data.eraseLayer(index);
    }
    announceErased(drawing, index, changed);
    return eOk;
}

QHash<QString, int> layerUsage(const KcDbDatabase &drawing)
{
    QHash<QString, int> usage;
    for (const Embedded::Layer &layer : KcDbObjectAccess::drawing(drawing).layers) {
        if (layer.records > 0)
            usage.insert(QString::fromStdWString(layer.name), layer.records);
    }
    return usage;
}

ErrorStatus renameLayer(KcDbDatabase &drawing, const QString &name, const QString &newName)
{
    Drawing &data = KcDbObjectAccess::drawing(drawing);
    int index = -1;
    if (const ErrorStatus status = findOwnLayer(data, name, index); status != eOk)
        return status;
    if (!isValidName(newName))
        return eInvalidInput;
    if (const int namesake = data.findLayer(newName); namesake >= 0 && namesake != index)
        return eDuplicateKey;
    const ErrorStatus status = checkUnopened(drawing, index);
    const std::wstring newText = newName.toStdWString();
    if (status != eOk || data.layers[index].name == newText)
        return status;
    {
        const UndoGroup step(drawing, QCoreApplication::translate("KcHost", "Rename layer"));
        data.renameLayer(index, newName);
    }
    KcDbObjectAccess::announceLayer(drawing, index);
    return eOk;
}

ErrorStatus setCurrentLayer(KcDbDatabase &drawing, const QString &name)
{
    Drawing &data = KcDbObjectAccess::drawing(drawing);
    const int index = data.findLayer(name);
    if (index < 0)
        return eKeyNotFound;
    if (index != data.currentLayer) {
        {
            const UndoGroup step(drawing,
                                 QCoreApplication::translate("KcHost", "Change current layer"));
            data.setCurrentLayer(index);
        }
        KcDbObjectAccess::announceLayer(drawing, index);
    }
    return eOk;
}

ErrorStatus changeLayer(KcDbDatabase &drawing, const QString &name, const LayerChange &change)
{
    Drawing &data = KcDbObjectAccess::drawing(drawing);
    if (!isInRange(change))
        return eInvalidInput;
    const int index = data.findLayer(name);
    const int linetype = change.linetype ? data.findLinetype(*change.linetype) : 0;
    if (index < 0 || linetype < 0)
        return eKeyNotFound;
    if (const ErrorStatus status = checkUnopened(drawing, index); status != eOk)
        return status;

    Embedded::LayerValue value = data.layerValue(index);
    Embedded::LayerState &state = value.state;
    if (change.color || change.trueColor) {
        const EntityColor color =
                change.color ? EntityColor{*change.color, -1} : trueColorOf(*change.trueColor);
        state.color = color.index;
        state.trueColor = color.trueColor;
    }
    state.lineWeight = change.lineWeight.value_or(state.lineWeight);
    if (change.linetype)
        state.linetype = linetype;
    if (change.description)
        state.description = change.description->toStdWString();
    if (state == data.layers[index].state)
        return eOk;
    {
        const UndoGroup step(drawing, QCoreApplication::translate("KcHost", "Change layer"));
        data.setLayerValue(index, value);
    }
    KcDbObjectAccess::announceLayer(drawing, index);
    return eOk;
}

ErrorStatus changeEntity(KcDbDatabase &drawing, int entity, const EntityChange &change)
{
    Drawing &data = KcDbObjectAccess::drawing(drawing);
    if (!isInRange(change))
        return eInvalidInput;
    EntityProperties properties = data.entity(entity);
    if (change.linetype)
        properties.linetype = data.findLinetype(*change.linetype);
    if (change.layer)
        properties.layer = data.findLayer(*change.layer);
    if (data.entityRecord(entity).isNull() || properties.linetype == Embedded::kNoLinetype
        || properties.layer == -1)
        return eKeyNotFound;
    if (properties.isErased)
        return eWasErased;
    if (data.layers[data.layersOf(entity).front()].state.isLocked)
        return eOnLockedLayer;

    if (change.color)
        properties.color = {*change.color, -1};
    else if (change.trueColor)
        properties.color = trueColorOf(*change.trueColor);
    if (change.lineWeight)
        properties.lineWeight = change.lineWeight;
    std::vector<int> changed;
    {
        const UndoGroup step(drawing, QCoreApplication::translate("KcHost", "Change entity"));
        changed = Embedded::changeEntity(data, entity, properties);
    }
    KcDbObjectAccess::announceEntities(drawing, changed);
    return eOk;
}

EntityChange changesOf(const KcDbDatabase &drawing, int entity)
{
    const Drawing &data = KcDbObjectAccess::drawing(drawing);
    const EntityProperties properties = data.entity(entity);
    EntityChange change;
    if (properties.isErased)
        return change;
    if (properties.color && properties.color->trueColor >= 0)
        change.trueColor = static_cast<quint32>(properties.color->trueColor);
    else if (properties.color)
        change.color = properties.color->index;
    change.lineWeight = properties.lineWeight;
    if (properties.linetype)
        change.linetype = linetypeName(data, *properties.linetype);
    if (properties.layer)
        change.layer = QString::fromStdWString(data.layers[*properties.layer].name);
    return change;
}

bool isErased(const KcDbDatabase &drawing, int entity)
{
    return KcDbObjectAccess::drawing(drawing).entity(entity).isErased;
}

int colorIndex(quint32 rgb)
{
    const EntityColor color = trueColorOf(rgb);
    const Embedded::Rgb nearest = Embedded::indexColor(color.index);
    const Embedded::Rgb wanted = Embedded::trueColor(color.trueColor);
    const bool isExact = nearest.red == wanted.red && nearest.green == wanted.green
                         && nearest.blue == wanted.blue;
    return isExact ? color.index : 0;
}

QStringList linetypes(const KcDbDatabase &drawing)
{
    const Drawing &data = KcDbObjectAccess::drawing(drawing);
    QStringList names;
    for (std::size_t index = 0; index < data.linetypes.size(); ++index) {
        const QString name = QString::fromStdWString(data.linetypes[index]);
        if (data.findLinetype(name) == static_cast<int>(index))
            names += name;
    }
    return names;
}

QString decodeText(const KcDbDatabase &drawing, const QByteArray &bytes)
{
    return KcDbObjectAccess::drawing(drawing).text.decode(
            {bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

} // namespace KcHost
