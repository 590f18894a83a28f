// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerStates.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>

namespace Tessa {

namespace {

/// No file of states that a program has written is nearly as large.
constexpr qint64 mostBytes = qint64(256) * 1024 * 1024;

QString statesFileOf(const QString &drawingFile)
{
    const QFileInfo drawing(drawingFile);
    return drawingFile.isEmpty() ? QString()
                                 : drawing.path() + QLatin1Char('/') + drawing.completeBaseName()
                                           + QLatin1String(".states.json");
}

QString nameOf(const QString &path)
{
    return QFileInfo(path).fileName();
}

/// @param[out] reason why there are none, where the file is there
QJsonObject readStates(const QString &path, QString &reason)
{
    QFile file(path);
    if (path.isEmpty() || !file.exists())
        return {};
    if (file.size() > mostBytes || !file.open(QIODevice::ReadOnly)) {
        reason = file.isOpen() || file.error() == QFile::NoError
                         ? LayerStates::tr("it is too large")
                         : file.errorString();
        return {};
    }
    QJsonParseError error;
    const QJsonDocument content = QJsonDocument::fromJson(file.readAll(), &error);
    if (content.isObject())
        return content.object();
    reason = error.error == QJsonParseError::NoError
                     ? LayerStates::tr("it is no object of states by name")
                     : LayerStates::tr("%1 at byte %2").arg(error.errorString()).arg(error.offset);
    return {};
}

/// Renames what is in the way.
bool keepAside(const QString &path)
{
    QString copy = path + QLatin1String(".kept");
    for (int number = 2; QFile::exists(copy); ++number)
        copy = path + QLatin1String(".kept") + QString::number(number);
    return QFile::rename(path, copy);
}

} // namespace

void LayerStates::open(const QString &drawingFile, QString *error)
{
    m_fileName = statesFileOf(drawingFile);
    m_unwritten = {};
    QString reason;
    m_states = readStates(m_fileName, reason);
    if (!reason.isEmpty())
        *error = tr("The layer states in %1 cannot be read: %2.").arg(nameOf(m_fileName), reason);
}

bool LayerStates::moveTo(const QString &drawingFile, QString *error)
{
    const QString fileName = statesFileOf(drawingFile);
    if (fileName != m_fileName)
        m_unwritten = m_states;
    m_fileName = fileName;
    return m_unwritten.isEmpty() || write(error);
}

OvCc::LayerState LayerStates::state(const QString &name, QString *error) const
{
    const QByteArray json = QJsonDocument(m_states.value(name).toObject()).toJson();
    return OvCc::LayerState::fromJson(json, error);
}

bool LayerStates::save(const QString &name, const OvCc::LayerState &state, QString *error)
{
    return change(name, QJsonDocument::fromJson(state.toJson()).object(), error);
}

bool LayerStates::remove(const QString &name, QString *error)
{
    return change(name, QJsonValue::Null, error);
}

bool LayerStates::change(const QString &name, const QJsonValue &value, QString *error)
{
    m_unwritten.insert(name, value);
    return write(error);
}

/// Puts the changes over what the file says now.
bool LayerStates::write(QString *error)
{
    QString reason;
    QJsonObject states = readStates(m_fileName, reason);
    const bool isKept = reason.isEmpty() || keepAside(m_fileName);
    for (auto change = m_unwritten.constBegin(); change != m_unwritten.constEnd(); ++change) {
        for (QJsonObject *target : {&states, &m_states}) {
            if (change->isNull())
                target->remove(change.key());
            else
                target->insert(change.key(), *change);
        }
    }
    QSaveFile file(m_fileName);
    const QByteArray json = QJsonDocument(states).toJson();
    if (!isKept || !file.open(QIODevice::WriteOnly) || file.write(json) != json.size()
        || !file.commit()) {
        *error = tr("%1 cannot be written, so the layer states are lost with the window: %2.")
                         .arg(nameOf(m_fileName), isKept ? file.errorString() : reason);
        return false;
    }
    m_states = states;
    m_unwritten = {};
    return true;
}

} // namespace Tessa
