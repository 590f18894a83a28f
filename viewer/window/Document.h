// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "viewer/canvas/DrawingLoader.h"

#include <QObject>

class QWidget;

namespace Tessa {

/// The drawing that a window shows, and its file: reading it in the background, saving it, and asking
/// the user before something is lost. The window's mark for unsaved changes tells whether there are
/// any.
class Document : public QObject
{
    Q_OBJECT

public:
    /// @param window asks the user, and is its owner
    explicit Document(QWidget *window);

    /// The drawing on the screen; null without one.
    Drawing *drawing() const { return m_drawing.get(); }

    /// The name of its file, without the folder; empty without a drawing.
    QString title() const;

    bool isLoading() const { return m_loader.isLoading(); }

    /// Reads a drawing in the background, and shows it when it was read: the one before stays until
    /// then, and if there is an error. Refused while another one is being read, and when the user
    /// cancels since there are changes.
    void open(const QString &fileName);
    void chooseAndOpen();

    /// Asks first where another program has written the file meanwhile.
    /// @return whether it was saved
    bool save();
    bool saveAs();

    /// Does nothing while another drawing is being read.
    void close();

    /// Asks what becomes of changes that were not saved, if there are any.
    /// @return whether to go on
    bool confirmLoss();

signals:
    /// A drawing is being read from now on, until opened().
    void opening(const QString &fileName);
    /// The drawing is shown, or there was an error.
    void opened(const QString &error);

    /// There is another drawing, or none any more. The one before lives as long as this signal.
    void replaced();

    /// What the user has not ended to edit is to be in the drawing after this.
    void aboutToSave();
    /// @param remarks one sentence per property that the file cannot hold
    void saved(const QStringList &remarks);

    /// A command was not carried out.
    /// @param reason one sentence
    void refused(const QString &reason);
    void failed(const QString &reason);

private:
    bool saveTo(const QString &fileName);
    bool writeTo(const QString &fileName);
    void load(const QString &fileName);
    void finishLoading(const QString &error);
    void show(std::unique_ptr<Drawing> drawing);

    QWidget *const m_window;
    DrawingLoader m_loader;
    std::unique_ptr<Drawing> m_drawing;
};

} // namespace Tessa
