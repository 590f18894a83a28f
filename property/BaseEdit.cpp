#include "BaseEdit.h"

#include <QHBoxLayout>
#include <QLabel>

namespace OvCc {

BaseEdit::BaseEdit(QWidget *parent)
    : QLineEdit(parent)
    , m_iconLabel(new QLabel)
    , m_textLabel(new QLabel)
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2);
    row->addWidget(m_iconLabel);
    row->addWidget(m_textLabel);
    row->addStretch();

    m_textLabel->setTextFormat(Qt::PlainText);
    setReadOnly(true);
    // There is nothing to type into; a press opens the list.
    setCursor(Qt::ArrowCursor);
    setContextMenuPolicy(Qt::NoContextMenu);
}

BaseEdit::~BaseEdit() = default;

void BaseEdit::hideIcon()
{
    m_iconLabel->hide();
}

void BaseEdit::setCurrentIcon(QPixmap pixmap)
{
    m_iconLabel->setPixmap(pixmap);
}

void BaseEdit::setCurrentText(QString text)
{
    m_textLabel->setText(text.simplified());
}

} // namespace OvCc
