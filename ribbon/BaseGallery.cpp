// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "BaseGallery.h"

#include <QEvent>
#include <QPointer>

#include <type_traits>

using namespace NsRc;

namespace OvCc {

namespace {

constexpr int galleryWidth = 120;
constexpr int galleryHeight = 65;
constexpr int itemHeight = 21;

/// What a host may delete first: where it is a QObject, that is noticed.
template <typename Object>
using Guarded = std::conditional_t<std::is_base_of_v<QObject, Object>, QPointer<Object>, Object *>;

/// Checks in the copy of a gallery, whenever the copy is shown, what is checked in the gallery: a
/// host that restores a choice checks it there only.
class CopyUpdate : public QObject
{
public:
    CopyUpdate(const RibbonGallery &gallery, RibbonGallery &copy)
        : QObject(&copy)
        , m_gallery(gallery)
        , m_copy(copy)
    {
        copy.installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show)
            m_copy.setCheckedItem(m_gallery.checkedItem());
        return QObject::eventFilter(watched, event);
    }

private:
    const RibbonGallery &m_gallery;
    RibbonGallery &m_copy;
};

} // namespace

struct BaseGallery::Private
{
    QPointer<RibbonGallery> popupGallery;
    Guarded<RibbonGalleryGroup> group{};
};

BaseGallery::BaseGallery(QWidget *parent)
    : RibbonGallery(parent)
    , m_d(new Private)
{
}

BaseGallery::~BaseGallery()
{
    delete m_d->popupGallery;
    delete m_d->group;
}

void BaseGallery::createGalleryItems(const QStringList &captions, const QList<QIcon> &icons)
{
    m_d->group = RibbonGalleryGroup::createGalleryGroup();
    m_d->group->setSize(QSize(galleryWidth, itemHeight));
    for (int index = 0; index < captions.size(); ++index) {
        auto *item = new RibbonToolGalleryItem;
        item->setIcon(icons.value(index));
        item->setCaption(captions.at(index));
        m_d->group->appendItem(item);
    }
}

void BaseGallery::creatBaseGallery()
{
    setFixedSize(galleryWidth, galleryHeight);
    setLabelsVisible(false);
    setContentsMargins(0, 1, 0, 1);
    setBorderVisible(true);
    setGalleryGroup(m_d->group);
    setCheckedIndex(0);
    connect(this, &RibbonGallery::itemPressed, this, &BaseGallery::itemChangedPressed);

    OfficePopupMenu *menu = OfficePopupMenu::createPopupMenu(nullptr);
    setPopupMenu(menu);
    m_d->popupGallery = new RibbonGallery(nullptr);
    m_d->popupGallery->setFixedSize(
            galleryWidth, m_d->group->getItemCount() * m_d->group->getSize().height() + 2);
    m_d->popupGallery->setGalleryGroup(m_d->group);
    m_d->popupGallery->setCheckedIndex(0);
    m_d->popupGallery->setScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(m_d->popupGallery, &RibbonGallery::itemPressed, this, &BaseGallery::itemChangedPressed);
    new CopyUpdate(*this, *m_d->popupGallery); // which owns it
    menu->addWidget(m_d->popupGallery);
}

RibbonGallery *BaseGallery::popupGallery() const
{
    return m_d->popupGallery;
}

void BaseGallery::itemChangedPressed(RibbonGalleryItem *item)
{
    setCheckedItem(item);
    if (m_d->popupGallery)
        m_d->popupGallery->setCheckedItem(item);
}

} // namespace OvCc
