// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/LayerState.h>

#include <QCoreApplication>
#include <QJsonObject>
#include <QStringList>

namespace Tessa {

/// The layer states that the user has saved for a drawing, by their names. They are kept in a file
/// beside the drawing's: those of "plan.dxf" in "plan.states.json", an object of states by name.
///
/// A file that cannot be written is no loss as long as this lives: the states stay here, and the next
/// change tries again. Nor is one that somebody else has written meanwhile: only what was changed here
/// goes into it. One that holds no states is kept under another name before it is replaced, and one
/// that cannot be read is not touched.
class LayerStates
{
    Q_DECLARE_TR_FUNCTIONS(LayerStates)

public:
    /// Takes the states of another drawing.
    /// @param drawingFile empty for none
    /// @param[out] error  one sentence where its file cannot be read
    void open(const QString &drawingFile, QString *error);

    /// Takes the states along to another file of the drawing, beside those that are there. Nothing to do
    /// is no error.
    /// @return false, with one sentence in @p error, where they cannot be written there
    bool moveTo(const QString &drawingFile, QString *error);

    /// In the order of the alphabet.
    QStringList names() const { return m_states.keys(); }

    bool contains(const QString &name) const { return m_states.contains(name); }

    /// @param[out] error one sentence where that is no state, which is empty then
    OvCc::LayerState state(const QString &name, QString *error) const;

    /// Adds or replaces a state, or removes one.
    /// @return false, with one sentence in @p error, where the file does not have it
    /// @{
    bool save(const QString &name, const OvCc::LayerState &state, QString *error);
    bool remove(const QString &name, QString *error);
    /// @}

private:
    bool change(const QString &name, const QJsonValue &value, QString *error);
    bool write(QString *error);

    QString m_fileName;
    QJsonObject m_states;
    QJsonObject
            m_unwritten; ///< changes that the file does not have: states by name, null for removed
};

} // namespace Tessa
