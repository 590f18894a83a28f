// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Counting.h"

#include "LayerFile.h"
#include "OwnDatabase.h"

#include <OvCustomControl/LayerColumns.h>
#include <OvCustomControl/LayerComboBox.h>
#include <OvCustomControl/LayerItem.h>
#include <OvCustomControl/LayerLink.h>
#include <OvCustomControl/LayerManager.h>
#include <OvCustomControl/LayerTableWidget.h>

#include <QApplication>
#include <QMouseEvent>
#include <QPushButton>
#include <QTextStream>

#include <array>

using namespace OvCc;

namespace {

/// What is counted, each with the last layer where one is clicked: it takes longest to be found.
constexpr std::array operations{"reload of the table",    "refresh of the table",
                                "click in the table",     "update of the box",
                                "click in its drop-down", "click in the table, both linked"};
/// By the functions' names, for each operation.
using Calls = std::map<std::string, std::array<int, operations.size()>>;

void clickLastLock(QTableView &table)
{
    const QModelIndex cell = table.model()->index(table.model()->rowCount() - 1, UnlockedColumn);
    const QPointF place = table.visualRect(cell).center();
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, place, Qt::LeftButton,
                          type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                          Qt::NoModifier);
        QApplication::sendEvent(table.viewport(), &event);
    }
}

/// The calls in a drawing with so many layers.
Calls callsFor(int layers)
{
    const auto drawing = OwnDatabase::open(QStringLiteral(":memory:"));
    if (!drawing)
        return {};
    OwnDatabase::setWorkingDatabase(drawing.get());
    for (int number = 1; number < layers; ++number)
        OwnDatabase::addLayer(*drawing, QStringLiteral("Layer%1").arg(number, 3, 10, QChar('0')));

    for (const auto &layer : drawing->file().layers())
        layer->lineWeight = 25; // whose label depends on a variable

    LayerManager panel;
    LayerComboBox box;
    panel.resize(900, 100 + 30 * layers);
    panel.show();
    box.slotUpdate();
    LayerItem *lastRow = box.layerItem(layers - 1);

    const std::array<std::function<void()>, operations.size()> works{
            [&] { panel.slotUpLayerModel(); },
            [&] { panel.refresh(); },
            [&] { clickLastLock(*panel.table()); },
            [&] { box.slotUpdate(); },
            [&] { lastRow->findChildren<QPushButton *>().at(LockStatus)->click(); },
            [&] {
                LayerLink link;
                link.add(&panel);
                link.add(&box);
                link.flush();
                OwnDatabase::takeCalls();
                clickLastLock(*panel.table());
                link.flush();
            },
    };
    Calls calls;
    OwnDatabase::takeCalls();
    for (std::size_t operation = 0; operation < works.size(); ++operation) {
        works.at(operation)();
        for (const auto &[function, count] : OwnDatabase::takeCalls())
            calls[function].at(operation) = count;
    }
    return calls;
}

/// What a count is of the number of layers, from those for 10, 20 and 40 of them.
QString formula(int for10, int for20, int for40)
{
    const int perLayer = (for20 - for10) / 10;
    const int once = for10 - 10 * perLayer;
    if (for20 != once + 20 * perLayer || for40 != once + 40 * perLayer)
        return QStringLiteral("%1, %2, %3 for 10, 20, 40").arg(for10).arg(for20).arg(for40);
    const QString slope =
            perLayer == 1 ? QStringLiteral("N") : QStringLiteral("%1 N").arg(perLayer);
    if (perLayer == 0)
        return once == 0 ? QString() : QString::number(once);
    return once == 0 ? slope
                     : QStringLiteral("%1 %2 %3").arg(slope, once < 0 ? "-" : "+").arg(qAbs(once));
}

} // namespace

int printCalls()
{
    Calls for10 = callsFor(10);
    Calls for20 = callsFor(20);
    Calls for40 = callsFor(40);
    if (for10.empty())
        return 1;
    QTextStream out(stdout);
    out << "| Calls of";
    for (const char *operation : operations)
        out << " | " << operation;
    out << " |\n|---" << QString("|---").repeated(operations.size()) << "|\n";
    for (const auto &[function, counts] : for40) {
        out << "| `" << function.c_str() << '`';
        for (std::size_t operation = 0; operation < operations.size(); ++operation)
            out << " | "
                << formula(for10[function].at(operation), for20[function].at(operation),
                           counts.at(operation));
        out << " |\n";
    }
    return 0;
}
