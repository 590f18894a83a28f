#include "PropertyManager.h"

#include "layer/data/SmallImage.h"

#include <OvCustomControl/LineTypeComboBox.h>
#include <OvCustomControl/LineWidthComboBox.h>
#include <OvCustomControl/QOvColorComboBox.h>

#include <QGridLayout>
#include <QLabel>

namespace OvCc {

namespace {

QLabel *iconLabel(const QString &path)
{
    auto *label = new QLabel;
    label->setPixmap(smallImage(path));
    return label;
}

} // namespace

PropertyManager::PropertyManager(QWidget *parent)
    : QWidget(parent)
    , m_colorLabel(iconLabel(QStringLiteral(":/OVRC_COLOR.png")))
    , m_lineWeightLabel(iconLabel(QStringLiteral(":/OVRC_LINEWEIGHT.png")))
    , m_lineTypeLabel(iconLabel(QStringLiteral(":/OVRC_LINETYPE.png")))
    , m_colorPicker(new QOvColorComboBox)
    , m_lineWeightPicker(new LineWidthComboBox)
    , m_lineTypePicker(new LineTypeComboBox)
{
    auto *grid = new QGridLayout(this);
    grid->setSpacing(2);
    grid->setContentsMargins(1, 0, 26, 2);
    grid->addWidget(m_colorLabel, 0, 0);
    grid->addWidget(m_colorPicker, 0, 1);
    grid->addWidget(m_lineWeightLabel, 1, 0);
    grid->addWidget(m_lineWeightPicker, 1, 1);
    grid->addWidget(m_lineTypeLabel, 2, 0);
    grid->addWidget(m_lineTypePicker, 2, 1);

    connect(m_colorPicker, &QOvColorComboBox::colorChosen, this, &PropertyManager::colorChosen);
    connect(m_lineWeightPicker, &LineWidthComboBox::lineWeightChosen, this,
            &PropertyManager::lineWeightChosen);
    connect(m_lineTypePicker, &LineTypeComboBox::lineTypeChosen, this,
            &PropertyManager::lineTypeChosen);
}

PropertyManager::~PropertyManager()
{
    delete m_colorLabel;
    delete m_lineWeightLabel;
    delete m_lineTypeLabel;
    delete m_colorPicker;
    delete m_lineWeightPicker;
    delete m_lineTypePicker;
}

QOvColorComboBox *PropertyManager::colorPicker() const
{
    return m_colorPicker;
}

LineWidthComboBox *PropertyManager::lineWeightPicker() const
{
    return m_lineWeightPicker;
}

LineTypeComboBox *PropertyManager::lineTypePicker() const
{
    return m_lineTypePicker;
}

} // namespace OvCc
