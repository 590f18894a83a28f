// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QStringList>
#include <QStyledItemDelegate>

#include <memory>

namespace OvCc {

class FlagGestures;

/// Paints the cells of a layer table and turns clicks on its flag cells into changes of the drawing.
///
/// It works on any model whose columns are those of OvLayerUtility::getAllLayerDate(), read and
/// written as texts of the display role. One delegate may serve several views of such a model.
///
/// A left click on the cells "On", "Freeze", "Lock" and "Plot" changes the layer, then the cell;
/// before the current layer is switched off the user is asked, and freezing it is refused. Each such
/// click stands between changesBegin() and changesEnd(), a question that is declined excepted. After
/// that, and after every other event that reaches a cell, a click on the first column and a double
/// click excepted, the host is told by ovSetLayerTableChanges(), and layerDataChanged() is sent. The
/// host may reload the model from inside all of these. It may delete view, model and delegate
/// together in a mouse press, or while the user is asked; otherwise with deleteLater(), since Qt is
/// not done yet.
///
/// The linetype and lineweight dialogs are there for a host that reaches them by its own means; no
/// click opens them.
///
/// @ingroup layers
class OVCC_EXPORT LayerDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// A delegate for any number of views, which do not own it.
    explicit LayerDelegate(QObject *parent = nullptr);
    ~LayerDelegate() override;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;

    /// Names and viewport freezes are edited in a line edit that completes from the texts of the
    /// same column, those of the first row excepted. O(N) in the number of rows.
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model,
                      const QModelIndex &index) const override;
    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override;

    /// The thickness, in pixels, in which a lineweight label such as "0.50 mm" is painted; 0, which
    /// draws the thinnest line, for a text that is none. The label is that of the row, which is
    /// translated where it is painted.
    int lineWeightIndexMap(QString label) const;

    /// Takes back what the user is being asked, as if it was declined: it was about another drawing.
    void dropQuestion();

public Q_SLOTS:
    /// Commits and closes the line edit that sent the signal.
    void commitAndCloseEditor();

    /// Keeps the row that the user chose in the lineweight dialog.
    void slotLWeightChanged(int row);

Q_SIGNALS:
    /// For a host that makes a layer the current one through the delegate; not sent by itself.
    void updateCurretnLayer(QString name);

    /// Something may have changed in the layers; see the class.
    void layerDataChanged();

    /// A click is about to change the drawing: the time to open a transaction or an undo step.
    /// @param text a short sentence for a list of these, translated: "Switch layer off"
    void changesBegin(QString text);

    /// What began with changesBegin() is done; the cell says what the click asked for, taken or not.
    /// @param changed how many layers have another flag now
    /// @param refused how many the drawing did not change though they were to be; freezing the current
    ///                layer counts here
    void changesEnd(int changed, int refused);

    /// These layers were changed by one click; it follows changesEnd(), and does not come where
    /// nothing was changed.
    void layersToggled(QStringList names);

private:
    friend class FlagGestures;
    struct Private;
    const std::unique_ptr<Private> m_d;
};

} // namespace OvCc
