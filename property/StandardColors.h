#pragma once

#include <QColor>
#include <QList>
#include <QString>

class QWidget;

/// @file
/// What the colour pickers have in common.

namespace OvCc {

struct NamedColor
{
    QString name;
    QColor color;
};

/// The seven colours that every colour picker offers, from red to white.
QList<NamedColor> standardColors();

/// The name of a colour that has none: its components, as in `255,128,0`.
QString componentsOf(const QColor &color);

/// Shows the colour dialog over @p picker.
/// @return an invalid colour when the user cancelled it
QColor askForColor(QWidget *picker);

} // namespace OvCc
