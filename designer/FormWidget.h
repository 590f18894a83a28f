// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QSize>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

/// What Designer is to know of one class.
struct Offer
{
    const char *name;  ///< of the class, without its namespace; also of its header and its picture
    const char *title; ///< in the widget box
    QSize size;        ///< in pixels, when it is dropped on a form
    const char *toolTip;
    const char *whatsThis;
    QWidget *(*make)(QWidget *parent);
};

/// One class of widgets, as Designer and QUiLoader see it.
class FormWidget : public QDesignerCustomWidgetInterface
{
public:
    explicit FormWidget(const Offer &offer);

    QString name() const override;
    QString group() const override;
    QString toolTip() const override;
    QString whatsThis() const override;
    QString includeFile() const override;
    QIcon icon() const override;
    bool isContainer() const override;
    QString domXml() const override;
    QWidget *createWidget(QWidget *parent) override;

    /// Called by Designer and not by QUiLoader.
    void initialize(QDesignerFormEditorInterface *core) override;

private:
    const Offer m_offer;
};
