// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>
#include <QList>
#include <QSize>
#include <QString>
#include <QWidget>

/// @file
/// A ribbon with what the galleries use of one, and nothing besides.

namespace NsRc {

struct RibbonGalleryItem
{
    virtual ~RibbonGalleryItem() = default;
    void setIcon(const QIcon &) {}
    void setCaption(const QString &) {}
};

using RibbonToolGalleryItem = RibbonGalleryItem;

struct RibbonGalleryGroup
{
    static RibbonGalleryGroup *createGalleryGroup() { return new RibbonGalleryGroup; }
    ~RibbonGalleryGroup() { qDeleteAll(items); }
    void setSize(const QSize &wanted) { size = wanted; }
    QSize getSize() const { return size; }
    int getItemCount() const { return items.size(); }
    void appendItem(RibbonGalleryItem *item) { items.append(item); }

    QSize size;
    QList<RibbonGalleryItem *> items;
};

struct OfficePopupMenu
{
    static OfficePopupMenu *createPopupMenu(QWidget *) { return new OfficePopupMenu; }
    void addWidget(QWidget *) {}
};

class RibbonGallery : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;
    ~RibbonGallery() override { delete menu; }
    void setLabelsVisible(bool) {}
    void setBorderVisible(bool) {}
    void setGalleryGroup(RibbonGalleryGroup *shown) { group = shown; }
    void setCheckedIndex(int index) { checked = group->items.value(index); }
    const RibbonGalleryItem *checkedItem() const { return checked; }
    void setCheckedItem(const RibbonGalleryItem *item) { checked = item; }
    void setPopupMenu(OfficePopupMenu *popup) { menu = popup; }
    void setScrollBarPolicy(Qt::ScrollBarPolicy) {}

    RibbonGalleryGroup *group = nullptr;
    const RibbonGalleryItem *checked = nullptr;
    OfficePopupMenu *menu = nullptr;

signals:
    void itemPressed(RibbonGalleryItem *item); // clazy:exclude=fully-qualified-moc-types
};

} // namespace NsRc
