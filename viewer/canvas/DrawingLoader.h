// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Drawing.h"

#include <QObject>

class QThread;

namespace Tessa {

/// Reads a drawing; this needs no GUI thread.
/// @param[out] error one sentence when there is no drawing
/// @return the drawing, or null
std::unique_ptr<Drawing> readDrawing(const QString &fileName, QString &error);

/// Reads drawings in a thread of its own, one at a time.
class DrawingLoader : public QObject
{
    Q_OBJECT

public:
    /// While one lives, what is read is still loading: for questions about the drawing on the screen,
    /// which is to be the same one when the answer comes.
    class Hold
    {
    public:
        explicit Hold(DrawingLoader &loader);
        ~Hold();
        Q_DISABLE_COPY(Hold)

    private:
        DrawingLoader &m_loader;
    };

    explicit DrawingLoader(QObject *parent = nullptr);
    /// Waits for a drawing that is still being read.
    ~DrawingLoader() override;

    /// Begins to read; does nothing while isLoading().
    void load(const QString &fileName);

    bool isLoading() const { return m_thread != nullptr; }

    /// What was read last, to be taken once; null after a failure.
    std::unique_ptr<Drawing> takeDrawing() { return std::move(m_drawing); }

signals:
    /// @param error empty when there is a drawing to take
    void finished(const QString &error);

private:
    void finish();

    std::unique_ptr<QThread> m_thread;
    std::unique_ptr<Drawing> m_drawing;
    QString m_error;
    int m_holds = 0;
};

} // namespace Tessa
