// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QHash>
#include <QItemSelectionModel>
#include <QList>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QVector>
#include <QWidget>

#include <functional>
#include <utility>

class QMouseEvent;
class QTableView;

namespace OvCc {

class LayerDelegate;

/// Editing in a layer table and its frozen view, which share one delegate and one selection. Whoever
/// closes the editor of a name, this tells once what became of the name; nothing if a reload has
/// taken its row away. What the user clicks is selected wherever the host has moved it meanwhile.
class TableEditing : public QObject
{
    Q_OBJECT

public:
    /// Puts off what there is to tell until the last of these goes: who hears of it may reload the
    /// table, or delete it, and not all times are good for that.
    class Hold
    {
    public:
        /// @param inEvent an editor whose event is being handled; it outlives the table till then
        explicit Hold(TableEditing &editing, QWidget *inEvent = nullptr);
        ~Hold();
        Q_DISABLE_COPY(Hold)

    private:
        QPointer<TableEditing> m_editing;
        QPointer<QWidget> m_inEvent;
    };

    /// Both views have the same model already.
    TableEditing(QTableView &table, QTableView &frozen);

    /// Nothing is told of editors that are still open.
    ~TableEditing() override;

    LayerDelegate *delegate() const { return m_delegate; }

    /// What is told next of the name in @p cell is that it was added.
    void expectNew(const QModelIndex &cell);

    /// Takes over what is being edited.
    void finish();

    /// Closes all editors but persistent ones, and forgets what was typed; nothing is told of that.
    /// Nor is a question answered any more.
    void drop();

    /// The rows in which an editor is open, ascending.
    QVector<int> rows() const;
    bool isOpen(const QModelIndex &cell) const;

    /// For the delegate: an editor was opened, or closed.
    void opened(QWidget *editor, const QModelIndex &index);
    void closed(QWidget *editor);

    /// For the delegate: an event was dealt with, and if that was a press, the view selects next.
    /// @param cell the one that was pressed, wherever it is now
    /// @param y    where, in the viewport
    void pressed(const QModelIndex &cell, int y);

    /// What a press on a flag cell does, where several rows are selected and that one among them: the
    /// press is used up, and so is what the mouse does until it is released. With Ctrl or Shift a press on
    /// a flag cell selects and does nothing else then. Nothing, which it is to begin with, for the
    /// delegate's own way.
    void setFlagPress(std::function<void(const QModelIndex &cell)> act)
    {
        m_flagPress = std::move(act);
    }

    /// For the table: a press begins, whatever is in that place.
    void forgetPress() { m_usedUp = QModelIndex(); }

    /// For the table: whether the press on @p cell was used up, so that its release selects nothing.
    bool isUsedUp(const QModelIndex &cell) const { return cell.isValid() && cell == m_usedUp; }

    /// For the delegate: whether it is to have the event of the mouse.
    enum class Use { AsEver, OnlySelects, UsedUp };
    Use use(const QMouseEvent &event, const QModelIndex &cell);

    /// For the selection: @p wanted, with the row that was pressed in place of the one that is there now.
    QItemSelection asPressed(const QItemSelection &wanted,
                             QItemSelectionModel::SelectionFlags command);

Q_SIGNALS:
    void added(QString name);

    /// @param cell the one of the name, if it is still there
    void renamed(QPersistentModelIndex cell, QString from, QString to);

    /// An editor was closed. Its view is not done with that yet.
    void editorClosed();

private:
    struct Edit
    {
        QPersistentModelIndex cell;
        QString before;
    };

    struct Outcome
    {
        bool isNew;
        QPersistentModelIndex cell;
        QString before;
        QString name;
    };

    void commit(QWidget *editor);
    void close(QWidget *editor);

    /// Its view forgets an editor before it takes the focus from it, at which the editor asks once more
    /// to be committed and closed.
    bool isInView(QWidget *editor) const;
    QTableView &viewOf(const QWidget &editor) const;
    void note(QWidget *editor);
    void tell();

    QTableView &m_table;
    QTableView &m_frozen;
    LayerDelegate *m_delegate;
    QHash<QWidget *, Edit> m_open;
    QPersistentModelIndex m_newCell;
    QPersistentModelIndex m_pressed;
    int m_pressedAt = 0;
    std::function<void(const QModelIndex &)> m_flagPress;
    QPersistentModelIndex m_usedUp;
    QList<Outcome> m_outcomes;
    int m_holds = 0;
};

} // namespace OvCc
