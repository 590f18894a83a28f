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

SearchLayerEdit::SearchLayerEdit(QWidget *parent)
    : QLineEdit(parent)
    , m_button(new QPushButton)
{
    const QPixmap image = searchImage();
    m_button->setObjectName(tr("searchBtn"));
    m_button->setFlat(true);
    m_button->setIcon(image);
    m_button->setIconSize(image.size());
    m_button->setFixedSize(image.size());
    m_button->setCursor(Qt::ArrowCursor);
    m_button->setFocusPolicy(Qt::NoFocus);

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 2, 0);
    row->setSpacing(0);
    row->addStretch();
    row->addWidget(m_button);

    setFixedHeight(20);
    setTextMargins(0, 0, m_button->width(), 0);
    setPlaceholderText(tr("Search for layer"));
    connect(m_button, &QPushButton::clicked, this, &SearchLayerEdit::slotSearchButton);
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
    clearSearch();
}

void SearchLayerEdit::slotTextChanged(QString text)
{
    m_button->setIcon(text.isEmpty() ? searchImage() : clearImage());
    emit searchTextChanged(text);
}

void SearchLayerEdit::slotLoseFocus()
{
    if (!hasFocus() && (text().isEmpty() || text() == QLatin1String("*")))
        clearSearch();
}

void SearchLayerEdit::clearSearch()
{
    m_button->setIcon(searchImage());
    if (text().isEmpty())
        emit searchTextChanged(QString());
    else
        clear();
}

} // namespace OvCc
