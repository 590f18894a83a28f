#include "LayerWarningDialog.h"

#include "ui_LayerWarningDialog.h"

#include <OvCustomControl/OvLayerUtility.h>
#include <OvCustomControl/Swatches.h>

namespace OvCc {

LayerWarningDialog::LayerWarningDialog(QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui_LayerWarning>())
{
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_ui->setupUi(this);
    m_ui->label->setPixmap(loadImage(QStringLiteral(":/NdInterfaceRes_warning.bmp")));
    connect(m_ui->okBtn, &QPushButton::clicked, this, &LayerWarningDialog::slotAccepted);
    connect(m_ui->noBtn, &QPushButton::clicked, this, &LayerWarningDialog::slotCancel);
}

LayerWarningDialog::~LayerWarningDialog() = default;

void LayerWarningDialog::setTipsText(QString text)
{
    m_ui->textLabel->setText(text);
}

void LayerWarningDialog::setButtonStatus(bool question)
{
    m_ui->okBtn->setVisible(question);
    m_ui->noBtn->setText(question ? QCoreApplication::translate("LayerWarning", "No")
                                  : QCoreApplication::translate("LayerWarning", "OK"));
    (question ? m_ui->okBtn : m_ui->noBtn)->setFocus();
}

void LayerWarningDialog::setIsOn(bool on)
{
    m_isOn = on;
}

void LayerWarningDialog::setLayerName(QString name)
{
    m_layerName = name;
}

void LayerWarningDialog::slotAccepted()
{
    OvLayerUtility().setLayerOff(m_layerName, !m_isOn);
    accept();
}

void LayerWarningDialog::slotCancel()
{
    reject();
}

} // namespace OvCc
