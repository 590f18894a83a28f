#include "Support.h"

#include <QSignalSpy>

using namespace OvCc;
using NsRc::RibbonGalleryItem;

/// Sends whatever the slots of the widgets take.
class Sender : public QObject
{
    Q_OBJECT

signals:
    void sent();
    void sent(bool);
    void sent(bool, int);
    void sent(int);
    void sent(int, bool);
    void sent(int, int, int);
    void sent(int, Qt::SortOrder);
    void sent(int, LayerItemData);
    void sent(QString);
    void sent(QPixmap, QString);
    void sent(QPoint);
    void sent(QAction *);
    void sent(RibbonGalleryItem *);
};

class tst_Interface : public QObject
{
    Q_OBJECT

private slots:
    void strings();
    void queuedRecords();
};

/// Hosts connect by these strings, which have names without their namespaces.
void tst_Interface::strings()
{
    QWidget owner;
    auto *control = new LayerControl(&owner);
    const struct
    {
        QObject *object;
        const char *signalStrings;
        const char *slotStrings;
    } rows[] = {
            {new LayerModel(&owner), "updateCount(int)", ""},
            {new LayerDelegate(&owner), "updateCurretnLayer(QString) layerDataChanged()",
             "commitAndCloseEditor() slotLWeightChanged(int)"},
            {new LayerTableWidget(&owner), "updateCurretnLayer(QString) updateLayerCombo()",
             "addLayer() remove() setCurrentLayer() slotSearchLayer(QString) slotLayerChanged() "
             "slotSortIndexChanged(int,Qt::SortOrder) updateSectionWidth(int,int,int) "
             "updateSectionHeight(int,int,int) show_contextMenu(QPoint) "
             "layerColumnVisiable(int,bool)"},
            {new LayerAction("Lock", &owner), "layerTriggered(int,bool)", "actionProcess(bool)"},
            {new SearchLayerEdit(&owner), "searchTextChanged(QString)",
             "slotSearchButton() slotTextChanged(QString) slotLoseFocus()"},
            {new LayerManager(&owner), "layerManagerChanged()",
             "slotUpLayerModel() slotLayerChanged() slotNewLayer() slotDeleteLayer() "
             "slotCurrentLayer() slotUpdateLineEdit(QString)"},
            {new LayerItem(&owner), "statusChanged(int,LayerItemData)",
             "slotLightChange() slotFreezeStatus() slotLockChange() slotColorChanged()"},
            {new LayerComboBox(&owner), "layerComboBoxChanged()",
             "slotUpdate() slotRowChanged(int) slotLabelChange(int,LayerItemData)"},
            {control, "folded(bool) geometryChanged()", "folderClicked()"},
            {new StackWidget(control, &owner), "", "hide(bool) adjustGeometry()"},
            {new ListWidget(&owner), "showItem(int)", ""},
            {new ListView(&owner), "currentItemChanged(QPixmap,QString) triggerDialog()",
             "slotRowChanged(int) slotButtonPress()"},
            {new BaseComboBox(&owner), "addMoreItem()",
             "openDialog() showCurrentItem(QPixmap,QString)"},
            {new ColorComboBox(&owner), "currentColorChanged(QColor)", "slotCurrentChanged(int)"},
            {new QOvColorComboBox(&owner), "", "openDialog()"},
            {new LineWidthComboBox(&owner), "",
             "openDialog() slotAddMoreItem() slotSettingsChanged(bool,int)"},
            {new LineTypeComboBox(&owner), "", "openDialog()"},
            {new TextStyleComboBox(&owner), "", "openDialog()"},
            {new OvLineWeightDialog(&owner), "lineWeightChanged(bool,int)",
             "millimeterConvert(bool) InConvert(bool) slotAccepted() slotCancel() slotHelp() "
             "slotCurrentLabelChaged(int)"},
            {new LayerLineWeightDialog(&owner), "layerLineWeightChanged(int)",
             "slotAccepted() slotCancel() slotHelp() slotCurrentLabelChaged(int)"},
            {new LayerLineTypeDialog(&owner), "", "slotAccepted() slotCancel() slotHelp()"},
            {new LayerWarningDialog(&owner), "", "slotAccepted() slotCancel()"},
            {new BaseGallery(&owner), "itemPressed(RibbonGalleryItem*)",
             "itemChangedPressed(RibbonGalleryItem*)"},
            {new ViewButton(&owner), "geometryChanged()", "options(QAction*)"},
            {new CustomControl(&owner), "enter(bool)", "adjustGeometry()"},
            {new MinMaxButton(&owner), "enter(bool) clickedClosed() clickedMin() clickedNormal()",
             ""}};

    Sender sender;
    for (const auto &[object, signalStrings, slotStrings] : rows) {
        for (const QByteArray &text : QByteArray(signalStrings).split(' '))
            QVERIFY2(text.isEmpty() || connect(object, '2' + text, this, SLOT(deleteLater())),
                     text);
        for (const QByteArray &text : QByteArray(slotStrings).split(' '))
            QVERIFY2(text.isEmpty()
                             || connect(&sender, "2sent" + text.mid(text.indexOf('(')), object,
                                        '1' + text),
                     text);
    }
}

/// A spy and a queued connection look for what is sent under the name in the string.
void tst_Interface::queuedRecords()
{
    QCOMPARE(QMetaType::type("RibbonGalleryItem*"), qMetaTypeId<RibbonGalleryItem *>());
    LayerItem item(nullptr);
    Sender sender;
    const char *const changed = SIGNAL(statusChanged(int, LayerItemData));
    QSignalSpy direct(&item, changed);
    QSignalSpy queued(&sender, SIGNAL(sent(int, LayerItemData)));
    connect(&item, changed, &sender, SIGNAL(sent(int, LayerItemData)), Qt::QueuedConnection);
    item.slotLightChange();
    QTRY_COMPARE(queued.count(), 1);
    for (const QSignalSpy *spy : {&direct, &queued})
        QCOMPARE(spy->at(0).at(1).value<LayerItemData>().name, QString("layer0"));
}

QTEST_MAIN(tst_Interface)
#include "tst_interface.moc"
