// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "KcHost.h"

#include "Colors.h"
#include "Database.h"
#include "DxfReader.h"
#include "DxfWriter.h"
#include "HostServices.h"

#include <algorithm>
#include <new>
#include <utility>

using namespace Kcore;
using Embedded::Drawing;
using Embedded::DxfReader;
using Embedded::DxfWriter;
using Embedded::EntityProperties;

namespace KcHost {

namespace {

constexpr int kLongestName = 255;
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

bool isValidName(const QString &name)
{
    const auto isForbidden = [](QChar character) {
        return character.category() == QChar::Other_Control || kForbidden.contains(character);
    };
    return !name.trimmed().isEmpty() && name.size() <= kLongestName && name.isValidUtf16()
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
    KcDbObjectAccess::addLayer(drawing, name);
    Embedded::announceChange(name.toStdWString());
    return eOk;
}

ErrorStatus eraseLayer(KcDbDatabase &drawing, const QString &name)
{
    Drawing &data = KcDbObjectAccess::drawing(drawing);
    int index = -1;
    if (const ErrorStatus status = findOwnLayer(data, name, index); status != eOk)
        return status;
    if (index == data.currentLayer)
        return eLayerIsCurrent;
    if (data.layers[index].records > 0)
        return eLayerInUse;
    if (const ErrorStatus status = checkUnopened(drawing, index); status != eOk)
        return status;
    data.eraseLayer(index);
    Embedded::announceChange(data.layers[index].name);
    return eOk;
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
    data.renameLayer(index, newName);
    Embedded::announceChange(newText);
    return eOk;
}

ErrorStatus setCurrentLayer(KcDbDatabase &drawing, const QString &name)
{
    Drawing &data = KcDbObjectAccess::drawing(drawing);
    const int index = data.findLayer(name);
    if (index < 0)
        return eKeyNotFound;
    if (index != data.currentLayer) {
        data.currentLayer = index;
        Embedded::announceChange(data.layers[index].name);
    }
    return eOk;
}

ErrorStatus changeEntity(KcDbDatabase &drawing, int entity, const EntityChange &change)
{
    Drawing &data = KcDbObjectAccess::drawing(drawing);
    if (!isInRange(change))
        return eInvalidInput;
    std::optional<int> linetype;
    if (change.linetype)
        linetype = data.findLinetype(*change.linetype);
    const Embedded::ByteRange record = data.entityRecord(entity);
    if (record.isNull() || linetype == Embedded::kNoLinetype)
        return eKeyNotFound;
    if (data.layers[data.layersOf(entity).front()].state.isLocked)
        return eOnLockedLayer;

    EntityProperties properties = data.entity(entity);
    if (change.color) {
        properties.color = {*change.color, -1};
    } else if (change.trueColor) {
        const int number = static_cast<int>(*change.trueColor & 0xFFFFFF);
        properties.color = {Embedded::nearestIndexColor(number), number};
    }
    if (change.lineWeight)
        properties.lineWeight = change.lineWeight;
    if (linetype)
        properties.linetype = linetype;
    data.setEntity(entity, properties);
    return eOk;
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
