// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <KcDb.h>

#include <QHash>
#include <QObject>
#include <QSqlQuery>
#include <QTimer>
#include <QVariant>

#include <map>
#include <memory>
#include <vector>

/// What has a name of its own in a drawing: a linetype is nothing else.
struct Symbol
{
    virtual ~Symbol() = default;
    std::wstring name;
};

/// A row of the file, as it was when it was last read.
struct Layer : Symbol
{
    explicit Layer(LayerFile &file)
        : record(*this, file)
    {
    }

    qint64 key = 0;
    bool isOff = false, isFrozen = false, isLocked = false, isPlottable = true;
    bool isFrozenInNewViewports = false;
    std::uint32_t rgb = 0xffffff;
    std::wstring colorName, plotStyle, description;
    Symbol *linetype = nullptr;
    int lineWeight = 0;
    bool isErased = false;
    KcDbLayerTableRecord record;
};

/// A drawing as an SQLite database, with one row for each layer, which are held in memory besides. The
/// rules that must hold between two programs are the database's own: a constraint keeps the current
/// layer from being erased, a trigger from being frozen. N is the number of layers.
class LayerFile : public QObject
{
    Q_OBJECT

public:
    /// Opens or makes a file, or a drawing in memory for ":memory:". O(N).
    /// @param[out] error one sentence on failure
    /// @return null on failure
    static std::unique_ptr<LayerFile> open(const QString &fileName, QString *error);
    ~LayerFile() override;

    /// In the order in which they were made; erased ones stay, so that no pointer to one dangles.
    const std::vector<std::unique_ptr<Layer>> &layers() const { return m_layers; }

    Layer *current() const { return m_layers.empty() ? nullptr : m_byKey.value(m_current); }

    /// Null if there is none; letter case does not tell names apart. O(N).
    Layer *find(const QString &name) const;

    Kcore::ErrorStatus add(const QString &name);
    Kcore::ErrorStatus erase(Layer &layer);
    Kcore::ErrorStatus rename(Layer &layer, const QString &name);
    Kcore::ErrorStatus makeCurrent(Layer &layer);
    Kcore::ErrorStatus setFlag(const Layer &layer, const char *column, bool value);

    /// @param rgb 0xRRGGBB, whose components are its name then
    Kcore::ErrorStatus setColor(Layer &layer, std::uint32_t rgb);

    /// @param lineWeight hundredths of a millimetre, or a code
    Kcore::ErrorStatus setLineWeight(Layer &layer, int lineWeight);

Q_SIGNALS:
    /// Another program has changed the file; the layers are read anew.
    void changedElsewhere();

private:
    explicit LayerFile(const QString &fileName);
    QSqlQuery run(const QString &statement, const QVariantList &values = {}) const;
    Kcore::ErrorStatus change(const QString &statement, const QVariantList &values) const;
    int version() const;
    void readCurrent();
    QSqlQuery select(const QString &condition, const QVariantList &values = {}) const;
    void take(QSqlQuery &rows);
    bool readAll();
    void look();

    const QString m_connection;
    QTimer m_look;
    int m_version = 0;
    std::vector<std::unique_ptr<Layer>> m_layers;
    QHash<qint64, Layer *> m_byKey;
    qint64 m_current = 0;
    std::map<std::wstring, Symbol> m_linetypes;
};
