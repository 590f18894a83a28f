// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "PropertyManager.h"

#include "layer/pictures/SmallImage.h"

#include <OvCustomControl/LineTypeComboBox.h>
#include <OvCustomControl/LineWidthComboBox.h>
#include <OvCustomControl/QOvColorComboBox.h>

#include <QGridLayout>
#include <QLabel>
#include <QPointer>

namespace OvCc {

namespace {

QLabel *iconLabel(const QString &path)
{
    auto *label = new QLabel;
    label->setPixmap(smallImage(path));
    return label;
}

} // namespace

struct PropertyManager::Private
{
    QPointer<QLabel> colorLabel;
    QPointer<QLabel> lineWeightLabel;
    QPointer<QLabel> lineTypeLabel;
    QPointer<QOvColorComboBox> colorPicker = new QOvColorComboBox;
    QPointer<LineWidthComboBox> lineWeightPicker = new LineWidthComboBox;
    QPointer<LineTypeComboBox> lineTypePicker = new LineTypeComboBox;
};

PropertyManager::PropertyManager(QWidget *parent)
    : QWidget(parent)
    , m_d(new Private{iconLabel(QStringLiteral(":/OVRC_COLOR.png")),
                      iconLabel(QStringLiteral(":/OVRC_LINEWEIGHT.png")),
                      iconLabel(QStringLiteral(":/OVRC_LINETYPE.png"))})
{
    auto *grid = new QGridLayout(this);
    grid->setSpacing(2);
    grid->setContentsMargins(1, 0, 26, 2);
    grid->addWidget(m_d->colorLabel, 0, 0);
    grid->addWidget(m_d->colorPicker, 0, 1);
    grid->addWidget(m_d->lineWeightLabel, 1, 0);
    grid->addWidget(m_d->lineWeightPicker, 1, 1);
    grid->addWidget(m_d->lineTypeLabel, 2, 0);
    grid->addWidget(m_d->lineTypePicker, 2, 1);

    connect(m_d->colorPicker, &QOvColorComboBox::colorChosen, this, &PropertyManager::colorChosen);
    connect(m_d->lineWeightPicker, &LineWidthComboBox::lineWeightChosen, this,
            &PropertyManager::lineWeightChosen);
    connect(m_d->lineTypePicker, &LineTypeComboBox::lineTypeChosen, this,
            &PropertyManager::lineTypeChosen);
}

PropertyManager::~PropertyManager()
{
    delete m_d->colorLabel;
    delete m_d->lineWeightLabel;
    delete m_d->lineTypeLabel;
    delete m_d->colorPicker;
    delete m_d->lineWeightPicker;
    delete m_d->lineTypePicker;
}

QOvColorComboBox *PropertyManager::colorPicker() const
{
    return m_d->colorPicker;
}

LineWidthComboBox *PropertyManager::lineWeightPicker() const
{
    return m_d->lineWeightPicker;
}

LineTypeComboBox *PropertyManager::lineTypePicker() const
{
    return m_d->lineTypePicker;
}

} // namespace OvCc
