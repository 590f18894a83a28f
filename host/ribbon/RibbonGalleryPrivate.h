// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "GalleryButton.h"
#include "GalleryGrid.h"

#include <NsRc.h>

#include <QPointer>

class QPainter;

namespace NsRc {

/// What a gallery shows, where, and how.
struct RibbonGallery::Private
{
    explicit Private(RibbonGallery *gallery);

    int count() const { return group ? group->getItemCount() : 0; }
    RibbonGalleryItem *item(int index) const { return group ? group->item(index) : nullptr; }
    int checkedIndex() const { return group ? group->indexOf(checked) : -1; }
    int frameWidth() const;
    int neededCellWidth() const;
    bool isLabelShown(const RibbonGalleryItem &item) const;
    struct CellParts;
    CellParts partsOf(int index) const;
    CellParts partsIn(const QRect &cell, int index) const;
    int startIndex() const;
    int indexByKey(int key) const;
    QString toolTipAt(int index) const;

    void arrange();
    void followGroup();
    void scrollTo(int row);
    void setCurrent(int index);
    void check(const RibbonGalleryItem *item);
    void press(RibbonGalleryItem *item);
    void openMenu();

    void paintFrame(QPainter &painter) const;
    void paintCell(QPainter &painter, int index) const;

    RibbonGallery *const q;
    Embedded::GalleryButton *const scrollUp;
    Embedded::GalleryButton *const scrollDown;
    Embedded::GalleryButton *const openMenuButton;
    QPointer<RibbonGalleryGroup> group;
    QPointer<OfficePopupMenu> menu;
    Embedded::GalleryGrid grid;
    QRect buttonColumn;                         ///< empty without buttons
    const RibbonGalleryItem *checked = nullptr; ///< may be gone, and is only compared
    const RibbonGalleryItem *pressed =
            nullptr;            ///< the mouse button is down on it; may be gone, too
    bool isPressInside = false; ///< the mouse button went down here, on an item or beside it
    bool isDraggedIn = false;   ///< it went down elsewhere, to open the menu around this
    int current = -1;           ///< under the mouse, or where the keys went
    int wheelTurn = 0;          ///< what is too little for a row yet
    Qt::ScrollBarPolicy policy = Qt::ScrollBarAsNeeded;
    bool areLabelsVisible = true;
    bool isBorderVisible = false;
};

} // namespace NsRc
