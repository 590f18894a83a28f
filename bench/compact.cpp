// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Bench.h"

#include <KcHost/KcHost.h>
#include <OvCustomControl/OvCustomControl.h>

#include <QCoreApplication>
#include <QListWidget>

#include <malloc.h>

namespace {

QString rowName(int row)
{
    return QStringLiteral("Layer %1").arg(row);
}

double fillTime()
{
    std::unique_ptr<OvCc::LayerComboBox> combo;
    return medianTime([&] { combo->slotUpdate(); },
                      [&] {
                          QCoreApplication::processEvents();
                          combo = std::make_unique<OvCc::LayerComboBox>();
                      });
}

/// The first update of a layer combo box, against filling a plain list with as many texts.
Times comboFill(int n)
{
    const auto drawing = openDrawing(n);
    std::unique_ptr<QListWidget> list;
    const double baseline = medianTime(
            [&] {
                for (int row = 0; row < n; ++row)
                    list->addItem(rowName(row));
            },
            [&] {
                QCoreApplication::processEvents();
                list = std::make_unique<QListWidget>();
            });
    return {fillTime(), baseline};
}

/// An update after one layer was changed, against the first one.
Times comboRefresh(int n)
{
    const auto drawing = openDrawing(n);
    OvCc::LayerComboBox combo;
    combo.slotUpdate();
    bool isOn = true;
    const double ours = medianTime([&] { combo.slotUpdate(); },
                                   [&] {
                                       isOn = !isOn;
                                       OvLayerUtility().setLayerOff(rowName(n / 2), isOn);
                                   });
    return {ours, fillTime()};
}

double popupTime(QComboBox &combo)
{
    combo.show();
    return medianTime(
            [&] {
                combo.showPopup();
                QCoreApplication::processEvents();
            },
            [&] {
                combo.hidePopup();
                QCoreApplication::processEvents();
            });
}

/// Opening the drop-down, until all of it is painted, against that of a plain combo box with as many
/// texts.
Times comboPopup(int n)
{
    const auto drawing = openDrawing(n);
    OvCc::LayerComboBox combo;
    combo.slotUpdate();
    QComboBox plain;
    plain.setEditable(true);
    for (int row = 0; row < n; ++row)
        plain.addItem(rowName(row));
    return {popupTime(combo), popupTime(plain)};
}

/// The bytes that are allocated now.
double usedBytes()
{
    const auto heap = mallinfo2();
    return double(heap.uordblks + heap.hblkhd);
}

/// The bytes that are allocated by @p fill and not freed again.
double bytesOfFilling(const std::function<void()> &fill)
{
    const double before = usedBytes();
    fill();
    return usedBytes() - before;
}

/// The bytes that a layer takes in a combo box beyond those few that have a widget, against those of
/// a row in a plain list of texts. What a box with 300 layers takes does not count.
Times comboMemory(int n)
{
    constexpr int few = 300;
    const auto filled = [](int layers) {
        const auto drawing = openDrawing(layers);
        OvCc::LayerComboBox combo;
        return bytesOfFilling([&] { combo.slotUpdate(); });
    };
    filled(few); // what is made once
    const double ours = filled(n) - filled(few);
    QListWidget list;
    const double baseline = bytesOfFilling([&] {
        for (int row = 0; row < n - few; ++row)
            list.addItem(rowName(row));
    });
    return {ours / (n - few), baseline / (n - few)};
}

} // namespace

QList<Work> compactWorks()
{
    const QList<int> sizes{1000, 10000, 100000};
    return {
            {QStringLiteral("combo_fill"), sizes, comboFill},
            {QStringLiteral("combo_refresh"), sizes, comboRefresh},
            {QStringLiteral("combo_popup"), sizes, comboPopup},
            {QStringLiteral("combo_memory"), sizes, comboMemory, "bytes"},
    };
}
