#include "ColorComboBox.h"

#include "StandardColors.h"

#include <OvCustomControl/Swatches.h>

#include <QEvent>

namespace OvCc {

namespace {

/// Fixed, however many rows there are.
constexpr int lastReportedIndex = 6;

QColor &lastReportedColor()
{
    static QColor color = Qt::red;
    return color;
}

} // namespace

ColorComboBox::ColorComboBox(QWidget *parent)
    : QComboBox(parent)
{
    const QList<NamedColor> standard = standardColors(staticMetaObject.className());
    for (const NamedColor &row : standard) {
        m_names.append(row.name);
        m_colors.append(row.color);
    }
    m_names.append(tr("Select Color..."));
    m_colors.append(Qt::lightGray);

    for (int row = 0; row < m_names.size(); ++row)
        addItem(creatColorPix(m_colors.at(row)), m_names.at(row));
    setFixedHeight(22);
    connect(this, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &ColorComboBox::slotCurrentChanged);
}

ColorComboBox::~ColorComboBox() = default;

QColor ColorComboBox::currentColor()
{
    return lastReportedColor();
}

bool ColorComboBox::event(QEvent *event)
{
    if (event->type() != QEvent::DeferredDelete || !m_isSelecting)
        return QComboBox::event(event);
    m_isDeletedLater = true;
    return true;
}

void ColorComboBox::slotCurrentChanged(int index)
{
    if (m_isSelecting)
        return;
    if (index >= 0 && index <= lastReportedIndex) {
        m_lastIndex = index;
        report(m_colors.at(index));
    } else if (index == m_colors.size() - 1 && currentText() == m_names.constLast()) {
        selectColor(index);
    }
}

void ColorComboBox::report(const QColor &color)
{
    lastReportedColor() = color;
    emit currentColorChanged(color);
}

/// The rows that become current on the way to the outcome are nobody's choice.
void ColorComboBox::selectColor(int index)
{
    m_isSelecting = true;
    const QColor color = askForColor(this, staticMetaObject.className());
    if (color.isValid()) {
        addColor(color, index);
        m_lastIndex = index;
    } else {
        setCurrentIndex(m_lastIndex);
    }
    m_isSelecting = false;
    if (m_isDeletedLater)
        deleteLater();
    if (color.isValid())
        report(color);
}

/// Puts @p color first and makes it current. The row that asks for a colour, at @p index, stays last.
void ColorComboBox::addColor(const QColor &color, int index)
{
    m_names.prepend(componentsOf(color));
    m_colors.prepend(color);
    removeItem(index);
    insertItem(0, creatColorPix(color), m_names.constFirst());
    insertItem(index + 1, creatColorPix(m_colors.constLast()), m_names.constLast());
    setCurrentIndex(0);
}

} // namespace OvCc
