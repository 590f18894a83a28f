// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "PropertyBar.h"

#include <OvCustomControl/PropertyManager.h>
#include <OvCustomControl/TextStyleComboBox.h>
#include <OvCustomControl/VisualStyleComboBox.h>

#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QStyle>

#include <algorithm>
#include <iterator>

namespace Tessa {

namespace {

constexpr int margin = 6;
constexpr int rowSpacing = 2; // as in the property panel
constexpr int styleColumns = 3;

/// What the canvas does for each row of the visual style picker. A drawing is shown in one projection
/// only, so both wireframes look the same.
constexpr FaceStyle faceStyles[] = {
        FaceStyle::Wireframe, FaceStyle::Wireframe, FaceStyle::Hidden,       FaceStyle::Flat,
        FaceStyle::Gouraud,   FaceStyle::FlatEdges, FaceStyle::GouraudEdges,
};
static_assert(std::size(faceStyles) == OvCc::GouraudEdgesStyle + 1);

/// Widens the cells of a picker with pictures until they cut no name.
void widenCells(OvCc::BaseComboBox *picker)
{
    QListWidget *list = picker->item(0)->listWidget();
    const int border = list->style()->pixelMetric(QStyle::PM_FocusFrameHMargin) + 1;
    QSize cell = list->gridSize();
    for (int row = 0; row < list->count(); ++row) {
        const int text = list->fontMetrics().horizontalAdvance(list->item(row)->text());
        cell.setWidth(qMax(cell.width(), text + 4 * border));
    }
    list->setGridSize(cell);
    for (int row = 0; row < list->count(); ++row)
        list->item(row)->setSizeHint(cell);
    // The list leaves room for a scroll bar, though it needs none.
    const int width = styleColumns * cell.width()
                      + list->style()->pixelMetric(QStyle::PM_ScrollBarExtent) + 2 * margin;
    picker->view()->setFixedWidth(qMax(picker->view()->width(), width));
}

} // namespace

PropertyBar::PropertyBar(QWidget *parent)
    : QWidget(parent)
    , m_panel(new OvCc::PropertyManager)
    , m_textStyles(new OvCc::TextStyleComboBox)
    , m_visualStyles(new OvCc::VisualStyleComboBox)
{
    auto *rows = new QGridLayout(this);
    rows->setContentsMargins(margin, 0, margin, 0);
    rows->setVerticalSpacing(rowSpacing);
    rows->setRowStretch(0, 1);
    rows->setRowStretch(4, 1);
    rows->addWidget(m_panel, 1, 0, 3, 1);
    rows->addWidget(new QLabel(tr("Text style")), 1, 1);
    rows->addWidget(m_textStyles, 1, 2);
    rows->addWidget(new QLabel(tr("Visual style")), 2, 1);
    rows->addWidget(m_visualStyles, 2, 2);
    widenCells(m_visualStyles);
    connect(m_visualStyles, &OvCc::BaseComboBox::rowChosen, this,
            [this](int row) { emit faceStyleChosen(faceStyles[row]); });
}

void PropertyBar::showFaceStyle(FaceStyle style)
{
    const auto row = std::find(std::begin(faceStyles), std::end(faceStyles), style);
    m_visualStyles->setCurrentIndex(int(row - std::begin(faceStyles)));
}

} // namespace Tessa
