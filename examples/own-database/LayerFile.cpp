// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerFile.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QUuid>

#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

namespace {

constexpr const char *schema[] = {
        "PRAGMA foreign_keys = ON",
        "BEGIN IMMEDIATE",
        "CREATE TABLE IF NOT EXISTS layer ("
        " key INTEGER PRIMARY KEY AUTOINCREMENT,"
        " name TEXT NOT NULL UNIQUE COLLATE NOCASE,"
        " off INTEGER NOT NULL DEFAULT 0, frozen INTEGER NOT NULL DEFAULT 0,"
        " locked INTEGER NOT NULL DEFAULT 0, plottable INTEGER NOT NULL DEFAULT 1,"
        " vpdflt INTEGER NOT NULL DEFAULT 0,"
        " rgb INTEGER NOT NULL DEFAULT 0xffffff, color TEXT NOT NULL DEFAULT 'white',"
        " linetype TEXT NOT NULL DEFAULT 'Continuous', lineweight INTEGER NOT NULL DEFAULT -3,"
        " plotstyle TEXT NOT NULL DEFAULT 'Color-7', description TEXT NOT NULL DEFAULT '')",
        "CREATE TABLE IF NOT EXISTS drawing (current INTEGER NOT NULL REFERENCES layer)",
        "CREATE TRIGGER IF NOT EXISTS current_is_thawed BEFORE UPDATE OF frozen ON layer"
        " WHEN new.frozen AND new.key = (SELECT current FROM drawing)"
        " BEGIN SELECT raise(ABORT, 'the current layer cannot be frozen'); END",
        "INSERT INTO layer (name) SELECT '0' WHERE NOT EXISTS (SELECT * FROM layer)",
        "INSERT INTO drawing SELECT key FROM layer WHERE NOT EXISTS (SELECT * FROM drawing) LIMIT "
        "1",
        "COMMIT",
};

/// The primary results of the database that tell more than that it failed.
enum DatabaseResult { Busy = 5, Constraint = 19 };

} // namespace

LayerFile::LayerFile(const QString &fileName)
    : m_connection(QUuid::createUuid().toString())
{
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
    database.setDatabaseName(fileName);
    // Nobody should wait long for a click.
    database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=100"));
    database.open();
    connect(&m_look, &QTimer::timeout, this, &LayerFile::look);
}

LayerFile::~LayerFile()
{
    QSqlDatabase::removeDatabase(m_connection);
}

std::unique_ptr<LayerFile> LayerFile::open(const QString &fileName, QString *error)
{
    auto file = std::unique_ptr<LayerFile>(new LayerFile(fileName));
    QSqlError fault = QSqlDatabase::database(file->m_connection).lastError();
    for (const char *statement : schema) {
        if (!fault.isValid())
            fault = file->run(QLatin1String(statement)).lastError();
    }
    if (fault.isValid()) {
        if (error)
            *error = QStringLiteral("Cannot open %1: %2.").arg(fileName, fault.databaseText());
        return nullptr;
    }
    file->m_version = file->version();
    file->readAll();
    file->m_look.start(200ms);
    return file;
}

