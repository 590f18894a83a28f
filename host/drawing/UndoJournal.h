// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Drawing.h"

#include <QStringList>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

class KcDbDatabase;
class QUndoCommand;
class QUndoStack;

namespace Embedded {

/// The other side of a step: what was before it while it is done, what comes of it while it is undone.
/// No more than what differs, and in vectors, since steps may stay for long.
struct UndoValues
{
    std::vector<std::pair<int, LayerValue>> layers;         ///< by their indices, ascending
    std::vector<std::pair<int, EntityProperties>> entities; ///< by their numbers, ascending
    std::optional<int> currentLayer;

    bool isEmpty() const { return layers.empty() && entities.empty() && !currentLayer; }
};

/// Makes commands for a stack of undo out of what a drawing keeps of its changes.
///
/// The stack is made with the first command, or when it is asked for: a drawing that nobody changes,
/// as one that was read in another thread at first, has none.
class UndoJournal : public std::enable_shared_from_this<UndoJournal>
{
public:
    static constexpr int kNeverMerged = -1;

    explicit UndoJournal(KcDbDatabase &database);
    ~UndoJournal();
    Q_DISABLE_COPY(UndoJournal)

    QUndoStack &stack();

    /// Begins a group; within another one it is a part of that.
    void begin(const QString &text, int mergeId = kNeverMerged);

    /// Ends it, and with the outermost one makes a command of what has changed since. Those who listen
    /// to the stack may have changed the drawing again when this returns.
    void end();

    /// What the drawing has now is in its file. What an open group has changed so far becomes a command
    /// of its own.
    void noteSaved();

    /// The database is about to go, and its stack with it; in the middle of telling of a change, when
    /// all have heard of it.
    void forgetDatabase();

    /// For a command: exchanges the values for those that the drawing has. Refused while a group is
    /// open, or somebody has one of the layers open; then the stack will go back to where it was.
    /// @return whether it was done
    bool exchange(UndoValues &values, const QUndoCommand *command, bool isRedo);

    /// For a command: leaves what the drawing has differently.
    void prune(UndoValues &values) const;

private:
    Drawing &drawing() const;
    bool isAnyOpen(const UndoValues &values) const;
    int indexOf(const QUndoCommand *command) const;
    void apply(const UndoValues &values);
    UndoValues takeKept();
    void noteLayer(int layer);
    void commit();
    void onIndexChanged();
    void announce();

    KcDbDatabase *m_database; ///< null when it is gone
    std::unique_ptr<QUndoStack> m_stack;
    int m_openGroups = 0;
    QString m_text;
    int m_mergeId = kNeverMerged;

    // Of what the stack is at, until it tells that it has done so.
    QStringList m_changedLayers;
    std::vector<int> m_changedEntities;
    std::optional<int> m_indexToKeep; ///< where to go back to, since a command refused
    int m_announcements = 0;          ///< under way
};

/// What a change of a layer is called in the list of steps.
QString changeText(const LayerState &before, const LayerState &after);

} // namespace Embedded
