// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "SearchLayerEdit.h"

#include <OvCustomControl/Swatches.h>

#include <QHBoxLayout>
#include <QPushButton>

namespace OvCc {

namespace {

QPixmap searchImage()
{
    return loadImage(QStringLiteral(":/IDB_LAYER_SEARCH.bmp"));
}

QPixmap clearImage()
{
    return loadImage(QStringLiteral(":/OvLayer_SearchClose.bmp"));
}

} // namespace

struct SearchLayerEdit::Private
{
    QPushButton *const button = new QPushButton;
};

SearchLayerEdit::SearchLayerEdit(QWidget *parent)
    : QLineEdit(parent)
    , m_d(new Private)
{
    const QPixmap image = searchImage();
    m_d->button->setObjectName(tr("searchBtn"));
    m_d->button->setFlat(true);
    m_d->button->setIcon(image);
    m_d->button->setIconSize(image.size());
    m_d->button->setFixedSize(image.size());
    m_d->button->setCursor(Qt::ArrowCursor);
    m_d->button->setFocusPolicy(Qt::NoFocus);

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 2, 0);
    row->setSpacing(0);
    row->addStretch();
    row->addWidget(m_d->button);

    setFixedHeight(20);
    setTextMargins(0, 0, m_d->button->width(), 0);
    setPlaceholderText(tr("Search for layer"));
    connect(m_d->button, &QPushButton::clicked, this, &SearchLayerEdit::slotSearchButton);
    connect(this, &QLineEdit::textChanged, this, &SearchLayerEdit::slotTextChanged);
    connect(this, &QLineEdit::editingFinished, this, &SearchLayerEdit::slotLoseFocus);
}

SearchLayerEdit::~SearchLayerEdit() = default;

void SearchLayerEdit::mousePressEvent(QMouseEvent *event)
{
    QLineEdit::mousePressEvent(event);
}

void SearchLayerEdit::slotSearchButton()
{
    m_d->button->setIcon(searchImage());
    if (text().isEmpty())
        emit searchTextChanged(QString());
    else
        clear();
}

void SearchLayerEdit::slotTextChanged(QString text)
{
    m_d->button->setIcon(text.isEmpty() ? searchImage() : clearImage());
    emit searchTextChanged(text);
}

void SearchLayerEdit::slotLoseFocus()
{
    if (!hasFocus() && (text().isEmpty() || text() == QLatin1String("*")))
        slotSearchButton();
}

} // namespace OvCc
