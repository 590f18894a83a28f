// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "TableEditing.h"

#include "ViewAccess.h"
#include "layer/data/LayerFlags.h"

#include <OvCustomControl/LayerDelegate.h>

#include <QMouseEvent>
#include <QSignalBlocker>
#include <QTableView>

#include <algorithm>
#include <memory>

namespace OvCc {

namespace {

/// Tells which editors its views open and close, and what is pressed.
class TableDelegate : public LayerDelegate
{
public:
    TableDelegate(TableEditing &editing, QObject *parent)
        : LayerDelegate(parent)
        , m_editing(editing)
    {
    }

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override
    {
        QWidget *editor = LayerDelegate::createEditor(parent, option, index);
        if (editor)
            m_editing.opened(editor, index);
        return editor;
    }

    void destroyEditor(QWidget *editor, const QModelIndex &index) const override
    {
        LayerDelegate::destroyEditor(editor, index);
        m_editing.closed(editor);
    }

    /// Qt goes on with the view after an editor that has lost the focus is closed.
    bool eventFilter(QObject *object, QEvent *event) override
    {
        const TableEditing::Hold hold(m_editing, qobject_cast<QWidget *>(object));
        return LayerDelegate::eventFilter(object, event);
    }

    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override
    {
        const QPointer<TableEditing> editing(&m_editing);
        const bool isPress = event->type() == QEvent::MouseButtonPress;
        const QPersistentModelIndex cell(isPress ? index : QModelIndex());
        auto use = TableEditing::Use::AsEver;
        if (isPress || event->type() == QEvent::MouseMove
            || event->type() == QEvent::MouseButtonRelease)
            use = m_editing.use(*static_cast<QMouseEvent *>(event), index);
        if (use == TableEditing::Use::UsedUp)
            return true;
        const bool isUsedUp = use == TableEditing::Use::AsEver
                              && LayerDelegate::editorEvent(event, model, option, index);
        if (editing)
            editing->pressed(cell, isPress ? static_cast<QMouseEvent *>(event)->pos().y() : 0);
        return isUsedUp;
    }

private:
    TableEditing &m_editing;
};

/// When another cell becomes the current one, a view closes the editor of the one before. What there
/// is to tell of that waits until all have followed the change.
///
/// A view lets the delegate have a press before it selects what is in that place by then.
class TableSelection : public QItemSelectionModel
{
public:
    TableSelection(TableEditing &editing, QAbstractItemModel *rows, QObject *parent)
        : QItemSelectionModel(rows, parent)
        , m_editing(editing)
    {
    }

    void setCurrentIndex(const QModelIndex &index, SelectionFlags command) override
    {
        const TableEditing::Hold hold(m_editing);
        QItemSelectionModel::setCurrentIndex(index, command);
    }

    void clearCurrentIndex() override
    {
        const TableEditing::Hold hold(m_editing);
        QItemSelectionModel::clearCurrentIndex();
    }

    using QItemSelectionModel::select;
    void select(const QItemSelection &selection, SelectionFlags command) override
    {
        const QItemSelection wanted = m_editing.asPressed(selection, command);
        if (wanted.size() > 1 && command == (ClearAndSelect | Rows))
            replaceBy(wanted);
        else
            QItemSelectionModel::select(wanted, command);
    }

private:
    /// Qt would compare each range with each other one, which is quadratic in them.
    void replaceBy(const QItemSelection &wanted)
    {
        const QVector<bool> none(model()->rowCount(), false);
        const QVector<bool> before = rowsIn(selection());
        const QVector<bool> after = rowsIn(wanted);
        {
            const QSignalBlocker blocker(this);
            QItemSelectionModel::select(QItemSelection(), Clear);
            QItemSelectionModel::select(rangesOf(after, none), Select);
        }
        const QItemSelection came = rangesOf(after, before);
        const QItemSelection went = rangesOf(before, after);
        if (!came.isEmpty() || !went.isEmpty())
            emit selectionChanged(came, went);
    }

