// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "FormWidget.h"

#include <OvCustomControl/LayerTableWidget.h>

#include <QIcon>
#include <QPixmap>

FormWidget::FormWidget(const Offer &offer)
    : m_offer(offer)
{
}

QString FormWidget::name() const
{
    return QStringLiteral("OvCc::") + QLatin1String(m_offer.name);
}

QString FormWidget::group() const
{
    return QStringLiteral("CAD Controls");
}

QString FormWidget::toolTip() const
{
    return QLatin1String(m_offer.toolTip);
}

QString FormWidget::whatsThis() const
{
    return QLatin1String(m_offer.whatsThis);
}

QString FormWidget::includeFile() const
{
    return QStringLiteral("<OvCustomControl/%1.h>").arg(QLatin1String(m_offer.name));
}

QIcon FormWidget::icon() const
{
    // For the widget box, and beside it for the object inspector.
    const QPixmap sizes(
            QStringLiteral(":/OvCustomControlDesigner/%1.png").arg(QLatin1String(m_offer.name)));
    QIcon icon(sizes.copy(0, 0, 22, 22));
    icon.addPixmap(sizes.copy(22, 0, 16, 16));
    return icon;
}

bool FormWidget::isContainer() const
{
    return false;
}

QString FormWidget::domXml() const
{
    QString objectName = QLatin1String(m_offer.name);
    objectName[0] = objectName.at(0).toLower();
    return QStringLiteral(R"(
<ui language="c++" displayname="%1">
    <widget class="%2" name="%3">
        <property name="geometry">
            <rect><x>0</x><y>0</y><width>%4</width><height>%5</height></rect>
        </property>
    </widget>
    <customwidgets>
        <customwidget>
            <class>%2</class>
            <propertyspecifications>
                <stringpropertyspecification name="buttonText" type="singleline"/>
            </propertyspecifications>
        </customwidget>
    </customwidgets>
</ui>
)")
            .arg(QLatin1String(m_offer.title), name(), objectName)
            .arg(m_offer.size.width())
            .arg(m_offer.size.height());
}

QWidget *FormWidget::createWidget(QWidget *parent)
{
    return m_offer.make(parent);
}

void FormWidget::initialize(QDesignerFormEditorInterface *)
{
    // Tables keep their columns as they go. Those that Designer makes have none to keep.
    OvCc::LayerTableWidget::setSettingsScope(QString(), QString());
}
