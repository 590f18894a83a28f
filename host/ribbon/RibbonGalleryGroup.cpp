// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include <NsRc.h>

#include <QVector>

#include <utility>

namespace NsRc {

namespace {

constexpr QSize smallestCell(1, 1);
constexpr QSize initialCell(24, 24);

/// The items by their name in the string of RibbonGallery::itemPressed(), where spies and queued
/// connections look for it.
void registerItem()
{
    qRegisterMetaType<RibbonGalleryItem *>("RibbonGalleryItem*");
}
Q_CONSTRUCTOR_FUNCTION(registerItem)

} // namespace

struct RibbonGalleryItem::Private
{
    QIcon icon;
    QString caption;
    RibbonGalleryGroup *group = nullptr;
};

struct RibbonGalleryGroup::Private
{
    QVector<RibbonGalleryItem *> items;
    QSize size = initialCell;
};

RibbonGalleryItem::RibbonGalleryItem()
    : m_d(new Private)
{
}

RibbonGalleryItem::~RibbonGalleryItem()
{
    RibbonGalleryGroup *group = m_d->group;
    if (!group)
        return;
    group->m_d->items.removeOne(this);
    emit group->changed();
}

void RibbonGalleryItem::setIcon(const QIcon &icon)
{
    m_d->icon = icon;
    if (m_d->group)
        emit m_d->group->changed();
}

QIcon RibbonGalleryItem::icon() const
{
    return m_d->icon;
}

void RibbonGalleryItem::setCaption(const QString &caption)
{
    m_d->caption = caption;
    if (m_d->group)
        emit m_d->group->changed();
}

QString RibbonGalleryItem::caption() const
{
    return m_d->caption;
}

RibbonToolGalleryItem::RibbonToolGalleryItem() = default;

RibbonToolGalleryItem::~RibbonToolGalleryItem() = default;

RibbonGalleryGroup *RibbonGalleryGroup::createGalleryGroup()
{
    return new RibbonGalleryGroup;
}

RibbonGalleryGroup::RibbonGalleryGroup()
    : m_d(new Private)
{
}

RibbonGalleryGroup::~RibbonGalleryGroup()
{
    const QVector<RibbonGalleryItem *> items = std::exchange(m_d->items, {});
    for (RibbonGalleryItem *item : items) {
        item->m_d->group = nullptr;
        delete item;
    }
}

void RibbonGalleryGroup::setSize(const QSize &size)
{
    m_d->size = size.expandedTo(smallestCell);
    emit changed();
}

QSize RibbonGalleryGroup::getSize() const
{
    return m_d->size;
}

int RibbonGalleryGroup::getItemCount() const
{
    return m_d->items.size();
}

void RibbonGalleryGroup::appendItem(RibbonGalleryItem *item)
{
    if (!item || item->m_d->group == this)
        return;
    RibbonGalleryGroup *before = std::exchange(item->m_d->group, this);
    m_d->items.append(item);
    if (before) {
        before->m_d->items.removeOne(item);
        emit before->changed();
    }
    emit changed();
}

RibbonGalleryItem *RibbonGalleryGroup::item(int index) const
{
    return m_d->items.value(index);
}

int RibbonGalleryGroup::indexOf(const RibbonGalleryItem *item) const
{
    return m_d->items.indexOf(const_cast<RibbonGalleryItem *>(item));
}

} // namespace NsRc