Layer *LayerFile::find(const QString &name) const
{
    const auto found = std::find_if(m_layers.begin(), m_layers.end(), [&](const auto &layer) {
        return !layer->isErased
               && QString::fromStdWString(layer->name).compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == m_layers.end() ? nullptr : found->get();
}

Kcore::ErrorStatus LayerFile::add(const QString &name)
{
    const auto status = change(QStringLiteral("INSERT INTO layer (name) VALUES (?)"), {name});
    if (status == Kcore::eOk) {
        QSqlQuery row = select(QStringLiteral("WHERE name = ?"), {name});
        take(row);
    }
    return status;
}

Kcore::ErrorStatus LayerFile::erase(Layer &layer)
{
    if (layer.name == L"0")
        return Kcore::eRefused;
    const auto status = change(QStringLiteral("DELETE FROM layer WHERE key = ?"), {layer.key});
    layer.isErased = layer.isErased || status == Kcore::eOk;
    return status;
}

Kcore::ErrorStatus LayerFile::rename(Layer &layer, const QString &name)
{
    if (layer.name == L"0")
        return Kcore::eRefused;
    const auto status =
            change(QStringLiteral("UPDATE layer SET name = ? WHERE key = ?"), {name, layer.key});
    if (status == Kcore::eOk)
        layer.name = name.toStdWString();
    return status;
}

Kcore::ErrorStatus LayerFile::makeCurrent(Layer &layer)
{
    const auto status = change(QStringLiteral("UPDATE drawing SET current = ?"), {layer.key});
    if (status == Kcore::eOk)
        m_current = layer.key;
    return status;
}

Kcore::ErrorStatus LayerFile::setFlag(const Layer &layer, const char *column, bool value)
{
    return change(QStringLiteral("UPDATE layer SET %1 = ? WHERE key = ?").arg(column),
                  {int(value), layer.key});
}

Kcore::ErrorStatus LayerFile::setColor(Layer &layer, std::uint32_t rgb)
{
    const QString name =
            QStringLiteral("%1,%2,%3").arg(rgb >> 16 & 0xff).arg(rgb >> 8 & 0xff).arg(rgb & 0xff);
    const auto status = change(QStringLiteral("UPDATE layer SET rgb = ?, color = ? WHERE key = ?"),
                               {rgb, name, layer.key});
    if (status == Kcore::eOk) {
        layer.rgb = rgb;
        layer.colorName = name.toStdWString();
    }
    return status;
}

Kcore::ErrorStatus LayerFile::setLineWeight(Layer &layer, int lineWeight)
{
    const auto status = change(QStringLiteral("UPDATE layer SET lineweight = ? WHERE key = ?"),
                               {lineWeight, layer.key});
    if (status == Kcore::eOk)
        layer.lineWeight = lineWeight;
    return status;
}

/// Runs a statement; @p values take the places of its question marks.
QSqlQuery LayerFile::run(const QString &statement, const QVariantList &values) const
{
    QSqlQuery query(QSqlDatabase::database(m_connection, false));
    query.setForwardOnly(true);
    query.prepare(statement);
    for (const QVariant &value : values)
        query.addBindValue(value);
    query.exec();
    return query;
}

Kcore::ErrorStatus LayerFile::change(const QString &statement, const QVariantList &values) const
{
    const QSqlQuery query = run(statement, values);
    if (!query.lastError().isValid())
        return query.numRowsAffected() > 0 ? Kcore::eOk : Kcore::eErased;
    switch (query.lastError().nativeErrorCode().toInt() & 0xff) {
    case Busy:
        return Kcore::eOpenAlready;
    case Constraint:
        return Kcore::eRefused;
    default:
        return Kcore::eFileFailed;
    }
}

/// A number that is another one when another connection has committed a change, and only then. Asking
/// is cheap and sees nothing half done, unlike watching the file, which tells of own changes, too.
int LayerFile::version() const
{
    QSqlQuery query = run(QStringLiteral("PRAGMA data_version"));
    return query.next() ? query.value(0).toInt() : m_version;
}

void LayerFile::readCurrent()
{
    QSqlQuery query = run(QStringLiteral("SELECT current FROM drawing"));
    if (query.next())
        m_current = query.value(0).toLongLong();
}

QSqlQuery LayerFile::select(const QString &condition, const QVariantList &values) const
{
    return run("SELECT key, name, off, frozen, locked, plottable, vpdflt, rgb, color, linetype,"
               " lineweight, plotstyle, description FROM layer "
                       + condition,
               values);
}

void LayerFile::take(QSqlQuery &rows)
{
    while (rows.next()) {
        int column = 0;
        const auto number = [&] { return rows.value(column++).toLongLong(); };
        const auto text = [&] { return rows.value(column++).toString().toStdWString(); };
        const qint64 key = number();
        Layer *&layer = m_byKey[key];
        if (!layer) {
            m_layers.push_back(std::make_unique<Layer>(*this));
            layer = m_layers.back().get();
            layer->key = key;
        }
        layer->isErased = false;
        layer->name = text();
        for (bool *flag : {&layer->isOff, &layer->isFrozen, &layer->isLocked, &layer->isPlottable,
                           &layer->isFrozenInNewViewports})
            *flag = number() != 0;
        layer->rgb = static_cast<std::uint32_t>(number());
        layer->colorName = text();
        const std::wstring linetype = text();
        layer->linetype = &m_linetypes[linetype];
        layer->linetype->name = linetype;
        layer->lineWeight = static_cast<int>(number());
        layer->plotStyle = text();
        layer->description = text();
    }
}

/// @return false if another program is just writing the file: the layers are then as they were
bool LayerFile::readAll()
{
    QSqlQuery rows = select(QStringLiteral("ORDER BY key"));
    if (rows.lastError().isValid())
        return false;
    for (const auto &layer : m_layers)
        layer->isErased = true;
    take(rows);
    readCurrent();
    return true;
}

void LayerFile::look()
{
    const int seen = version();
    if (seen == m_version || !readAll())
        return;
    m_version = seen;
    emit changedElsewhere();
}
