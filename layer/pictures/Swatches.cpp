// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Swatches.h"

#include <QCoreApplication>
#include <QHash>
#include <QPainter>
#include <QPushButton>

namespace {

constexpr QSize colorSwatchSize(14, 14);
constexpr QSize lineSwatchSize(48, 16);

QPixmap emptySwatch(QSize size, const QColor &ground)
{
    QPixmap swatch(size);
    swatch.fill(ground);
    return swatch;
}

QPen swatchPen(double width)
{
    return QPen(QBrush(Qt::black), width, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin);
}

QHash<QString, QPixmap> &loadedImages()
{
    static QHash<QString, QPixmap> images;
    return images;
}

QPixmap decodeImage(const QString &path)
{
    QImage image(path);
    if (image.isNull())
        return {};
    image.setAlphaChannel(image.createMaskFromColor(qRgb(255, 0, 255), Qt::MaskOutColor));
    return QPixmap::fromImage(image);
}

} // namespace

QPixmap creatColorPix(QColor color)
{
    QPixmap swatch = emptySwatch(colorSwatchSize, Qt::transparent);
    QPainter painter(&swatch);
    painter.setPen(swatchPen(1.0));
    painter.setBrush(color);
    painter.drawRect(2, 2, 9, 9);
    return swatch;
}

QPixmap drawLineWeight(double width)
{
    QPixmap swatch = emptySwatch(lineSwatchSize, Qt::transparent);
    QPainter painter(&swatch);
    painter.setPen(swatchPen(width));
    painter.drawLine(4, 9, 41, 9);
    return swatch;
}

QPixmap drawLineType(Qt::PenStyle style)
{
    return drawLineWeight(style);
}

QPixmap OvCc::creatTextStyleIcon(QString text)
{
    QPixmap swatch = emptySwatch(lineSwatchSize, Qt::white);
    QPainter painter(&swatch);
    painter.setPen(swatchPen(1.0));
    painter.drawText(swatch.rect(), Qt::AlignCenter, text);
    painter.drawRect(1, 1, 45, 14);
    return swatch;
}

QPixmap OvCc::loadImage(QString path)
{
    QHash<QString, QPixmap> &images = loadedImages();
    const auto known = images.constFind(path);
    if (known != images.constEnd())
        return *known;

    // Pictures must not outlive the application that can show them.
    if (images.isEmpty())
        qAddPostRoutine([] { loadedImages().clear(); });
    return *images.insert(path, decodeImage(path));
}

QPushButton *OvCc::createLayerItemButton(QPixmap pixmap)
{
    auto *button = new QPushButton;
    button->setIcon(pixmap);
    button->setFixedSize(pixmap.size());
    button->setIconSize(pixmap.size());
    button->setObjectName(QStringLiteral("layerItemBtn"));
    return button;
}
