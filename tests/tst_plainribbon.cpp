// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include <OvCustomControl/ViewGallery.h>
#include <OvCustomControl/ViewPortGallery.h>

#include <QTest>

using namespace NsRc;

class tst_PlainRibbon : public QObject
{
    Q_OBJECT

private slots:
    void galleries();
};

void tst_PlainRibbon::galleries()
{
    const OvCc::ViewPortGallery viewports;
    QCOMPARE(viewports.popupGallery()->size(), QSize(120, 254));
    OvCc::ViewGallery views;
    QCOMPARE(views.size(), QSize(120, 65));
    RibbonGallery *copy = views.popupGallery();
    const QList<RibbonGalleryItem *> &items = copy->group->items;
    for (RibbonGallery *pressed : {static_cast<RibbonGallery *>(&views), copy}) {
        RibbonGalleryItem *item = items.at(pressed == copy ? OvCc::BackView : OvCc::RightView);
        emit pressed->itemPressed(item);
        QVERIFY(views.checkedItem() == item && copy->checkedItem() == item);
    }
    views.setCheckedIndex(OvCc::SoutheastView);
    copy->show();
    QCOMPARE(copy->checkedItem(), items.at(OvCc::SoutheastView));
}

QTEST_MAIN(tst_PlainRibbon)
#include "tst_plainribbon.moc"
