// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "ColorComboBox.h"

#include "StandardColors.h"

#include <OvCustomControl/Swatches.h>

#include <QEvent>
#include <QList>
#include <QStringList>

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

struct ColorComboBox::Private
{
    QStringList names;
    QList<QColor> colors;
    int lastIndex = 0; ///< where a cancelled dialog goes back to
    bool isSelecting = false;
    bool isDeletedLater = false; ///< was asked for while the dialog was up
};

ColorComboBox::ColorComboBox(QWidget *parent)
    : QComboBox(parent)
    , m_d(new Private)
{
    const QList<NamedColor> standard = standardColors(staticMetaObject.className());
    for (const NamedColor &row : standard) {
        m_d->names.append(row.name);
        m_d->colors.append(row.color);
    }
    m_d->names.append(tr("Select Color..."));
    m_d->colors.append(Qt::lightGray);

    for (int row = 0; row < m_d->names.size(); ++row)
        addItem(creatColorPix(m_d->colors.at(row)), m_d->names.at(row));
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
    if (event->type() != QEvent::DeferredDelete || !m_d->isSelecting)
        return QComboBox::event(event);
    m_d->isDeletedLater = true;
    return true;
}

void ColorComboBox::slotCurrentChanged(int index)
{
    if (m_d->isSelecting)
        return;
    if (index >= 0 && index <= lastReportedIndex) {
        m_d->lastIndex = index;
        report(m_d->colors.at(index));
    } else if (index == m_d->colors.size() - 1 && currentText() == m_d->names.constLast()) {
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
    m_d->isSelecting = true;
    const QColor color = askForColor(this, staticMetaObject.className());
    if (color.isValid()) {
        addColor(color, index);
        m_d->lastIndex = index;
    } else {
        setCurrentIndex(m_d->lastIndex);
    }
    m_d->isSelecting = false;
    if (m_d->isDeletedLater)
        deleteLater();
    if (color.isValid())
        report(color);
}

/// Puts @p color first and makes it current. The row that asks for a colour, at @p index, stays last.
void ColorComboBox::addColor(const QColor &color, int index)
{
    m_d->names.prepend(componentsOf(color));
    m_d->colors.prepend(color);
    removeItem(index);
    insertItem(0, creatColorPix(color), m_d->names.constFirst());
    insertItem(index + 1, creatColorPix(m_d->colors.constLast()), m_d->names.constLast());
    setCurrentIndex(0);
}

} // namespace OvCc
