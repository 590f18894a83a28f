#include "Bench.h"

#include <KcHost/KcHost.h>
#include <OvCustomControl/OvCustomControl.h>

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

namespace {

/// A row with the children of a layer's row and nothing behind them.
void addPlainRow(QListWidget &list, const QPixmap &picture, const QString &name)
{
    auto *row = new QWidget(&list);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    for (int place = 0; place < 4; ++place) {
        auto *button = new QPushButton;
        button->setIcon(picture);
        button->setIconSize(picture.size());
        button->setFixedSize(picture.size());
        layout->addWidget(button);
    }
    layout->addWidget(new QLabel(name));
    auto *item = new QListWidgetItem(&list);
    item->setSizeHint({0, 25});
    list.setItemWidget(item, row);
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

/// The first update of a layer combo box, against building as many plain rows.
Times comboFill(int n)
{
    const auto drawing = openDrawing(n);
    const QPixmap picture = OvCc::loadImage(QLatin1String(layerPicture));
    std::unique_ptr<QListWidget> list;
    const double baseline = medianTime(
            [&] {
                for (int row = 0; row < n; ++row)
                    addPlainRow(*list, picture, QStringLiteral("Layer %1").arg(row));
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
                                       OvLayerUtility().setLayerOff(
                                               QStringLiteral("Layer %1").arg(n / 2), isOn);
                                   });
    return {ours, fillTime()};
}

} // namespace

QList<Work> compactWorks()
{
    const QList<int> sizes{1000, 10000};
    return {
            {QStringLiteral("combo_fill"), sizes, comboFill},
            {QStringLiteral("combo_refresh"), sizes, comboRefresh},
    };
}
