// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerStates.h"

#include "ReplaceFile.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <cerrno>

#include <sys/stat.h>

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

/// What a file of states holds.
struct Found
{
    QJsonObject states;
    QString reason;  ///< why there are none, where the file is there
    QByteArray rest; ///< what it holds instead; null where that is not known
};

Found readStates(const QString &path)
{
    struct stat status = {};
    if (path.isEmpty())
        return {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return {{}, errno == ENOENT ? QString() : qt_error_string(errno), {}};
    if (!S_ISREG(status.st_mode)) // to open a pipe would be to wait for somebody at its other end
        return {{}, LayerStates::tr("it is no file"), {}};
    if (status.st_size > mostBytes)
        return {{}, LayerStates::tr("it is too large"), {}};
    QFile file(path);
    const QByteArray json = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    if (file.error() != QFile::NoError)
        return {{}, file.errorString(), {}};
    QJsonParseError error;
    const QJsonDocument content = QJsonDocument::fromJson(json, &error);
    if (content.isObject())
        return {content.object(), {}, {}};
    const QString reason =
            error.error == QJsonParseError::NoError
                    ? LayerStates::tr("it is no object of states by name")
                    : LayerStates::tr("%1 at byte %2").arg(error.errorString()).arg(error.offset);
    return {{}, reason, json.isNull() ? QByteArray("") : json};
}

/// Whether a file is there that has this content.
bool holds(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.readAll() == content;
}

/// Writes what is in the way to a second file, unless there is such a one.
/// @return 0, or the errno
int keepAside(const QString &path, const QByteArray &content)
{
    QString copy = path + QLatin1String(".kept");
    for (int number = 2; QFile::exists(copy) && !holds(copy, content); ++number)
        copy = path + QLatin1String(".kept") + QString::number(number);
    return QFile::exists(copy) ? 0 : OvCc::Files::replaceFile(QFile::encodeName(copy), content);
}

/// @return 0, or the errno
int replaceStates(const QString &path, const Found &old, const QJsonObject &states)
{
    const int error = old.rest.isNull() ? 0 : keepAside(path, old.rest);
    const QByteArray json = QJsonDocument(states).toJson();
    return error == 0 ? OvCc::Files::replaceFile(QFile::encodeName(path), json) : error;
}

} // namespace

void LayerStates::open(const QString &drawingFile, QString *error)
{
    m_fileName = statesFileOf(drawingFile);
    m_unwritten = {};
    const Found found = readStates(m_fileName);
    m_states = found.states;
    if (!found.reason.isEmpty())
        *error = tr("The layer states in %1 cannot be read: %2.")
                         .arg(nameOf(m_fileName), found.reason);
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
    const Found found = readStates(m_fileName);
    QJsonObject states = found.states;
    for (auto change = m_unwritten.constBegin(); change != m_unwritten.constEnd(); ++change) {
        for (QJsonObject *target : {&states, &m_states}) {
            if (change->isNull())
                target->remove(change.key());
            else
                target->insert(change.key(), *change);
        }
    }
    QString reason = found.rest.isNull() ? found.reason : QString(); // it cannot be read
    const int failure = reason.isEmpty() ? replaceStates(m_fileName, found, states) : 0;
    if (failure != 0)
        reason = qt_error_string(failure);
    if (!reason.isEmpty()) {
        *error = tr("%1 cannot be written, so the layer states are lost with the window: %2.")
                         .arg(nameOf(m_fileName), reason);
        return false;
    }
    m_states = states;
    m_unwritten = {};
    return true;
}

} // namespace Tessa
