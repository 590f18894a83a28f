#include "BaseGallery.h"

#include <QEvent>

using namespace NsRc;

namespace OvCc {

namespace {

constexpr int galleryWidth = 120;
constexpr int galleryHeight = 65;
constexpr int itemHeight = 21;

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

BaseGallery::BaseGallery(QWidget *parent)
    : RibbonGallery(parent)
{
}

BaseGallery::~BaseGallery()
{
    delete m_popupGallery;
    delete m_group;
}

void BaseGallery::createGalleryItems(const QStringList &captions, const QList<QIcon> &icons)
{
    m_group = RibbonGalleryGroup::createGalleryGroup();
    m_group->setSize(QSize(galleryWidth, itemHeight));
    for (int index = 0; index < captions.size(); ++index) {
        auto *item = new RibbonToolGalleryItem;
        item->setIcon(icons.value(index));
        item->setCaption(captions.at(index));
        m_group->appendItem(item);
    }
}

void BaseGallery::creatBaseGallery()
{
    setFixedSize(galleryWidth, galleryHeight);
    setLabelsVisible(false);
    setContentsMargins(0, 1, 0, 1);
    setBorderVisible(true);
    setGalleryGroup(m_group);
    setCheckedIndex(0);
    connect(this, &RibbonGallery::itemPressed, this, &BaseGallery::itemChangedPressed);

    OfficePopupMenu *menu = OfficePopupMenu::createPopupMenu(nullptr);
    setPopupMenu(menu);
    m_popupGallery = new RibbonGallery(nullptr);
    m_popupGallery->setFixedSize(galleryWidth,
                                 m_group->getItemCount() * m_group->getSize().height() + 2);
    m_popupGallery->setGalleryGroup(m_group);
    m_popupGallery->setCheckedIndex(0);
    m_popupGallery->setScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(m_popupGallery, &RibbonGallery::itemPressed, this, &BaseGallery::itemChangedPressed);
    new CopyUpdate(*this, *m_popupGallery); // which owns it
    menu->addWidget(m_popupGallery);
}

RibbonGallery *BaseGallery::popupGallery() const
{
    return m_popupGallery;
}

void BaseGallery::itemChangedPressed(RibbonGalleryItem *item)
{
    if (checkedItem() == item)
        return;
    setCheckedItem(item);
    if (m_popupGallery)
        m_popupGallery->setCheckedItem(item);
}

} // namespace OvCc
