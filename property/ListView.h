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
class OVCC_EXPORT ListView : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int currentRow READ currentRow WRITE setCurrentRow USER true)
    Q_PROPERTY(QSize itemIconSize READ itemIconSize WRITE setItemIconSize)
    Q_PROPERTY(int viewMode READ viewMode WRITE setViewMode)
    Q_PROPERTY(int itemHeight READ itemHeight WRITE setItemHeight)
    Q_PROPERTY(QString buttonText READ buttonText WRITE setButtonText)

public:
    explicit ListView(QWidget *parent = nullptr);
    ~ListView() override;

    void setItemIconSize(QSize size);
    QSize itemIconSize() const;

    /// @param mode a QListView::ViewMode: 0 is rows one below the other, 1 a grid of pictures. Rows
    ///             are laid out for the mode in which they are added.
    void setViewMode(int mode);
    int viewMode() const;

    /// The height in pixels of the rows that are added from now on, in list mode.
    void setItemHeight(int height);
    int itemHeight() const;

    /// Makes @p row the current one and sends currentItemChanged(), even if it is current already. A
    /// row that is not in the list changes nothing.
    void setCurrentRow(int row);

    /// Appends a row. In icon mode it lies in a grid of 80 × 80 with pictures of 50 × 50.
    void addItem(QPixmap pixmap, QString text);

    void setButtonText(QString text);
    QString buttonText() const;
    void hideSettingBtn();

    QListWidgetItem *currentItem() const;
    int currentRow() const;

    /// Null for a row that is not in the list.
    QListWidgetItem *item(int row) const;

    /// The list itself, which this owns.
    ListWidget *list() const;

public Q_SLOTS:
    /// Sends currentItemChanged() for @p row, if there is such a row.
    void slotRowChanged(int row);

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
