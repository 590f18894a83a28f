// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "QOvColorComboBox.h"

#include "StandardColors.h"

#include <OvCustomControl/Swatches.h>

#include <QListWidgetItem>
#include <QPointer>
#include <QStringList>

namespace OvCc {

namespace {

constexpr int rowHeight = 20;
constexpr int colorRole = Qt::UserRole;

} // namespace

struct QOvColorComboBox::Private
{
    QStringList names; ///< of the rows with a colour
};

QOvColorComboBox::QOvColorComboBox(QWidget *parent)
    : BaseComboBox(parent)
    , m_d(new Private)
{
    setButtonText(tr("select a color..."));
    setFixedWidth(150);
    setItemIconSize({14, 14});

    addColor(tr("By Layer"), Qt::white);
    addColor(tr("By Block"), Qt::white);
    const QList<NamedColor> standard = standardColors(staticMetaObject.className());
    for (const NamedColor &row : standard)
        addColor(row.name, row.color);
    fitListWidgetHeight(rowHeight);
    setCurrentIndex(ColorByLayerRow);

    connect(this, &BaseComboBox::rowChosen, this,
            [this](int row) { emit colorChosen(row, colorOf(row)); });
}

QOvColorComboBox::~QOvColorComboBox() = default;

QColor QOvColorComboBox::colorOf(int row) const
{
    const QListWidgetItem *place = item(row);
    return place ? place->data(colorRole).value<QColor>() : QColor();
}

void QOvColorComboBox::openDialog()
{
    const QPointer<QOvColorComboBox> guard(this);
    const QColor color = askForColor(this, staticMetaObject.className());
    const QString name = componentsOf(color);
    if (color.isValid() && !m_d->names.contains(name)) {
        addColor(name, color);
        fitListWidgetHeight(rowHeight);
        const int row = rowCount() - 1;
        setCurrentIndex(row);
        emit rowChosen(row);
    }
    if (guard)
        BaseComboBox::openDialog();
}

void QOvColorComboBox::addColor(const QString &name, const QColor &color)
{
    m_d->names.append(name);
    addItem(creatColorPix(color), name);
    if (QListWidgetItem *place = item(rowCount() - 1))
        place->setData(colorRole, color);
}

} // namespace OvCc