    QVector<bool> rowsIn(const QItemSelection &ranges) const
    {
        QVector<bool> rows(model()->rowCount(), false);
        for (const QItemSelectionRange &range : ranges)
            std::fill(rows.begin() + range.top(), rows.begin() + range.bottom() + 1, true);
        return rows;
    }

    /// The rows of @p some that are not in @p others.
    QItemSelection rangesOf(const QVector<bool> &some, const QVector<bool> &others) const
    {
        QItemSelection ranges;
        const int lastColumn = model()->columnCount() - 1;
        for (int row = 0; row < some.size(); ++row) {
            const int first = row;
            while (row < some.size() && some.at(row) && !others.at(row))
                ++row;
            if (row > first)
                ranges.select(model()->index(first, 0), model()->index(row - 1, lastColumn));
        }
        return ranges;
    }

    TableEditing &m_editing;
};

/// Takes the editor out of a view that is about to go. It needs a parent still: Qt hands back to that
/// the focus that it loses with its window.
void keepForItsEvent(QWidget *editor)
{
    auto *keeper = new QWidget; // goes with the editor
    QObject::connect(editor, &QObject::destroyed, keeper, &QObject::deleteLater);
    editor->setParent(keeper);
    editor->deleteLater();
}

} // namespace

TableEditing::Hold::Hold(TableEditing &editing, QWidget *inEvent)
    : m_editing(&editing)
    , m_inEvent(inEvent)
{
    ++editing.m_holds;
}

TableEditing::Hold::~Hold()
{
    if (!m_editing)
        return;
    --m_editing->m_holds;
    QMetaObject::Connection keeping;
    if (QWidget *editor = m_inEvent)
        keeping = connect(m_editing, &QObject::destroyed, editor,
                          [editor] { keepForItsEvent(editor); });
    m_editing->tell();
    disconnect(keeping);
}

TableEditing::TableEditing(QTableView &table, QTableView &frozen)
    : QObject(&table)
    , m_table(table)
    , m_frozen(frozen)
    , m_delegate(new TableDelegate(*this, &table))
{
    auto *selection = new TableSelection(*this, table.model(), &table);
    for (QTableView *view : {&table, &frozen}) {
        const std::unique_ptr<QItemSelectionModel> own(view->selectionModel());
        view->setSelectionModel(selection);
        view->setItemDelegate(m_delegate);
        // Qt connects a delegate to each of its views, and each would complain of the editors of the
        // other. Here a view hears of its own editors only, and of none that is closed already.
        disconnect(m_delegate, nullptr, view, nullptr);
    }
    connect(m_delegate, &LayerDelegate::commitData, this, &TableEditing::commit);
    connect(m_delegate, &LayerDelegate::closeEditor, this, &TableEditing::close);
}

TableEditing::~TableEditing()
{
    delete m_delegate;
}

void TableEditing::expectNew(const QModelIndex &cell)
{
    m_newCell = cell;
}

void TableEditing::finish()
{
    const Hold hold(*this);
    const QList<QWidget *> editors = m_open.keys();
    for (QWidget *editor : editors) {
        commit(editor);
        close(editor);
    }
}

void TableEditing::drop()
{
    m_delegate->dropQuestion();
    m_newCell = QModelIndex();
    m_outcomes.clear();
    const QList<QWidget *> editors = m_open.keys();
    for (QWidget *editor : editors) {
        QTableView &view = viewOf(*editor);
        const Edit edit = m_open.take(editor);
        (view.*&ViewAccess::closeEditor)(editor, QAbstractItemDelegate::NoHint);
        if (view.indexWidget(edit.cell) == editor)
            m_open.insert(editor, edit);
    }
}

QVector<int> TableEditing::rows() const
{
    QVector<int> rows;
    for (const Edit &edit : m_open) {
        if (edit.cell.isValid())
            rows.append(edit.cell.row());
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

bool TableEditing::isOpen(const QModelIndex &cell) const
{
    return std::any_of(m_open.cbegin(), m_open.cend(),
                       [&cell](const Edit &edit) { return edit.cell == cell; });
}

void TableEditing::opened(QWidget *editor, const QModelIndex &index)
{
    m_open.insert(editor, {index, index.data().toString()});
    connect(editor, &QObject::destroyed, this, [this, editor] { closed(editor); });
}

void TableEditing::closed(QWidget *editor)
{
    const Hold hold(*this);
    note(editor);
    if (m_open.remove(editor) > 0)
        emit editorClosed();
}

void TableEditing::pressed(const QModelIndex &cell, int y)
{
    m_pressed = cell;
    m_pressedAt = y;
}

TableEditing::Use TableEditing::use(const QMouseEvent &event, const QModelIndex &cell)
{
    if (event.type() != QEvent::MouseButtonPress)
        return m_usedUp.isValid() ? Use::UsedUp : Use::AsEver;
    forgetPress();
    if (!m_flagPress || event.button() != Qt::LeftButton
        || !isFlagColumn(LayerColumn(cell.column())))
        return Use::AsEver;
    if (event.modifiers() & (Qt::ControlModifier | Qt::ShiftModifier))
        return Use::OnlySelects;
    const QItemSelectionModel &selection = *m_table.selectionModel();
    const QItemSelection &ranges = selection.selection();
    if (!selection.isSelected(cell) || (ranges.size() == 1 && ranges.first().height() == 1))
        return Use::AsEver;
    m_usedUp = cell;
    const auto act = m_flagPress;
    act(cell); // this may be gone now
    return Use::UsedUp;
}

QItemSelection TableEditing::asPressed(const QItemSelection &wanted,
                                       QItemSelectionModel::SelectionFlags command)
{
    const QModelIndex cell = m_pressed;
    const int there = cell.isValid() && wanted.size() == 1 ? m_table.rowAt(m_pressedAt) : -1;
    if (there < 0 || (wanted.first().top() != there && wanted.first().bottom() != there))
        return wanted;
    m_pressed = QModelIndex();
    if (!command.testFlag(QItemSelectionModel::Current))
        return QItemSelection(cell, cell);
    // From the row where the user began, which is the other end.
    const bool isTop = wanted.first().top() == there;
    const int begin = isTop ? wanted.first().bottom() : wanted.first().top();
    return QItemSelection(cell.sibling(qMin(begin, cell.row()), cell.column()),
                          cell.sibling(qMax(begin, cell.row()), cell.column()));
}

void TableEditing::commit(QWidget *editor)
{
    if (isInView(editor))
        (viewOf(*editor).*&ViewAccess::commitData)(editor);
}

void TableEditing::close(QWidget *editor)
{
    if (!isInView(editor))
        return;
    const Hold hold(*this, editor);
    // Without a hint: no other cell is to be edited next.
    (viewOf(*editor).*&ViewAccess::closeEditor)(editor, QAbstractItemDelegate::NoHint);
    note(editor); // a persistent one, which stays open
}

bool TableEditing::isInView(QWidget *editor) const
{
    const auto edit = m_open.constFind(editor);
    return edit != m_open.cend() && viewOf(*editor).indexWidget(edit->cell) == editor;
}

QTableView &TableEditing::viewOf(const QWidget &editor) const
{
    return editor.parentWidget() == m_table.viewport() ? m_table : m_frozen;
}

void TableEditing::note(QWidget *editor)
{
    const auto edit = m_open.find(editor);
    // A cell whose row is gone is in no column.
    if (edit == m_open.end() || edit->cell.column() != NameColumn)
        return;
    const QString name = edit->cell.data().toString();
    const bool isNew = edit->cell == m_newCell;
    if (isNew || name != edit->before)
        m_outcomes.append({isNew, edit->cell, edit->before, name});
    if (isNew)
        m_newCell = QModelIndex();
    edit->before = name;
}

void TableEditing::tell()
{
    const QPointer<TableEditing> self(this);
    while (self && m_holds == 0 && !m_outcomes.isEmpty()) {
        const Outcome outcome = m_outcomes.takeFirst();
        if (outcome.isNew)
            emit added(outcome.name);
        else
            emit renamed(outcome.cell, outcome.before, outcome.name);
    }
}

} // namespace OvCc
