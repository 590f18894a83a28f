// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "LayerWarningDialog.h"

#include "FormSetup.h"
#include "ui_LayerWarningDialog.h"

#include <OvCustomControl/OvLayerUtility.h>
#include <OvCustomControl/Swatches.h>

namespace OvCc {

struct LayerWarningDialog::Private
{
    Ui_LayerWarning ui;
    bool isOn = false;
    QString layerName;
};

LayerWarningDialog::LayerWarningDialog(QWidget *parent)
    : QDialog(parent)
    , m_d(new Private)
{
    setUpForm(this, m_d->ui);
    m_d->ui.label->setPixmap(loadImage(QStringLiteral(":/NdInterfaceRes_warning.bmp")));
    connect(m_d->ui.okBtn, &QPushButton::clicked, this, &LayerWarningDialog::slotAccepted);
    connect(m_d->ui.noBtn, &QPushButton::clicked, this, &LayerWarningDialog::slotCancel);
}

LayerWarningDialog::~LayerWarningDialog() = default;

void LayerWarningDialog::setTipsText(QString text)
{
    m_d->ui.textLabel->setText(text);
}

void LayerWarningDialog::setButtonStatus(bool question)
{
    m_d->ui.okBtn->setVisible(question);
    m_d->ui.noBtn->setText(question ? QCoreApplication::translate("LayerWarning", "No")
                                    : QCoreApplication::translate("LayerWarning", "OK"));
    (question ? m_d->ui.okBtn : m_d->ui.noBtn)->setFocus();
}

void LayerWarningDialog::setIsOn(bool on)
{
    m_d->isOn = on;
}

void LayerWarningDialog::setLayerName(QString name)
{
    m_d->layerName = name;
}

void LayerWarningDialog::slotAccepted()
{
    emit aboutToSwitch();
    OvLayerUtility().setLayerOff(m_d->layerName, !m_d->isOn);
    accept();
}

void LayerWarningDialog::slotCancel()
{
    reject();
}

} // namespace OvCc
