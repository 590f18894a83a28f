// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "VisualStyleComboBox.h"

#include <OvCustomControl/Swatches.h>

#include <QAbstractItemView>
#include <QListView>

namespace OvCc {

namespace {

/// The labels and the names of the pictures are known to users and hosts as they are spelt here.
constexpr struct
{
    const char *label;
    const char *picture;
} styles[] = {
        {QT_TRANSLATE_NOOP("OvCc::VisualStyleComboBox", "2D wireframe"), ":/2d_LineFrame.bmp"},
        {QT_TRANSLATE_NOOP("OvCc::VisualStyleComboBox", "3D wireframe"), ":/3d_LineFrame.bmp"},
        {QT_TRANSLATE_NOOP("OvCc::VisualStyleComboBox", "Hidden"), ":/3d_Hide.bmp"},
        {QT_TRANSLATE_NOOP("OvCc::VisualStyleComboBox", "Flat"), ":/Flat.bmp"},
        {QT_TRANSLATE_NOOP("OvCc::VisualStyleComboBox", "Gouraud"), ":/Grouraud.bmp"},
        {QT_TRANSLATE_NOOP("OvCc::VisualStyleComboBox", "Flat+Egdes"), ":/Flat+Edges.bmp"},
        {QT_TRANSLATE_NOOP("OvCc::VisualStyleComboBox", "Gouraud+Egdes"), ":/Gouraud+Edge.bmp"},
};
static_assert(std::size(styles) == GouraudEdgesStyle + 1);

} // namespace

VisualStyleComboBox::VisualStyleComboBox(QWidget *parent)
    : BaseComboBox(parent)
{
    setFixedSize(150, 20);
    view()->setFixedWidth(280);
    setItemIconSize({50, 50});
    setViewMode(QListView::IconMode);
    for (const auto &[label, picture] : styles)
        addItem(loadImage(QLatin1String(picture)), tr(label));
    hideSettingBtn();
    setListWidgetHeight(240);
    setCurrentIndex(Wireframe2dStyle);
}

VisualStyleComboBox::~VisualStyleComboBox() = default;

} // namespace OvCc
