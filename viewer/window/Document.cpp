// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Document.h"

#include "ChangedFileQuestion.h"

#include <KcHost/KcHost.h>

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>

#include <utility>

namespace Tessa {

namespace {

QString fileFilter()
{
    return Document::tr("Drawings (*.dxf);;All files (*)");
}

} // namespace

Document::Document(QWidget *window)
    : QObject(window)
    , m_window(window)
{
    connect(&m_loader, &DrawingLoader::finished, this, &Document::finishLoading);
}

QString Document::title() const
{
    return m_drawing ? QFileInfo(m_drawing->fileName).fileName() : QString();
}

void Document::open(const QString &fileName)
{
    if (isLoading())
        emit refused(tr("Another drawing is still being read."));
    else if (confirmLoss())
        load(fileName);
}

void Document::chooseAndOpen()
{
    const QString folder = m_drawing ? QFileInfo(m_drawing->fileName).path() : QString();
    const QString fileName =
            QFileDialog::getOpenFileName(m_window, tr("Open a drawing"), folder, fileFilter());
    if (!fileName.isEmpty())
        open(fileName);
}

bool Document::save()
{
    return saveTo(m_drawing->fileName);
}

bool Document::saveAs()
{
    const DrawingLoader::Hold hold(m_loader);
    const QString fileName = QFileDialog::getSaveFileName(m_window, tr("Save the drawing as"),
                                                          m_drawing->fileName, fileFilter());
    return !fileName.isEmpty() && saveTo(fileName);
}

void Document::close()
{
    if (m_drawing && !isLoading() && confirmLoss())
        show(nullptr);
}

bool Document::confirmLoss()
{
    emit aboutToSave();
    if (!m_window->isWindowModified())
        return true;
    const DrawingLoader::Hold hold(m_loader);
    const auto answer = QMessageBox::question(
            m_window, tr("Tessa"), tr("%1 was changed. Save the changes?").arg(title()),
            QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    return answer == QMessageBox::Discard || (answer == QMessageBox::Save && save());
}

/// A file that is gone is not asked about: nothing is lost by writing it again.
bool Document::saveTo(const QString &fileName)
{
    const QFileInfo file(fileName);
    if (file != QFileInfo(m_drawing->fileName) || !file.exists()
        || !KcHost::isFileChanged(*m_drawing->database))
        return writeTo(fileName);

    const DrawingLoader::Hold hold(m_loader);
    switch (askAboutChangedFile(m_window, file.fileName(), !isLoading())) {
    case ChangedFileAnswer::Overwrite:
        return writeTo(fileName);
    case ChangedFileAnswer::SaveAs:
        return saveAs();
    case ChangedFileAnswer::Reload:
        load(fileName);
        break;
    case ChangedFileAnswer::Cancel:
        break;
    }
    return false;
}

bool Document::writeTo(const QString &fileName)
{
    emit aboutToSave();
    QString error;
    QStringList remarks;
    if (!KcHost::writeDrawing(*m_drawing->database, fileName, &error, &remarks)) {
        emit failed(error);
        return false;
    }
    m_drawing->fileName = fileName;
    emit saved(remarks);
    return true;
}

void Document::load(const QString &fileName)
{
    m_loader.load(fileName);
    emit opening(fileName);
}

void Document::finishLoading(const QString &error)
{
    if (std::unique_ptr<Drawing> drawing = m_loader.takeDrawing())
        show(std::move(drawing));
    else
        emit failed(error);
    emit opened(error);
}

/// @param drawing null for none
void Document::show(std::unique_ptr<Drawing> drawing)
{
    const std::unique_ptr<Drawing> before = std::exchange(m_drawing, std::move(drawing));
    emit replaced();
}

} // namespace Tessa
