// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Pictures.h"
#include "Stage.h"

#include <OvCustomControl/OvCustomControl.h>

#include <QPainter>

using namespace OvCc;

namespace {

constexpr int swatchSize = 16;

QPixmap swatch(const std::function<void(QPainter &)> &draw)
{
    QPixmap pixmap(swatchSize, swatchSize);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::black);
    painter.drawLine(0, swatchSize / 2, swatchSize, swatchSize / 2);
    draw(painter);
    return pixmap;
}

struct Row
{
    QPixmap swatch;
    QString label;
};

/// The rows of a picker or list of the host's own: what ends a dimension line.
QVector<Row> arrowheads()
{
    return {{swatch([](QPainter &painter) {
                 painter.drawPolygon(QPolygon({{0, 8}, {9, 5}, {9, 11}}));
             }),
             QStringLiteral("Arrow")},
            {swatch([](QPainter &painter) { painter.drawEllipse(QPoint(4, 8), 3, 3); }),
             QStringLiteral("Dot")},
            {swatch([](QPainter &painter) { painter.drawLine(1, 12, 9, 4); }),
             QStringLiteral("Oblique")}};
}

template <class Rows>
void addArrowheads(Rows &rows)
{
    const QVector<Row> all = arrowheads();
    for (const Row &row : all)
        rows.addItem(row.swatch, row.label);
}

const QString moreArrowheads = QStringLiteral("Others...");

QPixmap opened(QComboBox *picker)
{
    Stage stage({picker});
    picker->showPopup();
    return stage.picture();
}

QPixmap colorComboBox()
{
    auto *picker = new ColorComboBox;
    picker->setFixedWidth(150);
    return opened(picker);
}

QPixmap hostsOwn()
{
    auto *picker = new BaseComboBox;
    picker->setFixedSize(150, 20);
    picker->setItemIconSize({swatchSize, swatchSize});
    addArrowheads(*picker);
    picker->setButtonText(moreArrowheads);
    picker->setListWidgetHeight(100);
    picker->setCurrentIndex(1);
    return opened(picker);
}

QPixmap face()
{
    auto *face = new BaseEdit(nullptr);
    face->setFixedSize(150, 20);
    face->setCurrentIcon(creatColorPix(QColor(42, 138, 208)));
    face->setCurrentText(QStringLiteral("42,138,208"));
    return Stage({face}).picture();
}

ListView *filledView(QListView::ViewMode mode)
{
    auto *view = new ListView;
    view->setViewMode(mode);
    addArrowheads(*view);
    view->setButtonText(moreArrowheads);
    view->setCurrentRow(1);
    return view;
}

QPixmap listView()
{
    ListView *rows = filledView(QListView::ListMode);
    ListView *grid = filledView(QListView::IconMode);
    rows->setFixedSize(180, 110);
    grid->setFixedSize(260, 120);
    return Stage({rows, grid}).picture();
}

QPixmap listWidget()
{
    auto *list = new ListWidget;
    list->setFixedSize(150, 80);
    const QVector<Row> rows = arrowheads();
    for (const Row &row : rows)
        new QListWidgetItem(row.swatch, row.label, list); // which owns it
    list->setCurrentRow(0);
    return Stage({list}).picture();
}

} // namespace

QVector<Picture> pickerPictures()
{
    return {
            {QStringLiteral("images/BaseComboBox.png"), hostsOwn},
            {QStringLiteral("images/BaseEdit.png"), face},
            {QStringLiteral("images/ListView.png"), listView},
            {QStringLiteral("images/ListWidget.png"), listWidget},
            {QStringLiteral("images/ColorComboBox.png"), colorComboBox},
            {QStringLiteral("images/QOvColorComboBox.png"),
             [] { return opened(new QOvColorComboBox); }},
            {QStringLiteral("images/LineWidthComboBox.png"),
             [] { return opened(new LineWidthComboBox); }},
            {QStringLiteral("images/LineTypeComboBox.png"),
             [] { return opened(new LineTypeComboBox); }},
            {QStringLiteral("images/TextStyleComboBox.png"),
             [] { return opened(new TextStyleComboBox); }},
            {QStringLiteral("images/VisualStyleComboBox.png"),
             [] { return opened(new VisualStyleComboBox); }},
            {QStringLiteral("images/PropertyManager.png"),
             [] { return Stage({new PropertyManager}).picture(); }},
    };
}
