// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once
// clazy:excludeall=qproperty-without-notify

#include <OvCustomControl/OvccExport.h>

#include <QPixmap>
#include <QWidget>

#include <memory>

class QListWidgetItem;

namespace OvCc {

class ListWidget;

/// What drops down from a picker: a list of rows with swatch and label, "customListView", and under
/// it a button for further choices, "customSettingBtn".
///
/// @ingroup pickers
/// @image html ListView.png
class OVCC_EXPORT ListView : public QWidget
{
    Q_OBJECT

    /// The current row; -1 without one.
    Q_PROPERTY(int currentRow READ currentRow WRITE setCurrentRow USER true)
    /// The room for a swatch, in pixels.
    Q_PROPERTY(QSize itemIconSize READ itemIconSize WRITE setItemIconSize)
    /// A QListView::ViewMode, by its number.
    Q_PROPERTY(int viewMode READ viewMode WRITE setViewMode)
    /// The height of the rows that are added from now on, in pixels.
    Q_PROPERTY(int itemHeight READ itemHeight WRITE setItemHeight)
    /// The text of the button.
    Q_PROPERTY(QString buttonText READ buttonText WRITE setButtonText)

public:
    /// A list without rows, and a button without a text.
    explicit ListView(QWidget *parent = nullptr);
    ~ListView() override;

    /// The room for a swatch, in pixels. In icon mode adding a row makes it 50 × 50.
    /// @{
    void setItemIconSize(QSize size);
    QSize itemIconSize() const;
    /// @}

    /// How the rows are laid out, a QListView::ViewMode: 0 is rows one below the other, 1 a grid of
    /// pictures. Rows are laid out for the mode in which they are added.
    /// @{
    void setViewMode(int mode);
    int viewMode() const;
    /// @}

    /// The height in pixels of the rows that are added from now on, in list mode; 20 at first.
    /// @{
    void setItemHeight(int height);
    int itemHeight() const;
    /// @}

    /// Makes @p row the current one and sends currentItemChanged(), even if it is current already. A
    /// row that is not in the list changes nothing.
    void setCurrentRow(int row);

    /// Appends a row. In icon mode it lies in a grid of 80 × 80 with pictures of 50 × 50.
    void addItem(QPixmap pixmap, QString text);

    /// The text of the button.
    /// @{
    void setButtonText(QString text);
    QString buttonText() const;
    /// @}

    /// Leaves the list without its button.
    void hideSettingBtn();

    /// Null without a current row.
    QListWidgetItem *currentItem() const;

    /// -1 without a current row.
    int currentRow() const;

    /// Null for a row that is not in the list.
    QListWidgetItem *item(int row) const;

    /// The list itself, which this owns.
    ListWidget *list() const;

public Q_SLOTS:
    /// Sends currentItemChanged() for @p row, if there is such a row.
    void slotRowChanged(int row);

    /// Sends triggerDialog(); the button calls it.
    void slotButtonPress();

Q_SIGNALS:
    /// A row is to be shown as the chosen one.
    /// @param pixmap the row's picture in the list's icon size, in icon mode 16 × 16
    void currentItemChanged(QPixmap pixmap, QString string);

    /// The user pressed the button.
    void triggerDialog();

private:
    struct Private;
    const std::unique_ptr<Private> m_d;
};

} // namespace OvCc
