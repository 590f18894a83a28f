#pragma once

#include <QIcon>
#include <QList>
#include <QSize>
#include <QString>
#include <QWidget>

/// @file
/// A ribbon with what the galleries use of one, and nothing besides.

class tst_PlainRibbon;

namespace NsRc {

class RibbonGalleryItem
{
public:
    virtual ~RibbonGalleryItem() = default;
    void setIcon(const QIcon &) {}
    void setCaption(const QString &) {}
};

class RibbonToolGalleryItem : public RibbonGalleryItem
{
};

class RibbonGalleryGroup
{
public:
    ~RibbonGalleryGroup() { qDeleteAll(m_items); }
    static RibbonGalleryGroup *createGalleryGroup() { return s_last = new RibbonGalleryGroup; }
    void setSize(const QSize &size) { m_size = size; }
    QSize getSize() const { return m_size; }
    int getItemCount() const { return m_items.size(); }
    void appendItem(RibbonGalleryItem *item) { m_items.append(item); }

private:
    friend class RibbonGallery;
    friend class ::tst_PlainRibbon;
    static inline RibbonGalleryGroup *s_last = nullptr;
    QSize m_size;
    QList<RibbonGalleryItem *> m_items;
};

class OfficePopupMenu
{
public:
    static OfficePopupMenu *createPopupMenu(QWidget *) { return new OfficePopupMenu; }
    void addWidget(QWidget *) {}
};

class RibbonGallery : public QWidget
{
    Q_OBJECT

public:
    explicit RibbonGallery(QWidget *parent)
        : QWidget(parent)
    {
    }
    ~RibbonGallery() override { delete m_menu; }
    void setLabelsVisible(bool) {}
    void setBorderVisible(bool) {}
    void setGalleryGroup(RibbonGalleryGroup *group) { m_group = group; }
    void setCheckedIndex(int index) { m_checked = m_group->m_items.value(index); }
    const RibbonGalleryItem *checkedItem() const { return m_checked; }
    void setCheckedItem(const RibbonGalleryItem *item) { m_checked = item; }
    void setPopupMenu(OfficePopupMenu *menu) { m_menu = menu; }
    void setScrollBarPolicy(Qt::ScrollBarPolicy) {}

signals:
    void itemPressed(RibbonGalleryItem *item);

private:
    RibbonGalleryGroup *m_group = nullptr;
    const RibbonGalleryItem *m_checked = nullptr;
    OfficePopupMenu *m_menu = nullptr;
};

} // namespace NsRc
