#include "StandardColors.h"

#include <QColorDialog>
#include <QCoreApplication>

namespace OvCc {

namespace {

constexpr struct
{
    const char *name;
    Qt::GlobalColor color;
} colors[] = {
        {QT_TRANSLATE_NOOP("StandardColors", "Red"), Qt::red},
        {QT_TRANSLATE_NOOP("StandardColors", "Yellow"), Qt::yellow},
        {QT_TRANSLATE_NOOP("StandardColors", "Green"), Qt::green},
        {QT_TRANSLATE_NOOP("StandardColors", "Cyan"), Qt::cyan},
        {QT_TRANSLATE_NOOP("StandardColors", "Blue"), Qt::blue},
        {QT_TRANSLATE_NOOP("StandardColors", "Magenta"), Qt::magenta},
        {QT_TRANSLATE_NOOP("StandardColors", "White"), Qt::white},
};

} // namespace

QList<NamedColor> standardColors()
{
    QList<NamedColor> named;
    for (const auto &[name, color] : colors)
        named.append({QCoreApplication::translate("StandardColors", name), color});
    return named;
}

QString componentsOf(const QColor &color)
{
    return QString::asprintf("%d,%d,%d", color.red(), color.green(), color.blue());
}

QColor askForColor(QWidget *picker)
{
    return QColorDialog::getColor(Qt::white, picker,
                                  QCoreApplication::translate("StandardColors", "Select Color"));
}

} // namespace OvCc
