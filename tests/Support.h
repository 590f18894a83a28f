#pragma once

#include <KcHost/KcHost.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTest>

/// Makes a drawing the working one for as long as this lives.
class OpenDrawing
{
public:
    explicit OpenDrawing(std::unique_ptr<KcDbDatabase> drawing)
        : m_drawing(std::move(drawing))
    {
        KcHost::setWorkingDatabase(m_drawing.get());
    }
    ~OpenDrawing() { KcHost::setWorkingDatabase(nullptr); }
    Q_DISABLE_COPY(OpenDrawing)

    KcDbDatabase &operator*() const { return *m_drawing; }

private:
    std::unique_ptr<KcDbDatabase> m_drawing;
};

/// A drawing with layer "0" and @p names.
inline std::unique_ptr<KcDbDatabase> drawingWithLayers(const QStringList &names)
{
    auto drawing = KcHost::newDrawing();
    for (const QString &name : names)
        KcHost::addLayer(*drawing, name);
    return drawing;
}

inline QByteArray fileContent(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// What the script of tests/ezdxf prints, as JSON; an empty object if it fails.
inline QJsonObject ezdxf(const QString &script, const QStringList &arguments)
{
    QProcess python;
    python.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    python.start(QStringLiteral("/usr/bin/python3"),
                 QStringList{QStringLiteral(OVCC_SOURCE_DIR "/tests/ezdxf/") + script} + arguments);
    if (!python.waitForFinished(120000) || python.exitCode() != 0)
        return {};
    return QJsonDocument::fromJson(python.readAllStandardOutput()).object();
}
