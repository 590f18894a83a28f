// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DrawingLoader.h"

#include "GeometryReader.h"

#include <KcHost/KcHost.h>

#include <QThread>

#include <new>

namespace Tessa {

std::unique_ptr<Drawing> readDrawing(const QString &fileName, QString &error)
{
    try {
        auto drawing = std::make_unique<Drawing>();
        drawing->fileName = fileName;
        drawing->database = KcHost::readDrawing(fileName, &error, &drawing->warnings);
        if (!drawing->database)
            return nullptr;
        drawing->layers = DrawingLayers(*drawing->database);
        drawing->geometry = readGeometry(*drawing, drawing->warnings);
        return drawing;
    } catch (const std::bad_alloc &) {
        error = QStringLiteral("%1: there is not enough memory to show it.").arg(fileName);
        return nullptr;
    }
}

DrawingLoader::Hold::Hold(DrawingLoader &loader)
    : m_loader(loader)
{
    ++m_loader.m_holds;
}

DrawingLoader::Hold::~Hold()
{
    if (--m_loader.m_holds == 0)
        QMetaObject::invokeMethod(&m_loader, &DrawingLoader::finish, Qt::QueuedConnection);
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
    m_thread->setObjectName(QStringLiteral("DrawingLoader"));
    connect(m_thread.get(), &QThread::finished, this, &DrawingLoader::finish);
    m_thread->start();
}

void DrawingLoader::finish()
{
    if (m_holds > 0 || !m_thread || !m_thread->isFinished())
        return;
    m_thread->wait();
    m_thread.reset();
    emit finished(m_error);
}

} // namespace Tessa
