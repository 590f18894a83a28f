// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "KcBase.h"

#include <QIcon>
#include <QMenu>
#include <QMetaType>
#include <QSize>
#include <QString>
#include <QWidget>

#include <memory>

/// @file
/// @ingroup sdk
/// The host's ribbon: galleries of items, the groups that own the items, and drop-down menus.

namespace NsRc {

class OfficePopupMenu;
class RibbonGalleryGroup;

/// One choice of a gallery: a picture with a caption. It belongs to the group that it was appended
/// to, and leaves it when it is deleted; every gallery that shows the group follows a change at once.
///
/// @ingroup sdk
class KCSDK_EXPORT RibbonGalleryItem
{
public:
    RibbonGalleryItem();
    virtual ~RibbonGalleryItem();

    /// An icon without a picture leaves its place empty.
    /// @{
    void setIcon(const QIcon &icon);
    QIcon icon() const;
    /// @}

    /// Shown beside the icon, or as a tool tip where the gallery hides its labels or has too little
    /// room.
    /// @{
    void setCaption(const QString &caption);
    QString caption() const;
    /// @}

private:
    Q_DISABLE_COPY(RibbonGalleryItem)
    friend class RibbonGalleryGroup;
    struct Private;
    const std::unique_ptr<Private> m_d;
};

/// An item that stands for a tool. It is shown like any other.
///
/// @ingroup sdk
class KCSDK_EXPORT RibbonToolGalleryItem : public RibbonGalleryItem
{
public:
    RibbonToolGalleryItem();
    ~RibbonToolGalleryItem() override;
};

/// The items that one or more galleries show, in cells of one size. It may be destroyed before or
/// after the galleries: those that still show it are empty then.
///
/// @ingroup sdk
class KCSDK_EXPORT RibbonGalleryGroup : public QObject
{
    Q_OBJECT

public:
    /// An empty group, which the caller owns.
    static RibbonGalleryGroup *createGalleryGroup();
    ~RibbonGalleryGroup() override;

    /// The size of a cell in pixels, at least 1 × 1; 24 × 24 at first.
    /// @{
    void setSize(const QSize &size);
    QSize getSize() const;
    /// @}

    /// How many items there are, numbered from 0.
    int getItemCount() const;

    /// Appends an item, which the group owns from now on; one of another group moves over. Null is
    /// ignored, and so is an item that is here already.
    void appendItem(RibbonGalleryItem *item);

    /// The item at @p index; null when there is none. It stays the group's.
    RibbonGalleryItem *item(int index) const;

    /// -1 for null and for an item of another group.
    int indexOf(const RibbonGalleryItem *item) const;

Q_SIGNALS:
    /// An item came, went or looks different now, or the cells have another size.
    void changed();

private:
    RibbonGalleryGroup();
    friend class RibbonGalleryItem;
    struct Private;
    const std::unique_ptr<Private> m_d;
};

/// Shows the items of a group in a grid, one of which is checked: as many columns of cells as fit the
/// width, at least one, stretched to fill it. Two buttons on its right side scroll by a row, as the
/// wheel does; a third one opens the drop-down menu, where there is one.
///
/// A press reports the item and checks nothing: that is left to who hears of it. With the mouse it is
/// done when the button is released over the item that it went down on; in a drop-down menu, also when
/// it went down on what opened the menu. With the keyboard, the arrow keys, Home, End, Page Up and
/// Page Down go to an item, Enter or the space bar presses it, Alt+Down or F4 opens the drop-down
/// menu. The gallery, its group and its menu may be deleted meanwhile.
///
/// The items lie inside the contents margins, one pixel on each side at first, and inside the frame,
/// where there is one.
///
/// @ingroup sdk
/// @image html RibbonGallery.png
class KCSDK_EXPORT RibbonGallery : public QWidget
{
    Q_OBJECT

public:
    /// A gallery that shows no group.
    explicit RibbonGallery(QWidget *parent = nullptr);
    ~RibbonGallery() override;

    /// Whether captions stand beside the icons; they do at first. Otherwise a caption is shown only
    /// in place of an icon that is missing.
    void setLabelsVisible(bool visible);

    /// Whether a frame is drawn around the items; none at first.
    void setBorderVisible(bool visible);

    /// Shows the items of @p group, which stays the caller's; null shows none. Nothing is checked
    /// then.
    void setGalleryGroup(RibbonGalleryGroup *group);

    /// Null where none is shown, or it was destroyed.
    RibbonGalleryGroup *galleryGroup() const;

    /// Checks the item at @p index of the group, and scrolls to it if it was not checked before; an
    /// index out of range leaves none checked.
    void setCheckedIndex(int index);

    /// Does so for @p item, if it is one of the group's; null or another one leaves none checked.
    void setCheckedItem(const RibbonGalleryItem *item);

    /// The checked item, or null.
    RibbonGalleryItem *checkedItem() const;

    /// Has the drop-down button open @p menu, which the gallery owns from now on; the one before is
    /// deleted. Null takes the button away.
    void setPopupMenu(OfficePopupMenu *menu);

    /// Null without a menu; it stays the gallery's.
    OfficePopupMenu *popupMenu() const;

    /// With Qt::ScrollBarAlwaysOff the scroll buttons are gone; with Qt::ScrollBarAsNeeded, the
    /// default, they are there where the items need it or a menu can be opened; with
    /// Qt::ScrollBarAlwaysOn always. The wheel and the keys scroll in any case.
    void setScrollBarPolicy(Qt::ScrollBarPolicy policy);

    /// Room for one column of up to three rows, or of all rows where there are no scroll buttons,
    /// and for the longest caption where captions are shown.
    QSize sizeHint() const override;

Q_SIGNALS:
    /// The user pressed an item, with the mouse, Enter or the space bar.
    void itemPressed(RibbonGalleryItem *item); // clazy:exclude=fully-qualified-moc-types

protected:
    void changeEvent(QEvent *event) override;
    bool event(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    struct Private;
    const std::unique_ptr<Private> m_d;
};

/// A drop-down menu that holds widgets. It closes when an item of a gallery in it was pressed, after
/// RibbonGallery::itemPressed(). The first widget that takes the focus has it while the menu is open.
///
/// @ingroup sdk
class KCSDK_EXPORT OfficePopupMenu : public QMenu
{
    Q_OBJECT

public:
    /// An empty menu; without a parent the caller owns it.
    static OfficePopupMenu *createPopupMenu(QWidget *parent);
    ~OfficePopupMenu() override;

    /// Shows @p widget in the menu, below those before it. The menu deletes it unless its owner did.
    /// Null is ignored.
    void addWidget(QWidget *widget);

protected:
    void showEvent(QShowEvent *event) override;

private:
    explicit OfficePopupMenu(QWidget *parent);
};

} // namespace NsRc

Q_DECLARE_METATYPE(NsRc::RibbonGalleryItem *)
