// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Pictures.h"
#include "Stage.h"

#include <OvCustomControl/OvCustomControl.h>

#include <QFile>
#include <QHeaderView>
#include <QtTest>

using namespace OvCc;

namespace {

/// A layer that is on, thawed and unlocked.
LayerItemData layer(const QString &name, const QColor &color)
{
    LayerItemData data;
    data.name = name;
    data.color = color;
    data.isOn = true;
    return data;
}

LayerItemData frozenLayer()
{
    LayerItemData data = layer(QStringLiteral("Survey points"), QColor(255, 127, 0));
    data.isFrozen = true;
    data.isLocked = true;
    return data;
}

LayerComboBox *updatedBox()
{
    auto *box = new LayerComboBox;
    box->slotUpdate();
    return box;
}

template <class Table>
Table *sized(Table *table, int width, int height)
{
    table->setFixedSize(width, height);
    return table;
}

/// Makes room for whole names of layers and colours.
void widenColumns(LayerTableWidget &table)
{
    table.frozenView()->setColumnWidth(NameColumn, 100);
    table.setColumnWidth(ColorColumn, 90);
}

LayerTableWidget *filledTable()
{
    auto *table = sized(new LayerTableWidget, 640, 278);
    table->InitLayerModel();
    widenColumns(*table);
    return table;
}

LayerManager *filledPanel()
{
    auto *panel = sized(new LayerManager, 640, 303);
    panel->slotUpLayerModel();
    widenColumns(*panel->table());
    return panel;
}

QPixmap layerComboBox()
{
    LayerComboBox *box = updatedBox();
    Stage stage({box});
    box->showPopup();
    return stage.picture();
}

QPixmap layerEdit()
{
    auto *one = sized(new LayerEdit(nullptr), 150, 20);
    auto *other = sized(new LayerEdit(nullptr), 150, 20);
    one->setCurrentLayer(layer(QStringLiteral("Doors"), QColor(217, 122, 38)));
    other->setCurrentLayer(frozenLayer());
    return Stage({one, other}).picture();
}

QPixmap layerItem()
{
    auto *one = new LayerItem(nullptr);
    auto *other = new LayerItem(nullptr);
    one->setCurrentLayer(layer(QStringLiteral("Doors"), QColor(217, 122, 38)));
    other->setCurrentLayer(frozenLayer());
    return Stage({one, other}).picture();
}

QPixmap layerManager()
{
    return Stage({filledPanel()}).picture();
}

QPixmap layerTable()
{
    return Stage({filledTable()}).picture();
}

QPixmap frozenTable()
{
    LayerTableWidget *table = filledTable();
    Stage stage({table});
    return table->frozenView()->grab();
}

QPixmap columnMenu()
{
    LayerTableWidget *table = filledTable();
    Stage stage({table});
    const QHeaderView &header = *table->horizontalHeader();
    const QPoint place(header.sectionViewportPosition(OnColumn) + 8, 8);
    QCursor::setPos(header.mapToGlobal(place)); // where the menu opens
    return stage.pictureDuring([&] {
        QTest::mouseClick(stage.windowHandle(), Qt::RightButton, Qt::NoModifier,
                          header.viewport()->mapTo(&stage, place));
    });
}

QPixmap searchEdit()
{
    auto *empty = sized(new SearchLayerEdit, 180, 20);
    auto *full = sized(new SearchLayerEdit, 180, 20);
    full->setText(QStringLiteral("wa*"));
    return Stage({empty, full}).picture();
}

QPixmap layerControl()
{
    auto *bar = new LayerControl;
    bar->layerComboBox()->slotUpdate();
    return Stage({bar}).picture();
}

QPixmap stackWidget()
{
    auto *bar = new LayerControl;
    bar->layerComboBox()->slotUpdate();
    Stage stage({bar});
    StackWidget panel(bar);
    bar->setFolded(false);
    panel.adjustGeometry();
    panel.propertyManager()->setAutoFillBackground(true);
    return stage.picture();
}

QPixmap customControl()
{
    auto *control = new CustomControl;
    control->layerComboBox()->slotUpdate();
    Stage stage({control});
    stage.darken();
    return stage.picture();
}

template <class Dialog>
QPixmap dialog(const std::function<void(Dialog &)> &prepare)
{
    Dialog window(nullptr);
    prepare(window);
    window.show();
    QCoreApplication::processEvents();
    return window.grab();
}

QPixmap warning()
{
    return dialog<LayerWarningDialog>([](LayerWarningDialog &question) {
        question.setTipsText(QStringLiteral("Turn off the current layer?"));
        question.setButtonStatus(true);
    });
}

/// The layer widgets with the style sheet that docs/style.md shows.
QPixmap styled()
{
    LayerComboBox *box = updatedBox();
    auto *colors = new QOvColorComboBox;
    Stage stage({box, sized(filledPanel(), 640, 193), colors});
    QFile sheet(QStringLiteral(OVCC_SOURCE_DIR "/docs/slate.qss"));
    if (!sheet.open(QIODevice::ReadOnly))
        return {};
    stage.setStyleSheet(QString::fromUtf8(sheet.readAll()));
    colors->showPopup();
    return stage.picture();
}

} // namespace

QVector<Picture> layerPictures()
{
    return {
            {QStringLiteral("images/LayerComboBox.png"), layerComboBox},
            {QStringLiteral("images/LayerEdit.png"), layerEdit},
            {QStringLiteral("images/LayerItem.png"), layerItem},
            {QStringLiteral("images/LayerManager.png"), layerManager},
            {QStringLiteral("images/LayerTableWidget.png"), layerTable},
            {QStringLiteral("images/FrozenTableWidget.png"), frozenTable},
            {QStringLiteral("images/LayerAction.png"), columnMenu},
            {QStringLiteral("images/SearchLayerEdit.png"), searchEdit},
            {QStringLiteral("images/LayerControl.png"), layerControl},
            {QStringLiteral("images/StackWidget.png"), stackWidget},
            {QStringLiteral("images/CustomControl.png"), customControl},
            {QStringLiteral("images/LayerWarningDialog.png"), warning},
            {QStringLiteral("images/LayerLineWeightDialog.png"),
             [] {
                 return dialog<LayerLineWeightDialog>(
                         [](LayerLineWeightDialog &list) { list.setCurrentLineweight(8); });
             }},
            {QStringLiteral("images/LayerLineTypeDialog.png"),
             [] { return dialog<LayerLineTypeDialog>([](LayerLineTypeDialog &) {}); }},
            {QStringLiteral("images/OvLineWeightDialog.png"),
             [] {
                 return dialog<OvLineWeightDialog>(
                         [](OvLineWeightDialog &list) { list.setCurrentLineweight(3); });
             }},
            {QStringLiteral("images/slate.png"), styled},
    };
}
