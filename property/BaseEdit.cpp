// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "BaseEdit.h"

#include <QHBoxLayout>
#include <QLabel>

namespace OvCc {

struct BaseEdit::Private
{
    QLabel *iconLabel;
    QLabel *textLabel;
};

BaseEdit::BaseEdit(QWidget *parent)
    : QLineEdit(parent)
    , m_d(new Private{new QLabel, new QLabel})
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2);
    row->addWidget(m_d->iconLabel);
    row->addWidget(m_d->textLabel);
    row->addStretch();

    m_d->textLabel->setTextFormat(Qt::PlainText);
    setReadOnly(true);
    // There is nothing to type into; a press opens the list.
    setCursor(Qt::ArrowCursor);
    setContextMenuPolicy(Qt::NoContextMenu);
}

BaseEdit::~BaseEdit() = default;

void BaseEdit::hideIcon()
{
    m_d->iconLabel->hide();
}

void BaseEdit::setCurrentIcon(QPixmap pixmap)
{
    m_d->iconLabel->setPixmap(pixmap);
}

void BaseEdit::setCurrentText(QString text)
{
    m_d->textLabel->setText(text.simplified());
}

} // namespace OvCc
