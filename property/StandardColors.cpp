// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "StandardColors.h"

#include <QColorDialog>
#include <QCoreApplication>
#include <QPointer>

namespace OvCc {

namespace {

constexpr struct
{
    const char *name;
    Qt::GlobalColor color;
} colors[] = {
        {"Red", Qt::red},   {"Yellow", Qt::yellow},   {"Green", Qt::green}, {"Cyan", Qt::cyan},
        {"Blue", Qt::blue}, {"Magenta", Qt::magenta}, {"White", Qt::white},
};

} // namespace

QList<NamedColor> standardColors(const char *context)
{
    QList<NamedColor> named;
    for (const auto &[name, color] : colors)
        named.append({QCoreApplication::translate(context, name), color});
    return named;
}

QColor askForColor(QWidget *picker, const char *context)
{
    const QPointer<QColorDialog> dialog = new QColorDialog(Qt::white, picker);
    dialog->setWindowTitle(QCoreApplication::translate(context, "Select Color"));
    dialog->exec();
    const QColor color = dialog ? dialog->selectedColor() : QColor();
    delete dialog;
    return color;
}

} // namespace OvCc
