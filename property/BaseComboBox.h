// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once
// clazy:excludeall=qproperty-without-notify

#include <OvCustomControl/OvccExport.h>

#include <QComboBox>
#include <QPixmap>

#include <memory>

class QListWidgetItem;

namespace OvCc {

/// A picker: its face shows the swatch and label of the chosen row, its drop-down is a ListView with
/// the rows and a button for further choices.
///
/// It is used like any combo box. A press on the face opens the drop-down, a release on a row
/// chooses it, keys and wheel do either; closing the drop-down otherwise leaves the row as it was. A
/// row under the mouse is only highlighted. A right click on the face is the parent's to answer.
///
/// Rows are those of the list in the drop-down. To the QComboBox behind it the whole drop-down is one
/// item, so its own count(), currentIndex() and signals mean nothing here.
///
/// The host may delete a picker inside its signals, but for addMoreItem(), and while a dialog of it is
/// up. A host that takes the face away, by setEditable() or setLineEdit(), has a picker that shows
/// nothing on its face; one that sets another view has a picker without rows.
///
/// @ingroup pickers
/// @image html BaseComboBox.png
class OVCC_EXPORT BaseComboBox : public QComboBox
{
    Q_OBJECT

    /// The row on the face; -1 until one is chosen.
    Q_PROPERTY(int currentRow READ currentRow WRITE setCurrentIndex USER true)
    /// The room for a swatch, in pixels.
    Q_PROPERTY(QSize itemIconSize READ itemIconSize WRITE setItemIconSize)
    /// A QListView::ViewMode, by its number.
    Q_PROPERTY(int viewMode READ viewMode WRITE setViewMode)
    /// The text of the button in the drop-down.
    Q_PROPERTY(QString buttonText READ buttonText WRITE setButtonText)
    /// The height of the drop-down inside its frame, in pixels.
    Q_PROPERTY(int listWidgetHeight READ listWidgetHeight WRITE setListWidgetHeight)

public:
    /// A picker without rows, whose button has no text.
    explicit BaseComboBox(QWidget *parent = nullptr);
    ~BaseComboBox() override;

    /// Opens the drop-down and sends addMoreItem().
    void showPopup() override;

    /// Leaves the label alone on the face.
    void hideShowIcon();

    /// Leaves the drop-down without its button.
    void hideSettingBtn();

    /// Shows @p row as the chosen one, also if it is already, and closes the drop-down. A row that is
    /// not there changes nothing.
    void setCurrentIndex(int row);

    /// The chosen row, which keys and the pressed mouse move in the open drop-down; -1 without one.
    int currentRow() const;

    /// Null for a row that is not there.
    QListWidgetItem *item(int row) const;

    /// Appends a row with a swatch and a label, as ListView::addItem() does; what is chosen stays.
    void addItem(QPixmap pixmap, QString text);

    /// The text of the button in the drop-down.
    /// @{
    void setButtonText(QString text);
    QString buttonText() const;
    /// @}

    /// The room for a swatch in the drop-down and on the face, in pixels. In icon mode adding a row
    /// makes it 50 × 50, and that on the face is 16 × 16.
    /// @{
    void setItemIconSize(QSize size);
    QSize itemIconSize() const;
    /// @}

    /// How the rows are laid out: a QListView::ViewMode, see ListView::setViewMode().
    /// @{
    void setViewMode(int mode);
    int viewMode() const;
    /// @}

    /// The height of the drop-down inside its frame, in pixels.
    /// @{
    void setListWidgetHeight(int height);
    int listWidgetHeight() const;
    /// @}

public Q_SLOTS:
    /// Answers the button in the drop-down, which is still open; does nothing here.
    virtual void openDialog();

    /// Shows @p pixmap and @p text on the face and closes the drop-down.
    void showCurrentItem(QPixmap pixmap, QString text);

Q_SIGNALS:
    /// The drop-down has opened: the time to add rows that are slow to make. Qt goes on with the picker
    /// after this: use deleteLater() to delete it here.
    void addMoreItem();

    /// The user chose @p row, which may be the one that was chosen before. It is sent once per choice
    /// after the face shows it, and never for setCurrentIndex().
    void rowChosen(int row);

    /// The user pressed the button in the drop-down, which is still open; openDialog() follows. A
    /// host answers for the pickers that have no dialog of their own. A dialog closes the drop-down.
    void dialogRequested();

protected:
    /// The number of rows in the list, those of the host included.
    int rowCount() const;

    /// Makes the drop-down high enough for its rows and its button, but never for more than ten rows.
    /// @param rowHeight in pixels
    void fitListWidgetHeight(int rowHeight);

private:
    void chooseRow(int row);
    void answerButton();

    struct Private;
    const std::unique_ptr<Private> m_d;
};

} // namespace OvCc
