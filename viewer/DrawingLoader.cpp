#include "DrawingLoader.h"

#include "GeometryReader.h"

#include <KcHost/KcHost.h>

#include <QThread>

std::unique_ptr<Drawing> readDrawing(const QString &fileName, QString &error)
{
    auto drawing = std::make_unique<Drawing>();
    drawing->fileName = fileName;
    drawing->database = KcHost::readDrawing(fileName, &error, &drawing->warnings);
    if (!drawing->database)
        return nullptr;
    drawing->layers = DrawingLayers(*drawing->database);
    drawing->geometry = readGeometry(*drawing, drawing->warnings);
    return drawing;
}

DrawingLoader::DrawingLoader(QObject *parent)
    : QObject(parent)
{
}

DrawingLoader::~DrawingLoader()
{
    if (m_thread)
        m_thread->wait();
}

void DrawingLoader::load(const QString &fileName)
{
    if (isLoading())
        return;
    m_error.clear();
    m_thread.reset(
            QThread::create([this, fileName] { m_drawing = readDrawing(fileName, m_error); }));
    connect(m_thread.get(), &QThread::finished, this, &DrawingLoader::finish);
    m_thread->start();
}

void DrawingLoader::finish()
{
    m_thread->wait();
    m_thread.reset();
    emit finished(m_error);
}
